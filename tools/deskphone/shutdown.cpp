#include "shutdown.h"

#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "host.h"
#include "output.h"
#include "profile.h"
#include "terminal.h"

namespace deskphone {
namespace {

constexpr int kEndsProgram[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int kEndsWatch = SIGUSR1;

std::thread watcher;

sigset_t watched_signals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : kEndsProgram) sigaddset(&signals, signal);
  sigaddset(&signals, kEndsWatch);
  return signals;
}

void watch() {
  const sigset_t signals = watched_signals();
  int signal = 0;
  while (sigwait(&signals, &signal) != 0) {
  }
  if (signal == kEndsWatch) return;
  RawTerminal::restore();
  if (!host::the_host().stop_saving()) remark("The last changes could not be written.");
  ScratchFolder::remove_all();
  ::_exit(128 + signal);
}

}  // namespace

void hold_signals() {
  const sigset_t signals = watched_signals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
}

void watch_signals() { watcher = std::thread(watch); }

void unwatch_signals() {
  if (!watcher.joinable()) return;
  pthread_kill(watcher.native_handle(), kEndsWatch);
  watcher.join();
}

}  // namespace deskphone
