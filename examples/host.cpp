// A host in C++: starts the library over the folder given, adds a contact and a call from it, lists
// the calls with the contact's name and writes the phonebook as CSV. The services are in
// services.c.
#include <cfgxml/cfgxml.h>
#include <cfgxml/host.h>

#include <cstdio>
#include <memory>
#include <string>

#include "services.h"

namespace {

struct FreeContacts {
  void operator()(CONTACT_SUMMARY_T* list) const { cfg_destory_contact_summary(list); }
};
struct FreeCalls {
  void operator()(HISTORY_SUMMARY_T* list) const { cfg_destory_history_summary(list); }
};

}  // namespace

int main(int argc, char** argv) {
  const std::string folder = argc > 1 ? argv[1] : ".";
  if (make_data_folders(folder.c_str()) != 0) return 1;
  cfgxml_set_root(folder.c_str());
  cfgxml_cb_init(slots);
  contact_init(cfg_get_contact_list());  // as slots 0, 20 and 14
  black_init(cfg_get_black_list());
  history_init(cfg_get_history_list());

  CONTACT_DATA_T contact{};
  rl_strcpy_s(contact.DisplayName, sizeof contact.DisplayName, "Ben Example");
  rl_strcpy_s(contact.MobileNumber, sizeof contact.MobileNumber, "5550123");
  HISTORY_DATA_T call{};
  rl_strcpy_s(call.RemoteSipName, sizeof call.RemoteSipName, "5550123");
  if (cfg_add_contact_data(&contact) != 0 || cfg_add_history(&call) != 0) return 1;

  const std::unique_ptr<HISTORY_SUMMARY_T, FreeCalls> calls(cfg_get_history_summary());
  for (auto* node = calls.get(); node != nullptr; node = node->next) {
    std::printf("%s %s\n", node->RemoteSipName, node->RemoteDisplayName);
  }
  const std::unique_ptr<CONTACT_SUMMARY_T, FreeContacts> all(cfg_get_contact_summary(""));
  return save_contact_csv((folder + "/phonebook.csv").c_str(), all.get()) == 0 ? 0 : 1;
}
