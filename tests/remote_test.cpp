// The five remote phonebooks: both layouts of their files, the current book, and the index.
#include <cfgxml/remote.h>
#include <cfgxml/search.h>

#include <string>
#include <vector>

#include "support/phone.h"

namespace {

const std::string kBook = "/tmp/remote_contact.xml";

class RemoteTest : public phone_test::Phone {
 protected:
  void TearDown() override {
    for (int book = 0; book < CFGXML_REMOTE_BOOK_COUNT; ++book) {
      CfgTrieRemoveRemoteBookInfo(book);
      cfg_destory_remote_conatct_list((kBook + std::to_string(book)).c_str());
    }
    Phone::TearDown();
  }

  CONTACT_SUMMARY_T* load(int book, const std::string& xml) {
    const std::string path = kBook + std::to_string(book);
    write(path, xml);
    return cfg_get_remote_contact_summary(path.c_str());
  }

  static std::string text(const CONTACT_SUMMARY_T* head) {
    std::string result;
    for (; head != nullptr; head = head->next) {
      result += std::to_string(head->Id) + ":" + head->DisplayName + ":" + head->OfficeNumber +
                ":" + head->MobileNumber + ":" + head->OtherNumber + ";";
    }
    return result;
  }
};

TEST_F(RemoteTest, OnlyTheLastCharacterNumbersTheBook) {
  EXPECT_EQ(cfg_get_remote_book_id((kBook + "4").c_str()), 4);
  EXPECT_EQ(cfg_get_remote_book_id((kBook + "5").c_str()), -1);
  EXPECT_EQ(cfg_get_remote_book_id((kBook + "10").c_str()), -1);
  EXPECT_EQ(cfg_get_remote_book_id((kBook + "x").c_str()), 0);
  EXPECT_EQ(cfg_get_remote_book_id(kBook.c_str()), -1);
  EXPECT_EQ(cfg_get_remote_book_id("/TMP/remote_contact.xml0"), -1);
  EXPECT_EQ(cfg_get_remote_book_id(nullptr), -1);
}

TEST_F(RemoteTest, FlatAndGroupedLayoutsAreRead) {
  EXPECT_EQ(text(load(0,
                      "<Any><Contact Id='7' Line='3' Name='Zed' Office='1'/>"
                      "<Contact Id='8' DisplayName='alice' OfficeNumber='2' Mobile='' "
                      "MobileNumber='3' Other='4'/><Contact Id='9' Office='5'/>"
                      "<Group><Contact Name='below a later group'/></Group></Any>")),
            "7:Zed:1::;8:alice:2:3:4;");
  EXPECT_EQ(text(load(1,
                      "<Any><Group><Contact Name='b'/><Sub><Contact Name='deeper'/></Sub></Group>"
                      "<Other><Contact Name='a'/></Other></Any>")),
            "0:a:::;0:b:::;");
}

TEST_F(RemoteTest, DirectoryEntriesNumberThemselvesAndChangeTheRuleForContacts) {
  const std::string five =
      "<Telephone/><Telephone>1</Telephone><Telephone>2</Telephone><Telephone>3</Telephone>"
      "<Telephone>4</Telephone>";
  EXPECT_EQ(text(load(0,
                      "<D><Contact Id='9' Name='first'/>"
                      "<DirectoryEntry><Telephone>1</Telephone><Name>late</Name></DirectoryEntry>"
                      "<DirectoryEntry><Name>second</Name>" +
                          five +
                          "</DirectoryEntry>"
                          "<Contact Name='attributes no longer count'/>"
                          "<Contact><Name>third</Name><Telephone>5</Telephone></Contact></D>")),
            "9:first:::;2:second:1:2:3;3:third:5::;");
}

TEST_F(RemoteTest, BookHoldsFiveHundredRecordsAndIsReadOnce) {
  std::string xml = "<D>";
  for (int i = 0; i < 600; ++i) xml += "<Contact Name='same' Id='" + std::to_string(i) + "'/>";
  CONTACT_SUMMARY_T* head = load(2, xml + "</D>");
  int count = 0;
  for (const CONTACT_SUMMARY_T* node = head; node != nullptr; node = node->next) {
    EXPECT_EQ(node->Id, count++) << "equal names keep document order";
  }
  EXPECT_EQ(count, 500);
  EXPECT_EQ(load(2, "<D><Contact Name='changed'/></D>"), head);
}

TEST_F(RemoteTest, CurrentBookFollowsTheLastOneLoadedOrAttempted) {
  EXPECT_EQ(cfg_get_remote_contact_summary_clone_id(), 0)
      << "none loaded: the first without a list";
  load(0, "<D><Contact Name='Ann' Id='1' Office='100'/></D>");
  load(1, "<D><Contact Name='Bert' Id='1' Office='200'/><Contact Name='Anna' Id='2'/></D>");
  EXPECT_EQ(cfg_get_remote_contact_summary_clone_id(), 1);

  CONTACT_DATA_T record{};
  record.Line = 9;
  EXPECT_EQ(cfg_get_remote_contact_data(1, &record), 0);
  EXPECT_STREQ(record.DisplayName, "Bert");
  EXPECT_EQ(record.Line, 9) << "only name and numbers are filled";
  EXPECT_EQ(cfg_get_remote_contact_data(77, &record), 0);
  EXPECT_STREQ(record.DisplayName, "Bert");
  EXPECT_EQ(cfg_get_remote_contact_data(1, nullptr), 5);

  CONTACT_SUMMARY_T* matches = cfg_search_remote_contact_info("Ann");
  EXPECT_EQ(text(matches), "2:Anna:::;");
  cfg_destory_contact_summary(matches);
  EXPECT_EQ(cfg_search_remote_contact_info(nullptr), nullptr);

  EXPECT_EQ(cfg_set_remote_contact_summary_clone_id(0), 0);
  EXPECT_EQ(cfg_get_remote_contact_data(1, &record), 0);
  EXPECT_STREQ(record.DisplayName, "Ann");
  EXPECT_EQ(cfg_set_remote_contact_summary_clone_id(5), -1);
  EXPECT_EQ(cfg_set_remote_contact_summary_clone_id(-1), -1);

  EXPECT_EQ(load(3, "<D><Contact"), nullptr);
  EXPECT_TRUE(logged("load file </tmp/remote_contact.xml3> fail!"));
  EXPECT_EQ(cfg_get_remote_contact_data(1, &record), -1);
  EXPECT_TRUE(logged("_cfg_get_remote_contact_data failed, g_remote_contact is NULL!"));
  EXPECT_EQ(cfg_get_remote_contact_summary(""), nullptr);
  EXPECT_EQ(cfg_get_remote_contact_summary("/tmp/other"), nullptr);
  EXPECT_TRUE(logged("_cfg_get_remote_contact_summary failed: remote_id=-1"));
  EXPECT_EQ(cfg_destory_remote_conatct_list("/tmp/other"), -1);
}

TEST_F(RemoteTest, LoadedBookEntersAndLeavesTheSearch) {
  load(4, "<D><Contact Name='bob' Office='1'/><Contact Name='Alice'/></D>");
  EXPECT_EQ(CfgTrieReloadRemoteBookInfo(4), 0);
  TRIE_RESULT_T* hits = nullptr;
  ASSERT_GT(CfgTrieSearchVague("2", &hits), 0);
  EXPECT_STREQ(static_cast<CONTACT_SUMMARY_T*>(hits->records[5][0])->DisplayName, "Alice");
  EXPECT_STREQ(static_cast<CONTACT_SUMMARY_T*>(hits->records[5][1])->DisplayName, "bob");
  EXPECT_EQ(CfgTrieRemoveRemoteBookInfo(4), 3);
  EXPECT_EQ(CfgTrieRemoveRemoteBookInfo(4), 0);
  EXPECT_EQ(CfgTrieReloadRemoteBookInfo(3), -1) << "not loaded";
  EXPECT_EQ(CfgTrieReloadRemoteBookInfo(5), -1);
  EXPECT_EQ(CfgTrieRemoveRemoteBookInfo(-1), 0);
}

}  // namespace
