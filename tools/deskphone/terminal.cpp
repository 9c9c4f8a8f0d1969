#include "terminal.h"

#include <fmt/format.h>
#include <poll.h>
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

constexpr int kEscape = 27;

std::mutex saved_mutex;
std::optional<termios> saved;  // guarded by saved_mutex

int read_byte() {
  unsigned char byte = 0;
  return ::read(STDIN_FILENO, &byte, 1) == 1 ? byte : -1;
}

/// True when the terminal sends more at once, as it does for a cursor or function key.
bool more_is_waiting() {
  constexpr int kMilliseconds = 20;
  pollfd input = {STDIN_FILENO, POLLIN, 0};
  return ::poll(&input, 1, kMilliseconds) > 0;
}

/// Reads the rest of what a cursor or function key sends: "[" or "O", and on to a letter or "~".
void skip_sequence() {
  const int first = read_byte();
  if (first != '[' && first != 'O') return;
  int byte = read_byte();
  while (byte != -1 && (byte < '@' || byte > '~')) byte = read_byte();
}

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
  const int byte = read_byte();
  if (byte != kEscape || !more_is_waiting()) return byte;
  skip_sequence();
  return kEscape;
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
