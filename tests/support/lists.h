// The lists whose entries have ids, as far as they are alike: three of dial rules, four boxes of
// messages, and the history.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace phone_test {

/// What a list shows of a rule (its line), a message or a call (the status), and a text.
struct Entry {
  int id, value;
  std::string text;
  bool operator==(const Entry& other) const {
    return id == other.id && value == other.value && text == other.text;
  }
};
using Entries = std::vector<Entry>;

/// The ids and texts of entries in a file.
using Rows = std::vector<std::pair<std::string, std::string>>;

inline std::ostream& operator<<(std::ostream& out, const Entry& entry) {
  return out << entry.id << ":" << entry.text << "@" << entry.value;
}

/// The functions that work on a list, and in what it differs from the others.
struct List {
  std::string name;
  std::function<Entries()> entries;  // the oldest first
  std::function<int(int id, Entry* entry)> get;
  std::function<int(const Entry& entry)> add;
  std::function<int(int id, const Entry& entry)> set;
  std::function<int(int id)> remove;

  bool distinct = false;            // an entry with the text of another is refused
  int unknown = -1;                 // what a set gives for an unknown id
  std::size_t capacity = SIZE_MAX;  // an entry more drops the oldest
  // In a file:
  std::string path, root, element, title;  // the title stands in messages
  std::string row;                         // an entry, with "#" for its id and "*" for its text
  std::string worker;                      // in messages, with "*" for the verb

  std::string worker_for(const std::string& verb) const;
  /// A file with these entries, and an element that is none after them.
  std::string file_of(const Rows& rows) const;
};

inline std::ostream& operator<<(std::ostream& out, const List& list) { return out << list.name; }

/// DialNow, DialReplace and BlockOut, the boxes in the order of their types, and the history.
extern const std::vector<List> kLists;
constexpr int kFileLists = 7;  // the first of them

}  // namespace phone_test
