// The operations on contacts, groups and the blacklist, and the moves between them.
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>

#include <cstring>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "support/phone.h"

namespace {

CONTACT_DATA_T contact(const std::string& name, const std::string& office = "",
                       const std::string& group = "Default") {
  CONTACT_DATA_T record{};
  rl_strcpy_s(record.DisplayName, sizeof record.DisplayName, name.c_str());
  rl_strcpy_s(record.OfficeNumber, sizeof record.OfficeNumber, office.c_str());
  rl_strcpy_s(record.Group, sizeof record.Group, group.c_str());
  return record;
}

GROUP_DATA_T group(const std::string& name, int id = 0) {
  GROUP_DATA_T record{};
  record.Id = id;
  rl_strcpy_s(record.Name, sizeof record.Name, name.c_str());
  return record;
}

std::vector<std::string> names_of(CONTACT_SUMMARY_T* chain) {
  std::vector<std::string> names;
  for (const CONTACT_SUMMARY_T* node = chain; node != nullptr; node = node->next) {
    names.emplace_back(node->DisplayName);
  }
  cfg_destory_contact_summary(chain);
  return names;
}

using Names = std::vector<std::string>;

class PhonebookTest : public phone_test::Phone {
 protected:
  void SetUp() override {
    Phone::SetUp();
    contact_save_init(1);
    black_save_init(1);
    GROUP_DATA_T standard = group("Default");
    cfg_add_group_data(&standard);
  }

  static int add(const std::string& name, const std::string& office = "",
                 const std::string& group_name = "Default") {
    CONTACT_DATA_T record = contact(name, office, group_name);
    return cfg_add_contact_data(&record);
  }

  static int blacklist_add(const std::string& name) {
    CONTACT_DATA_T record = contact(name);
    return cfg_add_black_data(&record);
  }

