#include "runtime/locks.h"

#include <cfgxml/host.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <limits>
#include <mutex>
#include <utility>

namespace host {
namespace {

/// The phone numbers its locks from here on.
constexpr int kFirstId = 45056;
constexpr int kCount = 64;

constexpr int kHistory = 45075;
constexpr int kPhonebook = 45081;

/// The locks that the calling thread holds, a bit for each. Its address tells threads apart.
using LockSet = std::uint64_t;
static_assert(kCount <= std::numeric_limits<LockSet>::digits);
thread_local LockSet held_here = 0;

/// A lock that its holder may take again and that no one else can release.
class RecursiveLock {
 public:
  void lock() {
    if (!mine()) {
      mutex_.lock();
      owner_.store(&held_here, std::memory_order_relaxed);
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

  bool mine() const { return owner_.load(std::memory_order_relaxed) == &held_here; }
  bool held_once() const { return mine() && depth_ == 1; }
  bool held() const { return owner_.load(std::memory_order_relaxed) != nullptr; }

 private:
  std::mutex mutex_;
  std::atomic<const LockSet*> owner_{nullptr};
  int depth_ = 0;  // guarded by mutex_
};

std::array<RecursiveLock, kCount> all_locks;
locks::Observer the_observer;
std::atomic<int> faults{0};

/// The order in which locks were taken: [outer][inner], by their places in all_locks.
std::array<std::array<std::atomic<int>, kCount>, kCount> nested{};
std::atomic<int> forbidden_nestings{0};

bool is_lock(int id) { return id >= kFirstId && id < kFirstId + kCount; }
std::size_t place_of(int id) { return static_cast<std::size_t>(id - kFirstId); }
LockSet bit_of(int id) { return LockSet{1} << place_of(id); }

/// The lock with this id, or nullptr, which is logged.
RecursiveLock* find(int id) {
  if (is_lock(id)) return &all_locks[place_of(id)];
  rl_log_err("there is no lock %d.", id);
  return nullptr;
}

/// Notes that the calling thread is about to take the lock, which it does not hold, and what it
/// holds already. Called before it waits: the message is there when the phone stands still.
void note_order(int inner) {
  for (int outer = kFirstId; held_here != 0 && outer != kFirstId + kCount; ++outer) {
    if ((held_here & bit_of(outer)) == 0) continue;
    ++nested[place_of(outer)][place_of(inner)];
    if (outer == kHistory && inner == kPhonebook) continue;
    ++forbidden_nestings;
    rl_log_err("lock %d was taken inside lock %d, which is no order of the phone's.", inner, outer);
  }
}

}  // namespace

int locks::faulty_releases() { return faults; }

void locks::observe(Observer observer) { the_observer = std::move(observer); }

int locks::inversions() { return forbidden_nestings; }

int locks::nestings(int outer, int inner) {
  return is_lock(outer) && is_lock(inner) ? nested[place_of(outer)][place_of(inner)].load() : 0;
}

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
  const bool first = !lock->mine();
  if (first) host::note_order(id);
  lock->lock();
  host::held_here |= host::bit_of(id);
  if (first && host::the_observer) host::the_observer(id, true);
  return 0;
}

int rl_sem_unlock(int id) {
  host::RecursiveLock* lock = host::find(id);
  if (lock != nullptr && lock->held_once() && host::the_observer) host::the_observer(id, false);
  if (lock != nullptr && lock->unlock()) {
    if (!lock->mine()) host::held_here &= ~host::bit_of(id);
    return 0;
  }
  ++host::faults;
  rl_log_err("lock %d was released by a thread that does not hold it.", id);
  return -1;
}
