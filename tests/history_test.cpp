// The call history: what changes do besides the list, the names put to calls, and the file.
#include <cfgxml/history.h>
#include <cfgxml/host.h>
#include <cfgxml/remote.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "support/phone.h"
#include "support/records.h"

namespace {

using phone_test::bytes_of;
using phone_test::take;
using Texts = std::vector<std::string>;

constexpr char kFile[] = "/config/Phone/History/History.xml";

template <std::size_t Capacity>
void set_text(char (&field)[Capacity], const std::string& text) {
  rl_strcpy_s(field, Capacity, text.c_str());
}

class HistoryTest : public phone_test::Phone {
 protected:
  void SetUp() override {
    Phone::SetUp();
    set_item(0, 4, "2001");
    set_item(0, 16, "pbx.example.net");
    set_item(1, 4, "2002");
    set_item(1, 16, "pbx.example.net");
    set_item(1, 18, "5070");
  }

  /// A call to or from a number over account 1 or 2 or (0) one that is not configured.
  static HISTORY_DATA_T call(const std::string& number, int account = 1) {
    HISTORY_DATA_T call{
        0,    7,  1,        3,        "2024-02-29", "23:59:58", "host's", "2001", "pbx.example.net",
        5060, "", "remote", "stored", 5080,         "00:01:02"};
    if (account == 2) {
      set_text(call.LocalSipName, "2002");
      call.LocalSipPort = 5070;
    }
    if (account == 0) set_text(call.LocalSipServer, "old.example.net");
    set_text(call.RemoteSipName, number);
    return call;
  }

  static int add(HISTORY_DATA_T call) {
    EXPECT_EQ(cfg_add_history(&call), 0);
    return call.ID;
  }

  static std::vector<int> ids() {
    std::vector<int> ids;
    for (const auto& call : phone_test::Used(history().Records)) ids.push_back(call.ID);
    return ids;
  }

