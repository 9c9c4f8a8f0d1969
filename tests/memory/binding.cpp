// Binding and saving.
#include <cfgxml/binding.h>
#include <cfgxml/message.h>

#include "scenario.h"

namespace memory_test {
namespace {

constexpr char kMessages[] = R"(<Message><InboxData Total="2" Unread="2"/></Message>)";

void nothing(Stage& /*stage*/) {}

/// A change that is not in the files yet.
void with_changes(Stage& stage) {
  with_phonebook(stage);
  std::snprintf(stage.contacts().Contacts[0].OfficeNumber, 64, "199");
  std::snprintf(stage.blacklist().Entries[0].OfficeNumber, 64, "198");
  std::snprintf(stage.history().Records[0].RemoteSipName, 64, "197");
}

/// Files that differ from the blocks.
void with_newer_files(Stage& stage) {
  with_phonebook(stage);
  stage.contacts() = {};
  stage.blacklist() = {};
  stage.history() = {};
  std::snprintf(stage.contacts().Contacts[0].DisplayName, 64, "Older");
  stage.contacts().Contacts[0].Id = 1;
}

std::string far_folder(const Stage& stage) {
  return stage.root().string() + "/tmp/" + std::string(200, 'd');
}

void with_another_root(Stage& stage) {
  std::filesystem::create_directories(far_folder(stage) + "/config/Phone/Message");
  stage.write("/tmp/" + std::string(200, 'd') + "/config/Phone/Message/Message.xml", kMessages);
}

template <auto Function>
Result with_no_argument(Stage& stage) {
  return result_of(stage.call(Function));
}

template <auto Function>
Result with_zero(Stage& stage) {
  return result_of(stage.call(Function, 0));
}

template <auto Function>
Result deinit(Stage& stage) {
  return result_of(stage.call(Function, static_cast<void*>(nullptr)) == nullptr ? 0 : 1);
}

/// No file of the new root is found when the old one stays.
Result set_root(Stage& stage) {
  const std::string folder = far_folder(stage);
  stage.call([&] { return cfgxml_set_root(folder.c_str()), 0; });
  return result_of(cfg_get_inbox_unread());
}

}  // namespace

Scenarios binding_scenarios() {
  return {
      {"cfgxml_cb_init", "", nothing,
       [](Stage& stage) {
         CFGXML_CALLBACK_T table[CFGXML_SLOT_COUNT];
         return result_of(stage.call([&] { return cfgxml_cb_init(table), 0; }));
       },
       nullptr},
      {"cfgxml_set_root", "", with_another_root, set_root, "-1", kFreshProcess | kMemoryKept},
      {"contact_init", "", with_newer_files,
       [](Stage& stage) { return result_of(stage.call(contact_init, &stage.contacts())); }, "-1",
       kIndexStale},
      {"black_init", "", with_newer_files,
       [](Stage& stage) { return result_of(stage.call(black_init, &stage.blacklist())); }, "-1",
       kIndexStale},
      {"history_init", "", with_newer_files,
       [](Stage& stage) { return result_of(stage.call(history_init, &stage.history())); }, "-1",
       kIndexStale},
      {"contact_save_init", "", with_phonebook, with_zero<contact_save_init>, nullptr},
      {"black_save_init", "", with_phonebook, with_zero<black_save_init>, nullptr},
      {"history_save_init", "", with_phonebook, with_zero<history_save_init>, nullptr},
      {"contact_save", "", with_changes, with_no_argument<contact_save>, "-1",
       kIndexStale | kSaveDropped},
      {"black_save", "", with_changes, with_no_argument<black_save>, "-1",
       kIndexStale | kSaveDropped},
      {"history_save", "", with_changes, with_no_argument<history_save>, "-1",
       kIndexStale | kSaveDropped},
      {"contact_delay_save", "", with_changes, with_no_argument<contact_delay_save>, "-1",
       kIndexStale},
      {"black_delay_save", "", with_changes, with_no_argument<black_delay_save>, "-1", kIndexStale},
      {"history_delay_save", "", with_changes, with_no_argument<history_delay_save>, "-1",
       kIndexStale},
      {"contact_deinit", "", nothing, deinit<contact_deinit>, nullptr},
      {"black_deinit", "", nothing, deinit<black_deinit>, nullptr},
      {"history_deinit", "", nothing, deinit<history_deinit>, nullptr},
      {"get_file_xml", "", nothing, with_no_argument<get_file_xml>, nullptr},
      {"save_file_xml", "", nothing, with_no_argument<save_file_xml>, nullptr},
      {"find_group_id", "", with_phonebook,
       [](Stage& stage) {
         char group[] = "Work";
         return result_of(stage.call([&] {
           return find_group_id(group, nullptr, nullptr, nullptr);
         }) != nullptr);
       },
       nullptr},
      {"find_contacts_ring_url", "", with_phonebook,
       [](Stage& stage) {
         char number[] = "101";
         return result_of(stage.call([&] {
           return find_contacts_ring_url(number, nullptr, nullptr, nullptr);
         }) != nullptr);
       },
       nullptr},
  };
}

}  // namespace memory_test
