// The checks of the data's rules: each sees its rule broken, and names the record.
#include "support/invariants.h"

#include <cfgxml/host.h>
#include <cfgxml/search.h>

#include <cstring>
#include <string>

#include "support/phone.h"

namespace {

using namespace phone_test;  // NOLINT(google-build-using-namespace): the file is about them

class InvariantsTest : public Phone {
 protected:
  void SetUp() override {
    Phone::SetUp();
    GROUP_DATA_T group{};
    for (const char* name : {"Default", "Work"}) {
      rl_strcpy_s(group.Name, sizeof group.Name, name);
      ASSERT_EQ(cfg_add_group_data(&group), 0);
    }
    for (const char* name : {"bob", "Alice", "carl"}) {
      CONTACT_DATA_T contact = named(name);
      ASSERT_EQ(cfg_add_contact_data(&contact), 0);
    }
    CONTACT_DATA_T entry = named("Spam");
    ASSERT_EQ(cfg_add_black_data(&entry), 0);
    HISTORY_DATA_T call{};
    ASSERT_EQ(cfg_add_history(&call), 0);
    ASSERT_EQ(cfg_add_history(&call), 0);
  }

  static CONTACT_DATA_T named(const char* name) {
    CONTACT_DATA_T contact{};
    rl_strcpy_s(contact.DisplayName, sizeof contact.DisplayName, name);
    rl_strcpy_s(contact.OfficeNumber, sizeof contact.OfficeNumber, "100");
    rl_strcpy_s(contact.Group, sizeof contact.Group, "Work");
    return contact;
  }

  /// What the checks of the tables find when one contact is otherwise for a moment.
  template <typename Change>
  std::string broken_when(Change change) {
    const CONTACT_DATA_LIST_T kept = contacts();
    change(contacts());
    const std::string rule = broken_phonebook(contacts(), blacklist());
    contacts() = kept;
    return rule;
  }
};

TEST_F(InvariantsTest, TablesThatTheLibraryFilledKeepEveryRule) {
  EXPECT_EQ(broken_phonebook(contacts(), blacklist()), "");
  EXPECT_EQ(broken_history(history()), "");
  EXPECT_EQ(broken_positions(contacts()), "");
  EXPECT_EQ(broken_membership(contacts()), "");
  EXPECT_EQ(broken_index(contacts(), {}), "");
  EXPECT_EQ(broken_by_reload(), "");
}

TEST_F(InvariantsTest, SeeTablesOutOfOrder) {
  using List = CONTACT_DATA_LIST_T;
  EXPECT_EQ(broken_when([](List& list) { list.Contacts[2].Id = 1; }), "contacts[2]: id 1 is taken");
  EXPECT_EQ(broken_when([](List& list) { list.Groups[1].Id = 1; }), "groups[1]: id 1 is taken");
  EXPECT_EQ(broken_when([](List& list) { list.Contacts[1].Id = 0; }),
            "contacts[1]: not clear behind the last record");
  EXPECT_EQ(broken_when([](List& list) { list.Contacts[499].Photo[63] = 1; }),
            "contacts[3]: not clear behind the last record");
  EXPECT_EQ(broken_when([](List& list) { std::memset(list.Contacts[0].Ring, 'x', 64); }),
            "contacts[0]: a text is not terminated");
  EXPECT_EQ(broken_when([](List& list) { std::strcpy(list.Contacts[2].DisplayName, "bob"); }),
            "contacts[2]: name <bob> is taken");
  EXPECT_EQ(broken_when([](List& list) { std::strcpy(list.Contacts[2].DisplayName, "Spam"); }),
            "blacklist[0]: name <Spam> is taken");
  EXPECT_EQ(broken_when([](List& list) { std::strcpy(list.Groups[1].Name, "Default"); }),
            "groups[1]: name <Default> is taken");

  history().Records[1].ID = 1;
  EXPECT_EQ(broken_history(history()), "history[1]: id 1 is taken");
}

TEST_F(InvariantsTest, SeePositionsAndGroupsOutOfOrder) {
  std::swap(contacts().Contacts[0].position, contacts().Contacts[1].position);
  EXPECT_EQ(broken_positions(contacts()), "positions[1]: not in the order of the names");
  contacts().Contacts[0].position = 2;
  EXPECT_EQ(broken_positions(contacts()), "contacts[2]: position 2 is taken");
  contacts().Contacts[0].position = -1;
  EXPECT_EQ(broken_positions(contacts()), "contacts[0]: position -1 is out of range");
  std::strcpy(contacts().Contacts[1].Group, "Home");
  EXPECT_EQ(broken_membership(contacts()), "contacts[1]: no group <Home>");
}

TEST_F(InvariantsTest, SeeWhatTheIndexLacksAndWhatItHasTooMuch) {
  const TRIE_INFO_T bob{CFGXML_BOOK_LOCAL, &contacts().Contacts[0]};
  TrieDecreaseInfo("100", &bob);
  EXPECT_EQ(broken_index(contacts(), {}),
            "index: under <100> stand 2 entries for 3 texts, or other records");
  EXPECT_NE(broken_by_reload(), "");
  EXPECT_EQ(broken_index(contacts(), {}), "");

  TrieIncreaseInfo("more", &bob);
  EXPECT_EQ(broken_index(contacts(), {}), "index: holds 7 strings, the books 6");
  EXPECT_NE(broken_by_reload(), "");

  CONTACT_SUMMARY_T remote{};
  std::strcpy(remote.DisplayName, "Zed");
  Books books{};
  books[CFGXML_BOOK_REMOTE_FIRST] = &remote;
  EXPECT_EQ(broken_index(contacts(), books),
            "index: under <Zed> stand 0 entries for 1 texts, or other records");
}

}  // namespace
