#include "cinora/support/worker_pool.h"

#include <gtest/gtest.h>

#include <mutex>
#include <set>

namespace cinora {
namespace {

TEST(WorkerPoolTest, EveryWorkerRunsOnceARound) {
  for (int threads : {1, 2, 5}) {
    WorkerPool pool(threads);
    ASSERT_EQ(pool.size(), threads);
    std::atomic<int> calls[5] = {};
    for (int round = 1; round <= 2000; round++) {
      pool.run([](int index, int count, void* first, void*) { static_cast<std::atomic<int>*>(first)[index] += count; },
               calls, nullptr);
      for (int i = 0; i < threads; i++) ASSERT_EQ(calls[i], round * threads);
    }
  }
}

TEST(WorkerPoolTest, ARunInsideARunIsDoneOnTheSpot) {
  WorkerPool pool(3);
  struct State {
    WorkerPool* pool;
    std::atomic<int> inner{0};
  } state{&pool};
  pool.run(
      [](int, int, void* first, void*) {
        static_cast<State*>(first)->pool->run(
            [](int index, int count, void* state, void*) {
              static_cast<State*>(state)->inner += index == 0 && count == 1 ? 1 : 100;
            },
            first, nullptr);
      },
      &state, nullptr);
  EXPECT_EQ(state.inner, 3);
}

TEST(WorkerPoolTest, RowsAreSplitAtEvenEdgesWithoutGaps) {
  WorkerPool pool(3);
  for (int rows : {1, 63, 64, 65, 101, 1080}) {
    std::mutex lock;
    std::set<std::pair<int, int>> slices;
    pool.forRows(rows, [&](int first, int last) {
      std::lock_guard guard(lock);
      slices.insert({first, last});
    });
    int at = 0;
    for (auto [first, last] : slices) {
      EXPECT_EQ(first, at);
      EXPECT_EQ(first % 2, 0);
      at = last;
    }
    EXPECT_EQ(at, rows);
    EXPECT_EQ(slices.size(), rows < 64 ? 1u : 3u);
  }
}

}  // namespace
}  // namespace cinora
