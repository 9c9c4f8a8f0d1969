// BroadSoft directories: the page reader, the full list, the simple lists and their place in the
// search.
#include <cfgxml/broadsoft.h>
#include <cfgxml/host.h>
#include <cfgxml/search.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "support/phone.h"
#include "support/records.h"

namespace {

using Texts = std::vector<std::string>;
using Numbers = std::vector<int>;

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
  return "<" + root + " xmlns=\"" + schema + "\">" + content + "</" + root + ">";
}

std::string personal(const std::string& content) { return document("Personal", content); }

std::string position(int start, int count, int total) {
  return element("startIndex", std::to_string(start)) +
         element("numberOfRecords", std::to_string(count)) +
         element("totalAvailableRecords", std::to_string(total));
}

Numbers numbers_of(const BSFT_CONTACT_POS_T& pos) {
  return {pos.start, pos.count, pos.total, pos.state};
}

class BroadSoftTest : public phone_test::Phone {
 protected:
  void TearDown() override {
    start(personal(position(1, 0, 0)));
    cfg_destory_broadsoft_conatct_list();
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

  static Numbers full_position() {
    BSFT_CONTACT_POS_T pos;
    EXPECT_EQ(cfg_get_broadsoft_conatct_pos(&pos), &pos);
    return numbers_of(pos);
  }

  /// Each entry as its index and name, and a simple one's position.
  static std::string name_of(const BSFT_CONTACT_DATA_T& entry) {
    return std::to_string(entry.index) + entry.FirstName;
  }
  static std::string name_of(const CONTACT_SUMMARY_T& entry) {
    return std::to_string(entry.Id) + entry.DisplayName + std::to_string(entry.position);
  }
  template <typename Node>
  static Texts names_of(const Node* list) {
    Texts names;
    for (; list != nullptr; list = list->next) names.push_back(name_of(*list));
    return names;
  }
};

TEST_F(BroadSoftTest, EveryBookHasItsPlaceForEntries) {
  const std::string outer = entry("outer");
  const std::string group = outer + element("groupDirectory", entry("inner"));
  const std::string enterprise = outer + element("enterpriseDirectory", entry("inner"));
  const std::string details = element("directoryDetails", element("firstName", "x"));
  const std::pair<std::string, std::string> cases[] = {
      {personal(group), "0outer"},
      {document("Group", group), "0inner"},
      {document("Group", enterprise), "0outer"},
      {document("Enterprise", enterprise), "0inner"},
      {document("GroupCommon", group), "0outer"},
      {document("EnterpriseCommon", element("commonPhoneEntry", element("name", "x"))), "0x"},
      {document("Group", details, "http://schema.broadsoft.com/xsi-actions"), "0x"},
  };
  for (const auto& [text, name] : cases) EXPECT_EQ(names_of(start(text)), Texts{name}) << text;
}

TEST_F(BroadSoftTest, ADocumentThatIsNoDirectoryChangesNothing) {
  const std::string invalid =
      "load file <" + on_disk("/page.xml") + "> fail! BSFT_BOOK_TYPE_INVALID";
  const BSFT_CONTACT_DATA_T* head = start(personal(entry("Ann")));
  BSFT_CONTACT_POS_T pos = {7, 8, 9, 1};
  for (const std::string& text :
       {element("Personal", entry("Bob")), document("personal", entry("Bob")),
        document("Personal", entry("Bob"), "http://schema.broadsoft.com/XSI"),
        std::string("<!-- no root -->")}) {
    forget_log();
    EXPECT_EQ(add(text), head);
    EXPECT_EQ(append(0, text, pos), nullptr);
    EXPECT_EQ(log(), Texts(2, invalid)) << text;
  }
  forget_log();
  EXPECT_EQ(add("<Personal"), nullptr);
  EXPECT_EQ(append(0, "", pos), nullptr);
  EXPECT_EQ(log(), Texts());
  EXPECT_EQ(numbers_of(pos), (Numbers{7, 8, 9, 1}));
  EXPECT_EQ(full_position(), (Numbers{0, 1, 1, 0}));
  EXPECT_EQ(names_of(add(personal(""))), Texts{"0Ann"});
}

TEST_F(BroadSoftTest, AnEntryKeepsNineteenTexts) {
  constexpr std::size_t kTextBytes = 18 * 64 + 32;
  const Texts texts = {"lastName",  "firstName", "userId",       "groupId",      "number",
                       "extension", "mobile",    "yahooId",      "pager",        "emailAddress",
                       "title",     "location",  "addressLine1", "addressLine2", "city",
                       "state",     "zip",       "country",      "department"};
  std::string content, all;
  for (const std::string& text : texts) {
    content += element(text, "my " + text);
    all += "my " + text;
  }
  start(personal(position(11, 2, 12) + element("entry", content) +
                 "<entry><x><number>1</number></x><firstName>first</firstName><name>second</name>"
                 "<zip>12</zip><zip/>" +
                 element("mobile", std::string(40, '5')) + "</entry>"));
  BSFT_CONTACT_DATA_T data{};
  data.index = 77;
  EXPECT_EQ(cfg_get_broadsoft_contact_data(10, &data), 0);
  EXPECT_EQ(data.index, 77);
  for (const std::string& text : texts) {
    const auto found = phone_test::take(cfg_search_broadsoft_contact_info(("y " + text).c_str()));
    ASSERT_EQ(found.size(), 1u) << text;
    EXPECT_EQ(found[0].index, 10);
    EXPECT_EQ(found[0].flag, -1);
    EXPECT_EQ(std::memcmp(found[0].LastName, data.LastName, kTextBytes), 0);
  }
  std::string seen(data.LastName, kTextBytes);
  seen.erase(std::remove(seen.begin(), seen.end(), '\0'), seen.end());
  EXPECT_EQ(seen, all) << "in the order of the record";
  EXPECT_EQ(phone_test::take(cfg_search_broadsoft_contact_info("")).size(), 2u);
  EXPECT_EQ(cfg_search_broadsoft_contact_info("MY"), nullptr);
  for (int index : {11, 12}) {  // there is no 12: the record stays
    EXPECT_EQ(cfg_get_broadsoft_contact_data(index, &data), 0);
    EXPECT_STREQ(data.FirstName, "second") << "the later element wins";
    EXPECT_STREQ(data.Zip, "");
    EXPECT_STREQ(data.Number, "") << "only the entry's own children count";
    EXPECT_STREQ(data.Mobile, std::string(31, '5').c_str());
  }
}

TEST_F(BroadSoftTest, TheFullListGrowsByPagesAndStartsAfresh) {
  const auto book = [](int start, const std::string& entries) {
    return document("Group", position(start, 2, 5) + element("groupDirectory", entries));
  };
  start(book(1, entry("Ann") + entry("Bob")));
  EXPECT_EQ(full_position(), (Numbers{0, 2, 5, 0}));
  add(book(5, entry("Eve")));
  const auto* list = add(book(3, entry("Cid") + element("note", "") + entry("Dan")));
  EXPECT_EQ(names_of(list), (Texts{"0Ann", "1Bob", "4Eve", "2Cid", "3Dan"}));
  EXPECT_EQ(full_position(), (Numbers{2, 2, 5, 0}));
  add(personal(element("startIndex", "9")));
  EXPECT_EQ(full_position(), (Numbers{8, 2, 5, 0})) << "what a page lacks stays";
  EXPECT_EQ(names_of(start(personal(entry("Zoe") + entry("Yul")))), (Texts{"0Zoe", "1Yul"}));
  EXPECT_EQ(full_position(), (Numbers{0, 2, 2, 0}));
  EXPECT_EQ(cfg_destory_broadsoft_conatct_list(), 0);
  EXPECT_EQ(full_position(), (Numbers{0, 0, 0, 0}));
  EXPECT_EQ(cfg_destory_broadsoft_conatct_list(), -1);
  EXPECT_EQ(cfg_get_broadsoft_conatct_pos(nullptr), nullptr);
}

TEST_F(BroadSoftTest, APageEndsAt500EntriesAndNumbersStayInRange) {
  std::string entries;
  for (int i = 0; i < 700; ++i) entries += entry("N");
  const struct {
    std::string page, last;
    Numbers position;
  } cases[] = {
      {position(101, 700, 9000) + entries, "599N", {100, 700, 800, 0}},
      {entries, "499N", {0, 500, 500, 0}},
      {position(kMost, kMost, 1) + entries, "2147483647N", {kMost - 1, kMost, kMost, 0}},
      {position(kLeast, kLeast, -1) + entry("N"), "-2147483648N", {kLeast, kLeast, -1, 0}},
  };
  for (const auto& [page, last, position] : cases) {
    EXPECT_EQ(names_of(start(personal(page))).back(), last);
    EXPECT_EQ(full_position(), position);
  }
  BSFT_CONTACT_POS_T pos = {0, 0, 0, kMost};
  append(0, personal(position(kLeast, 0, kMost)), pos);
  EXPECT_EQ(numbers_of(pos), (Numbers{kLeast, 0, kMost, kMost}));
  append(0, personal(position(kMost, kMost, kMost)), pos);
  EXPECT_EQ(numbers_of(pos), (Numbers{kMost - 1, kMost, kMost, CFGXML_BROADSOFT_COMPLETE}));
}

TEST_F(BroadSoftTest, ASimpleListIsOrderedWhenItsLastPageIsIn) {
  const std::string bob = "<entry><lastName>B</lastName><firstName>bob</firstName></entry>";
  const struct {
    std::string page;
    Numbers position;
    Texts names;
  } pages[] = {
      {position(1, 2, 5) + bob + entry("Cid"), {0, 2, 5, 1}, {"0bob B0", "1Cid 0"}},
      {position(3, 2, 5) + entry("Ann"), {2, 2, 5, 2}, {"0bob B0", "1Cid 0", "2Ann 0"}},
      {position(5, 1, 5) + entry("ann"), {4, 1, 5, 20}, {"0bob B2", "1Cid 3", "2Ann 1", "4ann 0"}},
  };
  BSFT_CONTACT_POS_T pos{};
  for (const auto& [page, position, names] : pages) {
    EXPECT_EQ(names_of(append(2, personal(page), pos)), names);
    EXPECT_EQ(numbers_of(pos), position);
  }
  const std::string letters(61, 'x');
  const std::string person =
      "<entry>" + element("firstName", letters) + element("lastName", "\xC3\xA4") + "</entry>";
  EXPECT_EQ(names_of(append(3, personal(position(1, 1, 2) + person), pos)),
            Texts{"0" + letters + " 0"})
      << "no half of a character";
}

TEST_F(BroadSoftTest, SimpleListsAreFoundFromTheKeypadUntilTheyAreFreed) {
  const std::string reception =
      document("GroupCommon",
               "<commonPhoneEntry><name>Reception</name><extension>55</extension>"
               "<number>100</number>" +
                   element("mobile", std::string(40, '7')) + "</commonPhoneEntry>");
  BSFT_CONTACT_POS_T pos{};
  const CONTACT_SUMMARY_T* list = append(2, reception, pos);
  ASSERT_NE(append(5, reception, pos), nullptr);
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
  EXPECT_EQ(cfg_destory_broadsoft_simple_conatct_list(2), -1) << "without a message";
  EXPECT_EQ(log(), Texts());
  for (int list : {6, -1}) EXPECT_EQ(cfg_destory_broadsoft_simple_conatct_list(list), -1);
  EXPECT_EQ(log().back().rfind("_cfg_destory_broadsoft_simple_conatct_list ", 0), 0u);
}

}  // namespace
