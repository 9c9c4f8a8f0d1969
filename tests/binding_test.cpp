// The callback table, deferred saving, and the fixed entry points.
#include <cfgxml/cfgxml.h>
#include <cfgxml/host.h>
#include <dlfcn.h>

#include <array>
#include <string>

#include "support/phone.h"

namespace {

constexpr char kContacts[] = "/config/Phone/Contact/Contact.xml";
constexpr char kBlacklist[] = "/config/Phone/Contact/Blacklist.xml";

using BindingTest = phone_test::Phone;

TEST_F(BindingTest, EverySlotHoldsItsFunction) {
  std::istringstream names(R"(contact_init contact_save_init contact_delay_save mov_contact_data
      mov_black_data get_contact_xml save_contact_xml _Z15get_contact_csvPKcP19CONTACT_DATA_LIST_T
      _Z16save_contact_csvPKcP17CONTACT_SUMMARY_T copy_contact_xml _Z25get_community_contact_csvPKc
      save_community_xml is_valid_contact_file_xml _Z25is_valid_contact_file_csvPKc history_init
      history_save_init history_delay_save get_history_xml save_history_xml history_deinit
      black_init black_save_init black_delay_save get_blacklist_xml save_blacklist_xml
      _Z17get_blacklist_csvPKcP17BLACK_DATA_LIST_T _Z18save_blacklist_csvPKcP17BLACK_DATA_LIST_T
      cfg_match_timezone_name cfg_del_contact_ring_info cfg_del_contact_photo_info)");
  std::array<CFGXML_CALLBACK_T, 31> table{};
  cfgxml_cb_init(table.data());
  auto slot = table.begin();
  for (std::string name; names >> name; ++slot) {
    EXPECT_EQ(reinterpret_cast<void*>(*slot), dlsym(RTLD_DEFAULT, name.c_str())) << name;
  }
  ASSERT_EQ(slot + 1, table.end());
  EXPECT_EQ(*slot, nullptr) << "nothing is written after the table";
}

TEST_F(BindingTest, DeferredSavingPostsTheKindsCodeAndWritesNothing) {
  EXPECT_EQ(contact_save_init(5), 1);
  EXPECT_EQ(black_save_init(-1), 1);
  EXPECT_EQ(history_save_init(1), 1);
  for (int (*save)() : {contact_save, black_save, history_save}) EXPECT_EQ(save(), 0);
  EXPECT_EQ(posted(), (std::vector<int>{3, 4, 1}));
  EXPECT_FALSE(exists(kContacts));
  EXPECT_EQ(contact_save_init(0), 0);
  EXPECT_EQ(contact_save(), 0);
  EXPECT_TRUE(exists(kContacts));
  EXPECT_FALSE(exists(kBlacklist)) << "each kind has its own switch";
  EXPECT_EQ(posted().size(), 3u);

  std::filesystem::remove_all(on_disk("/config"));
  EXPECT_EQ(contact_save(), 0) << "the result of a save is dropped";
  EXPECT_TRUE(logged("save_contact_xml doc.SaveFile failed."));
}

TEST_F(BindingTest, FixedEntryPointsGiveTheirFixedResults) {
  int word = 0;
  EXPECT_EQ(contact_deinit(&word), &word);
  EXPECT_EQ(black_deinit(nullptr), nullptr);
  EXPECT_EQ(history_deinit(&word), &word);
  EXPECT_EQ(get_file_xml(), 0);
  EXPECT_EQ(save_file_xml(), -1);
  EXPECT_EQ(get_file_csv("x", 1), 0);
  EXPECT_EQ(save_file_csv("x", nullptr, 1), -1);
  EXPECT_EQ(get_blacklist_csv("x", &blacklist()), -1);
  EXPECT_EQ(save_blacklist_csv("x", &blacklist()), -1);
  EXPECT_EQ(get_history_csv("x", &history()), -1);
  EXPECT_EQ(save_history_csv("x", &history()), -1);
}

}  // namespace
