// The operations on contacts, groups and the blacklist, and the moves between them.
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>

#include <algorithm>
#include <climits>
#include <random>
#include <string>
#include <vector>

#include "support/invariants.h"
#include "support/people.h"
#include "support/phone.h"

namespace {

using namespace phone_test;  // NOLINT(google-build-using-namespace): the records and their texts

using Positions = std::vector<int>;

class PhonebookTest : public Phone {
 protected:
  void SetUp() override {
    Phone::SetUp();
    contact_save_init(1);
    black_save_init(1);
    add_group("Default");
  }

  static int add(const std::string& name, const std::string& office = "",
                 const std::string& group_name = "Default") {
    return with(cfg_add_contact_data, contact(name, office, group_name));
  }
  static int blacklist_add(const std::string& name) {
    return with(cfg_add_black_data, contact(name));
  }
  static int add_group(const std::string& name) { return with(cfg_add_group_data, group(name)); }
  static int change_group(const std::string& name, int id) {
    return with(cfg_mod_group_data, group(name, id));
  }

  static std::string people() { return shown(contacts().Contacts); }
  static std::string groups() { return shown(contacts().Groups); }
  static std::string entries() { return shown(blacklist().Entries); }
  static Positions positions() {
    Positions result;
    for (const auto& record : Used(contacts().Contacts)) result.push_back(record.position);
    return result;
  }

