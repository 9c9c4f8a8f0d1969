// The phone's numbered locks.
#pragma once

namespace host::locks {

/// Releases so far by a thread that did not hold the lock; each is also logged and does nothing.
int faulty_releases();

/// Locks that some thread holds at this moment.
int held();

/// True when the calling thread holds the lock.
bool held_by_me(int id);

}  // namespace host::locks
