// Directories: names with their numbers and presence.
#include "xmlbrowser/attributes.h"
#include "xmlbrowser/bodies.h"
#include "xmlbrowser/elements.h"

namespace cfgxml::xmlbrowser {
namespace {

using Directory = ScreenTarget<XML_DIRECTORY_T>;
using Entry = RecordTarget<XML_DIRECTORY_ENTRY_T>;

struct Presence {
  const char* text;
  int32_t state;
};

constexpr Presence kPresences[] = {
    {"offline", XML_PRESENCE_OFFLINE},
    {"dnd", XML_PRESENCE_DND},
    {"online", XML_PRESENCE_ONLINE},
    {"away", XML_PRESENCE_AWAY},
    {"ringing", XML_PRESENCE_RINGING},
    {"busy", XML_PRESENCE_BUSY},
    {"busy&ringing", XML_PRESENCE_BUSY_RINGING},
    {"busyringing", XML_PRESENCE_BUSY_RINGING},
    {"outgoing", XML_PRESENCE_OUTGOING},
    {"misscall", XML_PRESENCE_MISSED_CALL},
};

/// A text that is none of the table's leaves the state as it was.
void presence(Entry& entry, const XMLElement& element) {
  const char* text = element.GetText();
  copy_text(entry.record->Presence, text);
  for (const Presence& listed : kPresences) {
    if (!is_keyword(text, listed.text)) continue;
    entry.record->PresenceState = listed.state;
    return;
  }
}

constexpr ElementRule<Entry> kEntryElements[] = {
    {"Name", Tag::kName, nonempty_text_to<&XML_DIRECTORY_ENTRY_T::Name>},
    {"Telephone", Tag::kTelephone, element_text_to<&XML_DIRECTORY_ENTRY_T::Telephone>},
    {"Telephone1", Tag::kNone, element_text_to<&XML_DIRECTORY_ENTRY_T::Telephone1>},
    {"URI", Tag::kNone, element_text_to<&XML_DIRECTORY_ENTRY_T::URI>},
    {"Selection", Tag::kNone, element_text_to<&XML_DIRECTORY_ENTRY_T::Selection>},
    {"Presence", Tag::kPresence, presence},
};

/// Without a name the entry does not count, and the next one takes its slot, cleared.
void entry(Directory& directory, const XMLElement& element) {
  int32_t& count = directory.screen.EntryCount;
  if (count == CFGXML_ENTRY_CAPACITY) return;
  Entry target{&directory.screen.Entries[count]};
  read_children(element, kEntryElements, directory.names, target);
  if (is_empty(target.record->Name)) {
    *target.record = {};
  } else {
    ++count;
  }
}

constexpr ElementRule<Directory> kElements[] = {
    {"Title", Tag::kNone, title<EmptyTitle::kLineBreak>},
    {"DirectoryEntry", Tag::kEntry, entry},
    {"SoftKey", Tag::kNone, soft_key},
};

}  // namespace

void read_body(const XMLElement& root, TagNames& names, XML_DIRECTORY_T& directory) {
  names.read({Tag::kEntry, Tag::kName, Tag::kTelephone, Tag::kPresence});
  Directory target{directory, names};
  read_children(root, kElements, names, target);
}

}  // namespace cfgxml::xmlbrowser
