#include "data/embedded/watch.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

#include "data/embedded/session.h"

namespace korvel::data::embedded {
namespace {

constexpr std::chrono::milliseconds kPause{50};

class Watcher {
 public:
  void Add(Session& session) {
    const std::scoped_lock lock(mutex_);
    if (!started_) Start();
    if (sessions_.insert(&session).second && sessions_.size() == 1) wake_.notify_one();
  }

  void Remove(Session& session) {
    const std::scoped_lock lock(mutex_);
    sessions_.erase(&session);
  }

  bool IsOfThisProcess() const { return process_ == ::getpid(); }

 private:
  /// The program's signals stay with its own threads.
  void Start() {
    started_ = true;
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
      std::thread([this] { Run(); }).detach();
    } catch (const std::system_error&) {
      // No thread to be had: the session's next call undoes what is left.
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }

  [[noreturn]] void Run() {
    std::unique_lock lock(mutex_);
    while (true) {
      wake_.wait(lock, [this] { return !sessions_.empty(); });
      for (Session* session : sessions_) {
        if (session->Processes().Killed()) session->UndoIfIdle();
      }
      lock.unlock();
      std::this_thread::sleep_for(kPause);
      lock.lock();
    }
  }

  const pid_t process_ = ::getpid();
  std::mutex mutex_;
  std::condition_variable wake_;
  std::set<Session*> sessions_;
  bool started_ = false;
};

/// Never destroyed, because its thread runs until the process ends. A forked process has none of its parent's threads and
/// begins with a watcher of its own.
Watcher& Current() {
  static std::atomic<Watcher*> current = nullptr;
  Watcher* watcher = current.load();
  while (watcher == nullptr || !watcher->IsOfThisProcess()) {
    auto made = std::make_unique<Watcher>();
    if (current.compare_exchange_strong(watcher, made.get())) return *made.release();
  }
  return *watcher;
}

}  // namespace

void Watch::Add(Session& session) {
  Current().Add(session);
}

void Watch::Remove(Session& session) {
  Current().Remove(session);
}

}  // namespace korvel::data::embedded
