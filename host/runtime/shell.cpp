#include "runtime/shell.h"

#include <cfgxml/host.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace host {
namespace {

CommandObserver observer;
CommandRunner runner;

/// Starts the shell with no signal blocked, whatever the calling thread blocks.
pid_t start_shell(const char* command) {
  std::string words[] = {"sh", "-c", command};
  char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
  sigset_t none;
  sigemptyset(&none);

  posix_spawnattr_t attributes;
  if (posix_spawnattr_init(&attributes) != 0) return -1;
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  pid_t process = -1;
  const int error = posix_spawn(&process, "/bin/sh", nullptr, &attributes, arguments, environ);
  posix_spawnattr_destroy(&attributes);
  return error == 0 ? process : -1;
}

/// The exit status of a process, or -1 when it did not end by itself.
int wait_for(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

void observe_commands(CommandObserver new_observer) { observer = std::move(new_observer); }
void run_commands_with(CommandRunner new_runner) { runner = std::move(new_runner); }

}  // namespace host

/// Returns the command's exit status, or -1. The two numbers are hints for the phone's scheduler,
/// which this host has no use for.
int rl_system_ex(const char* command, int /*first*/, int /*second*/) {
  if (host::observer) host::observer(command);
  if (host::runner) return host::runner(command);
  const pid_t process = host::start_shell(command);
  return process > 0 ? host::wait_for(process) : -1;
}
