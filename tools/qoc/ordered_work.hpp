#pragma once

/// @file Work on many items in several threads, its outcomes in the items' order.

#include "interrupt.hpp"

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace qoc::program {

/// Hands items to threads in chunks and gives the outcomes to one function, in order, in the thread that adds the
/// items. Holds a bounded number of chunks, however many items there are. With one thread everything happens at once in
/// `add`.
template <typename Item, typename Outcome> class OrderedWork {
public:
  using Worker = std::function<Outcome(Item &)>;

  /// @param makeWorker makes a thread's own worker; called once in each thread
  /// @param deliver takes an item and what came of it
  /// @param weigh how much work an item is; a chunk ends where its items weigh `chunkWeight`
  OrderedWork(unsigned numThreads, std::function<Worker()> makeWorker, std::function<void(Item &, Outcome &)> deliver,
              std::function<std::size_t(const Item &)> weigh)
      : makeWorker_(std::move(makeWorker)), deliver_(std::move(deliver)), weigh_(std::move(weigh)),
        maxInFlight_(numThreads * chunksPerThread) {
    if (numThreads <= 1) {
      inlineWorker_ = makeWorker_();
      return;
    }
    try {
      for (unsigned i = 0; i < numThreads; ++i) threads_.emplace_back([this] { work(); });
    } catch (const std::exception &) { // There is no thread, or no memory for one: fewer do it, too.
      if (threads_.empty()) inlineWorker_ = makeWorker_();
    }
  }
  OrderedWork(const OrderedWork &) = delete;
  OrderedWork &operator=(const OrderedWork &) = delete;
  /// Ends the threads; what they are at is given up.
  ~OrderedWork() {
    stopThreads();
    {
      const std::lock_guard lock(mutex_);
      waiting_.clear();
      isEnding_ = true;
    }
    toWorkers_.notify_all();
    for (std::thread &thread : threads_) thread.join();
    letThreadsWork();
  }

  /// Adds an item; delivers what is due. Throws what the work on an item threw, after all before it are delivered.
  void add(Item item) {
    if (inlineWorker_) {
      Outcome outcome = inlineWorker_(item);
      deliver_(item, outcome);
      return;
    }
    weight_ += weigh_(item);
    open_->items.push_back(std::move(item));
    if (open_->items.size() >= chunkItems || weight_ >= chunkWeight) submit();
    while (isFrontDone()) deliverFront();
  }

  /// Waits for everything that was added, and delivers it. Throws as `add`; after a failure nothing more is delivered.
  void drain() {
    if (inlineWorker_ || hasFailed_) return;
    submit();
    while (!inFlight_.empty()) deliverFront();
  }

private:
  static constexpr std::size_t chunkItems = 32, chunkWeight = 4096;
  static constexpr unsigned chunksPerThread = 4;

  struct Chunk {
    std::vector<Item> items;
    std::vector<Outcome> outcomes;
    std::exception_ptr failure; ///< Of the item behind the last outcome.
    bool isDone = false;
  };

  void submit() {
    weight_ = 0;
    if (open_->items.empty()) return;
    while (inFlight_.size() >= maxInFlight_) deliverFront();
    {
      const std::lock_guard lock(mutex_);
      waiting_.push_back(open_.get());
    }
    inFlight_.push_back(std::exchange(open_, std::make_unique<Chunk>()));
    toWorkers_.notify_one();
  }

  bool isFrontDone() {
    if (inFlight_.empty()) return false;
    const std::lock_guard lock(mutex_);
    return inFlight_.front()->isDone;
  }

  void deliverFront() {
    {
      std::unique_lock lock(mutex_);
      toCaller_.wait(lock, [this] { return inFlight_.front()->isDone; });
    }
    const std::unique_ptr<Chunk> chunk = std::move(inFlight_.front());
    inFlight_.pop_front();
    hasFailed_ = true; // Until all of the chunk is delivered.
    for (std::size_t i = 0; i < chunk->outcomes.size(); ++i) deliver_(chunk->items[i], chunk->outcomes[i]);
    hasFailed_ = chunk->failure != nullptr;
    if (hasFailed_) std::rethrow_exception(chunk->failure);
  }

  void work() {
    const ThreadAttention attention;
    Worker worker;
    for (;;) {
      Chunk *chunk = nullptr;
      {
        std::unique_lock lock(mutex_);
        toWorkers_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
        if (isEnding_) return;
        chunk = waiting_.front();
        waiting_.pop_front();
      }
      try {
        if (!worker) worker = makeWorker_();
        for (Item &item : chunk->items) {
          checkInterrupt();
          chunk->outcomes.push_back(worker(item));
        }
      } catch (...) {
        chunk->failure = std::current_exception();
      }
      {
        const std::lock_guard lock(mutex_);
        chunk->isDone = true;
      }
      toCaller_.notify_one();
    }
  }

  std::function<Worker()> makeWorker_;
  std::function<void(Item &, Outcome &)> deliver_;
  std::function<std::size_t(const Item &)> weigh_;
  std::size_t maxInFlight_, weight_ = 0;
  Worker inlineWorker_; ///< Where the calling thread does the work.
  std::unique_ptr<Chunk> open_ = std::make_unique<Chunk>();
  std::deque<std::unique_ptr<Chunk>> inFlight_; ///< In order; the calling thread's own.
  std::mutex mutex_;
  std::condition_variable toWorkers_, toCaller_;
  std::deque<Chunk *> waiting_; ///< Not yet taken by a thread.
  bool isEnding_ = false, hasFailed_ = false;
  std::vector<std::thread> threads_;
};

} // namespace qoc::program
