// The history's file: one element per call, the oldest first.
#include <cfgxml/history.h>
#include <cfgxml/host.h>

#include <cstdint>

#include "history/records.h"
#include "support/lock.h"
#include "support/paths.h"
#include "support/text.h"
#include "support/xml_file.h"

namespace cfgxml::history {
namespace {

constexpr char kRoot[] = "History";
constexpr char kCall[] = "Call";

/// Shows a visitor the stored fields under their attributes' names, in the order of the file.
template <typename Record, typename Visitor>
void for_each_field(Record& call, const Visitor& visit) {
  visit("ID", call.ID);
  visit("CallID", call.CallID);
  visit("Type", call.Type);
  visit("Status", call.Status);
  visit("Date", call.Date);
  visit("Time", call.Time);
  visit("LocalSipName", call.LocalSipName);
  visit("LocalSipServer", call.LocalSipServer);
  visit("LocalSipPort", call.LocalSipPort);
  visit("RemoteSipName", call.RemoteSipName);
  visit("RemoteDisplayName", call.RemoteDisplayName);
  visit("RemoteSipServer", call.RemoteSipServer);
  visit("RemoteSipPort", call.RemoteSipPort);
  visit("CallDuration", call.CallDuration);
}

struct ReadField {
  const tinyxml2::XMLElement& element;

  void operator()(const char* name, std::int32_t& number) const {
    number = int_attribute(element, name);
  }
  template <std::size_t Capacity>
  void operator()(const char* name, char (&text)[Capacity]) const {
    copy_text(text, element.Attribute(name));
  }
};

struct WriteField {
  tinyxml2::XMLElement& element;

  template <typename Value>
  void operator()(const char* name, const Value& value) const {
    element.SetAttribute(name, value);
  }
};

/// The history is the user's own business: no other user of the device reads a file made here.
XmlFile history_file() { return XmlFile(paths::kHistory, XmlFile::Privacy::kPrivate); }

int get_history_xml(HISTORY_DATA_LIST* list) {
  if (list == nullptr) {
    rl_log_err("Input param is NULL! file: %s, line: %d", "adapter_handle_xml", __LINE__);
    return -1;
  }
  XmlFile file = history_file();
  if (!file.load()) file.start_afresh();

  HISTORY_DATA_T* slot = list->Records;
  for (const tinyxml2::XMLElement& element : Children(file.root_or_new(__func__, kRoot), kCall)) {
    slot->ID = int_attribute(element, "ID");
    if (slot->ID < 1) continue;  // the slot counts as free until a valid call takes it
    for_each_field(*slot, ReadField{element});
    if (++slot == Calls(list->Records).limit()) break;
  }
  return 0;
}

/// Writers meet one after another under the history lock, so no save overtakes a newer one.
int save_history_xml(HISTORY_DATA_LIST* list) {
  rl_log_info("Enter %s", __func__);
  XmlFile file = history_file();
  if (!file.load()) file.start_afresh();

  tinyxml2::XMLElement* root = file.root_or_new(__func__, kRoot);
  root->DeleteChildren();
  if (list == nullptr) {
    rl_log_err("%s failed: cfg_get_history_list return NULL.", __func__);
    return -1;
  }
  for (const HISTORY_DATA_T& call : Calls(list->Records)) {
    tinyxml2::XMLElement* element = append_element(root, __func__, kCall);
    if (element == nullptr) return -1;
    for_each_field(call, WriteField{*element});
  }
  return file.save(__func__);
}

}  // namespace
}  // namespace cfgxml::history

int get_history_xml(const char* /*path*/, HISTORY_DATA_LIST* list) {
  return cfgxml::guarded(-1, cfgxml::history::get_history_xml, list);
}

int save_history_xml(const char* /*path*/, HISTORY_DATA_LIST* list) {
  return cfgxml::guarded(-1, cfgxml::history::save_history_xml, list);
}
