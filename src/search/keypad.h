// What is printed on the keys of the keypad.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cfgxml::search {

/// Row r holds the characters that key r stands for, in the order in which they are tried. Each of
/// them may be typed as well, but for the plus sign, which key 0 matches and nobody can type.
inline constexpr std::string_view kKeypadRows[] = {
    "0 +",     "1",         "2abcABC", "3defDEF",   "4ghiGHI", "5jklJKL",
    "6mnoMNO", "7pqrsPQRS", "8tuvTUV", "9wxyzWXYZ", "*",
};
inline constexpr std::size_t kLongestRow = 9;
inline constexpr char kNotTyped = '+';
inline constexpr std::uint8_t kNoRow = 0xff;

/// Where a character stands on the keypad.
struct KeypadPlace {
  std::uint8_t row;   // kNoRow for what is not printed on any key
  std::uint8_t rank;  // within its row
};

inline constexpr std::array<KeypadPlace, 256> kKeypad = [] {
  std::array<KeypadPlace, 256> places{};
  for (KeypadPlace& place : places) place.row = kNoRow;
  std::uint8_t row = 0;
  for (const std::string_view characters : kKeypadRows) {
    std::uint8_t rank = 0;
    for (const char character : characters) {
      places[static_cast<unsigned char>(character)] = {row, rank++};
    }
    ++row;
  }
  return places;
}();

/// The row that a typed character selects, or kNoRow.
constexpr std::uint8_t typed_row(char key) {
  return key == kNotTyped ? kNoRow : kKeypad[static_cast<unsigned char>(key)].row;
}

}  // namespace cfgxml::search