  std::vector<int> positions() {
    std::vector<int> result;
    for (const CONTACT_DATA_T& record : contacts().Contacts) {
      if (record.Id >= 1) result.push_back(record.position);
    }
    return result;
  }
};

TEST_F(PhonebookTest, PositionsIgnoreCaseAndSummariesDoNot) {
  EXPECT_EQ(add("bob"), 0);
  EXPECT_EQ(add("Alice"), 0);
  EXPECT_EQ(add("carl"), 0);
  EXPECT_EQ(positions(), (std::vector<int>{1, 0, 2}));
  EXPECT_EQ(add("Zed"), 0);
  EXPECT_EQ(names_of(cfg_get_contact_summary("All Contacts")),
            (Names{"Alice", "Zed", "bob", "carl"}));
  EXPECT_EQ(positions(), (std::vector<int>{1, 0, 2, 3}));

  CONTACT_DATA_T changed{};
  ASSERT_EQ(cfg_get_contact_data(3, &changed), 0);
  rl_strcpy_s(changed.DisplayName, sizeof changed.DisplayName, "aaron");
  EXPECT_EQ(cfg_mod_contact_data(&changed), 0);
  EXPECT_EQ(positions(), (std::vector<int>{2, 1, 0, 3}));

  EXPECT_EQ(cfg_del_contact_data(1), 0);
  EXPECT_EQ(positions(), (std::vector<int>{1, 0, 2}));
  EXPECT_EQ(contacts().Contacts[0].Id, 2);
  EXPECT_EQ(contacts().Contacts[3].Id, 0);
  EXPECT_EQ(posted(), (std::vector<int>(7, 3)));
  EXPECT_FALSE(exists("/config/Phone/Contact/Contact.xml"));
}

TEST_F(PhonebookTest, NamesAreUniqueOverContactsAndBlacklist) {
  EXPECT_EQ(add("Ann"), 0);
  EXPECT_EQ(add("ann"), 0) << "letter case makes a name of its own";
  EXPECT_EQ(blacklist_add("Bert"), 0);
  forget_log();
  EXPECT_EQ(add("Ann"), 7);
  EXPECT_EQ(add("Bert"), 7);
  EXPECT_TRUE(logged("_cfg_add_contact_data failed: the contact name already exists."));
  EXPECT_EQ(blacklist_add("Ann"), 7);
  EXPECT_TRUE(logged("_cfg_add_black_data failed: the contact name already exists."));
  EXPECT_EQ(blacklist_add("Bert"), 7);
  EXPECT_TRUE(logged("_cfg_add_black_data failed: the black name already exists."));

  CONTACT_DATA_T record{};
  ASSERT_EQ(cfg_get_contact_data(2, &record), 0);
  EXPECT_EQ(cfg_mod_contact_data(&record), 0) << "its own name is allowed";
  rl_strcpy_s(record.DisplayName, sizeof record.DisplayName, "Bert");
  EXPECT_EQ(cfg_mod_contact_data(&record), 7);
  EXPECT_TRUE(logged("_cfg_mod_contact_data fail, contact name exists."));
  rl_strcpy_s(record.DisplayName, sizeof record.DisplayName, "Carl");
  record.Id = 77;
  EXPECT_EQ(cfg_mod_contact_data(&record), 4);
  EXPECT_EQ(cfg_set_black_data(&record), 4);
  rl_strcpy_s(record.DisplayName, sizeof record.DisplayName, "Ann");
  EXPECT_EQ(cfg_set_black_data(&record), 7);
  EXPECT_TRUE(logged("_cfg_set_black_data fail, contact name exists."));
}

TEST_F(PhonebookTest, FullTablesRefuseAndStayAsTheyAre) {
  for (int i = 0; i < 500; ++i) ASSERT_EQ(add("contact " + std::to_string(i)), 0);
  for (int i = 0; i < 100; ++i) ASSERT_EQ(blacklist_add("entry " + std::to_string(i)), 0);
  for (const char* name : {"1", "2", "3", "4", "5"}) {
    GROUP_DATA_T record = group(name);
    ASSERT_EQ(cfg_add_group_data(&record), 0);
  }
  forget_log();
  EXPECT_EQ(add("one more"), 17);
  EXPECT_TRUE(logged("_cfg_add_contact_data failed: there are already 500 contact exist."));
  EXPECT_EQ(blacklist_add("one more"), 18);
  EXPECT_TRUE(logged("_cfg_add_black_data failed: there are already 100 contact exist."));
  GROUP_DATA_T seventh = group("6");
  EXPECT_EQ(cfg_add_group_data(&seventh), 16);
  EXPECT_TRUE(logged("_cfg_add_group_data failed: there are already 6 groups exist."));
  GROUP_DATA_T again = group("3");
  EXPECT_EQ(cfg_add_group_data(&again), 7);
  GROUP_DATA_T nameless = group("");
  EXPECT_EQ(cfg_add_group_data(&nameless), 14);

  EXPECT_EQ(mov_contact_data(1), 18) << "undone: the contact is back under a new id";
  EXPECT_TRUE(logged("_cfg_mov_contact_data failed: cfg_add_black_data failed 18."));
  EXPECT_STREQ(contacts().Contacts[499].DisplayName, "contact 0");
  EXPECT_EQ(contacts().Contacts[499].Id, 501);
  EXPECT_EQ(mov_black_data(1), 17);
  EXPECT_STREQ(blacklist().Entries[99].DisplayName, "entry 0");
  EXPECT_EQ(blacklist().Entries[99].Id, 101);
}

TEST_F(PhonebookTest, IdsStayAndNewOnesFollowTheLargest) {
  for (const char* name : {"a", "b", "c", "d", "e"}) add(name);
  cfg_del_contact_data(3);
  cfg_del_contact_data(4);
  CONTACT_DATA_T record = contact("f");
  EXPECT_EQ(cfg_add_contact_data(&record), 0);
  EXPECT_EQ(record.Id, 6);
  cfg_del_contact_data(6);
  EXPECT_EQ(cfg_add_contact_data(&record), 0);
  EXPECT_EQ(record.Id, 6);
  contacts().Contacts[3].Id = 2147483647;
  record = contact("g");
  EXPECT_EQ(cfg_add_contact_data(&record), 0) << "no id behind the largest: the lowest free one";
  EXPECT_EQ(record.Id, 3);
  EXPECT_EQ(cfg_del_contact_data(99), 0);
  EXPECT_EQ(cfg_del_contact_data(0), -1);
  EXPECT_TRUE(logged("_cfg_del_contact_data failed: invalid contact id 0."));
}

TEST_F(PhonebookTest, SearchFindsAnyOfTheFourTexts) {
  CONTACT_DATA_T record = contact("Ann", "0123456789012345678901234567890123456789");
  rl_strcpy_s(record.MobileNumber, sizeof record.MobileNumber, "0155");
  rl_strcpy_s(record.Ring, sizeof record.Ring, "Bell");
  rl_strcpy_s(record.Photo, sizeof record.Photo, "Face");
  ASSERT_EQ(cfg_add_contact_data(&record), 0);
  ASSERT_EQ(add("Bert", "99"), 0);
  ASSERT_EQ(blacklist_add("Carl 55"), 0);

  CONTACT_SUMMARY_T* hits = cfg_search_contact_summary("55");
  ASSERT_NE(hits, nullptr);
  EXPECT_STREQ(hits->OfficeNumber, "0123456789012345678901234567890") << "31 characters";
  EXPECT_STREQ(hits->Ring, "");
  EXPECT_STREQ(hits->Photo, "");
  EXPECT_EQ(hits->next, nullptr);
  cfg_destory_contact_summary(hits);

  CONTACT_SUMMARY_T* all = cfg_search_contact_summary("");
  EXPECT_STREQ(all->Ring, "Bell");
  EXPECT_EQ(names_of(all), (Names{"Ann", "Bert"}));
  EXPECT_EQ(names_of(cfg_search_black_info("55")), (Names{"Carl 55"}));
  EXPECT_EQ(cfg_search_black_info("56"), nullptr);
  EXPECT_EQ(cfg_get_contact_summary("Nobody's"), nullptr);
}

TEST_F(PhonebookTest, EqualNamesListInReverseTableOrder) {
  for (int i = 0; i < 3; ++i) {
    contacts().Contacts[i] = contact("same", std::to_string(i));
    contacts().Contacts[i].Id = i + 1;
  }
  CONTACT_SUMMARY_T* all = cfg_get_contact_summary("");
  EXPECT_EQ(all->Id, 3);
  EXPECT_EQ(all->next->Id, 2);
  EXPECT_EQ(all->next->next->Id, 1);
  cfg_destory_contact_summary(all);
}

TEST_F(PhonebookTest, DeletedGroupsLeaveTheirContactsToDefault) {
  GROUP_DATA_T work = group("Work");
  ASSERT_EQ(cfg_add_group_data(&work), 0);
  ASSERT_EQ(add("Ann", "", "Work"), 0);
  ASSERT_EQ(add("Bert", "", "Nowhere"), 0);
  EXPECT_STREQ(contacts().Contacts[1].Group, "Default");

  GROUP_SUMMARY_T* groups = cfg_get_group_summary();
  ASSERT_NE(groups, nullptr);
  EXPECT_STREQ(groups->Name, "Work");
  EXPECT_EQ(groups->next, nullptr) << "Default is not listed";
  EXPECT_EQ(cfg_destory_group_summary(groups), 0);

  EXPECT_EQ(cfg_del_group_data(1), -1) << "Default stays";
  EXPECT_TRUE(logged("group_name can't be Default."));
  EXPECT_EQ(cfg_del_group_data(work.Id), 0);
  EXPECT_STREQ(contacts().Contacts[0].Group, "Default");
  EXPECT_EQ(cfg_get_group_summary(), nullptr);
  EXPECT_EQ(cfg_del_group_data(9), 0);
}

TEST_F(PhonebookTest, GroupsAreReadByIdOrNameAndChangedById) {
  GROUP_DATA_T work = group("Work");
  GROUP_DATA_T home = group("Home");
  cfg_add_group_data(&work);
  cfg_add_group_data(&home);
  GROUP_DATA_T by_name = group("Home");
  EXPECT_EQ(cfg_get_group_data(&by_name), 0);
  EXPECT_EQ(by_name.Id, home.Id);
  GROUP_DATA_T by_id = group("ignored", work.Id);
  EXPECT_EQ(cfg_get_group_data(&by_id), 0);
  EXPECT_STREQ(by_id.Name, "Work");

  GROUP_DATA_T renamed = group("Home", work.Id);
  EXPECT_EQ(cfg_mod_group_data(&renamed), 7);
  renamed = group("", work.Id);
  contacts().Groups[2].Name[0] = '\0';
  EXPECT_EQ(cfg_mod_group_data(&renamed), 7) << "no name is a name that can be taken";
  renamed = group("Default", work.Id);
  EXPECT_EQ(cfg_mod_group_data(&renamed), -1);
  renamed = group("Office", 42);
  EXPECT_EQ(cfg_mod_group_data(&renamed), 4);
  renamed = group("Office", work.Id);
  EXPECT_EQ(cfg_mod_group_data(&renamed), 0);
  EXPECT_STREQ(contacts().Groups[1].Name, "Office");
  renamed = group("Family", 1);
  EXPECT_EQ(cfg_mod_group_data(&renamed), 0);
  EXPECT_STREQ(contacts().Groups[0].Name, "Family");

  contacts().Groups[0] = group("Default", 1);
  for (int id = 4; id <= 6; ++id) contacts().Groups[id - 1] = group(std::to_string(id), id);
  EXPECT_EQ(cfg_mod_group_data(&renamed), 16) << "the next load would need its slot";
  EXPECT_STREQ(contacts().Groups[0].Name, "Default");
  renamed.Id = 6;
  EXPECT_EQ(cfg_mod_group_data(&renamed), 0);

  contacts().Groups[0].Description[0] = 'd';
  EXPECT_EQ(cfg_del_all_group_data(), 0);
  EXPECT_EQ(contacts().Groups[0].Id, 1);
  EXPECT_STREQ(contacts().Groups[0].Description, "d");
  EXPECT_EQ(contacts().Groups[1].Id, 0);
}

TEST_F(PhonebookTest, DeletedMediaFallBackAndSaveOnce) {
  GROUP_DATA_T work = group("Work");
  rl_strcpy_s(work.Ring, sizeof work.Ring, "Bell");
  cfg_add_group_data(&work);
  CONTACT_DATA_T record = contact("Ann");
  rl_strcpy_s(record.Ring, sizeof record.Ring, "Bell");
  rl_strcpy_s(record.Photo, sizeof record.Photo, "Face");
  cfg_add_contact_data(&record);
  const std::size_t before = posted().size();
  EXPECT_EQ(cfg_del_contact_ring_info("Bell"), 0);
  EXPECT_STREQ(contacts().Groups[1].Ring, "Auto");
  EXPECT_STREQ(contacts().Contacts[0].Ring, "Auto");
  EXPECT_EQ(cfg_del_contact_photo_info("Face"), 0);
  EXPECT_STREQ(contacts().Contacts[0].Photo, "Default");
  EXPECT_EQ(posted().size(), before + 2);
  EXPECT_EQ(cfg_del_contact_ring_info("Bell"), 0);
  EXPECT_EQ(posted().size(), before + 2) << "nothing changed, nothing saved";
}

TEST_F(PhonebookTest, BulkDeletesCloseUpTheTable) {
  for (int i = 0; i < 6; ++i) {
    contacts().Contacts[i] = contact("c" + std::to_string(i), "", i % 2 == 0 ? "Work" : "Home");
    contacts().Contacts[i].Id = i + 1;
  }
  EXPECT_EQ(cfg_del_contacts_by_group(""), -1);
  EXPECT_EQ(cfg_del_contacts_by_group("Nobody's"), 0);
  EXPECT_EQ(posted().size(), 1u) << "only the fixture's group was saved";
  EXPECT_EQ(cfg_del_contacts_by_group("Work"), 0);
  EXPECT_EQ(contacts().Contacts[0].Id, 2);
  EXPECT_EQ(contacts().Contacts[2].Id, 6);
  EXPECT_EQ(contacts().Contacts[3].Id, 0);
  EXPECT_EQ(cfg_del_all_contacts(), 0);
  EXPECT_EQ(contacts().Contacts[0].Id, 0);
  EXPECT_STREQ(contacts().Groups[0].Name, "Default");
}

TEST_F(PhonebookTest, MovesKeepTheRecordAndGiveItDefault) {
  GROUP_DATA_T work = group("Work");
  cfg_add_group_data(&work);
  add("Ann", "100", "Work");
  add("Bert", "200");
  EXPECT_EQ(cfg_mov_contact_data(1), 0);
  EXPECT_STREQ(blacklist().Entries[0].DisplayName, "Ann");
  EXPECT_STREQ(blacklist().Entries[0].Group, "Default");
  EXPECT_EQ(blacklist().Entries[0].Id, 1);
  EXPECT_EQ(contacts().Contacts[0].Id, 2);
  EXPECT_EQ(cfg_mov_black_data(1), 0);
  EXPECT_STREQ(contacts().Contacts[1].DisplayName, "Ann");
  EXPECT_EQ(contacts().Contacts[1].Id, 3);
  EXPECT_EQ(positions(), (std::vector<int>{1, 0}));
  EXPECT_EQ(blacklist().Entries[0].Id, 0);
  EXPECT_EQ(cfg_mov_contact_data(77), -1);
  EXPECT_TRUE(logged("_cfg_mov_contact_data failed: cfg_get_contact_data failed."));
}

TEST_F(PhonebookTest, MoveThatFailsNeverLosesOneOfTwoNamelessContacts) {
  ASSERT_EQ(add(""), 0);
  ASSERT_EQ(add(""), 0);
  EXPECT_STREQ(contacts().Contacts[1].DisplayName, "(Empty)");
  EXPECT_EQ(mov_contact_data(1), 7) << "the other one has the name too";
  EXPECT_EQ(contacts().Contacts[0].Id, 2);
  EXPECT_EQ(contacts().Contacts[1].Id, 3);
  EXPECT_EQ(blacklist().Entries[0].Id, 0);
}

TEST_F(PhonebookTest, MissingListsFailAndChangeNothing) {
  add("Ann");
  const CONTACT_DATA_LIST_T before = contacts();
  CONTACT_DATA_T record = contact("New");
  record.Id = 1;
  host().lists().give_contacts(false);
  EXPECT_EQ(cfg_add_contact_data(&record), -1);
  EXPECT_TRUE(logged("_cfg_add_contact_data failed: cfg_get_contact_list return NULL."));
  EXPECT_EQ(cfg_mod_contact_data(&record), -1);
  EXPECT_EQ(cfg_del_contact_data(1), -1);
  EXPECT_EQ(cfg_get_contact_summary(""), nullptr);
  EXPECT_EQ(cfg_del_all_group_data(), -1);
  EXPECT_EQ(contact_data_sync(), -1);
  EXPECT_EQ(is_name_in_contact("Ann", -1), 0);
  EXPECT_TRUE(logged("is_name_in_contact failed: cfg_get_contact_list return NULL."));
  host().lists().give_contacts(true);
  EXPECT_EQ(std::memcmp(&before, &contacts(), sizeof before), 0);

  host().lists().give_blacklist(false);
  EXPECT_EQ(cfg_add_black_data(&record), -1);
  EXPECT_EQ(cfg_remove_black_all(), -1);
  EXPECT_EQ(cfg_add_contact_data(&record), 0) << "only consulted for the name: the add goes on";
  EXPECT_TRUE(logged("is_name_in_black failed: cfg_get_black_list return NULL."));
  host().lists().give_blacklist(true);
}

TEST_F(PhonebookTest, NullAndOutOfRangeArgumentsFail) {
  EXPECT_EQ(cfg_get_contact_summary(nullptr), nullptr);
  EXPECT_TRUE(logged("_cfg_get_contact_summary:group_name is NULL!"));
  EXPECT_EQ(cfg_search_contact_summary(nullptr), nullptr);
  EXPECT_EQ(cfg_get_contact_data(1, nullptr), -1);
  EXPECT_EQ(cfg_get_contact_data(-5, nullptr), -1);
  EXPECT_TRUE(logged("_cfg_get_contact_data failed: invalid id -5."));
  EXPECT_EQ(cfg_add_contact_data(nullptr), -1);
  EXPECT_EQ(cfg_mod_contact_data(nullptr), -1);
  EXPECT_EQ(cfg_del_contacts_by_group(nullptr), -1);
  EXPECT_EQ(cfg_get_group_data(nullptr), -1);
  EXPECT_EQ(cfg_add_group_data(nullptr), -1);
  EXPECT_EQ(cfg_mod_group_data(nullptr), -1);
  EXPECT_EQ(cfg_destory_group_summary(nullptr), -1);
  EXPECT_EQ(cfg_destory_contact_summary(nullptr), -1);
  EXPECT_EQ(cfg_del_contact_ring_info(nullptr), -1);
  EXPECT_EQ(cfg_del_contact_photo_info(nullptr), -1);
  EXPECT_EQ(cfg_get_black_data(0, nullptr), -1);
  EXPECT_EQ(cfg_add_black_data(nullptr), -1);
  EXPECT_EQ(cfg_set_black_data(nullptr), -1);
  EXPECT_EQ(cfg_remove_black_data(0), -1);
  EXPECT_EQ(mov_contact_data(0), -1);
  EXPECT_EQ(mov_black_data(-1), -1);
  EXPECT_EQ(is_name_in_group(nullptr, -1), 0);
  EXPECT_EQ(cfg_upload_contact(nullptr), -1);
  EXPECT_EQ(copy_contact_xml(nullptr), -1);
  EXPECT_EQ(get_contact_xml(nullptr, nullptr), -1);
  EXPECT_EQ(save_contact_xml(nullptr, nullptr), -1);
  EXPECT_EQ(save_blacklist_xml(nullptr, nullptr), -1);
}

TEST_F(PhonebookTest, PositionThatACallerMadeUpHarmsNothing) {
  ASSERT_EQ(add("bob"), 0);
  CONTACT_DATA_T contact = contacts().Contacts[0];
  contact.position = std::numeric_limits<int>::max();
  EXPECT_EQ(cfg_mod_contact_data(&contact), 0);
  EXPECT_EQ(add("Alice"), 0) << "which moves bob up";
  EXPECT_EQ(positions(), (std::vector<int>{std::numeric_limits<int>::min(), 0}));
  EXPECT_EQ(cfg_del_contact_data(2), 0);
  EXPECT_EQ(CfgTrieReloadLocalBookInfo(), 0);
  EXPECT_EQ(positions(), std::vector<int>{0});
}

/// Whatever is done, ids are unique, positions a permutation, and the index answers for each name.
TEST_F(PhonebookTest, RandomChangesKeepTheInvariants) {
  std::mt19937 random(7);
  std::map<int, std::string> model;
  ASSERT_EQ(CfgTrieReloadLocalBookInfo(), 0);
  for (int step = 0; step < 600; ++step) {
    const std::string name(1 + random() % 3, static_cast<char>('a' + random() % 4));
    const int id = model.empty() ? 1 : std::next(model.begin(), random() % model.size())->first;
    CONTACT_DATA_T record = contact(name, std::to_string(random() % 5));
    bool used = false;
    for (const auto& [other, other_name] : model) used = used || other_name == name;
    switch (random() % 3) {
      case 0:
        EXPECT_EQ(cfg_add_contact_data(&record), used ? 7 : 0);
        if (!used) model[record.Id] = name;
        break;
      case 1:
        if (model.empty() || (used && model[id] != name)) break;
        record.Id = id;
        record.position = contacts().Contacts[0].position;
        for (const CONTACT_DATA_T& slot : contacts().Contacts) {
          if (slot.Id == id) record.position = slot.position;
        }
        EXPECT_EQ(cfg_mod_contact_data(&record), 0);
        model[id] = name;
        break;
      default:
        EXPECT_EQ(cfg_del_contact_data(id), 0);
        model.erase(id);
    }
    std::vector<bool> taken(model.size());
    std::size_t slot = 0;
    for (const auto& [known_id, known_name] : model) {
      const CONTACT_DATA_T& stored = contacts().Contacts[slot++];
      ASSERT_EQ(stored.Id, known_id);
      ASSERT_EQ(stored.DisplayName, known_name);
      ASSERT_LT(static_cast<std::size_t>(stored.position), model.size());
      ASSERT_FALSE(taken[static_cast<std::size_t>(stored.position)]);
      taken[static_cast<std::size_t>(stored.position)] = true;
      TRIE_ENTRY_T* entries = nullptr;
      ASSERT_GE(CfgTrieSearchOfCount(stored.DisplayName, &entries), 1);
      ASSERT_NE(entries, nullptr);
      ASSERT_EQ(entries->info.record, &stored);
      ASSERT_EQ(entries->next, nullptr);
    }
    ASSERT_EQ(contacts().Contacts[slot].Id, 0);
  }
}

}  // namespace