  void expect_logged(const std::vector<std::string>& messages) {
    for (const std::string& message : messages) EXPECT_TRUE(logged(message)) << message;
  }
};

TEST_F(PhonebookTest, PositionsIgnoreCaseAndSummariesDoNot) {
  for (const char* name : {"bob", "Alice", "carl"}) EXPECT_EQ(add(name), 0);
  EXPECT_EQ(positions(), (Positions{1, 0, 2}));
  EXPECT_EQ(add("Zed"), 0);
  EXPECT_EQ(shown(take(cfg_get_contact_summary("All Contacts"))), "2:Alice 4:Zed 1:bob 3:carl");
  EXPECT_EQ(positions(), (Positions{1, 0, 2, 3}));

  CONTACT_DATA_T changed{};
  ASSERT_EQ(cfg_get_contact_data(3, &changed), 0);
  put(changed.DisplayName, "aaron");
  EXPECT_EQ(cfg_mod_contact_data(&changed), 0);
  EXPECT_EQ(positions(), (Positions{2, 1, 0, 3}));
  EXPECT_EQ(cfg_del_contact_data(1), 0);
  EXPECT_EQ(positions(), (Positions{1, 0, 2}));
  EXPECT_EQ(people(), "2:Alice 3:aaron 4:Zed");
  EXPECT_EQ(posted(), (std::vector<int>(7, 3)));
  EXPECT_FALSE(exists("/config/Phone/Contact/Contact.xml"));
}

TEST_F(PhonebookTest, NamesAreUniqueOverContactsAndBlacklist) {
  EXPECT_EQ(add("Ann"), 0);
  EXPECT_EQ(add("ann"), 0) << "letter case makes a name of its own";
  EXPECT_EQ(blacklist_add("Bert"), 0);
  EXPECT_EQ(add("Ann"), 7);
  EXPECT_EQ(add("Bert"), 7);
  EXPECT_EQ(blacklist_add("Ann"), 7);
  EXPECT_EQ(blacklist_add("Bert"), 7);
  const struct {
    const char* name;
    int id, contact, entry;
  } kChanges[] = {{"ann", 2, 0, 7},  {"Bert", 2, 7, 7}, {"Ann", 2, 7, 7}, {"Carl", 77, 4, 4},
                  {"Ann", 77, 7, 7}, {"Bert", 1, 7, 0}, {"Carl", 1, 0, 7}};
  for (const auto& change : kChanges) {
    const CONTACT_DATA_T record = contact(change.name, "", "Default", change.id);
    EXPECT_EQ(with(cfg_mod_contact_data, record), change.contact) << change.name << change.id;
    EXPECT_EQ(with(cfg_set_black_data, record), change.entry) << change.name << change.id;
  }
  EXPECT_EQ(people(), "1:Carl 2:ann");
  EXPECT_EQ(entries(), "1:Bert");
  expect_logged({"_cfg_add_contact_data failed: the contact name already exists.",
                 "_cfg_add_black_data failed: the contact name already exists.",
                 "_cfg_add_black_data failed: the black name already exists.",
                 "_cfg_mod_contact_data fail, contact name exists.",
                 "_cfg_set_black_data fail, contact name exists."});
}

TEST_F(PhonebookTest, FullTablesRefuseAndStayAsTheyAre) {
  for (int i = 0; i < 500; ++i) ASSERT_EQ(add("contact " + std::to_string(i)), 0);
  for (int i = 0; i < 100; ++i) ASSERT_EQ(blacklist_add("entry " + std::to_string(i)), 0);
  for (const char* name : {"1", "2", "3", "4", "5"}) ASSERT_EQ(add_group(name), 0);
  EXPECT_EQ(add("one more"), 17);
  EXPECT_EQ(blacklist_add("one more"), 18);
  EXPECT_EQ(add_group("6"), 16);
  EXPECT_EQ(add_group("3"), 7);
  EXPECT_EQ(add_group(""), 14);
  EXPECT_EQ(groups(), "1:Default 2:1 3:2 4:3 5:4 6:5");

  EXPECT_EQ(mov_contact_data(1), 18) << "undone: the contact is back under a new id";
  EXPECT_STREQ(contacts().Contacts[499].DisplayName, "contact 0");
  EXPECT_EQ(contacts().Contacts[499].Id, 501);
  EXPECT_EQ(mov_black_data(1), 17);
  EXPECT_STREQ(blacklist().Entries[99].DisplayName, "entry 0");
  EXPECT_EQ(blacklist().Entries[99].Id, 101);
  expect_logged({"_cfg_add_contact_data failed: there are already 500 contact exist.",
                 "_cfg_add_black_data failed: there are already 100 contact exist.",
                 "_cfg_add_group_data failed: there are already 6 groups exist.",
                 "_cfg_mov_contact_data failed: cfg_add_black_data failed 18."});
}

TEST_F(PhonebookTest, IdsStayAndNewOnesFollowTheLargest) {
  for (const char* name : {"a", "b", "c", "d", "e"}) add(name);
  for (const int id : {3, 4, 99}) EXPECT_EQ(cfg_del_contact_data(id), 0);
  CONTACT_DATA_T record = contact("f");
  EXPECT_EQ(cfg_add_contact_data(&record), 0);
  EXPECT_EQ(record.Id, 6);
  cfg_del_contact_data(6);
  EXPECT_EQ(cfg_add_contact_data(&record), 0);
  contacts().Contacts[3].Id = INT_MAX;
  EXPECT_EQ(add("g"), 0) << "no id after the largest: the lowest free one";
  EXPECT_EQ(people(), "1:a 2:b 5:e 2147483647:f 3:g");

  blacklist_add("x");
  record = contact("y");
  EXPECT_EQ(cfg_add_black_data(&record), 0);
  EXPECT_EQ(record.Id, 2);
  EXPECT_EQ(cfg_remove_black_data(1), 0);
  EXPECT_EQ(entries(), "2:y");
  EXPECT_EQ(cfg_remove_black_all(), 0);
  EXPECT_EQ(entries(), "");
}

TEST_F(PhonebookTest, SearchFindsAnyOfTheFourTexts) {
  CONTACT_DATA_T record = contact("Ann", "0123456789012345678901234567890123456789");
  put(record.MobileNumber, "0155");
  put(record.Ring, "Bell");
  put(record.Photo, "Face 99");
  ASSERT_EQ(cfg_add_contact_data(&record), 0);
  ASSERT_EQ(add("Bert", "99"), 0);
  record = contact("55 Dora");
  put(record.OtherNumber, "99");
  ASSERT_EQ(cfg_add_contact_data(&record), 0);
  ASSERT_EQ(blacklist_add("Carl 55"), 0);

  EXPECT_EQ(shown(take(cfg_search_contact_summary("99"))), "3:55 Dora 2:Bert");
  const auto hits = take(cfg_search_contact_summary("55"));
  EXPECT_EQ(shown(hits), "3:55 Dora 1:Ann");
  EXPECT_STREQ(hits[1].OfficeNumber, "0123456789012345678901234567890") << "31 characters";
  EXPECT_STREQ(hits[1].Ring, "");
  EXPECT_STREQ(hits[1].Photo, "");
  const auto all = take(cfg_search_contact_summary(""));
  EXPECT_EQ(shown(all), "3:55 Dora 1:Ann 2:Bert");
  EXPECT_STREQ(all[1].Ring, "Bell");
  EXPECT_EQ(shown(take(cfg_search_black_info("55"))), "1:Carl 55");
  EXPECT_EQ(cfg_search_black_info("56"), nullptr);
  EXPECT_EQ(cfg_get_contact_summary("Nobody's"), nullptr);
  EXPECT_EQ(cfg_destory_contact_summary(cfg_get_black_summary()), 0);
}

TEST_F(PhonebookTest, EqualNamesListInReverseTableOrder) {
  for (int i = 0; i < 3; ++i) contacts().Contacts[i] = contact("same", "", "", i + 1);
  EXPECT_EQ(shown(take(cfg_get_contact_summary(""))), "3:same 2:same 1:same");
}

TEST_F(PhonebookTest, GroupsAreReadByIdOrNameAndChangedById) {
  ASSERT_EQ(add_group("Work"), 0);
  GROUP_DATA_T home = group("Home");
  ASSERT_EQ(cfg_add_group_data(&home), 0);
  EXPECT_EQ(home.Id, 3);
  EXPECT_EQ(shown(take(cfg_get_group_summary())), "2:Work 3:Home") << "Default is not listed";
  for (GROUP_DATA_T found : {group("Home"), group("ignored", 3)}) {
    EXPECT_EQ(cfg_get_group_data(&found), 0);
    EXPECT_EQ(bytes_of(&found), bytes_of(&home));
  }

  EXPECT_EQ(change_group("Home", 2), 7);
  contacts().Groups[2].Name[0] = '\0';
  EXPECT_EQ(change_group("", 2), 7) << "no name is a name that can be taken";
  EXPECT_EQ(change_group("Default", 2), -1);
  EXPECT_EQ(change_group("Office", 42), 4);
  EXPECT_EQ(change_group("Office", 2), 0);
  EXPECT_EQ(change_group("Family", 1), 0);
  EXPECT_EQ(groups(), "1:Family 2:Office 3:");

  contacts().Groups[0] = group("Default", 1);
  for (int id = 4; id <= 6; ++id) contacts().Groups[id - 1] = group(std::to_string(id), id);
  EXPECT_EQ(change_group("Family", 1), 16) << "the next load would need its slot";
  EXPECT_EQ(change_group("Family", 6), 0);
  contacts().Groups[0].Description[0] = 'd';
  EXPECT_EQ(cfg_del_all_group_data(), 0);
  EXPECT_EQ(groups(), "1:Default");
  EXPECT_STREQ(contacts().Groups[0].Description, "d");
}

TEST_F(PhonebookTest, DeletedGroupsLeaveTheirContactsToDefault) {
  const auto group_of = [](int slot) -> std::string { return contacts().Contacts[slot].Group; };
  ASSERT_EQ(add_group("Work"), 0);
  ASSERT_EQ(add("Ann", "", "Work"), 0);
  ASSERT_EQ(add("Bert", "", "Nowhere"), 0);
  EXPECT_EQ(group_of(0), "Work");
  EXPECT_EQ(group_of(1), "Default");
  EXPECT_EQ(cfg_del_group_data(1), -1) << "Default stays";
  EXPECT_EQ(cfg_destory_group_summary(cfg_get_group_summary()), 0);
  EXPECT_EQ(cfg_del_group_data(2), 0);
  EXPECT_EQ(group_of(0), "Default");
  EXPECT_EQ(cfg_get_group_summary(), nullptr);
  EXPECT_EQ(cfg_del_group_data(9), 0);

  ASSERT_EQ(add_group("Work"), 0);
  put(contacts().Contacts[0].Group, "Work");
  EXPECT_EQ(cfg_del_all_group_data(), 0);
  EXPECT_EQ(group_of(0), "Default");
}

TEST_F(PhonebookTest, DeletedMediaFallBackAndSaveOnce) {
  ASSERT_EQ(add_group("Work"), 0);
  ASSERT_EQ(add("Ann"), 0);
  put(contacts().Groups[1].Ring, "Bell");
  put(contacts().Contacts[0].Ring, "Bell");
  put(contacts().Contacts[0].Photo, "Face");
  const std::size_t before = posted().size();
  host().lists().give_contacts(false);
  EXPECT_EQ(cfg_del_contact_ring_info("Bell"), -1);
  EXPECT_EQ(cfg_del_contact_photo_info("Face"), -1);
  host().lists().give_contacts(true);
  EXPECT_EQ(posted().size(), before);
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
    contacts().Contacts[i] =
        contact("c" + std::to_string(i), "", i % 2 == 0 ? "Work" : "Home", i + 1);
  }
  EXPECT_EQ(cfg_del_contacts_by_group(""), -1);
  EXPECT_EQ(cfg_del_contacts_by_group("Nobody's"), 0);
  EXPECT_EQ(posted().size(), 1u) << "only the fixture's group was saved";
  EXPECT_EQ(cfg_del_contacts_by_group("Work"), 0);
  EXPECT_EQ(people(), "2:c1 4:c3 6:c5");
  EXPECT_EQ(posted().size(), 2u);
  EXPECT_EQ(cfg_del_all_contacts(), 0);
  EXPECT_EQ(people(), "");
  EXPECT_EQ(groups(), "1:Default");
}

