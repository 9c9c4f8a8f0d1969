// The library's own mutexes, and what they guard, in words that Clang's thread-safety analysis
// checks: data that is GUARDED_BY a mutex is used only where that is held.
#pragma once

#include <mutex>

#ifdef __clang__
#define CAPABILITY(name) __attribute__((capability(name)))
#define SCOPED_CAPABILITY __attribute__((scoped_lockable))
#define GUARDED_BY(mutex) __attribute__((guarded_by(mutex)))
#define REQUIRES(mutex) __attribute__((requires_capability(mutex)))
#define ACQUIRE(...) __attribute__((acquire_capability(__VA_ARGS__)))
#define RELEASE(...) __attribute__((release_capability(__VA_ARGS__)))
#else
#define CAPABILITY(name)
#define SCOPED_CAPABILITY
#define GUARDED_BY(mutex)
#define REQUIRES(mutex)
#define ACQUIRE(...)
#define RELEASE(...)
#endif

namespace cfgxml {

template <typename Standard>
class CAPABILITY("mutex") BasicMutex {
 public:
  void lock() ACQUIRE() { mutex_.lock(); }
  void unlock() RELEASE() { mutex_.unlock(); }

 private:
  Standard mutex_;
};
using Mutex = BasicMutex<std::mutex>;
using RecursiveMutex = BasicMutex<std::recursive_mutex>;

/// Holds a mutex for its scope.
template <typename Kind>
class SCOPED_CAPABILITY Hold {
 public:
  explicit Hold(Kind& mutex) ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
  ~Hold() RELEASE() { mutex_.unlock(); }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

 private:
  Kind& mutex_;
};

}  // namespace cfgxml
