// The callback table, deferred saving, the fixed entry points, and what the library exports.
#include <cfgxml/cfgxml.h>
#include <cfgxml/host.h>
#include <dlfcn.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <set>
#include <string>

#include "support/phone.h"

namespace {

class BindingTest : public phone_test::Phone {};

TEST_F(BindingTest, EverySlotHoldsItsFunction) {
  std::array<CFGXML_CALLBACK_T, CFGXML_SLOT_COUNT + 1> table{};
  cfgxml_cb_init(table.data());
  const char* const names[CFGXML_SLOT_COUNT] = {"contact_init",
                                                "contact_save_init",
                                                "contact_delay_save",
                                                "mov_contact_data",
                                                "mov_black_data",
                                                "get_contact_xml",
                                                "save_contact_xml",
                                                "_Z15get_contact_csvPKcP19CONTACT_DATA_LIST_T",
                                                "_Z16save_contact_csvPKcP17CONTACT_SUMMARY_T",
                                                "copy_contact_xml",
                                                "_Z25get_community_contact_csvPKc",
                                                "save_community_xml",
                                                "is_valid_contact_file_xml",
                                                "_Z25is_valid_contact_file_csvPKc",
                                                "history_init",
                                                "history_save_init",
                                                "history_delay_save",
                                                "get_history_xml",
                                                "save_history_xml",
                                                "history_deinit",
                                                "black_init",
                                                "black_save_init",
                                                "black_delay_save",
                                                "get_blacklist_xml",
                                                "save_blacklist_xml",
                                                "_Z17get_blacklist_csvPKcP17BLACK_DATA_LIST_T",
                                                "_Z18save_blacklist_csvPKcP17BLACK_DATA_LIST_T",
                                                "cfg_match_timezone_name",
                                                "cfg_del_contact_ring_info",
                                                "cfg_del_contact_photo_info"};
  for (int slot = 0; slot < CFGXML_SLOT_COUNT; ++slot) {
    EXPECT_EQ(reinterpret_cast<void*>(table[static_cast<std::size_t>(slot)]),
              dlsym(RTLD_DEFAULT, names[slot]))
        << slot << " " << names[slot];
  }
  EXPECT_EQ(table[CFGXML_SLOT_COUNT], nullptr) << "and nothing behind the table";
}

TEST_F(BindingTest, DeferredSavingPostsTheKindsCodeAndWritesNothing) {
  write("/config/Phone/Contact/Contact.xml", "<ContactData/>");
  write("/config/Phone/Contact/Blacklist.xml", "<BlacklistData/>");
  EXPECT_EQ(contact_save_init(5), 1);
  EXPECT_EQ(black_save_init(-1), 1);
  EXPECT_EQ(history_save_init(1), 1);
  contacts().Contacts[0].Id = 1;
  EXPECT_EQ(contact_save(), 0);
  EXPECT_EQ(black_save(), 0);
  EXPECT_EQ(history_save(), 0);
  EXPECT_EQ(posted(), (std::vector<int>{3, 4, 1}));
  EXPECT_EQ(read("/config/Phone/Contact/Contact.xml"), "<ContactData/>");

  EXPECT_EQ(contact_save_init(0), 0);
  EXPECT_EQ(contact_save(), 0);
  EXPECT_EQ(posted().size(), 3u) << "written at once, nothing posted";
  EXPECT_NE(read("/config/Phone/Contact/Contact.xml").find("(Empty)"), std::string::npos);
  EXPECT_EQ(read("/config/Phone/Contact/Blacklist.xml"), "<BlacklistData/>");
}

TEST_F(BindingTest, SaveResultIsDropped) {
  std::filesystem::remove_all(on_disk("/config"));
  EXPECT_EQ(contact_save(), 0) << "there is no folder to write to";
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

/// The names of a command's output lines, by the last word of each.
std::set<std::string> last_words(const std::string& command) {
  std::set<std::string> words;
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::array<char, 1024> line{};
  while (fgets(line.data(), line.size(), pipe.get()) != nullptr) {
    std::string text(line.data());
    while (!text.empty() && text.back() == '\n') text.pop_back();
    words.insert(text.substr(text.rfind(' ') + 1));
  }
  return words;
}

TEST_F(BindingTest, LibraryExportsThePublicNamesAndNothingElse) {
  std::set<std::string> expected;
  std::ifstream list(CFGXML_EXPORTED_NAMES);
  for (std::string name; std::getline(list, name);) {
    if (!name.empty() && name.front() != '#') expected.insert(name);
  }
  ASSERT_GT(expected.size(), 60u);
  EXPECT_EQ(last_words("nm -D --defined-only '" CFGXML_LIBRARY "'"), expected);
}

}  // namespace
