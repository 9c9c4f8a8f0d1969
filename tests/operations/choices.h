// Where the arguments of operations come from: fixed values with which they succeed, a random
// generator, the bytes of a fuzz input, or values that are refused.
#pragma once

#include <cfgxml/dialrule.h>
#include <cfgxml/history.h>
#include <cfgxml/message.h>
#include <cfgxml/notify.h>
#include <cfgxml/phonebook.h>

#include <deque>
#include <optional>
#include <string>

namespace operations {

/// What an argument is, and with it which of its values are odd.
enum class Argument {
  kContent,  // what a record or a file holds, which no function refuses
  kId,       // below 1, or of no record
  kNumber,   // outside its range
  kRecord,   // NULL
  kText,     // NULL, ""
  kWord,     // NULL; "" is as good as any
  kWords,    // NULL, which stands for ""
  kPath,     // NULL, "", a file that is not there
};

class Choices {
 public:
  virtual ~Choices() = default;

  /// From low to high, both included; plain where nothing varies.
  virtual int number(int plain, int low, int high) = 0;

  bool flag() { return number(0, 0, 1) == 1; }
  int id(int plain) { return odd(Argument::kId) ? odd_number() : number(plain, 1, largest_id()); }
  /// A number below the count.
  int below(int count, int plain = 0) {
    return odd(Argument::kNumber) ? odd_number() : number(plain, 0, count - 1);
  }
  /// The record as an argument: its address.
  template <typename Record>
  Record* argument(Record& record) {
    return odd(Argument::kRecord) ? nullptr : &record;
  }
  /// A text as an argument; it lives until forget_texts().
  const char* text(const std::string& plain, Argument kind = Argument::kText);
  const char* path(const std::string& file, Argument kind = Argument::kPath);
  void forget_texts() { texts_.clear(); }

  // What records hold.
  std::string name(const char* plain);
  std::string phone_number(const char* plain);
  std::string group(const char* plain);
  std::string word(const char* plain);
  int line() { return odd(Argument::kContent) ? odd_number() : number(0, 0, 2); }

  /// False where every choice is the plain one, or one odd argument beside plain ones.
  virtual bool varies() const { return true; }
  /// True when the next argument of this kind is to be an odd one; the two below are asked only
  /// then. No text stands for NULL.
  virtual bool odd(Argument kind) = 0;
  virtual int odd_number() = 0;
  virtual std::optional<std::string> odd_text() = 0;

 protected:
  /// Which ids are worth asking for: records get them from 1 on.
  virtual int largest_id() { return 12; }

 private:
  std::string one_of(const char* plain, const char* stem, int count);
  const char* keep(std::optional<std::string> text);

  std::deque<std::string> texts_;
};

/// The values with which every operation succeeds.
class PlainChoices : public Choices {
 public:
  int number(int plain, int /*low*/, int /*high*/) override { return plain; }
  bool varies() const override { return false; }
  bool odd(Argument /*kind*/) override { return false; }
  int odd_number() override { return 0; }
  std::optional<std::string> odd_text() override { return std::nullopt; }
};

// Fill a record, with its id where it has one.
void fill_record(CONTACT_DATA_T& record, Choices& choices);
void fill_record(GROUP_DATA_T& record, Choices& choices);
void fill_record(HISTORY_DATA_T& record, Choices& choices);
void fill_record(DIAL_NOW_DATA_T& record, Choices& choices);
void fill_record(DIAL_REPLACE_DATA_T& record, Choices& choices);
void fill_record(BLOCKOUT_DATA_T& record, Choices& choices);
void fill_record(SMS_DATA_T& record, Choices& choices);
void fill_record(NOTIFICATION_T& record, Choices& choices);

/// Copies a text into a field of a record, cut to its capacity.
template <std::size_t Capacity>
void fill(char (&field)[Capacity], const std::string& text) {
  field[text.copy(field, Capacity - 1)] = '\0';
}

}  // namespace operations