  /// The names of the calls, the oldest first.
  static Texts names() {
    Texts names;
    for (const auto& call : take(cfg_get_history_summary())) {
      names.insert(names.begin(), call.RemoteDisplayName);
    }
    return names;
  }
};

TEST_F(HistoryTest, ACallIsStoredAndShownWithItsFields) {
  HISTORY_DATA_T record = call("+44 20", 2);
  ASSERT_EQ(cfg_add_history(&record), 0);
  EXPECT_EQ(record.ID, 1);
  EXPECT_EQ(bytes_of(&history().Records[0]), bytes_of(&record));
  const HISTORY_SUMMARY_T shown = take(cfg_get_history_summary()).at(0);
  EXPECT_EQ((std::vector<int>{shown.ID, shown.Type, shown.Status, shown.LocalSipPort,
                              shown.RemoteSipPort}),
            (std::vector<int>{1, 1, 3, 5070, 5080}));
  EXPECT_EQ(
      (Texts{shown.Date, shown.Time, shown.LocalSipName, shown.LocalSipServer, shown.RemoteSipName,
             shown.RemoteSipServer, shown.RemoteDisplayName}),
      (Texts{"2024-02-29", "23:59:58", "2002", "pbx.example.net", "+44 20", "remote", "stored"}));
  EXPECT_EQ(cfg_destory_history_summary(cfg_get_history_summary()), 0);
  struct stat status {};
  ASSERT_EQ(::stat(on_disk(kFile).c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U) << "the history is private";
  HISTORY_DATA_T other{};
  other.Status = record.Status = 5;
  ASSERT_EQ(cfg_mod_history(1, &other), 0);
  EXPECT_EQ(bytes_of(&history().Records[0]), bytes_of(&record)) << "but for its status";
}

TEST_F(HistoryTest, DeferredSavingPostsCodeOneForEveryChangeThatIsOne) {
  history_save_init(1);
  for (int type : {1, 2, 3, 1}) {
    HISTORY_DATA_T record = call("1");
    record.Type = type;
    add(record);
  }
  history().Records[99].Type = 1;
  EXPECT_EQ(cfg_del_all_history(7), 0);
  EXPECT_EQ(cfg_del_history(5), 0);
  EXPECT_EQ(cfg_mod_history(5, &history().Records[0]), 0);
  EXPECT_EQ(posted(), (std::vector<int>(4, 1)));
  EXPECT_EQ(cfg_del_all_history(1), 0);
  EXPECT_EQ(ids(), (std::vector<int>{2, 3}));
  EXPECT_EQ(history().Records[99].Type, 0) << "in slots that are free, too";
  EXPECT_EQ(cfg_mod_history(2, &history().Records[0]), 0);
  EXPECT_EQ(cfg_del_history(2), 0);
  EXPECT_EQ(posted(), (std::vector<int>(7, 1)));
  EXPECT_FALSE(exists(kFile));
  EXPECT_EQ(history_delay_save(), 0);
  EXPECT_TRUE(exists(kFile));
  EXPECT_EQ(cfg_del_all_history(0), 0);
  EXPECT_EQ(ids(), std::vector<int>());
  EXPECT_EQ(posted(), (std::vector<int>(8, 1)));
}

// --- Names

TEST_F(HistoryTest, AnEntryNamesTheCallsOfItsLine) {
  const struct {
    const char *user, *server;
    int port, line;
    const char* name;
  } cases[] = {{"2001", "pbx.example.net", 5060, 1, "Ann"},
               {"2001", "pbx.example.net", 5060, 2, "stored"},
               {"2002", "pbx.example.net", 5070, 1, "stored"},
               {"2002", "pbx.example.net", 5070, 2, "Ann"},
               {"2002", "pbx.example.net", 5070, 0, "Ann"},
               // No account: entries of every line.
               {"2001", "pbx.example.net", 5070, 2, "Ann"},
               {"2001", "PBX.example.net", 5060, 2, "Ann"},
               {"", "", 5060, 1, "Ann"}};  // though an account that is not set up has no texts
  for (const auto& [user, server, port, line, name] : cases) {
    SCOPED_TRACE(testing::Message() << user << "@" << server << ":" << port << ", line " << line);
    if (*user == '\0') {
      for (int key : {4, 16}) set_item(1, key, "");
      set_item(1, 18, "5060");
    }
    history() = {};
    contacts().Contacts[0] = {0, 1, line, "Ann", "100", "", "", "", "", ""};
    HISTORY_DATA_T record = call("100");
    set_text(record.LocalSipName, user);
    set_text(record.LocalSipServer, server);
    record.LocalSipPort = port;
    add(record);
    EXPECT_EQ(names(), Texts{name});
    EXPECT_EQ(cfg_get_history_data(1, &record), 0);
    EXPECT_STREQ(record.RemoteDisplayName, name);
    HISTORY_SUMMARY_SET_T set;
    cfg_get_history_summary_set(&set);
    set.sync_id = 1;
    cfg_summary_sync_out(&set);
    EXPECT_STREQ(set.entries[0].RemoteDisplayName, name);
  }
  EXPECT_STREQ(history().Records[0].RemoteDisplayName, "stored");
}

TEST_F(HistoryTest, TheFirstEntryByNameNamesACallTheFirstInItsTableACaller) {
  CONTACT_DATA_T* contact = contacts().Contacts;
  contact[0] = {0, 1, 0, "Zoe", "100", "555", "-", "", "", ""};
  contact[1] = {0, 2, 2, "Ann", "100", "1001", "", "", "", ""};
  contact[2] = {0, 3, 0, "Long", "-", "-", "1234567890123456789012345678901234", "", "", ""};
  blacklist().Entries[0] = {0, 1, 0, "Other pest", "100", "-", "-", "", "", ""};
  blacklist().Entries[1] = {0, 2, 1, "Pest", "900", "-", "-", "", "", ""};
  const struct {
    const char* number;
    int line;
    const char *shown, *call, *caller;
  } cases[] = {
      {"100", 0, "", "Ann", "Zoe"},
      {"100", 1, "", "Zoe", "Zoe"},
      {"100", 2, "", "Ann", "Zoe"},
      {"100", 2, "Zoe", "Ann", "(none)"},
      {"100", 2, "zoe", "Ann", "Zoe"},
      {"1001", 1, "", "stored", "(none)"},
      {"1001", 2, "", "Ann", "Ann"},
      {"555", 1, "", "Zoe", "Zoe"},
      {"900", 1, "", "Pest", "Pest"},
      {"900", 2, "", "stored", "(none)"},
      {"+100", 0, "", "stored", "(none)"},
      {"", 0, "", "Ann", "Ann"},
      {"1234567890123456789012345678901", 1, "", "Long", "(none)"},  // all that a summary keeps
      {"1234567890123456789012345678901234", 1, "", "stored", "Long"}};
  const auto look_up = [](const char* number, const char* shown, int line) -> std::string {
    const std::unique_ptr<char[]> name(cfg_get_contact_name(number, shown, line));
    return name != nullptr ? name.get() : "(none)";
  };
  Texts expected;
  for (const auto& [number, line, shown, call_name, caller] : cases) {
    EXPECT_EQ(look_up(number, shown, line), caller) << number << " on " << line;
    add(call(number, line));
    expected.push_back(call_name);
  }
  EXPECT_EQ(names(), expected);
  EXPECT_EQ(look_up(nullptr, "", 0), "(none)");
  EXPECT_EQ(look_up("100", nullptr, 0), "(none)");
  for (const char* name : {"Zoe", "Other pest", "stored"}) {  // the lists go one by one
    EXPECT_EQ(names()[1], name);
    (*name == 'Z' ? host().lists().give_contacts(false) : host().lists().give_blacklist(false));
  }
  EXPECT_EQ(look_up("100", "", 1), "(none)");
  host().lists().give_contacts(true);
  EXPECT_EQ(look_up("555", "", 1), "Zoe");
  contact[0].Id = 0;
  EXPECT_EQ(look_up("100", "", 2), "Ann") << "a free slot does not end the scan";
}

TEST_F(HistoryTest, ASetIsListedAsStoredAndNamedOneByOne) {
  contacts().Contacts[0] = {0, 1, 0, "Zoe", "100", "", "", "", "", ""};
  contacts().Contacts[1] = {0, 2, 0, "Ann", "300", "", "", "", "", ""};
  for (const char* number : {"100", "200", "300"}) add(call(number));
  HISTORY_SUMMARY_SET_T set, expected;
  std::memset(&set, 7, sizeof set);
  expected = set;
  cfg_get_history_summary_set(&set);
  expected.count = 3;
  std::fill(std::begin(expected.entries), std::end(expected.entries), HISTORY_SUMMARY_T{});
  const auto calls = take(cfg_get_history_summary());
  for (int i = 0; i < 3; ++i) {
    expected.entries[i] = calls.at(2 - i);
    set_text(expected.entries[i].RemoteDisplayName, "stored");
  }
  EXPECT_EQ(bytes_of(&set), bytes_of(&expected));

  const struct {
    int id, index;
    const char* name;
  } steps[] = {{2, 1, "stored"}, {3, 2, "Ann"}, {77, 0, "Zoe"}};
  for (const auto& [id, index, name] : steps) {
    set.sync_id = expected.sync_id = id;
    cfg_summary_sync_out(&set);
    expected.sync_index = index;
    set_text(expected.entries[index].RemoteDisplayName, name);
    EXPECT_EQ(bytes_of(&set), bytes_of(&expected)) << id;
  }
}

// --- The file

TEST_F(HistoryTest, AnyRootIsReadAndKept) {
  const std::string text(80, 'x');
  write(kFile, R"(<Calls made="by hand"><Call CallDuration=")" + text + R"(" ID="5" Date=")" +
                   text +
                   R"("/><Call ID="0"/><Other ID="6"/><Call ID="7" Type="2"/><Call/></Calls>)");
  ASSERT_EQ(history_init(&history()), 0);
  EXPECT_EQ(ids(), (std::vector<int>{5, 7}));
  EXPECT_EQ(history().Records[0].Date, text.substr(0, 15));
  EXPECT_EQ(history().Records[0].CallDuration, text.substr(0, 11));
  EXPECT_STREQ(history().Records[1].Date, "");
  history().Records[0].ID = 0;  // ends the table
  EXPECT_EQ(history_delay_save(), 0);
  EXPECT_EQ(read(kFile), "<Calls made=\"by hand\"/>\n");
}

TEST_F(HistoryTest, OnlyTheFirstHundredCallsAreRead) {
  std::string text = "<History>";
  for (int id = 150; id > 0; --id) text += "<Call ID='" + std::to_string(id) + "'/>";
  write(kFile, text + "</History>");
  const auto tables = std::make_unique<std::array<HISTORY_DATA_LIST, 2>>();
  ASSERT_EQ(history_init(&tables->front()), 0);
  EXPECT_EQ(tables->front().Records[99].ID, 51);
  EXPECT_EQ(tables->back().Records[0].ID, 0) << "nothing is written after the table";

  history() = tables->front();
  EXPECT_EQ(add(call("1")), 151) << "the call that gives way counts among the largest ids";
  EXPECT_EQ(history().Records[0].ID, 149);
}

TEST_F(HistoryTest, AFileThatDoesNotParseIsQuarantinedAndReadAsEmpty) {
  write(kFile, "<History><Call ID='1'");
  EXPECT_EQ(history_init(&history()), 0);
  EXPECT_EQ(ids(), std::vector<int>());
  EXPECT_FALSE(exists(kFile)) << "nothing is written back";
  EXPECT_EQ(read(kFile + std::string(".corrupt")), "<History><Call ID='1'");
  EXPECT_TRUE(logged(std::string("get_history_xml:<") + kFile + "> no root node, create!"));

  write(kFile, "before<History><Call ID='1'/></History>after</History>");
  ASSERT_EQ(history_init(&history()), 0);
  EXPECT_EQ(add(call("2")), 2) << "text outside the root costs no call";
  EXPECT_NE(read(kFile).find("<Call ID=\"2\""), std::string::npos);
}

TEST_F(HistoryTest, AFailedSaveLeavesTheFileAndTheChange) {
  add(call("1"));
  const std::string before = read(kFile);
  EXPECT_EQ(get_history_xml(kFile, nullptr), -1);
  EXPECT_EQ(log().back().rfind("Input param is NULL! file: adapter_handle_xml, line: ", 0), 0U);
  EXPECT_EQ(save_history_xml(kFile, nullptr), -1);
  EXPECT_TRUE(logged("save_history_xml failed: cfg_get_history_list return NULL."));
  EXPECT_EQ(read(kFile), before);

  std::filesystem::rename(on_disk("/config/Phone/History"), on_disk("/elsewhere"));
  EXPECT_EQ(add(call("2")), 2);
  EXPECT_TRUE(logged("save_history_xml doc.SaveFile failed."));
  EXPECT_EQ(ids(), (std::vector<int>{1, 2}));
}

}  // namespace
