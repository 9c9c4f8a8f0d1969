// The terminal, key by key.
#pragma once

#include <cstddef>

namespace deskphone {

/// While it lives, keys come from standard input one at a time and are not shown; signals work as
/// before. Does nothing when standard input is no terminal.
class RawTerminal {
 public:
  RawTerminal();
  ~RawTerminal();
  RawTerminal(const RawTerminal&) = delete;
  RawTerminal& operator=(const RawTerminal&) = delete;

  /// Puts the terminal right; from any thread.
  static void restore();
};

/// The next byte of standard input, or -1 at its end. What a cursor or function key sends counts as
/// one escape character.
int read_key();

/// True when standard output is a terminal that understands cursor commands.
bool draws_screens();

/// Moves to the top left corner of an empty screen.
void clear_screen();

/// The lines of the terminal; 24 when it does not say.
std::size_t screen_lines();

}  // namespace deskphone
