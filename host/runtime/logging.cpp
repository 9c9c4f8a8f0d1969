#include "runtime/logging.h"

#include <cfgxml/host.h>
#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_color_sinks.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>
#include <utility>

namespace host {
namespace {

constexpr spdlog::level::level_enum kLevels[] = {spdlog::level::debug, spdlog::level::info,
                                                 spdlog::level::warn, spdlog::level::err};

class Log {
 public:
  Log() : logger_("phone", std::make_shared<spdlog::sinks::stderr_color_sink_mt>()) {
    logger_.set_pattern("%^%l%$: %v");
    logger_.set_level(spdlog::level::off);
  }

  void show(spdlog::level::level_enum least) { logger_.set_level(least); }

  void observe(LogObserver observer) {
    const std::lock_guard<std::mutex> hold(mutex_);
    observer_ = std::move(observer);
    observed_ = observer_ != nullptr;
  }

  /// True when a message of this level has a reader; the others are not even formatted.
  bool wants(LogLevel level) const { return observed_ || logger_.should_log(at(level)); }

  void write(LogLevel level, const std::string& message) {
    logger_.log(at(level), message);
    const std::lock_guard<std::mutex> hold(mutex_);
    if (observer_) observer_(level, message);
  }

 private:
  static spdlog::level::level_enum at(LogLevel level) { return kLevels[static_cast<int>(level)]; }

  spdlog::logger logger_;
  std::atomic<bool> observed_{false};
  std::mutex mutex_;
  LogObserver observer_;  // guarded by mutex_
};

Log& the_log() {
  static Log log;
  return log;
}

std::string format_message(const char* format, std::va_list arguments) {
  std::va_list again;
  va_copy(again, arguments);
  char line[512];
  const int length = std::vsnprintf(line, sizeof line, format, arguments);
  std::string message = line;
  if (length >= static_cast<int>(sizeof line)) {
    message.resize(static_cast<std::size_t>(length));
    std::vsnprintf(message.data(), message.size() + 1, format, again);
  }
  va_end(again);
  return length < 0 ? format : message;
}

void write(LogLevel level, const char* format, std::va_list arguments) {
  Log& log = the_log();
  if (log.wants(level)) log.write(level, format_message(format, arguments));
}

}  // namespace

void show_log(Verbosity verbosity) {
  switch (verbosity) {
    case Verbosity::kQuiet:
      return the_log().show(spdlog::level::off);
    case Verbosity::kProblems:
      return the_log().show(spdlog::level::warn);
    case Verbosity::kEverything:
      return the_log().show(spdlog::level::debug);
  }
}

void observe_log(LogObserver observer) { the_log().observe(std::move(observer)); }

}  // namespace host

void rl_log_err(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  host::write(host::LogLevel::kError, format, arguments);
  va_end(arguments);
}

void rl_log_warn(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  host::write(host::LogLevel::kWarning, format, arguments);
  va_end(arguments);
}

void rl_log_info(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  host::write(host::LogLevel::kInfo, format, arguments);
  va_end(arguments);
}

void rl_log_debug(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  host::write(host::LogLevel::kDebug, format, arguments);
  va_end(arguments);
}
