#include "runtime/locks.h"

#include <cfgxml/host.h>

#include <array>
#include <atomic>
#include <mutex>

namespace host {
namespace {

/// The phone numbers its locks from here on.
constexpr int kFirstId = 45056;
constexpr int kCount = 64;

/// Tells threads apart: the address of this variable differs in each.
thread_local char this_thread;

/// A lock that its holder may take again and that no one else can release.
class RecursiveLock {
 public:
  void lock() {
    if (!mine()) {
      mutex_.lock();
      owner_.store(&this_thread, std::memory_order_relaxed);
    }
    ++depth_;
  }

  /// False when the calling thread does not hold the lock.
  bool unlock() {
    if (!mine()) return false;
    if (--depth_ == 0) {
      owner_.store(nullptr, std::memory_order_relaxed);
      mutex_.unlock();
    }
    return true;
  }

  bool mine() const { return owner_.load(std::memory_order_relaxed) == &this_thread; }
  bool held() const { return owner_.load(std::memory_order_relaxed) != nullptr; }

 private:
  std::mutex mutex_;
  std::atomic<const char*> owner_{nullptr};
  int depth_ = 0;  // guarded by mutex_
};

std::array<RecursiveLock, kCount> all_locks;
std::atomic<int> faults{0};

/// The lock with this id, or nullptr, which is logged.
RecursiveLock* find(int id) {
  if (id >= kFirstId && id < kFirstId + kCount) {
    return &all_locks[static_cast<std::size_t>(id - kFirstId)];
  }
  rl_log_err("there is no lock %d.", id);
  return nullptr;
}

}  // namespace

int locks::faulty_releases() { return faults; }

int locks::held() {
  int count = 0;
  for (const RecursiveLock& lock : all_locks) count += lock.held() ? 1 : 0;
  return count;
}

bool locks::held_by_me(int id) {
  const RecursiveLock* lock = find(id);
  return lock != nullptr && lock->mine();
}

}  // namespace host

int rl_sem_lock(int id) {
  host::RecursiveLock* lock = host::find(id);
  if (lock == nullptr) return -1;
  lock->lock();
  return 0;
}

int rl_sem_unlock(int id) {
  host::RecursiveLock* lock = host::find(id);
  if (lock != nullptr && lock->unlock()) return 0;
  ++host::faults;
  rl_log_err("lock %d was released by a thread that does not hold it.", id);
  return -1;
}
