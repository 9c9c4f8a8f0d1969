// The checks of the data's rules: each sees its rule broken, and names the record.
#include "support/invariants.h"

#include <cstring>
#include <utility>

#include "support/phone.h"

namespace {

using Invariants = phone_test::Phone;

TEST_F(Invariants, EachRuleIsSeenBroken) {
  for (const char* name : {"bob", "Alice"}) {
    CONTACT_DATA_T contact{};
    std::strcpy(contact.DisplayName, name);
    ASSERT_EQ(cfg_add_contact_data(&contact), 0);
  }
  CONTACT_DATA_T* contact = contacts().Contacts;
  EXPECT_EQ(phone_test::broken_index(contacts(), {}), "");
  std::strcpy(contact[0].OfficeNumber, "100");
  EXPECT_EQ(phone_test::broken_index(contacts(), {}),
            "index: under <100> stand 0 entries for 1 texts, or other records");
  EXPECT_EQ(phone_test::broken_positions(contacts()), "");
  std::swap(contact[0].position, contact[1].position);
  EXPECT_EQ(phone_test::broken_positions(contacts()),
            "positions[1]: not in the order of the names");
  std::strcpy(contact[1].Group, "Home");
  EXPECT_EQ(phone_test::broken_membership(contacts()), "contacts[1]: no group <Home>");
  EXPECT_EQ(phone_test::broken_phonebook(contacts(), blacklist()), "");
  contact[499].Photo[63] = 1;
  EXPECT_EQ(phone_test::broken_phonebook(contacts(), blacklist()),
            "contacts[2]: not clear behind the last record");
  contact[1].Id = contact[0].Id;
  EXPECT_EQ(phone_test::broken_phonebook(contacts(), blacklist()), "contacts[1]: id 1 is taken");
}

}  // namespace
