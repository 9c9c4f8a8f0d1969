// The five remote phonebooks: both layouts of their files, the current book, and the index.
#include <cfgxml/remote.h>
#include <cfgxml/search.h>

#include "support/phone.h"
#include "support/records.h"

namespace {

using phone_test::bytes_of;

const std::string kBook = "/tmp/remote_contact.xml";

class RemoteTest : public phone_test::Phone {
 protected:
  CONTACT_SUMMARY_T* load(int book, const std::string& xml) {
    const std::string path = kBook + std::to_string(book);
    write(path, xml);
    return cfg_get_remote_contact_summary(path.c_str());
  }

  static std::string text(const CONTACT_SUMMARY_T* record) {
    std::string text;
    for (; record != nullptr; record = record->next) {
      text += std::to_string(record->Id) + "@" + std::to_string(record->Line) + ":" +
              record->DisplayName + ":" + record->OfficeNumber + ":" + record->MobileNumber + ":" +
              record->OtherNumber + ";";
    }
    return text;
  }
};

TEST_F(RemoteTest, OnlyTheLastCharacterNumbersTheBook) {
  const std::pair<std::string, int> cases[] = {
      {kBook + "0", 0}, {kBook + "4", 4}, {kBook + "5", -1}, {kBook + "10", -1},
      {kBook + "x", 0}, {kBook, -1},      {"", -1},          {"/TMP/remote_contact.xml0", -1}};
  for (const auto& [path, book] : cases) {
    EXPECT_EQ(cfg_get_remote_book_id(path.c_str()), book) << path;
  }
  EXPECT_EQ(cfg_get_remote_book_id(nullptr), -1);
}

TEST_F(RemoteTest, FlatAndGroupedLayoutsAndDirectoryEntriesAreRead) {
  const std::string five =
      "<Telephone/><Telephone>1</Telephone><Telephone>2</Telephone><Telephone>3</Telephone>"
      "<Telephone>4</Telephone>";
  const std::pair<std::string, std::string> cases[] = {
      {"<Contact Id='7' Line='3' Name='Zed' Office='1'/><Contact Id='8' DisplayName='alice'"
       " OfficeNumber='2' Mobile='' MobileNumber='3' Other='4'/><Contact Id='9' Office='5'/>"
       "<Group><Contact Name='below a later group'/></Group>",
       "7@3:Zed:1::;8@0:alice:2:3:4;"},
      {"<Group><Contact Name='b'/><Sub><Contact Name='deeper'/></Sub></Group>"
       "<Other><Contact Name='a' OtherNumber='1'/></Other>",
       "0@0:a:::1;0@0:b:::;"},
      {"<Contact Id='9' Name='first'/>"
       "<DirectoryEntry><Telephone>1</Telephone><Name>late</Name></DirectoryEntry>"
       "<DirectoryEntry><Name>second</Name>" +
           five +
           "</DirectoryEntry>"
           "<Contact Name='attributes no longer count'/>"
           "<Contact><Name>third</Name><Telephone>5</Telephone></Contact>",
       "9@0:first:::;2@0:second:1:2:3;3@0:third:5::;"},
      {"<DirectoryEntry><Name>" + std::string(70, 'n') + "</Name><Telephone>" +
           std::string(40, '5') + "</Telephone></DirectoryEntry>",
       "1@0:" + std::string(63, 'n') + ":" + std::string(31, '5') + "::;"}};
  for (const auto& [entries, records] : cases) {
    EXPECT_EQ(text(load(0, "<Any>" + entries + "</Any>")), records) << entries;
    cfg_destory_remote_conatct_list((kBook + "0").c_str());
  }
}

TEST_F(RemoteTest, ABookHoldsFiveHundredRecordsAndIsReadOnce) {
  std::string entries, records;
  for (int i = 0; i < 600; ++i) {
    entries += "<Contact Name='same' Id='" + std::to_string(i) + "'/>";
    if (i < 500) records += std::to_string(i) + "@0:same:::;";
  }
  CONTACT_SUMMARY_T* head = load(2, "<D>" + entries + "</D>");
  EXPECT_EQ(text(head), records) << "equal names keep document order";
  EXPECT_EQ(load(2, "<D><Contact Name='changed'/></D>"), head);
}

TEST_F(RemoteTest, TheCurrentBookFollowsTheLastOneLoadedOrAttempted) {
  EXPECT_EQ(cfg_get_remote_contact_summary_clone_id(), 0) << "the first without a list";
  load(0, "<D><Contact Name='Ann' Id='1'/></D>");
  load(1, "<D><Contact Name='Bert' Id='1' Line='2' Office='2' Mobile='3' Other='4'/></D>");
  EXPECT_EQ(cfg_get_remote_contact_summary_clone_id(), 1);
  const struct {
    int book, id;
    CONTACT_DATA_T record;  // of which only name and numbers are filled
    const char* message;
  } cases[] = {{1,
                1,
                {0, 0, 9, "Bert", "2", "3", "4", "g", "", ""},
                "Id: 1, name: Bert, office: 2, mobile: 3, other: 4."},
               {1, 7, {0, 0, 9, "", "", "", "", "g", "", ""}, ""},
               {0,
                1,
                {0, 0, 9, "Ann", "", "", "", "g", "", ""},
                "Id: 1, name: Ann, office: , mobile: , other: ."}};
  for (const auto& [book, id, expected, message] : cases) {
    forget_log();
    EXPECT_EQ(cfg_set_remote_contact_summary_clone_id(book), 0);
    CONTACT_DATA_T record{0, 0, 9, "", "", "", "", "g", "", ""};
    EXPECT_EQ(cfg_get_remote_contact_data(id, &record), 0);
    EXPECT_EQ(bytes_of(&record), bytes_of(&expected)) << expected.DisplayName;
    EXPECT_EQ(log().empty() ? "" : log().back(), message);
  }
  for (int book : {5, -1}) EXPECT_EQ(cfg_set_remote_contact_summary_clone_id(book), -1);
  EXPECT_EQ(cfg_get_remote_contact_summary_clone_id(), 0);

  for (int book = 1; book < 5; ++book) load(book, "<D><Contact Name='A'/></D>");
  cfg_destory_remote_conatct_list((kBook + "3").c_str());
  EXPECT_EQ(cfg_get_remote_contact_summary_clone_id(), 4) << "another one is freed";
  load(3, "<D><Contact Name='A'/></D>");
  cfg_destory_remote_conatct_list((kBook + "3").c_str());
  EXPECT_EQ(cfg_get_remote_contact_summary_clone_id(), 3) << "none is current";
  for (const char* file : {"<!-- no root -->", "<D><Contact"}) {
    cfg_set_remote_contact_summary_clone_id(1);
    EXPECT_EQ(load(3, file), nullptr);
    EXPECT_EQ(cfg_get_remote_contact_summary_clone_id(), 3);
  }
  EXPECT_EQ(log().back(), "load file </tmp/remote_contact.xml3> fail!");
}

TEST_F(RemoteTest, ASearchCopiesTheMatchesOfTheCurrentBookInOrder) {
  load(1,
       "<D><Contact Name='b' Id='1' Line='2' Office='200'/><Contact Name='a2' Id='2'/>"
       "<Contact Name='c' Id='3' Mobile='12'/><Contact Name='d' Id='4' Other='2'/>"
       "<Contact Name='e' Id='5' Other='1'/></D>");
  CONTACT_SUMMARY_T* matches = cfg_search_remote_contact_info("2");
  EXPECT_EQ(text(matches), "2@0:a2:::;1@0:b:200::;3@0:c::12:;4@0:d:::2;");
  cfg_destory_contact_summary(matches);
  EXPECT_EQ(phone_test::take(cfg_search_remote_contact_info("")).size(), 5u);
}

TEST_F(RemoteTest, ALoadedBookEntersAndLeavesTheSearch) {
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
