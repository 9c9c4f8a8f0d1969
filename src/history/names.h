// The names that the phonebook has for the remote parties of calls.
#pragma once

#include <cfgxml/history.h>
#include <cfgxml/phonebook.h>

#include <array>
#include <memory>

namespace cfgxml::history {

/// The two SIP accounts of the phone, read from the configuration when a call asks for the first
/// time: one object serves a whole listing.
class Accounts {
 public:
  /// The number (1 or 2) of the account that the call was made or taken with, 0 for neither.
  int number_of(const HISTORY_SUMMARY_T& call);

 private:
  struct Account {
    char user[64];
    char server[64];
    int port;
  };

  void read();

  std::array<Account, 2> accounts_{};
  bool read_ = false;
};

/// A snapshot of the phonebook, taken under the phonebook lock and sorted as its summaries are.
class Phonebook {
 public:
  Phonebook();

  /// Gives each of at most 100 calls the name of the first entry for its number and line, contacts
  /// before blacklist. Calls that no entry is for keep their names.
  void name(HISTORY_SUMMARY_T* calls) const;

 private:
  struct Destroy {
    void operator()(CONTACT_SUMMARY_T* header) const { cfg_destory_contact_summary(header); }
  };
  using Summary = std::unique_ptr<CONTACT_SUMMARY_T, Destroy>;

  Summary contacts_;
  Summary blacklist_;
};

}  // namespace cfgxml::history
