// Two persistent worker threads behind the host's `runOnThreads`, for kernels and for what they are compared with.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "zenlay/host/host_interface.h"

namespace bench {

inline constexpr int workerCount = 2;

class Workers {
 public:
  Workers() {
    for (int i = 0; i < workerCount; ++i) threads_[i] = std::thread([this, i] { serve(i); });
  }
  ~Workers() {
    run(nullptr, nullptr, nullptr);
    for (std::thread& thread : threads_) thread.join();
  }
  /// Null work ends the threads.
  void run(zenlay::ThreadWork work, void* first, void* second) {
    std::unique_lock lock(mutex_);
    work_ = work;
    first_ = first;
    second_ = second;
    pending_ = workerCount;
    ++round_;
    changed_.notify_all();
    changed_.wait(lock, [this] { return pending_ == 0; });
  }

 private:
  void serve(int index) {
    for (int seen = 0;;) {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [&] { return round_ != seen; });
      seen = round_;
      const zenlay::ThreadWork work = work_;
      lock.unlock();
      if (work) work(index, workerCount, first_, second_);
      lock.lock();
      if (--pending_ == 0) changed_.notify_all();
      if (!work) return;
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::thread threads_[workerCount];
  zenlay::ThreadWork work_ = nullptr;
  void *first_ = nullptr, *second_ = nullptr;
  int round_ = 0, pending_ = 0;
};

/// A function table that offers `runOnThreads` alone.
inline const zenlay::HostFunctionTable* workerHost() {
  static Workers workers;
  static const zenlay::HostFunctionTable* table = [] {
    static zenlay::HostFunctionTable functions{};
    functions.runOnThreads = [](zenlay::ThreadWork work, void* first, void* second) {
      workers.run(work, first, second);
      return 1;
    };
    return &functions;
  }();
  return table;
}

}  // namespace bench
