// The history's file: one element per call, the oldest first.
#include <cfgxml/history.h>
#include <cfgxml/host.h>

#include <iterator>

#include "history/records.h"
#include "support/fields.h"
#include "support/lock.h"
#include "support/paths.h"
#include "support/xml_file.h"

namespace cfgxml::history {
namespace {

/// How a missing argument is logged.
constexpr char kSourceFile[] = "adapter_handle_xml";
constexpr char kRoot[] = "History";
constexpr char kCall[] = "Call";

constexpr Field<HISTORY_DATA_T> kFieldTable[] = {
    field<&HISTORY_DATA_T::ID>("ID"),
    field<&HISTORY_DATA_T::CallID>("CallID"),
    field<&HISTORY_DATA_T::Type>("Type"),
    field<&HISTORY_DATA_T::Status>("Status"),
    field<&HISTORY_DATA_T::Date>("Date"),
    field<&HISTORY_DATA_T::Time>("Time"),
    field<&HISTORY_DATA_T::LocalSipName>("LocalSipName"),
    field<&HISTORY_DATA_T::LocalSipServer>("LocalSipServer"),
    field<&HISTORY_DATA_T::LocalSipPort>("LocalSipPort"),
    field<&HISTORY_DATA_T::RemoteSipName>("RemoteSipName"),
    field<&HISTORY_DATA_T::RemoteDisplayName>("RemoteDisplayName"),
    field<&HISTORY_DATA_T::RemoteSipServer>("RemoteSipServer"),
    field<&HISTORY_DATA_T::RemoteSipPort>("RemoteSipPort"),
    field<&HISTORY_DATA_T::CallDuration>("CallDuration"),
};
constexpr Fields<HISTORY_DATA_T> kFields(kFieldTable);

/// The history is the user's own business: no other user of the device reads a file made here.
XmlFile history_file() { return XmlFile(paths::kHistory, XmlFile::Privacy::kPrivate); }

int read_history_file(HISTORY_DATA_LIST* list, const char* worker) {
  if (list == nullptr) {
    rl_log_err("Input param is NULL! file: %s, line: %d", kSourceFile, __LINE__);
    return -1;
  }
  XmlFile file = history_file();
  if (!file.load_into_block() && !file.recreate(worker)) return -1;

  HISTORY_DATA_T* slot = list->Records;
  for (const tinyxml2::XMLElement& element : Children(file.root_or_new(worker, kRoot), kCall)) {
    slot->ID = int_attribute(element, "ID");
    if (slot->ID < 1) continue;  // the slot counts as free until a valid call takes it
    kFields.read(element, *slot);
    if (++slot == std::end(list->Records)) break;
  }
  return 0;
}

/// Runs under the history lock from the copy to the save, so no save overtakes a newer one.
int write_history_file(HISTORY_DATA_LIST* list, const char* worker) {
  rl_log_info("Enter %s", worker);
  XmlFile file = history_file();
  if (!file.load() && !file.recreate(worker)) return -1;

  tinyxml2::XMLElement* root = file.root_or_new(worker, kRoot);
  root->DeleteChildren();
  if (list == nullptr) {
    rl_log_err("%s failed: cfg_get_history_list return NULL.", worker);
    return -1;
  }
  for (const HISTORY_DATA_T& call : Calls(list->Records)) {
    tinyxml2::XMLElement* element = append_element(root, worker, kCall);
    if (element == nullptr) return -1;
    kFields.write(*element, call);
  }
  return file.save(worker);
}

}  // namespace
}  // namespace cfgxml::history

int get_history_xml(const char* /*path*/, HISTORY_DATA_LIST* list) {
  return cfgxml::guarded(-1, cfgxml::history::read_history_file, list, __func__);
}

int save_history_xml(const char* /*path*/, HISTORY_DATA_LIST* list) {
  return cfgxml::guarded(-1, cfgxml::history::write_history_file, list, __func__);
}
