// Where the arguments of calls come from: a random generator, or the bytes of a fuzz input.
#pragma once

#include <cfgxml/history.h>
#include <cfgxml/phonebook.h>

#include <optional>
#include <string>

namespace calls {

class Choices {
 public:
  virtual ~Choices() = default;

  /// From low to high, both included.
  virtual int number(int low, int high) = 0;

  /// True when the next argument is to be one that no careful caller passes; odd_number() and
  /// odd_text() are asked for only then.
  virtual bool odd() = 0;
  virtual int odd_number() = 0;
  virtual std::string odd_text() = 0;

  /// Which ids are worth asking for: records get them from 1 on.
  virtual int largest_id() = 0;

  bool flag() { return number(0, 1) == 1; }
  bool missing() { return odd() && flag(); }

  /// An id that a record may have.
  int id() { return odd() ? odd_number() : number(1, largest_id()); }
  int line() { return odd() ? odd_number() : number(0, 2); }
  std::string name();
  std::string phone_number();
  std::string group();
  /// A word to search for.
  std::string word();
  /// What is typed on the keypad.
  std::string keys();

  CONTACT_DATA_T contact();
  HISTORY_DATA_T history();

  /// The record as an argument: its address, or NULL when it is missing.
  template <typename Record>
  Record* argument(Record& record) {
    return missing() ? nullptr : &record;
  }

 private:
  std::string pick(const char* stem, int count);
};

/// A text as an argument: NULL when it is missing.
class Text {
 public:
  Text(Choices& choices, std::string text) {
    if (!choices.missing()) text_ = std::move(text);
  }
  operator const char*() const { return text_ ? text_->c_str() : nullptr; }

 private:
  std::optional<std::string> text_;
};

/// Copies a text into a field of a record, cut to its capacity.
template <std::size_t Capacity>
void fill(char (&field)[Capacity], const std::string& text) {
  field[text.copy(field, Capacity - 1)] = '\0';
}

}  // namespace calls
