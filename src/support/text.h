// Text in the fixed arrays of the records, over the host's bounded copies.
#pragma once

#include <cfgxml/host.h>

#include <cstddef>
#include <cstdint>

namespace cfgxml {

/// Copies a text, cut to the field's capacity; NULL gives an empty field.
template <std::size_t Capacity>
void copy_text(char (&field)[Capacity], const char* text) {
  rl_strcpy_s(field, Capacity, text);
}

/// Appends a text, cut to what is left of the field's capacity.
template <std::size_t Capacity>
void append_text(char (&field)[Capacity], const char* text) {
  rl_strcat_s(field, Capacity, text);
}

inline bool is_empty(const char* text) { return text == nullptr || rl_str_isempty(text) != 0; }

/// Byte order; NULL stands for an empty text.
inline int compare(const char* left, const char* right) {
  return rl_strcmp(left != nullptr ? left : "", right != nullptr ? right : "");
}

inline bool equal(const char* left, const char* right) { return compare(left, right) == 0; }

/// True when the field is what a copy of the text would leave in it, cut to its capacity.
template <std::size_t Capacity>
bool holds(const char (&field)[Capacity], const char* text) {
  return rl_strncmp(field, text != nullptr ? text : "", Capacity - 1) == 0;
}

inline char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Equality of two texts ignoring letter case; looking at the first letter here spares most calls.
inline bool equal_ignoring_case(const char* left, const char* right) {
  return lower(*left) == lower(*right) && rl_strcasecmp(left, right) == 0;
}

/// True when part occurs in text, byte for byte.
inline bool contains(const char* text, const char* part) {
  return rl_strstr(text, part) != nullptr;
}

}  // namespace cfgxml
