// BroadSoft directories: the page reader, the full list, the simple lists and their place in the
// search.
#include <cfgxml/broadsoft.h>
#include <cfgxml/host.h>
#include <cfgxml/search.h>

#include <limits>
#include <string>
#include <vector>

#include "support/phone.h"

namespace {

constexpr char kXsi[] = "http://schema.broadsoft.com/xsi";
constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kLeast = std::numeric_limits<int>::min();

std::string element(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

std::string entry(const std::string& name, const std::string& number = "") {
  return element("entry", element("name", name) + element("number", number));
}

std::string document(const std::string& root, const std::string& content,
                     const std::string& schema = kXsi) {
  return "<?xml version=\"1.0\"?><" + root + " xmlns=\"" + schema + "\">" + content + "</" + root +
         ">";
}

std::string position(const std::string& start, const std::string& count, const std::string& total) {
  return element("startIndex", start) + element("numberOfRecords", count) +
         element("totalAvailableRecords", total);
}

using Names = std::vector<std::string>;

class BroadSoftTest : public phone_test::Phone {
 protected:
  void TearDown() override {
    cfg_get_broadsoft_contact_summary(nullptr);  // frees the list, and leaves none
    add(document("Personal", position("1", "0", "0")));
    for (int list = 0; list < CFGXML_BROADSOFT_LIST_COUNT; ++list) {
      cfg_destory_broadsoft_simple_conatct_list(list);
    }
    Phone::TearDown();
  }

  std::string page(const std::string& text) {
    write("/page.xml", text);
    return on_disk("/page.xml");
  }
  const BSFT_CONTACT_DATA_T* start(const std::string& text) {
    return cfg_get_broadsoft_contact_summary(page(text).c_str());
  }
  const BSFT_CONTACT_DATA_T* add(const std::string& text) {
    return cfg_add_broadsoft_contact_summary_to_tail(page(text).c_str());
  }
  CONTACT_SUMMARY_T* append(int list, const std::string& text, BSFT_CONTACT_POS_T& pos) {
    return cfg_append_broadsoft_simple_contact_summary(list, page(text).c_str(), &pos);
  }

  static BSFT_CONTACT_POS_T full_position() {
    BSFT_CONTACT_POS_T pos;
    EXPECT_EQ(cfg_get_broadsoft_conatct_pos(&pos), &pos);
    return pos;
  }
  static void expect(const BSFT_CONTACT_POS_T& pos, const std::vector<int>& values) {
    EXPECT_EQ((std::vector<int>{pos.start, pos.count, pos.total, pos.state}), values);
  }

  /// Each entry as its index and first name.
  static Names names_of(const BSFT_CONTACT_DATA_T* list) {
    Names names;
    for (; list != nullptr; list = list->next) {
      names.push_back(std::to_string(list->index) + list->FirstName);
    }
    return names;
  }
  static Names names_of(const CONTACT_SUMMARY_T* list) {
    Names names;
    for (; list != nullptr; list = list->next) {
      names.push_back(std::to_string(list->Id) + list->DisplayName +
                      std::to_string(list->position));
    }
    return names;
  }
};

TEST_F(BroadSoftTest, EveryBookHasItsPlaceForEntries) {
  const std::string outer = entry("outer");
  const std::string inner = entry("inner");
  const std::pair<std::string, std::string> cases[] = {
      {document("Personal", outer + element("groupDirectory", inner)), "0outer"},
      {document("Group", outer + element("groupDirectory", inner)), "0inner"},
      {document("Group", outer + element("enterpriseDirectory", inner)), "0outer"},
      {document("Enterprise", outer + element("enterpriseDirectory", inner)), "0inner"},
      {document("GroupCommon", outer + element("groupDirectory", inner)), "0outer"},
      {document("EnterpriseCommon", element("commonPhoneEntry", element("name", "lobby"))),
       "0lobby"},
      {document("Group",
                element("groupDirectory", element("directoryDetails", element("firstName", "x"))),
                "http://schema.broadsoft.com/xsi-actions"),
       "0x"},
  };
  for (const auto& [text, name] : cases) EXPECT_EQ(names_of(start(text)), Names{name}) << text;
}

TEST_F(BroadSoftTest, ADocumentThatIsNoDirectoryChangesNothing) {
  const BSFT_CONTACT_DATA_T* head = start(document("Personal", entry("Ann")));
  const std::string others[] = {
      "<Personal>" + entry("Bob") + "</Personal>",
      document("Personal", entry("Bob"), "http://schema.broadsoft.com/XSI"),
      document("personal", entry("Bob")),
      "<?xml version=\"1.0\"?>",
  };
  BSFT_CONTACT_POS_T pos = {7, 8, 9, 1};
  for (const std::string& text : others) {
    forget_log();
    EXPECT_EQ(add(text), head);
    EXPECT_TRUE(logged("load file <" + on_disk("/page.xml") + "> fail! BSFT_BOOK_TYPE_INVALID"));
    EXPECT_EQ(append(0, text, pos), nullptr);
  }
  forget_log();
  EXPECT_EQ(add("<Personal"), nullptr);
  EXPECT_EQ(cfg_add_broadsoft_contact_summary_to_tail(on_disk("/tmp").c_str()), nullptr);
  EXPECT_EQ(append(0, "", pos), nullptr);
  EXPECT_EQ(log(), Names{});
  EXPECT_EQ(cfg_add_broadsoft_contact_summary_to_tail(""), nullptr);
  EXPECT_TRUE(logged("_cfg_add_broadsoft_contact_summary_to_tail failed: input is NULL."));
  expect(pos, {7, 8, 9, 1});
  expect(full_position(), {0, 1, 1, 0});
  EXPECT_EQ(names_of(add(document("Personal", ""))), Names{"0Ann"});
}

TEST_F(BroadSoftTest, AnEntryKeepsNineteenTexts) {
  const Names texts = {"lastName",  "firstName", "userId",       "groupId",      "number",
                       "extension", "mobile",    "yahooId",      "pager",        "emailAddress",
                       "title",     "location",  "addressLine1", "addressLine2", "city",
                       "state",     "zip",       "country",      "department"};
  std::string content;
  for (const std::string& text : texts) content += element(text, "my " + text);
  start(document(
      "Personal",
      position("11", "2", "12") + element("entry", content) +
          element("entry", element("x", element("number", "1")) + element("firstName", "first") +
                               element("name", "second") + element("zip", "12") +
                               element("zip", "") + element("mobile", std::string(40, '5')))));
  BSFT_CONTACT_DATA_T data{};
  data.index = 77;
  EXPECT_EQ(cfg_get_broadsoft_contact_data(10, &data), 0);
  EXPECT_EQ(data.index, 77);
  const Names found = {data.LastName,     data.FirstName,    data.UserId,    data.GroupId,
                       data.Number,       data.Extension,    data.Mobile,    data.YahooId,
                       data.Pager,        data.EmailAddress, data.Title,     data.Location,
                       data.AddressLine1, data.AddressLine2, data.City,      data.State,
                       data.Zip,          data.Country,      data.Department};
  for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(found[i], "my " + texts[i]);

  EXPECT_EQ(cfg_get_broadsoft_contact_data(11, &data), 0);
  EXPECT_STREQ(data.FirstName, "second") << "the later element wins";
  EXPECT_STREQ(data.Zip, "");
  EXPECT_STREQ(data.Number, "") << "only the entry's own children count";
  EXPECT_STREQ(data.Mobile, std::string(31, '5').c_str());
  EXPECT_EQ(cfg_get_broadsoft_contact_data(12, &data), 0);
  EXPECT_STREQ(data.FirstName, "second");
}

TEST_F(BroadSoftTest, TheFullListGrowsByPagesAndStartsAfresh) {
  const auto book = [](const std::string& start, const std::string& names) {
    return document("Group", position(start, "2", "5") + element("groupDirectory", names));
  };
  start(book("1", entry("Ann") + entry("Bob")));
  expect(full_position(), {0, 2, 5, 0});
  add(book("5", entry("Eve")));
  const auto* list = add(book("3", entry("Cid") + element("note", "") + entry("Dan")));
  EXPECT_EQ(names_of(list), (Names{"0Ann", "1Bob", "4Eve", "2Cid", "3Dan"}));
  expect(full_position(), {2, 2, 5, 0});
  add(document("Personal", element("startIndex", "9")));
  expect(full_position(), {8, 2, 5, 0});

  list = start(document("Personal", entry("Zoe") + entry("Yul")));
  EXPECT_EQ(names_of(list), (Names{"0Zoe", "1Yul"}));
  expect(full_position(), {0, 2, 2, 0});
  EXPECT_EQ(cfg_destory_broadsoft_conatct_list(), 0);
  expect(full_position(), {0, 0, 0, 0});
  EXPECT_EQ(cfg_destory_broadsoft_conatct_list(), -1);
  EXPECT_EQ(log().back().rfind("_cfg_destory_broadsoft_conatct_list", 0), 0u);
  EXPECT_EQ(cfg_get_broadsoft_conatct_pos(nullptr), nullptr);
}

TEST_F(BroadSoftTest, ASearchCopiesTheEntriesThatHoldTheText) {
  start(document("Personal", entry("Ann", "12") + entry("Bob", "23") + entry("Cid", "34")));
  BSFT_CONTACT_DATA_T* found = cfg_search_broadsoft_contact_info("2");
  EXPECT_EQ(names_of(found), (Names{"0Ann", "1Bob"}));
  while (found != nullptr) {
    EXPECT_EQ(found->flag, -1);
    rl_free(std::exchange(found, found->next));
  }
  EXPECT_EQ(cfg_search_broadsoft_contact_info("ann"), nullptr);
  EXPECT_EQ(cfg_search_broadsoft_contact_info(nullptr), nullptr);
  EXPECT_TRUE(logged("_cfg_search_broadsoft_contact_info failed, keywords is NULL!"));

  cfg_destory_broadsoft_conatct_list();
  BSFT_CONTACT_DATA_T data;
  EXPECT_EQ(cfg_search_broadsoft_contact_info(""), nullptr);
  EXPECT_TRUE(logged("_cfg_search_broadsoft_contact_info failed, g_broadsoft_contact is NULL!"));
  EXPECT_EQ(cfg_get_broadsoft_contact_data(0, &data), -1);
  EXPECT_TRUE(logged("_cfg_get_broadsoft_contact_data failed, g_broadsoft_contact is NULL!"));
  EXPECT_EQ(cfg_get_broadsoft_contact_data(0, nullptr), 5);
  EXPECT_TRUE(logged("_cfg_get_broadsoft_contact_data failed, contact_data is NULL!"));
}

TEST_F(BroadSoftTest, APageEndsAt500EntriesAndNumbersStayInRange) {
  std::string entries;
  for (int i = 0; i < 700; ++i) entries += entry("N");
  EXPECT_EQ(names_of(start(document("Personal", position("101", "700", "9000") + entries))).back(),
            "599N");
  expect(full_position(), {100, 700, 800, 0});
  start(document("Personal", entries));
  expect(full_position(), {0, 500, 500, 0});

  const std::string most = std::to_string(kMost);
  EXPECT_EQ(names_of(start(document("Personal", position(most, most, "1") + entries))).back(),
            most + "N");
  expect(full_position(), {kMost - 1, kMost, kMost, 0});
  const std::string least = std::to_string(kLeast);
  EXPECT_EQ(names_of(start(document("Personal", position(least, least, "-1") + entry("N")))),
            Names{least + "N"});
  expect(full_position(), {kLeast, kLeast, -1, 0});

  BSFT_CONTACT_POS_T pos = {0, 0, 0, kMost};
  append(0, document("Personal", position(least, "0", most)), pos);
  expect(pos, {kLeast, 0, kMost, kMost});
  append(0, document("Personal", position(most, most, most)), pos);
  expect(pos, {kMost - 1, kMost, kMost, CFGXML_BROADSOFT_COMPLETE});
}

TEST_F(BroadSoftTest, ASimpleListIsOrderedWhenItsLastPageIsIn) {
  const auto person = [](const std::string& first, const std::string& last) {
    return element("entry", element("lastName", last) + element("firstName", first));
  };
  BSFT_CONTACT_POS_T pos{};
  append(2, document("Personal", position("1", "2", "5") + person("bob", "B") + person("Cid", "C")),
         pos);
  expect(pos, {0, 2, 5, 1});
  CONTACT_SUMMARY_T* list =
      append(2, document("Personal", position("3", "2", "5") + person("Ann", "")), pos);
  expect(pos, {2, 2, 5, 2});
  EXPECT_EQ(names_of(list), (Names{"0bob B0", "1Cid C0", "2Ann 0"}));
  list = append(2, document("Personal", position("5", "1", "5") + entry("ann")), pos);
  expect(pos, {4, 1, 5, CFGXML_BROADSOFT_COMPLETE});
  EXPECT_EQ(names_of(list), (Names{"0bob B2", "1Cid C3", "2Ann 1", "4ann 0"}));

  const std::string letters(61, 'x');
  list =
      append(3, document("Personal", position("1", "1", "2") + person(letters, "\xC3\xA4")), pos);
  EXPECT_EQ(names_of(list), Names{"0" + letters + " 0"}) << "no half of a character";
}

TEST_F(BroadSoftTest, SimpleListsAreFoundFromTheKeypadUntilTheyAreFreed) {
  const std::string reception = element(
      "commonPhoneEntry", element("name", "Reception") + element("number", "100") +
                              element("mobile", std::string(40, '7')) + element("extension", "55"));
  BSFT_CONTACT_POS_T pos{};
  const CONTACT_SUMMARY_T* list = append(2, document("GroupCommon", reception), pos);
  ASSERT_EQ(append(5, document("GroupCommon", reception), pos)->Id, 0);
  EXPECT_STREQ(list->DisplayName, "Reception ");
  EXPECT_STREQ(list->MobileNumber, std::string(31, '7').c_str());
  TRIE_RESULT_T* hits = nullptr;
  for (const char* keys : {"73237", "100", "777", "55"}) {
    EXPECT_GT(CfgTrieSearchVague(keys, &hits), 0) << keys;
    ASSERT_NE(hits, nullptr) << keys;
    EXPECT_EQ(hits->records[8][0], list) << keys;
    EXPECT_NE(hits->records[11][0], nullptr) << keys;
  }
  EXPECT_EQ(cfg_destory_broadsoft_simple_conatct_list(2), 0);
  CfgTrieSearchVague("100", &hits);
  ASSERT_NE(hits, nullptr);
  EXPECT_EQ(hits->records[8][0], nullptr);
  EXPECT_NE(hits->records[11][0], nullptr) << "the other list stays";
  EXPECT_EQ(CfgTrieSearchOfCount("Reception ", nullptr), 1);
}

TEST_F(BroadSoftTest, ListNumbersAreChecked) {
  BSFT_CONTACT_POS_T pos{};
  const std::string path = page(document("Personal", entry("Ann")));
  for (const int list : {6, -1, kLeast}) {
    EXPECT_EQ(cfg_append_broadsoft_simple_contact_summary(list, path.c_str(), &pos), nullptr);
    forget_log();
    EXPECT_EQ(cfg_destory_broadsoft_simple_conatct_list(list), -1);
    EXPECT_EQ(log().at(0).rfind("_cfg_destory_broadsoft_simple_conatct_list ", 0), 0u);
  }
  EXPECT_EQ(cfg_append_broadsoft_simple_contact_summary(6, path.c_str(), nullptr), nullptr);
  EXPECT_TRUE(logged("_cfg_append_broadsoft_simple_contact_summary failed: input is NULL."));
  forget_log();
  EXPECT_EQ(cfg_append_broadsoft_simple_contact_summary(6, path.c_str(), &pos), nullptr);
  EXPECT_TRUE(
      logged("_cfg_append_broadsoft_simple_contact_summary failed: input groud_id is invalid."));
  forget_log();
  EXPECT_EQ(cfg_destory_broadsoft_simple_conatct_list(0), -1);
  EXPECT_EQ(log(), Names{});
}

}  // namespace
