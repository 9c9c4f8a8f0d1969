// The phone's numbered locks.
#pragma once

#include <cfgxml/host.h>

#include <functional>

namespace host {

/// Holds the lock of contacts and blacklist.
class PhonebookLock {
 public:
  PhonebookLock() { rl_sem_lock(kId); }
  ~PhonebookLock() { rl_sem_unlock(kId); }
  PhonebookLock(const PhonebookLock&) = delete;
  PhonebookLock& operator=(const PhonebookLock&) = delete;

 private:
  static constexpr int kId = 45081;
};

namespace locks {

/// Releases so far by a thread that did not hold the lock; each is also logged and does nothing.
int faulty_releases();

/// Times that a thread took a lock while it held another, except the phonebook's inside the
/// history's; each is also logged. Two locks that nest both ways can stop the phone for good, so
/// the one nesting that is allowed is the whole order.
int inversions();

/// Times that a thread which held the outer lock took the inner one, beyond taking one again.
int nestings(int outer, int inner);

/// Locks that some thread holds at this moment.
int held();

/// True when the calling thread holds the lock.
bool held_by_me(int id);

/// Called by a thread that has taken a lock which it did not hold, and that is about to release one
/// for good, with the lock held both times.
using Observer = std::function<void(int id, bool taken)>;

/// Sets the observer, or removes it with nullptr; not safe beside running calls.
void observe(Observer observer);

}  // namespace locks
}  // namespace host
