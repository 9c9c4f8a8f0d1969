// What the fuzz targets share in checking: the way a run ends as a finding, texts, tables, and the
// lists that callers receive.
#pragma once

#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// Ends the run as a finding when something that must always hold does not.
inline void require(bool holds, const char* what = "what must always hold") {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

inline bool is_one_of(int result, std::initializer_list<int> results) {
  for (const int other : results) {
    if (result == other) return true;
  }
  return false;
}

template <std::size_t Capacity>
void check_text(const char (&field)[Capacity]) {
  require(std::memchr(field, '\0', Capacity) != nullptr, "a text has its end");
}

template <std::size_t Capacity>
std::string text_of(const char (&field)[Capacity]) {
  check_text(field);
  return field;
}

/// Compares blocks of the library, which are zero-filled, byte for byte.
template <typename Block>
bool same_bytes(const Block& left, const Block& right) {
  static_assert(std::is_trivially_copyable_v<Block>);
  return std::memcmp(&left, &right, sizeof left) == 0;
}

template <typename Block>
bool same_bytes(const std::vector<Block>& left, const std::vector<Block>& right) {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(),
                    [](const Block& a, const Block& b) { return same_bytes(a, b); });
}

template <typename Block>
bool is_zero(const Block& block) {
  static const Block zero{};
  return same_bytes(block, zero);
}

// --- Lists handed to callers ---

template <typename Node>
using Nodes = std::vector<Node>;

/// The nodes of a list without their links.
template <typename Node>
Nodes<Node> nodes_of(const Node* list) {
  Nodes<Node> nodes;
  for (; list != nullptr; list = list->next) {
    nodes.push_back(*list);
    nodes.back().next = nullptr;
  }
  return nodes;
}

/// The same of a list that is the caller's, which is freed.
template <typename Node>
Nodes<Node> take(Node* list) {
  Nodes<Node> nodes = nodes_of(list);
  while (list != nullptr) rl_free(std::exchange(list, list->next));
  return nodes;
}

// --- Tables of the host ---

/// Calls check for the used records, which end at the first id below 1; behind them all is zero.
template <typename Record, std::size_t Capacity, typename Check>
void check_packed(const Record (&table)[Capacity], Check check) {
  std::size_t used = 0;
  for (; used < Capacity && table[used].Id >= 1; ++used) check(table[used]);
  const auto* rest = reinterpret_cast<const unsigned char*>(table + used);
  const std::size_t size = (Capacity - used) * sizeof(Record);
  require(size == 0 || (rest[0] == 0 && std::memcmp(rest, rest + 1, size - 1) == 0),
          "the table is packed");
}

using Names = std::set<std::string>;

/// Groups of different names, which are returned.
inline Names check_groups(const CONTACT_DATA_LIST_T& list) {
  Names names;
  check_packed(list.Groups, [&](const GROUP_DATA_T& group) {
    const std::string name = text_of(group.Name);
    require(!name.empty() && names.insert(name).second, "a group has a name of its own");
    check_text(group.Ring);
    check_text(group.Description);
  });
  return names;
}

inline void check_texts(const CONTACT_DATA_T& contact) {
  for (const auto* field : {&contact.DisplayName, &contact.OfficeNumber, &contact.MobileNumber,
                            &contact.OtherNumber, &contact.Group, &contact.Ring, &contact.Photo}) {
    check_text(*field);
  }
}
