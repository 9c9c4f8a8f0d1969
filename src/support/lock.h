// The host's numbered locks, and the frame of every exported function: take the domain's lock, call
// the worker, release the lock, let no exception out.
#pragma once

#include <cfgxml/host.h>

#include <new>
#include <utility>

namespace cfgxml {

/// The data domains, by the host's lock ids. Only kHistory is taken around another (kPhonebook).
enum class Lock : int {
  kMessages = 45067,
  kRemote = 45070,
  kHistory = 45075,
  kDialNow = 45076,
  kDialReplace = 45077,
  kPhonebook = 45081,
  kTimezones = 45082,
};

/// Holds a host lock for its scope; the same thread may hold it more than once.
class ScopedLock {
 public:
  explicit ScopedLock(Lock lock) : id_(static_cast<int>(lock)) { rl_sem_lock(id_); }
  ~ScopedLock() { rl_sem_unlock(id_); }
  ScopedLock(const ScopedLock&) = delete;
  ScopedLock& operator=(const ScopedLock&) = delete;

 private:
  int id_;
};

/// Calls the worker without a lock; a failed allocation inside it gives the failure result.
template <typename Result, typename Worker, typename... Arguments>
Result guarded(Result failure, Worker&& worker, Arguments... arguments) {
  try {
    return std::forward<Worker>(worker)(arguments...);
  } catch (const std::bad_alloc&) {
    rl_log_err("out of memory.");
    return failure;
  }
}

/// Calls the worker with the lock held; a failed allocation inside it gives the failure result.
template <typename Result, typename Worker, typename... Arguments>
Result under_lock(Lock lock, Result failure, Worker&& worker, Arguments... arguments) {
  ScopedLock hold(lock);
  return guarded(failure, std::forward<Worker>(worker), arguments...);
}

}  // namespace cfgxml
