// The shapes that exported functions share: one template each, so that a row of the catalogue names
// its shape and its function.
#pragma once

#include <cstddef>
#include <cstring>
#include <tuple>
#include <type_traits>
#include <utility>

#include "operations/operation.h"

/// A row: the shape, and the exported function that has it.
#define OPERATION(shape, function) Operation(#function, shape<function>)

namespace operations {

inline Result number_of(int number) { return {std::to_string(number), {}, false, "", ""}; }
inline Result text_of(std::string text) { return {std::move(text), {}, false, "", ""}; }
inline Result list_of(std::vector<std::string> nodes) {
  return {kEndsEarly, std::move(nodes), true, "", ""};
}

template <typename Record>
std::string bytes_of_record(const Record& record) {
  return {reinterpret_cast<const char*>(&record), sizeof record};
}

/// A record without its link, and without the position that depends on its neighbours.
template <typename Node>
std::string bytes_of(const Node& node) {
  const char* begin = reinterpret_cast<const char*>(&node);
  std::size_t first = 0;
  if constexpr (std::is_same_v<Node, CONTACT_SUMMARY_T>) first = offsetof(CONTACT_SUMMARY_T, Id);
  return {begin + first, begin + offsetof(Node, next)};
}

/// A list that stays the library's.
template <typename Node>
Result list_seen(const Node* head) {
  Result result = list_of({});
  for (; head != nullptr; head = head->next) result.nodes.push_back(bytes_of(*head));
  return result;
}

/// A list that the caller frees, which is done.
template <typename Node>
Result list_taken(Node* head) {
  Result result = list_seen(head);
  while (head != nullptr) rl_free(std::exchange(head, head->next));
  return result;
}

/// A record that no function has filled.
template <typename Record>
Record untouched() {
  Record record;
  std::memset(&record, 0x55, sizeof record);
  return record;
}

/// The number that a call gave, and the record that it was to fill or to read.
template <typename Record, typename Call>
Result with_record(Record& record, Call call) {
  Result result;
  result.given = bytes_of_record(record);
  result.text = std::to_string(call());
  result.record = bytes_of_record(record);
  return result;
}

/// What a function takes and gives, from its type.
template <typename Function>
struct Parts;
template <typename Return, typename... Parameters>
struct Parts<Return (*)(Parameters...)> {
  using Given = Return;
  template <std::size_t Place>
  using Record = std::remove_const_t<
      std::remove_pointer_t<std::tuple_element_t<Place, std::tuple<Parameters...>>>>;
};
template <auto Function, std::size_t Place>
using RecordOf = typename Parts<decltype(Function)>::template Record<Place>;

// Without arguments: a number, a list to free.

template <auto Function>
Result calling(World& world, Choices& /*choices*/) {
  return number_of(world.call(Function));
}

template <auto Function>
Result listing(World& world, Choices& /*choices*/) {
  return list_taken(world.call(Function));
}

// With an id: a number.

template <auto Function, int Id = 2>
Result by_id(World& world, Choices& choices) {
  return number_of(world.call(Function, choices.id(Id)));
}

/// Fills a record, by an id or by a number below a count.
template <auto Function, int Id = 2, int Count = 0>
Result getting(World& world, Choices& choices) {
  auto record = untouched<RecordOf<Function, 1>>();
  const int id = Count > 0 ? choices.below(Count, Id) : choices.id(Id);
  auto* argument = choices.argument(record);
  return with_record(record, [&] { return world.call(Function, id, argument); });
}

/// Changes what has the id to a record.
template <auto Function, int Id = 2>
Result setting(World& world, Choices& choices) {
  RecordOf<Function, 1> record{};
  const int id = choices.id(Id);
  fill_record(record, choices);
  auto* argument = choices.argument(record);
  return with_record(record, [&] { return world.call(Function, id, argument); });
}

/// With a record alone, which it reads or fills.
template <auto Function>
Result with_one(World& world, Choices& choices) {
  RecordOf<Function, 0> record{};
  fill_record(record, choices);
  auto* argument = choices.argument(record);
  return with_record(record, [&] { return world.call(Function, argument); });
}

/// A record that gets its id from the library.
template <auto Function>
Result adding(World& world, Choices& choices) {
  RecordOf<Function, 0> record{};
  PlainChoices no_id;
  fill_record(record, choices.varies() ? choices : static_cast<Choices&>(no_id));
  auto* argument = choices.argument(record);
  return with_record(record, [&] { return world.call(Function, argument); });
}

/// Frees what another function listed.
template <auto Function, auto List>
Result releasing(World& world, Choices& choices) {
  auto* head = List();
  if (head == nullptr || choices.odd(Argument::kRecord)) {
    list_taken(head);
    return number_of(world.call(Function, decltype(head){nullptr}));
  }
  return number_of(world.call(Function, head));
}

}  // namespace operations