TEST_F(PhonebookTest, MovesKeepTheRecordAndGiveItDefault) {
  add_group("Work");
  add("Ann", "100", "Work");
  add("Bert", "200");
  EXPECT_EQ(cfg_mov_contact_data(1), 0);
  EXPECT_EQ(entries(), "1:Ann");
  EXPECT_STREQ(blacklist().Entries[0].OfficeNumber, "100");
  EXPECT_STREQ(blacklist().Entries[0].Group, "Default");
  EXPECT_EQ(people(), "2:Bert");
  EXPECT_EQ(cfg_mov_black_data(1), 0);
  EXPECT_EQ(people(), "2:Bert 3:Ann");
  EXPECT_EQ(positions(), (Positions{1, 0}));
  EXPECT_EQ(entries(), "");
  EXPECT_EQ(cfg_mov_contact_data(77), -1);
  EXPECT_EQ(cfg_mov_black_data(77), -1);
}

TEST_F(PhonebookTest, MoveThatFailsNeverLosesOneOfTwoNamelessContacts) {
  ASSERT_EQ(add(""), 0);
  ASSERT_EQ(add(""), 0);
  EXPECT_EQ(mov_contact_data(1), 7) << "the other one has the name too";
  EXPECT_EQ(people(), "2:(Empty) 3:(Empty)");
  EXPECT_EQ(entries(), "");
}

