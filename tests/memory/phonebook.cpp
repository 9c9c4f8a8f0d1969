// The phonebook: contacts, groups, blacklist, their files and their imports.
#include <cfgxml/binding.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>

#include <cstdio>

#include "scenario.h"

namespace memory_test {
namespace {

constexpr char kContactFile[] = "/config/Phone/Contact/Contact.xml";
constexpr char kContacts[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<ContactData>
    <Group Id="1" Name="Default" Ring="Auto" Description="">
        <Contact Id="1" Line="0" DisplayName="Anna" OfficeNumber="100" MobileNumber="0171 3920038" OtherNumber="" Ring="Auto" Photo="Default"/>
        <Contact Id="2" Line="1" DisplayName="bert" OfficeNumber="101" MobileNumber="" OtherNumber="" Ring="Bell.wav" Photo="Default"/>
    </Group>
    <Group Id="2" Name="Work" Ring="Bell.wav" Description="&quot;Desk&quot; &amp; lab">
        <Contact Id="3" Line="0" DisplayName="Carla" OfficeNumber="101" MobileNumber="" OtherNumber="102" Ring="Auto" Photo="Cat.png"/>
        <Contact Id="4" Line="2" DisplayName="A contact with a name of some length" OfficeNumber="+49 30 23125330" MobileNumber="" OtherNumber="" Ring="Auto" Photo="Default"/>
    </Group>
</ContactData>
)";

constexpr char kBlacklist[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<BlacklistData>
    <Blacklist Id="1" Line="0" DisplayName="Prizes" OfficeNumber="900" MobileNumber="" OtherNumber="" Group="Default" Ring="" Photo=""/>
    <Blacklist Id="2" Line="0" DisplayName="Fax" OfficeNumber="901" MobileNumber="902" OtherNumber="" Group="Default" Ring="" Photo=""/>
</BlacklistData>
)";

constexpr char kHistory[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<History>
    <Call ID="1" CallID="7" Type="1" Status="1" Date="2024-05-02" Time="10:22:54" LocalSipName="212" LocalSipServer="pbx.example.com" LocalSipPort="5060" RemoteSipName="101" RemoteDisplayName="?" RemoteSipServer="pbx.example.com" RemoteSipPort="5060" CallDuration="12"/>
    <Call ID="2" CallID="8" Type="2" Status="1" Date="2024-05-02" Time="10:25:01" LocalSipName="212" LocalSipServer="pbx.example.com" LocalSipPort="5060" RemoteSipName="901" RemoteDisplayName="?" RemoteSipServer="pbx.example.com" RemoteSipPort="5060" CallDuration="3"/>
</History>
)";

/// A phonebook of another phone, to import.
constexpr char kOther[] = R"(<ContactData><Group Id="1" Name="Default" Ring="Auto">
<Contact Id="1" DisplayName="Xenia" OfficeNumber="301"/><Contact Id="2" DisplayName="Yves"/>
</Group></ContactData>)";
constexpr char kOtherBlacklist[] =
    R"(<BlacklistData><Blacklist Id="1" DisplayName="Zed" OfficeNumber="666"/></BlacklistData>)";

CONTACT_DATA_T contact(int id, const char* name, const char* number) {
  CONTACT_DATA_T contact{};
  contact.Id = id;
  std::snprintf(contact.DisplayName, sizeof contact.DisplayName, "%s", name);
  std::snprintf(contact.OfficeNumber, sizeof contact.OfficeNumber, "%s", number);
  std::snprintf(contact.Group, sizeof contact.Group, "Work");
  std::snprintf(contact.Ring, sizeof contact.Ring, "Auto");
  return contact;
}

GROUP_DATA_T group(int id, const char* name) {
  GROUP_DATA_T group{};
  group.Id = id;
  std::snprintf(group.Name, sizeof group.Name, "%s", name);
  return group;
}

/// Nothing is written, and every string that goes to the index needs memory.
void with_full_index(Stage& stage) {
  with_phonebook(stage);
  contact_save_init(1);
  black_save_init(1);
  std::snprintf(stage.blacklist().Entries[1].Group, 64, "Default");  // as after a move
  stage.fill_index(CFGXML_BOOK_LOCAL);
}

void with_deferred_saving(Stage& stage) {
  with_phonebook(stage);
  contact_save_init(1);
  black_save_init(1);
}

/// No contact can move to the blacklist.
void with_full_blacklist(Stage& stage) {
  with_phonebook(stage);
  contact_save_init(1);
  for (int i = 0; i < CFGXML_BLACKLIST_CAPACITY; ++i) {
    stage.blacklist().Entries[i] = contact(i + 1, ("Spam " + std::to_string(i)).c_str(), "9");
  }
  stage.fill_index(CFGXML_BOOK_LOCAL);
}

void with_import_files(Stage& stage) {
  with_phonebook(stage);
  stage.write("/import/other.xml", kOther);
  stage.write("/import/black.xml", kOtherBlacklist);
  stage.write("/import/other.csv",
              "FN,N,EMAIL,TEL_HOME,TEL_WORK,TEL_MOBILE,TEL_OTHER\n"
              "Xenia,Xenia,,,301,,,\nYves,Yves,,,302,,,\n");
}

/// Not indexed: a contact that is read again is the same.
void with_files_to_import(Stage& stage) {
  with_import_files(stage);
  stage.host().load();
}

void with_another_blacklist(Stage& stage) {
  with_phonebook(stage);
  stage.write("/config/Phone/Contact/Blacklist.xml", kOtherBlacklist);
}

/// More contacts than the first blocks of a parse hold.
void with_many_contacts(Stage& stage) {
  with_phonebook(stage);
  std::string text = R"(<ContactData><Group Id="1" Name="Default">)";
  for (int i = 1; i <= 490; ++i) {
    const std::string number = std::to_string(i);
    text += "<Contact Id=\"" + number + "\" DisplayName=\"N" + number + "\" OfficeNumber=\"" +
            number + "\"/>\n";
  }
  stage.write("/import/other.xml", text + "</Group></ContactData>");
}

/// Contacts that may be missing in the index, but not in part.
void expect_no_contact_in_part(Stage& stage) {
  std::vector<Indexed> records;
  for (CONTACT_DATA_T& contact : stage.contacts().Contacts) {
    if (contact.Id >= 1) records.push_back(indexed(CFGXML_BOOK_LOCAL, contact));
  }
  stage.expect_none_in_part(records);
}

template <auto Function>
Result changing(Stage& stage) {
  return result_of(stage.call(Function));
}

template <auto Function, int Id>
Result by_id(Stage& stage) {
  return result_of(stage.call(Function, Id));
}

template <auto Function>
Result listing(Stage& stage) {
  return list_taken(stage.call(Function));
}

/// The functions that list what matches a text.
template <auto Function>
Result finding(Stage& stage) {
  return list_taken(stage.call(Function, "1"));
}

template <auto Function>
Result name_check(Stage& stage) {
  return result_of(stage.call(Function, "Nobody", -1));
}

template <auto Function>
Result add(Stage& stage) {
  CONTACT_DATA_T record = contact(0, "Dora, who is not in the phonebook yet", "101");
  std::snprintf(record.MobileNumber, sizeof record.MobileNumber, "0171 3920039");
  return result_of(stage.call(Function, &record));
}

/// The last contact, and the last entry of the blacklist, under another name.
template <auto Function, int Id>
Result modify(Stage& stage) {
  CONTACT_DATA_T record = contact(Id, "Emil, who is not in the phonebook yet", "0171 3920037");
  return result_of(stage.call(Function, &record));
}

template <auto Function, int Id>
Result get(Stage& stage) {
  CONTACT_DATA_T record{};
  return result_of(stage.call(Function, Id, &record));
}

Result summary_released(Stage& stage) {
  CONTACT_SUMMARY_T* summary = cfg_get_contact_summary("");
  return result_of(stage.call(cfg_destory_contact_summary, summary));
}

Result groups_released(Stage& stage) {
  GROUP_SUMMARY_T* summary = cfg_get_group_summary();
  return result_of(stage.call(cfg_destory_group_summary, summary));
}

template <auto Function>
Result with_group(Stage& stage) {
  GROUP_DATA_T record = group(2, "Home");
  return result_of(stage.call(Function, &record));
}

/// The first record tells which of the files was read.
template <auto Function>
Result import(Stage& stage, const char* name, const CONTACT_DATA_T& first) {
  const std::string path = stage.on_disk(name);
  const int result = stage.call(Function, path.c_str());
  return {std::to_string(result) + " " + first.DisplayName, {}, false};
}

/// The contacts of one phone or of the other, whether they were read again or not.
void expect_one_phonebook(Stage& stage) {
  std::string names;
  for (const CONTACT_DATA_T& contact : stage.contacts().Contacts) {
    names += std::string(contact.DisplayName) + (contact.Id >= 1 ? ";" : "");
  }
  EXPECT_TRUE(names == "Xenia;Yves;" ||
              names == "Anna;bert;Carla;A contact with a name of some length;")
      << names;
}

/// The functions that take a file below the profile.
template <auto Function>
Result with_file(Stage& stage, const char* name) {
  const std::string path = stage.on_disk(name);
  return result_of(stage.call(Function, path.c_str()));
}

Result read_contacts(Stage& stage) {
  const std::string path = stage.on_disk("/import/other.xml");
  return result_of(stage.call(get_contact_xml, path.c_str(), &stage.contacts()));
}

Result read_blacklist(Stage& stage) {
  return result_of(stage.call(get_blacklist_xml, "", &stage.blacklist()));
}

Result write_contacts(Stage& stage) {
  return result_of(stage.call(save_contact_xml, kContactFile, &stage.contacts()));
}

Result write_community(Stage& stage) {
  const std::string path = stage.on_disk("/import/community.xml");
  std::filesystem::create_directories(stage.on_disk("/import"));
  GROUP_SUMMARY_T home{1, "Home", "Auto", "", nullptr};
  COMMUNITY_CONTACT_T dora{contact(1, "Dora", "101"), nullptr};
  std::snprintf(dora.Contact.Group, sizeof dora.Contact.Group, "Home");
  COMMUNITY_DATA_T data{{nullptr, nullptr}, &home, &dora};
  return result_of(stage.call(save_community_xml, path.c_str(), &data));
}

constexpr unsigned kSaved = kSaveDropped;
constexpr unsigned kSavedStale = kSaveDropped | kIndexStale;

Scenarios contact_scenarios() {
  return {
      {"is_name_in_contact", "", with_phonebook, name_check<is_name_in_contact>, nullptr},
      {"cfg_destory_contact_summary", "", with_phonebook, summary_released, nullptr},
      {"cfg_get_contact_summary", "", with_phonebook,
       [](Stage& stage) { return list_taken(stage.call(cfg_get_contact_summary, "")); },
       kEndsEarly},
      {"cfg_search_contact_summary", "", with_phonebook, finding<cfg_search_contact_summary>,
       kEndsEarly},
      {"cfg_get_contact_data", "", with_phonebook, get<cfg_get_contact_data, 3>, nullptr},
      {"cfg_add_contact_data", "saved", with_phonebook, add<cfg_add_contact_data>, "-1",
       kSaved | kMemoryKept},
      {"cfg_add_contact_data", "indexed", with_full_index, add<cfg_add_contact_data>, "-1",
       kMemoryKept},
      {"cfg_mod_contact_data", "saved", with_phonebook, modify<cfg_mod_contact_data, 4>, "-1",
       kSaved | kMemoryKept},
      {"cfg_mod_contact_data", "indexed", with_full_index, modify<cfg_mod_contact_data, 2>, "-1",
       kMemoryKept},
      {"cfg_del_contact_data", "saved", with_phonebook, by_id<cfg_del_contact_data, 2>, "-1",
       kSaved},
      {"cfg_del_contact_data", "deferred", with_full_index, by_id<cfg_del_contact_data, 2>,
       nullptr},
      {"cfg_del_all_contacts", "", with_phonebook, changing<cfg_del_all_contacts>, "-1",
       kSavedStale},
      {"cfg_del_contacts_by_group", "", with_phonebook,
       [](Stage& stage) { return result_of(stage.call(cfg_del_contacts_by_group, "Work")); }, "-1",
       kSavedStale},
      {"cfg_del_contact_ring_info", "", with_phonebook,
       [](Stage& stage) { return result_of(stage.call(cfg_del_contact_ring_info, "Bell.wav")); },
       "-1", kSaved},
      {"cfg_del_contact_photo_info", "", with_phonebook,
       [](Stage& stage) { return result_of(stage.call(cfg_del_contact_photo_info, "Cat.png")); },
       "-1", kSaved},
      {"contact_data_sync", "", with_phonebook, changing<contact_data_sync>, nullptr},
  };
}

Scenarios group_scenarios() {
  return {
      {"is_name_in_group", "", with_phonebook, name_check<is_name_in_group>, nullptr},
      {"cfg_get_group_summary", "", with_phonebook, listing<cfg_get_group_summary>, kEndsEarly},
      {"cfg_destory_group_summary", "", with_phonebook, groups_released, nullptr},
      {"cfg_get_group_data", "", with_phonebook, with_group<cfg_get_group_data>, nullptr},
      {"cfg_add_group_data", "", with_phonebook, with_group<cfg_add_group_data>, "-1", kSaved},
      {"cfg_mod_group_data", "", with_deferred_saving, with_group<cfg_mod_group_data>, nullptr},
      {"cfg_mod_group_data", "saved", with_phonebook,
       [](Stage& stage) {
         GROUP_DATA_T record = group(2, "Work");
         return result_of(stage.call(cfg_mod_group_data, &record));
       },
       "-1", kSaved},
      {"cfg_del_group_data", "", with_phonebook, by_id<cfg_del_group_data, 2>, "-1", kSaved},
      {"cfg_del_all_group_data", "", with_phonebook, changing<cfg_del_all_group_data>, "-1",
       kSaved},
  };
}

Scenarios blacklist_scenarios() {
  return {
      {"is_name_in_black", "", with_phonebook, name_check<is_name_in_black>, nullptr},
      {"cfg_get_black_summary", "", with_phonebook, listing<cfg_get_black_summary>, kEndsEarly},
      {"cfg_search_black_info", "", with_phonebook,
       [](Stage& stage) { return list_taken(stage.call(cfg_search_black_info, "9")); }, kEndsEarly},
      {"cfg_get_black_data", "", with_phonebook, get<cfg_get_black_data, 2>, nullptr},
      {"cfg_add_black_data", "", with_phonebook, add<cfg_add_black_data>, "-1", kSaved},
      {"cfg_set_black_data", "", with_phonebook, modify<cfg_set_black_data, 2>, "-1", kSaved},
      {"cfg_remove_black_data", "", with_phonebook, by_id<cfg_remove_black_data, 1>, "-1", kSaved},
      {"cfg_remove_black_all", "", with_phonebook, changing<cfg_remove_black_all>, "-1", kSaved},
      {"cfg_mov_contact_data", "saved", with_phonebook, by_id<cfg_mov_contact_data, 2>, "-1",
       kSaved},
      {"mov_contact_data", "deferred", with_deferred_saving, by_id<mov_contact_data, 2>, nullptr},
      {"mov_contact_data", "undone", with_full_blacklist, by_id<mov_contact_data, 4>, "-1",
       kMemoryKept | kOwnIndex, expect_no_contact_in_part},
      {"cfg_mov_black_data", "saved", with_phonebook, by_id<cfg_mov_black_data, 2>, "-1",
       kSaved | kMemoryKept},
      {"mov_black_data", "indexed", with_full_index, by_id<mov_black_data, 2>, "-1", kMemoryKept},
  };
}

Scenarios file_scenarios() {
  return {
      {"get_contact_xml", "", with_import_files, read_contacts, "-1", kIndexStale},
      {"get_contact_xml", "many", with_many_contacts, read_contacts, "-1",
       kIndexStale | kBlockLost},
      {"save_contact_xml", "", with_phonebook, write_contacts, "-1"},
      {"save_community_xml", "", with_phonebook, write_community, "-1"},
      {"get_blacklist_xml", "", with_another_blacklist, read_blacklist, "-1"},
      {"save_blacklist_xml", "", with_phonebook,
       [](Stage& stage) {
         return result_of(stage.call(save_blacklist_xml, "", &stage.blacklist()));
       },
       "-1"},
      {"is_valid_contact_file_xml", "", with_import_files,
       [](Stage& stage) {
         return with_file<is_valid_contact_file_xml>(stage, "/import/other.xml");
       },
       "0"},
      {"copy_contact_xml", "", with_import_files,
       [](Stage& stage) { return with_file<copy_contact_xml>(stage, "/import/other.xml"); }, "-1",
       kIndexStale},
      {"cfg_upload_contact", "xml", with_files_to_import,
       [](Stage& stage) {
         return import <cfg_upload_contact>(stage, "/import/other.xml",
                                            stage.contacts().Contacts[0]);
       },
       "-1 Anna|0 Anna", kIndexStale | kFileReplaced},
      {"cfg_upload_contact", "csv", with_files_to_import,
       [](Stage& stage) {
         return import <cfg_upload_contact>(stage, "/import/other.csv",
                                            stage.contacts().Contacts[0]);
       },
       "-1 Anna", kIndexStale | kFileReplaced | kOwnBlocks, expect_one_phonebook},
      {"cfg_upload_blacklist", "", with_files_to_import,
       [](Stage& stage) {
         return import <cfg_upload_blacklist>(stage, "/import/black.xml",
                                              stage.blacklist().Entries[0]);
       },
       "-1 Prizes|0 Prizes", kIndexStale | kFileReplaced},
  };
}

}  // namespace

void with_phonebook(Stage& stage) {
  stage.write(kContactFile, kContacts);
  stage.write("/config/Phone/Contact/Blacklist.xml", kBlacklist);
  stage.write("/config/Phone/History/History.xml", kHistory);
  stage.host().load();
  CfgTrieReloadLocalBookInfo();
}

Scenarios phonebook_scenarios() {
  Scenarios all;
  for (const Scenarios& some :
       {contact_scenarios(), group_scenarios(), blacklist_scenarios(), file_scenarios()}) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

}  // namespace memory_test
