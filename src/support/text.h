// Text in the fixed arrays of the records, over the host's bounded copies.
#pragma once

#include <cfgxml/host.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cfgxml {

/// Where to cut a text for which there is room for so many bytes: at that byte, or in valid UTF-8
/// before the character that does not fit whole. A text that fits is not cut.
std::size_t cut_at(std::string_view text, std::size_t bytes);

/// The capacity to give to a bounded copy of the text, so that it cuts there.
std::size_t capacity_for(const char* text, std::size_t capacity);

/// Copies a text, cut to the capacity; NULL gives an empty field.
inline void copy_text(char* field, std::size_t capacity, const char* text) {
  rl_strcpy_s(field, capacity_for(text, capacity), text);
}

template <std::size_t Capacity>
void copy_text(char (&field)[Capacity], const char* text) {
  copy_text(field, Capacity, text);
}

/// Appends a text, cut to what is left of the field's capacity; false when it was cut.
template <std::size_t Capacity>
bool append_text(char (&field)[Capacity], const char* text) {
  const std::size_t used = rl_strlen(field);
  rl_strcat_s(field, used + capacity_for(text, Capacity - used), text);
  return rl_strlen(text) < Capacity - used;
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
  char copy[Capacity];
  copy_text(copy, text);
  return rl_strncmp(field, copy, Capacity - 1) == 0;
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