TEST_F(PhonebookTest, CallsThatFailSayWhy) {
  CONTACT_DATA_T record = contact("New");
  cfg_get_contact_summary(nullptr);
  cfg_get_contact_data(-5, &record);
  cfg_del_contact_data(0);
  cfg_del_group_data(1);
  cfg_mov_contact_data(77);
  host().lists().give_contacts(false);
  EXPECT_EQ(cfg_add_contact_data(&record), -1);
  EXPECT_EQ(is_name_in_contact("Ann", -1), 0);
  host().lists().give_contacts(true);
  host().lists().give_blacklist(false);
  EXPECT_EQ(cfg_add_contact_data(&record), 0) << "only consulted for the name: the add goes on";
  expect_logged({"_cfg_get_contact_summary:group_name is NULL!",
                 "_cfg_get_contact_data failed: invalid id -5.",
                 "_cfg_del_contact_data failed: invalid contact id 0.",
                 "group_name can't be Default.",
                 "_cfg_mov_contact_data failed: cfg_get_contact_data failed.",
                 "_cfg_add_contact_data failed: cfg_get_contact_list return NULL.",
                 "is_name_in_contact failed: cfg_get_contact_list return NULL.",
                 "is_name_in_black failed: cfg_get_black_list return NULL."});
}

TEST_F(PhonebookTest, PositionThatACallerMadeUpHarmsNothing) {
  ASSERT_EQ(add("bob"), 0);
  CONTACT_DATA_T contact = contacts().Contacts[0];
  contact.position = INT_MAX;
  EXPECT_EQ(cfg_mod_contact_data(&contact), 0);
  EXPECT_EQ(add("Alice"), 0) << "which moves bob up";
  EXPECT_EQ(positions(), (Positions{INT_MIN, 0}));
  EXPECT_EQ(cfg_del_contact_data(2), 0);
  EXPECT_EQ(CfgTrieReloadLocalBookInfo(), 0);
  EXPECT_EQ(positions(), Positions{0});
}

