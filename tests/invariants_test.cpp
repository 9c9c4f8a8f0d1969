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
    std::strcpy(contact.Group, "Default");
    ASSERT_EQ(cfg_add_contact_data(&contact), 0);
  }
  using List = CONTACT_DATA_LIST_T;
  const struct {
    const char* rule;
    void (*spoil)(List& list);
  } cases[] = {
      {"", [](List& /*list*/) {}},
      {"contacts[1]: id 1 is taken", [](List& list) { list.Contacts[1].Id = 1; }},
      {"contacts[2]: not clear behind the last record",
       [](List& list) { list.Contacts[9].Id = 3; }},
      {"contacts[0]: a text is not terminated",
       [](List& list) { std::memset(list.Contacts[0].Ring, 'x', 64); }},
      {"contacts[1]: name <bob> is taken",
       [](List& list) { std::strcpy(list.Contacts[1].DisplayName, "bob"); }},
      {"positions[1]: not in the order of the names",
       [](List& list) { std::swap(list.Contacts[0].position, list.Contacts[1].position); }},
      {"contacts[1]: no group <Home>",
       [](List& list) { std::strcpy(list.Contacts[1].Group, "Home"); }},
      {"index: under <100> stand 0 entries for 1 texts, or other records",
       [](List& list) { std::strcpy(list.Contacts[0].OfficeNumber, "100"); }},
  };
  const List kept = contacts();
  for (const auto& [rule, spoil] : cases) {
    spoil(contacts());
    std::string seen = phone_test::broken_phonebook(contacts(), blacklist());
    if (seen.empty()) seen = phone_test::broken_positions(contacts());
    if (seen.empty()) seen = phone_test::broken_membership(contacts());
    if (seen.empty()) seen = phone_test::broken_index(contacts(), {});
    EXPECT_EQ(seen, rule);
    contacts() = kept;
  }
}

}  // namespace
