// The plug-in's call history as the commands use it, and what the phone makes of its codes.
#pragma once

#include <cfgxml/history.h>
#include <cfgxml/remote.h>

#include <string>
#include <vector>

#include "output.h"
#include "phone.h"

namespace deskphone {

/// A code of the records, in words.
struct Code {
  int value;
  const char* word;
};

/// What a call was, and whether the user has seen it in the list.
extern const std::vector<Code> kCallTypes;
extern const std::vector<Code> kCallStatuses;
inline constexpr int kAllTypes = 0;
inline constexpr int kReceived = 2;
inline constexpr int kMissed = 3;
inline constexpr int kNew = 0;
inline constexpr int kSeen = 1;

/// The words of the codes, for the command line.
std::vector<std::string> words_of(const std::vector<Code>& codes);
int value_of(const std::vector<Code>& codes, const std::string& word);

class History {
 public:
  explicit History(const Plugin& plugin);

  /// The calls with their names from the phonebook, the newest first.
  std::vector<HISTORY_SUMMARY_T> calls() const;
  HISTORY_DATA_T call(int id) const;
  /// Sets the record's ID. The oldest of 100 calls gives way.
  void add(HISTORY_DATA_T& call) const;
  void set_status(int id, int status) const;
  void remove(int id) const;
  /// Deletes the calls of a type, or all.
  void remove_all(int type) const;

  /// The name that the phonebook has for a number on a line (0 for any); "" when it has none, or
  /// when it is the name that is shown already.
  std::string name_of(const std::string& number, const std::string& shown, int line) const;

 private:
  const Function<decltype(cfg_get_history_summary)> get_calls_;
  const Function<decltype(cfg_destory_history_summary)> free_calls_;
  const Function<decltype(cfg_get_history_data)> get_call_;
  const Function<decltype(cfg_add_history)> add_call_;
  const Function<decltype(cfg_mod_history)> change_call_;
  const Function<decltype(cfg_del_history)> delete_call_;
  const Function<decltype(cfg_del_all_history)> delete_calls_;
  const Function<decltype(cfg_get_contact_name)> get_name_;
};

/// A call over the account of a line (1 or 2) with this remote party, at this moment.
HISTORY_DATA_T call_over(const Phone& phone, int line, const std::string& number,
                         const std::string& name);

void set_duration(HISTORY_DATA_T& call, int seconds);

/// What an incoming call brings to the screen, and to the history.
struct IncomingCall {
  std::string screen;
  HISTORY_DATA_T record;
};

/// Plays an incoming call: looks the caller up and adds a missed call, or one that was taken for
/// some seconds.
IncomingCall play_call(const Phone& phone, int line, const std::string& number,
                       const std::string& name, int seconds);

Row row_of(const HISTORY_DATA_T& call);
Row row_of(const HISTORY_SUMMARY_T& call);

/// The columns of a list of calls.
extern const std::vector<Column> kCallColumns;

}  // namespace deskphone
