#include "terminal.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <mutex>
#include <optional>
#include <string_view>

namespace deskphone {
namespace {

constexpr char kClearScreen[] = "\033[H\033[2J";

std::mutex saved_mutex;
std::optional<termios> saved;  // guarded by saved_mutex

}  // namespace

RawTerminal::RawTerminal() {
  termios settings{};
  if (::tcgetattr(STDIN_FILENO, &settings) != 0) return;
  const std::lock_guard<std::mutex> hold(saved_mutex);
  saved = settings;
  settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  settings.c_cc[VMIN] = 1;
  settings.c_cc[VTIME] = 0;
  ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &settings);
}

RawTerminal::~RawTerminal() { restore(); }

void RawTerminal::restore() {
  const std::lock_guard<std::mutex> hold(saved_mutex);
  if (saved) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &*saved);
  saved.reset();
}

int read_key() {
  unsigned char key = 0;
  return ::read(STDIN_FILENO, &key, 1) == 1 ? key : -1;
}

bool draws_screens() {
  const char* terminal = std::getenv("TERM");
  return ::isatty(STDOUT_FILENO) != 0 && terminal != nullptr &&
         std::string_view(terminal) != "dumb";
}

void clear_screen() { fmt::print("{}", kClearScreen); }

std::size_t screen_lines() {
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_row == 0) return 24;
  return size.ws_row;
}

}  // namespace deskphone
