// The four boxes of the message store, as descriptions.
#pragma once

#include <cfgxml/message.h>

#include "support/list_file.h"
#include "support/paths.h"

namespace cfgxml::message {

struct Box {
  int type;
  ListPlace place;
  bool counts_unread;
  const char* display;  // the other party's name and number in a list's labels; nullptr in the
  const char* user;     // draft box, whose labels are dates
};

constexpr ListPlace place_of_box(const char* list, const char* entry) {
  return {paths::kMessages, "Message", list, "boxdata_node", entry, XmlFile::Privacy::kPrivate};
}

inline constexpr Box kInbox = {CFGXML_INBOX, place_of_box("InboxData", "Inbox"),
                               /*counts_unread=*/true, "FromDisplay", "FromUser"};
inline constexpr Box kOutbox = {CFGXML_OUTBOX, place_of_box("OutboxData", "Outbox"),
                                /*counts_unread=*/false, "ToDisplay", "ToUser"};
inline constexpr Box kSentbox = {CFGXML_SENTBOX, place_of_box("SentboxData", "Sentbox"),
                                 /*counts_unread=*/false, "ToDisplay", "ToUser"};
inline constexpr Box kDraftbox = {CFGXML_DRAFTBOX, place_of_box("DraftboxData", "Draftbox"),
                                  /*counts_unread=*/false, nullptr, nullptr};

inline constexpr const Box* kBoxes[] = {&kInbox, &kOutbox, &kSentbox, &kDraftbox};

}  // namespace cfgxml::message
