// The phone's log: leveled messages on standard error, and to an observer.
#pragma once

#include <functional>
#include <string>

namespace host {

enum class LogLevel { kDebug, kInfo, kWarning, kError };

/// Called with every message, at any level, whatever is shown; by one thread at a time.
using LogObserver = std::function<void(LogLevel, const std::string&)>;

/// How much goes to standard error: nothing (the default), errors and warnings, everything.
enum class Verbosity { kQuiet, kProblems, kEverything };

void show_log(Verbosity verbosity);

/// Sets the observer, or removes it with nullptr.
void observe_log(LogObserver observer);

}  // namespace host
