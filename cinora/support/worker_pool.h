// The host's worker threads: one pool that lives as long as the host.
#pragma once

#include <atomic>
#include <thread>
#include <vector>

#include "zenlay/host/host_interface.h"

namespace cinora {

class WorkerPool {
 public:
  /// The calling thread is the first worker, so `threads` - 1 are started. Below 1: one a processor.
  explicit WorkerPool(int threads = 0);
  ~WorkerPool();
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  int size() const { return static_cast<int>(workers_.size()) + 1; }
  /// Calls work(index, size(), first, second) once on every worker and returns when all have. From inside a worker the
  /// work is done on the spot, as the only one of one. Work may not throw: nobody could catch it, the program ends.
  void run(zenlay::ThreadWork work, void* first, void* second) noexcept;

  /// work(firstRow, lastRow) on every worker. Slices begin at even rows, so that two rows of sub-sampled chroma stay
  /// together; small images are done on the spot.
  template <typename Work>
  void forRows(int rows, const Work& work) noexcept {
    if (rows < rowsWorthSplitting) {
      work(0, rows);
      return;
    }
    struct Slice {
      const Work* work;
      int rows;
    } slice{&work, rows};
    run(
        [](int index, int count, void* first, void*) {
          const Slice& slice = *static_cast<Slice*>(first);
          auto edge = [&](int i) {
            return i == count ? slice.rows : static_cast<int>(int64_t{slice.rows} * i / count) & ~1;
          };
          (*slice.work)(edge(index), edge(index + 1));
        },
        &slice, nullptr);
  }

 private:
  static constexpr int rowsWorthSplitting = 64;
  void work(int index);

  std::vector<std::thread> workers_;
  zenlay::ThreadWork work_ = nullptr;
  void *first_ = nullptr, *second_ = nullptr;
  std::atomic<uint32_t> round_{0};  // raised once a run; workers wait on it
  std::atomic<int> running_{0};     // workers that have not finished the round
  bool stopping_ = false;           // read after round_ was raised
};

}  // namespace cinora
