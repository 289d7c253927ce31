#ifndef TOOLS_IO_ORDERED_WORKERS_H_
#define TOOLS_IO_ORDERED_WORKERS_H_

// Work on many threads whose results come back in the order in which the tasks were given.

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace qeo::tool {

template <typename Task>
class OrderedWorkers {
 public:
  using Work = std::function<void(Task&)>;

  /// Starts a thread for each of `works`, or none for a single one, which then works in Give.
  /// Throws std::system_error when there can be no more threads.
  explicit OrderedWorkers(std::vector<Work> works) : works_(std::move(works)) {
    if (works_.size() == 1) return;
    try {
      for (const Work& work : works_) threads_.emplace_back([this, &work] { Run(work); });
    } catch (...) {
      End();  // those that were started
      throw;
    }
  }

  /// Ends the threads; tasks that have not begun are dropped.
  ~OrderedWorkers() { End(); }

  OrderedWorkers(const OrderedWorkers&) = delete;
  OrderedWorkers& operator=(const OrderedWorkers&) = delete;

  /// Returns whether a result must be taken before the next task is given, so that memory stays
  /// bounded.
  bool IsFull() const { return places_.size() >= 2 * works_.size(); }
  bool IsEmpty() const { return places_.empty(); }

  void Give(std::unique_ptr<Task> task) {
    auto place = std::make_unique<Place>();
    place->task = std::move(task);
    Place& given = *place;
    places_.push_back(std::move(place));
    if (threads_.empty()) {
      works_.front()(*given.task);
      given.is_done = true;
      return;
    }
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      waiting_.push_back(&given);
    }
    has_task_.notify_one();
  }

  /// Waits for the oldest task and returns it. What its work threw is thrown here.
  std::unique_ptr<Task> TakeOldest() {
    const std::unique_ptr<Place> place = std::move(places_.front());
    places_.pop_front();
    std::unique_lock<std::mutex> lock(mutex_);
    is_done_.wait(lock, [&place] { return place->is_done; });
    if (place->failure) std::rethrow_exception(place->failure);
    return std::move(place->task);
  }

 private:
  struct Place {
    std::unique_ptr<Task> task;
    bool is_done = false;
    std::exception_ptr failure;
  };

  void End() {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      is_ending_ = true;
    }
    has_task_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

  void Run(const Work& work) {
    while (Place* const place = WaitForTask()) {
      std::exception_ptr failure;
      try {
        work(*place->task);
      } catch (...) {
        failure = std::current_exception();
      }
      const std::lock_guard<std::mutex> lock(mutex_);
      place->failure = failure;
      place->is_done = true;
      is_done_.notify_one();
    }
  }

  // The next task, or null when the threads are to end.
  Place* WaitForTask() {
    std::unique_lock<std::mutex> lock(mutex_);
    has_task_.wait(lock, [this] { return is_ending_ || !waiting_.empty(); });
    if (is_ending_) return nullptr;
    Place* const place = waiting_.front();
    waiting_.pop_front();
    return place;
  }

  const std::vector<Work> works_;
  std::deque<std::unique_ptr<Place>> places_;  // in order; for the giving thread alone

  std::mutex mutex_;  // of what follows, and of what a place reports of its work
  std::condition_variable has_task_;
  std::condition_variable is_done_;
  std::deque<Place*> waiting_;
  bool is_ending_ = false;

  std::vector<std::thread> threads_;
};

}  // namespace qeo::tool

#endif  // TOOLS_IO_ORDERED_WORKERS_H_