TEST_F(PhonebookTest, ContactsThatTheHostWroteAreIndexedWhenOneBeforeThemIsDeleted) {
  contacts().Contacts[0] = contact("Ann", "", "Default", 2);
  contacts().Contacts[1] = contact("Bert", "", "Default", 1);
  EXPECT_EQ(cfg_del_contact_data(2), 0);
  TRIE_ENTRY_T* found = nullptr;
  ASSERT_EQ(CfgTrieSearchOfCount("Bert", &found), 1);
  EXPECT_EQ(found->info.record, &contacts().Contacts[0]);
}

/// Whatever is done, ids and names are a plain list's, and positions and index fit them.
TEST_F(PhonebookTest, RandomChangesKeepTheInvariants) {
  std::mt19937 random(7);
  std::vector<CONTACT_DATA_T> model;
  for (int step = 0; step < 600; ++step) {
    CONTACT_DATA_T record =
        contact(std::string(1 + random() % 3, "abcd"[random() % 4]), std::to_string(random() % 5));
    const auto named = std::find_if(model.begin(), model.end(), [&](const CONTACT_DATA_T& other) {
      return rl_strcmp(other.DisplayName, record.DisplayName) == 0;
    });
    const auto chosen = model.begin() + (model.empty() ? 0 : random() % model.size());
    const auto kind = model.empty() ? 0 : random() % 3;
    if (kind == 0) {
      ASSERT_EQ(cfg_add_contact_data(&record), named != model.end() ? 7 : 0) << step;
      if (named == model.end()) model.push_back(record);
    } else if (kind == 1) {
      const bool used = named != model.end() && named != chosen;
      record.Id = chosen->Id;
      record.position = contacts().Contacts[chosen - model.begin()].position;
      ASSERT_EQ(cfg_mod_contact_data(&record), used ? 7 : 0) << step;
      if (!used) *chosen = record;
    } else {
      ASSERT_EQ(cfg_del_contact_data(chosen->Id), 0) << step;
      model.erase(chosen);
    }
    ASSERT_EQ(people(), shown(model)) << step;
    ASSERT_EQ(broken_phonebook(contacts(), blacklist()), "") << step;
    ASSERT_EQ(broken_positions(contacts()), "") << step;
    ASSERT_EQ(broken_index(contacts(), {}), "") << step;
  }
}

}  // namespace
