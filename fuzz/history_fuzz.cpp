// Any bytes as the history's file: read, listed with names from the phonebook, written and read
// again, and changed.
#include <cfgxml/binding.h>

#include <memory>

#include "phone.h"

namespace {

constexpr char kHistory[] = "/config/Phone/History/History.xml";
constexpr char kKnownNumber[] = "212";
constexpr char kKnownName[] = "Front desk";

HISTORY_DATA_LIST& table() { return host::the_host().lists().history(); }

void check_texts(const HISTORY_DATA_T& call) {
  check_text(call.Date);
  check_text(call.Time);
  check_text(call.CallDuration);
  for (const auto* field : {&call.LocalSipName, &call.LocalSipServer, &call.RemoteSipName,
                            &call.RemoteSipServer, &call.RemoteDisplayName}) {
    check_text(*field);
  }
}

/// The used records; a free slot may keep the id below 1 of a call that was refused.
std::vector<HISTORY_DATA_T> calls() {
  std::vector<HISTORY_DATA_T> used;
  for (const HISTORY_DATA_T& call : table().Records) {
    if (call.ID < 1) break;
    check_texts(call);
    require(is_zero(call.Reserved), "what is reserved stays as it is");
    used.push_back(call);
  }
  return used;
}

/// One contact, so that some calls find a name.
void know_a_number() {
  CONTACT_DATA_T& contact = host::the_host().lists().contacts().Contacts[0];
  contact.Id = 1;
  rl_strcpy_s(contact.DisplayName, sizeof contact.DisplayName, kKnownName);
  for (auto* number : {&contact.OfficeNumber, &contact.MobileNumber, &contact.OtherNumber}) {
    rl_strcpy_s(*number, sizeof *number, kKnownNumber);  // an empty one is that of unknown callers
  }
}

void load() {
  host::the_host().lists().clear();
  know_a_number();
  require(history_init(&table()) == 0, "any file gives a history");
}

std::vector<HISTORY_DATA_T> save_and_load() {
  require(history_delay_save() == 0, "the history is written");
  load();
  return calls();
}

void read_twice(std::string_view input) {
  load();
  const std::vector<HISTORY_DATA_T> given = calls();
  const std::vector<HISTORY_DATA_T> written = save_and_load();
  require(written.size() == given.size(), "no call is lost");
  require(has_references(input) || same_bytes(written, given), "the same calls are read again");
  require(same_bytes(save_and_load(), written), "and once more");
}

std::string expected_name(const char* number, const char* stored) {
  return std::strcmp(number, kKnownNumber) == 0 ? kKnownName : stored;
}

void list_calls(const std::vector<HISTORY_DATA_T>& used) {
  const Nodes<HISTORY_SUMMARY_T> listed = take(cfg_get_history_summary());
  require(listed.size() == used.size(), "every call is listed");
  for (std::size_t i = 0; i < used.size(); ++i) {
    const HISTORY_DATA_T& call = used[used.size() - 1 - i];
    require(listed[i].ID == call.ID, "the newest call comes first");
    require(text_of(listed[i].RemoteDisplayName) ==
                expected_name(call.RemoteSipName, call.RemoteDisplayName),
            "a call has the phonebook's name");
  }
  HISTORY_DATA_T copy{};
  if (!used.empty()) require(cfg_get_history_data(used.back().ID, &copy) == 0, "a call is found");
}

void list_set(const std::vector<HISTORY_DATA_T>& used) {
  static const auto set = std::make_unique<HISTORY_SUMMARY_SET_T>();
  cfg_get_history_summary_set(set.get());
  require(set->count == static_cast<int>(used.size()), "every call is in the set");
  if (used.empty()) return;
  set->sync_id = used.back().ID;
  cfg_summary_sync_out(set.get());
  const HISTORY_SUMMARY_T& entry = set->entries[set->sync_index];
  const HISTORY_DATA_T& call = used[static_cast<std::size_t>(set->sync_index)];
  require(entry.ID == set->sync_id, "the entry with the id is named");
  require(
      text_of(entry.RemoteDisplayName) == expected_name(call.RemoteSipName, call.RemoteDisplayName),
      "it has the phonebook's name");
}

void change(std::vector<HISTORY_DATA_T> used) {
  HISTORY_DATA_T call{};
  call.Type = used.empty() ? 1 : used.front().Type;
  require(cfg_add_history(&call) == 0, "a call is added");
  if (used.size() == CFGXML_HISTORY_CAPACITY) used.erase(used.begin());
  used.push_back(call);
  const std::vector<HISTORY_DATA_T> added = calls();
  require(added.size() == used.size() && same_bytes(added.back(), call), "it is the last call");

  const int id = added.front().ID;
  require(cfg_del_history(id) == 0 && calls().size() == used.size() - 1, "a call is deleted");
  require(cfg_del_all_history(call.Type) == 0, "a type is deleted");
  for (const HISTORY_DATA_T& left : calls()) {
    require(call.Type != 0 && left.Type != call.Type, "no call of the type is left");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Phone phone;
  phone.write(kHistory, text_of_input(data, size));
  read_twice(text_of_input(data, size));
  const std::vector<HISTORY_DATA_T> used = calls();
  list_calls(used);
  list_set(used);
  change(used);
  return 0;
}
