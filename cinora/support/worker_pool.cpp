#include "cinora/support/worker_pool.h"

#include <algorithm>

namespace cinora {
namespace {

constexpr int maxThreads = 256;
thread_local bool insideRun = false;

}  // namespace

WorkerPool::WorkerPool(int threads) {
  if (threads < 1) threads = static_cast<int>(std::thread::hardware_concurrency());
  threads = std::clamp(threads, 1, maxThreads);
  for (int i = 1; i < threads; i++) workers_.emplace_back(&WorkerPool::work, this, i);
}

WorkerPool::~WorkerPool() {
  stopping_ = true;
  round_.fetch_add(1);
  round_.notify_all();
  for (std::thread& worker : workers_) worker.join();
}

void WorkerPool::run(zenlay::ThreadWork work, void* first, void* second) noexcept {
  if (insideRun || workers_.empty()) {
    work(0, 1, first, second);
    return;
  }
  work_ = work;
  first_ = first;
  second_ = second;
  running_.store(static_cast<int>(workers_.size()));
  round_.fetch_add(1);
  round_.notify_all();
  insideRun = true;
  work(0, size(), first, second);
  insideRun = false;
  for (int left = running_.load(); left != 0; left = running_.load()) running_.wait(left);
}

void WorkerPool::work(int index) {
  insideRun = true;
  uint32_t round = 0;
  for (;;) {
    round_.wait(round);
    round++;
    if (stopping_) return;
    work_(index, size(), first_, second_);
    if (running_.fetch_sub(1) == 1) running_.notify_one();
  }
}

}  // namespace cinora
