// The blocks of memory that the host owns and the plug-in works on.
#pragma once

#include <cfgxml/history.h>
#include <cfgxml/phonebook.h>

#include <memory>

namespace host {

class Lists {
 public:
  CONTACT_DATA_LIST_T& contacts() { return blocks_->contacts; }
  BLACK_DATA_LIST_T& blacklist() { return blocks_->blacklist; }
  HISTORY_DATA_LIST& history() { return blocks_->history; }

  /// Whether the plug-in gets a block or NULL, as from a host that is short of memory.
  void give_contacts(bool give) { gives_contacts_ = give; }
  void give_blacklist(bool give) { gives_blacklist_ = give; }
  void give_history(bool give) { gives_history_ = give; }

  CONTACT_DATA_LIST_T* given_contacts() { return gives_contacts_ ? &contacts() : nullptr; }
  BLACK_DATA_LIST_T* given_blacklist() { return gives_blacklist_ ? &blacklist() : nullptr; }
  HISTORY_DATA_LIST* given_history() { return gives_history_ ? &history() : nullptr; }

  /// Empties the blocks in place, and gives them all again.
  void clear();

 private:
  struct Blocks {
    CONTACT_DATA_LIST_T contacts{};
    BLACK_DATA_LIST_T blacklist{};
    HISTORY_DATA_LIST history{};
  };

  std::unique_ptr<Blocks> blocks_ = std::make_unique<Blocks>();
  bool gives_contacts_ = true;
  bool gives_blacklist_ = true;
  bool gives_history_ = true;
};

}  // namespace host
