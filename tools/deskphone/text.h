// Text between the terminal and the phone's records.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace deskphone {

/// The text with everything that a terminal might take for a command, and broken UTF-8, replaced.
std::string printable(std::string_view text);

/// How many columns a printable text takes on the terminal.
std::size_t display_width(std::string_view text);

/// The text, padded with blanks to this many columns, or cut to them.
std::string fit(const std::string& text, std::size_t columns);

/// A number of things, whose plural ends in "s" or "ies": "1 contact", "2 contacts".
std::string counted(std::size_t count, const std::string& plural);

/// True when a path holds what could leave the double quotes of a shell command: the phone's
/// commands carry no such path.
bool is_unsafe_path(const std::string& path);

/// Throws Failure unless the text is UTF-8 without control characters and fits the field, whose
/// capacity includes the terminator.
void check_text(const char* argument, const std::string& text, std::size_t capacity);

/// Puts an argument's text into a record's field, or throws Failure when it does not fit.
template <std::size_t Capacity>
void set_text(char (&field)[Capacity], const char* argument, const std::string& text) {
  check_text(argument, text, Capacity);
  text.copy(field, text.size());
  field[text.size()] = '\0';
}

}  // namespace deskphone
