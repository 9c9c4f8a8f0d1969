// The records that the interface passes: their texts, the tables that they are packed in, and the
// lists that callers receive.
#pragma once

#include <cfgxml/host.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace phone_test {

template <std::size_t... Capacities>
bool terminated(const char (&... texts)[Capacities]) {
  return (... && (std::memchr(texts, '\0', Capacities) != nullptr));
}

template <typename Record>
auto id_of(Record& record) -> decltype((record.Id)) {
  return record.Id;
}
template <typename Record>
auto id_of(Record& record) -> decltype((record.ID)) {
  return record.ID;
}
template <typename Record>
auto id_of(Record& record) -> decltype((record.id)) {
  return record.id;
}

/// The used records of a table, which end at the first id below 1.
template <typename Record>
class Used {
 public:
  template <std::size_t Capacity>
  explicit Used(const Record (&table)[Capacity])
      : first_(table), last_(std::find_if(table, table + Capacity, is_free)) {}
  const Record* begin() const { return first_; }
  const Record* end() const { return last_; }
  std::size_t size() const { return static_cast<std::size_t>(last_ - first_); }

 private:
  static bool is_free(const Record& record) { return id_of(record) < 1; }

  const Record* first_;
  const Record* last_;
};
template <typename Record, std::size_t Capacity>
Used(const Record (&)[Capacity]) -> Used<Record>;

template <typename Record>
std::string bytes_of(const Record* records, std::size_t count = 1) {
  return {reinterpret_cast<const char*>(records), count * sizeof(Record)};
}

template <typename Records>
auto bytes_of(const Records& records) -> decltype(records.begin(), std::string()) {
  std::string bytes;
  for (const auto& record : records) bytes += bytes_of(&record);
  return bytes;
}

/// The nodes of a list, which is freed, without their links.
template <typename Node>
std::vector<Node> take(Node* list) {
  std::vector<Node> nodes;
  while (list != nullptr) {
    nodes.push_back(*list);
    nodes.back().next = nullptr;
    rl_free(std::exchange(list, list->next));
  }
  return nodes;
}

}  // namespace phone_test
