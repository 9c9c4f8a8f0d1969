// Where a call is made while memory runs out: the phone of the tests, brought back to the same
// state before every call, and what a call left behind.
#pragma once

#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>

#include <cstddef>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "allocations.h"
#include "support/phone.h"

namespace memory_test {

/// What a call returned: a number or a text as text, a list as the bytes of its nodes.
struct Result {
  std::string text;
  std::vector<std::string> nodes;
  bool is_list = false;
};

inline Result result_of(int number) { return {std::to_string(number), {}, false}; }

/// A node without its link, and without the position that depends on its neighbours.
template <typename Node>
std::string bytes_of(const Node& node) {
  const char* begin = reinterpret_cast<const char*>(&node);
  std::size_t first = 0;
  if constexpr (std::is_same_v<Node, CONTACT_SUMMARY_T>) first = offsetof(CONTACT_SUMMARY_T, Id);
  return {begin + first, begin + offsetof(Node, next)};
}

/// A list that stays the plug-in's.
template <typename Node>
Result list_seen(const Node* head) {
  Result result{"list", {}, true};
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

/// A text from new[], or NULL; it is freed.
Result name_taken(char* name);

/// What outlives a call: the host's blocks and the files.
struct State {
  std::string blocks;
  std::map<std::string, std::string> files;
};

/// A record that is due in the index.
struct Indexed {
  int book;
  void* record;
  std::vector<std::string> texts;
};

template <typename Record>
Indexed indexed(int book, Record& record) {
  return {book,
          &record,
          {record.DisplayName, record.OfficeNumber, record.MobileNumber, record.OtherNumber}};
}

class Stage : public phone_test::Phone {
 public:
  using Phone::blacklist;
  using Phone::contacts;
  using Phone::exists;
  using Phone::history;
  using Phone::host;
  using Phone::on_disk;
  using Phone::root;
  using Phone::set_item;
  using Phone::write;

  /// An empty profile, empty blocks, nothing in the plug-in but what it keeps for good.
  void clear();

  /// Makes the call under watch and hands its result on.
  template <typename Function, typename... Arguments>
  auto call(Function function, Arguments... arguments) {
    const Watch watch(refuse_, number_);
    const Note note(*this, watch);
    try {
      return function(arguments...);
    } catch (...) {
      ADD_FAILURE() << "an exception left the plug-in";
      return decltype(function(arguments...))();
    }
  }

  void refuse(Refuse refuse, int number = 0) {
    refuse_ = refuse;
    number_ = number;
  }
  int asked() const { return asked_; }
  int refused() const { return refused_; }

  State state() const;

  /// Takes every free cell of the index, so that the next string of the book needs memory.
  void fill_index(int book);

  /// Fails when the index holds anything but the texts of these records.
  void expect_in_index(const std::vector<Indexed>& records) const;
  /// The same, but a record may be missing as a whole.
  void expect_none_in_part(std::vector<Indexed> records) const;
  /// The same for the contacts of the host's table, with their positions.
  void expect_contacts_indexed() const;

 protected:
  void TearDown() override;

 private:
  /// Takes over what the watch saw when the call ends.
  class Note {
   public:
    Note(Stage& stage, const Watch& watch) : stage_(stage), watch_(watch) {}
    ~Note() {
      stage_.asked_ = watch_.asked();
      stage_.refused_ = watch_.refused();
    }
    Note(const Note&) = delete;
    Note& operator=(const Note&) = delete;

   private:
    Stage& stage_;
    const Watch& watch_;
  };

  bool put_filler(int book, const std::string& text, Refuse refuse);
  void take_fillers();
  int fillers_in_index() const;

  Refuse refuse_ = Refuse::kNothing;
  int number_ = 0;
  int asked_ = 0;
  int refused_ = 0;
  std::vector<std::string> fillers_;
};

}  // namespace memory_test
