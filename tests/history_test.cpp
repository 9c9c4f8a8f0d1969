#include <cfgxml/history.h>
#include <cfgxml/host.h>
#include <cfgxml/remote.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <deque>
#include <memory>
#include <random>
#include <thread>

#include "support/phone.h"

namespace {

constexpr char kFile[] = "/config/Phone/History/History.xml";

using Names = std::vector<std::string>;

struct DestroyCalls {
  void operator()(HISTORY_SUMMARY_T* header) const { cfg_destory_history_summary(header); }
};
using CallList = std::unique_ptr<HISTORY_SUMMARY_T, DestroyCalls>;

template <std::size_t Capacity>
void set(char (&field)[Capacity], const std::string& text) {
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

  /// A call to or from a number, over account 1 or 2 or (0) one that is not configured.
  static HISTORY_DATA_T call(const std::string& number, int account = 1, int type = 1) {
    HISTORY_DATA_T call{};
    call.Type = type;
    set(call.LocalSipName, account == 2 ? "2002" : "2001");
    set(call.LocalSipServer, account == 0 ? "old.example.net" : "pbx.example.net");
    call.LocalSipPort = account == 2 ? 5070 : 5060;
    set(call.RemoteSipName, number);
    set(call.RemoteDisplayName, "stored");
    return call;
  }

  static int add(HISTORY_DATA_T call) {
    EXPECT_EQ(cfg_add_history(&call), 0);
    return call.ID;
  }

  /// Puts a record behind the others of the host's list.
  static void put_contact(const std::string& name, int line, const std::string& office,
                          const std::string& mobile = "-", const std::string& other = "-") {
    put(contacts().Contacts, name, line, office, mobile, other);
  }
  static void put_black(const std::string& name, int line, const std::string& office) {
    put(blacklist().Entries, name, line, office, "-", "-");
  }

  static std::vector<int> ids() {
    std::vector<int> ids;
    const CallList calls(cfg_get_history_summary());
    for (auto* call = calls.get(); call != nullptr; call = call->next) ids.push_back(call->ID);
    return ids;
  }

  /// The names of the calls, the oldest first.
  static Names names() {
    Names names;
    const CallList calls(cfg_get_history_summary());
    for (auto* call = calls.get(); call != nullptr; call = call->next) {
      names.insert(names.begin(), call->RemoteDisplayName);
    }
    return names;
  }

  static std::string look_up(const char* number, const char* shown, int line) {
    const std::unique_ptr<char[]> name(cfg_get_contact_name(number, shown, line));
    return name != nullptr ? name.get() : "(none)";
  }

 private:
  template <std::size_t Capacity>
  static void put(CONTACT_DATA_T (&table)[Capacity], const std::string& name, int line,
                  const std::string& office, const std::string& mobile, const std::string& other) {
    std::size_t slot = 0;
    while (table[slot].Id >= 1) ++slot;
    CONTACT_DATA_T& record = table[slot];
    record.Id = static_cast<int>(slot) + 1;
    record.Line = line;
    set(record.DisplayName, name);
    set(record.OfficeNumber, office);
    set(record.MobileNumber, mobile);
    set(record.OtherNumber, other);
  }
};

// --- Changes

TEST_F(HistoryTest, RandomChangesAgreeWithAModelAndTheFile) {
  std::mt19937 random(6201);
  std::deque<HISTORY_DATA_T> model;
  for (int step = 0; step < 600; ++step) {
    int largest = 0;
    for (const auto& record : model) largest = std::max(largest, record.ID);
    const int id = 1 + static_cast<int>(random() % static_cast<unsigned>(largest + 2));
    const unsigned action = random() % 100;
    if (action < 75) {
      HISTORY_DATA_T record = call("number <&\"> " + std::to_string(step), 1, 1 + step % 20);
      record.CallID = -step;
      set(record.CallDuration, std::to_string(step));
      std::memset(record.Reserved, step, sizeof record.Reserved);
      ASSERT_EQ(cfg_add_history(&record), 0);
      ASSERT_EQ(record.ID, largest + 1);
      model.push_back(record);
      if (model.size() > 100) model.pop_front();
    } else if (action < 85) {
      HISTORY_DATA_T other = call("other", 0, 99);
      other.Status = step;
      ASSERT_EQ(cfg_mod_history(id, &other), 0);
      for (auto& record : model) record.Status = record.ID == id ? step : record.Status;
    } else if (action < 98) {
      ASSERT_EQ(cfg_del_history(id), 0);
      const auto gone = [&](const auto& record) { return record.ID == id; };
      model.erase(std::remove_if(model.begin(), model.end(), gone), model.end());
    } else {
      const int type = static_cast<int>(random() % 40);
      ASSERT_EQ(cfg_del_all_history(type), 0);
      const auto gone = [&](const auto& record) { return type == 0 || record.Type == type; };
      model.erase(std::remove_if(model.begin(), model.end(), gone), model.end());
    }

    HISTORY_DATA_LIST expected{};
    std::copy(model.begin(), model.end(), expected.Records);
    ASSERT_EQ(std::memcmp(&history(), &expected, sizeof expected), 0) << "step " << step;
    HISTORY_DATA_LIST reloaded{};
    ASSERT_EQ(history_init(&reloaded), 0);
    for (auto& record : expected.Records) std::memset(record.Reserved, 0, sizeof record.Reserved);
    ASSERT_EQ(std::memcmp(&reloaded, &expected, sizeof expected), 0) << "step " << step;
  }
}

TEST_F(HistoryTest, DeferredSavingPostsCodeOneForEveryChangeThatIsOne) {
  history_save_init(1);
  const int id = add(call("1"));
  HISTORY_DATA_T status{};
  cfg_mod_history(id, &status);
  cfg_mod_history(id + 1, &status);
  cfg_del_history(id + 1);
  cfg_del_all_history(7);
  EXPECT_EQ(posted(), (std::vector<int>{1, 1}));
  EXPECT_FALSE(exists(kFile));
  EXPECT_EQ(history_delay_save(), 0);
  EXPECT_TRUE(exists(kFile));
  cfg_del_all_history(1);
  cfg_del_all_history(0);
  EXPECT_EQ(posted(), (std::vector<int>{1, 1, 1, 1}));
}

TEST_F(HistoryTest, BadCallsChangeNothing) {
  const int id = add(call("1"));
  const HISTORY_DATA_LIST before = history();
  HISTORY_DATA_T record{};
  HISTORY_SUMMARY_SET_T set{};
  forget_log();
  EXPECT_EQ(cfg_add_history(nullptr), -1);
  EXPECT_EQ(cfg_mod_history(id, nullptr), -1);
  EXPECT_EQ(cfg_del_history(0), -1);
  EXPECT_EQ(cfg_get_history_data(-2, nullptr), -1);
  EXPECT_EQ(cfg_get_history_data(id, nullptr), -1);
  EXPECT_EQ(cfg_get_history_data(id + 1, &record), -1);
  EXPECT_EQ(cfg_destory_history_summary(nullptr), -1);
  EXPECT_EQ(log(), (Names{"_cfg_add_history failed: history_data is NULL.",
                          "_cfg_mod_history failed: history_data is NULL.",
                          "_cfg_del_history failed: invalid id 0.",
                          "_cfg_get_history_data failed: invalid id -2.",
                          "_cfg_get_history_data failed: history is NULL.",
                          "_cfg_destory_history_summary failed: history_header is NULL."}));
  cfg_get_history_summary_set(nullptr);
  cfg_summary_sync_out(nullptr);

  host().lists().give_history(false);
  forget_log();
  EXPECT_EQ(cfg_add_history(&record), -1);
  EXPECT_EQ(cfg_mod_history(id, &record), -1);
  EXPECT_EQ(cfg_del_history(id), -1);
  EXPECT_EQ(cfg_del_all_history(0), -1);
  EXPECT_EQ(cfg_get_history_data(id, &record), -1);
  EXPECT_EQ(cfg_get_history_summary(), nullptr);
  set.count = 7;
  cfg_get_history_summary_set(&set);
  EXPECT_EQ(set.count, 7);
  Names messages;
  for (const char* worker : {"_cfg_add", "_cfg_mod", "_cfg_del", "_cfg_del_all"}) {
    messages.push_back(worker + std::string("_history failed: cfg_get_history_list return NULL."));
  }
  for (const char* worker :
       {"_cfg_get_history_data", "_cfg_get_history_summary", "cfg_get_history_summary_set"}) {
    messages.push_back(worker + std::string(" failed: cfg_get_history_list return NULL."));
  }
  EXPECT_EQ(log(), messages);
  EXPECT_EQ(record.ID, 0);
  EXPECT_EQ(std::memcmp(&history(), &before, sizeof before), 0);
}

TEST_F(HistoryTest, ThreadsThatListAndAddSeeWholeTables) {
  history_save_init(1);
  std::atomic<bool> adding{true};
  std::thread adder([&] {
    for (int i = 0; i < 2000; ++i) add(call(std::to_string(i)));
    adding = false;
  });
  while (adding) {
    const std::vector<int> seen = ids();
    ASSERT_LE(seen.size(), 100U);
    for (std::size_t i = 1; i < seen.size(); ++i) ASSERT_EQ(seen[i], seen[i - 1] - 1);
  }
  adder.join();
  EXPECT_EQ(ids().front(), 2000);
  EXPECT_EQ(ids().back(), 1901);
}

// --- Names

TEST_F(HistoryTest, CallsAreNamedByTheFirstEntryForTheirNumberAndLine) {
  put_contact("Zoe", 0, "100");
  put_contact("Ann", 2, "-", "100");
  put_contact("Long", 0, "-", "-", "1234567890123456789012345678901234");
  put_black("Ann the second", 0, "100");
  put_black("Pest", 1, "900");
  add(call("100", 1));  // Ann holds for line 2 only
  add(call("100", 2));  // Ann sorts before Zoe
  add(call("100", 0));  // no account: every line
  add(call("900", 1));
  add(call("900", 2));
  add(call("1234567890123456789012345678901234"));  // the summaries keep 31 characters
  add(call("1234567890123456789012345678901"));
  EXPECT_EQ(names(), (Names{"Zoe", "Ann", "Ann", "Pest", "stored", "stored", "Long"}));

  HISTORY_DATA_T record{};
  EXPECT_EQ(cfg_get_history_data(4, &record), 0);
  EXPECT_STREQ(record.RemoteDisplayName, "Pest");
  EXPECT_EQ(cfg_get_history_data(5, &record), 0);
  EXPECT_STREQ(record.RemoteDisplayName, "stored");
  EXPECT_STREQ(history().Records[3].RemoteDisplayName, "stored");

  host().lists().give_contacts(false);
  EXPECT_EQ(names()[0], "Ann the second");
  host().lists().give_blacklist(false);
  EXPECT_EQ(names()[0], "stored");
}

/// The name of the first entry for this number that holds for every line or the call's, or "".
std::string name_in(const CONTACT_SUMMARY_T* entry, const std::string& number, int account) {
  for (; entry != nullptr; entry = entry->next) {
    const bool on_line = entry->Line == 0 || account == 0 || entry->Line == account;
    if (on_line && (number == entry->OfficeNumber || number == entry->MobileNumber ||
                    number == entry->OtherNumber)) {
      return entry->DisplayName;
    }
  }
  return "";
}

TEST_F(HistoryTest, NamesAreThoseOfAWalkPerCall) {
  std::mt19937 random(5301);
  history_save_init(1);
  const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
  const auto number = [&] { return below(8) == 0 ? "" : std::to_string(below(150)); };
  for (int i = 0; i < 60; ++i) {
    put_contact("Contact " + std::to_string(below(90)), below(4), number(), number(), number());
    put_black("Pest " + std::to_string(i), below(4), number());
  }
  CONTACT_SUMMARY_T* contacts = cfg_get_contact_summary("");
  CONTACT_SUMMARY_T* blacklist = cfg_get_black_summary();
  for (int round = 0; round < 20; ++round) {
    cfg_del_all_history(0);
    Names expected;
    for (int i = 0; i < 100; ++i) {
      const std::string remote = number();
      const int account = below(3);
      add(call(remote, account));
      std::string name = name_in(contacts, remote, account);
      if (name.empty()) name = name_in(blacklist, remote, account);
      expected.push_back(name.empty() ? "stored" : name);
    }
    ASSERT_EQ(names(), expected);
  }
  cfg_destory_contact_summary(contacts);
  cfg_destory_contact_summary(blacklist);
}

TEST_F(HistoryTest, ASetIsListedAsStoredAndNamedOneByOne) {
  put_contact("Zoe", 0, "100");
  put_contact("Ann", 0, "100");
  put_contact("Second line", 2, "200");
  put_contact("Long", 0, "1234567890123456789012345678901234");
  for (const char* number : {"100", "200", "1234567890123456789012345678901234"}) add(call(number));
  HISTORY_SUMMARY_SET_T set;
  std::memset(&set, 7, sizeof set);
  cfg_get_history_summary_set(&set);
  EXPECT_EQ(set.count, 3);
  EXPECT_EQ(set.Reserved, 0x07070707);
  EXPECT_EQ(set.sync_index, 0x07070707);
  EXPECT_EQ(set.entries[2].ID, 3);
  EXPECT_EQ(set.entries[2].LocalSipPort, 5060);
  EXPECT_STREQ(set.entries[2].RemoteDisplayName, "stored");
  const HISTORY_SUMMARY_T zero{};
  for (int i = 3; i < 100; ++i) {
    EXPECT_EQ(std::memcmp(&set.entries[i], &zero, sizeof zero), 0);
  }

  const auto name_of = [&](int id) {
    set.sync_id = id;
    cfg_summary_sync_out(&set);
    return std::string(set.entries[set.sync_index].RemoteDisplayName);
  };
  EXPECT_EQ(name_of(2), "stored");
  EXPECT_EQ(name_of(3), "Long");
  EXPECT_EQ(set.sync_index, 2);
  EXPECT_STREQ(set.entries[0].RemoteDisplayName, "stored");
  EXPECT_EQ(name_of(77), "Zoe");
  EXPECT_EQ(set.sync_index, 0);
}

TEST_F(HistoryTest, ACallerIsLookedUpInTableOrder) {
  put_contact("Gone", 0, "100");
  put_contact("Zoe", 0, "100", "555");
  put_contact("Ann", 2, "100", "1001", "");
  put_black("Other pest", 0, "100");
  put_black("Pest", 1, "900");
  contacts().Contacts[0].Id = 0;  // passed over; the scan goes on
  EXPECT_EQ(look_up("100", "", 0), "Zoe");
  EXPECT_EQ(look_up("100", "Zoe", 2), "(none)");
  EXPECT_EQ(look_up("100", "zoe", 2), "Zoe");
  EXPECT_EQ(look_up("1001", "", 1), "(none)");
  EXPECT_EQ(look_up("1001", "", 2), "Ann");
  EXPECT_EQ(look_up("900", "", 1), "Pest");
  EXPECT_EQ(look_up("900", "", 2), "(none)");
  EXPECT_EQ(look_up("+100", "", 0), "(none)");
  EXPECT_EQ(look_up("", "", 0), "Ann");
  EXPECT_EQ(look_up(nullptr, "", 0), "(none)");
  EXPECT_EQ(look_up("100", nullptr, 0), "(none)");
  EXPECT_EQ(log(), Names());

  host().lists().give_blacklist(false);
  EXPECT_EQ(look_up("555", "", 1), "Zoe");
  EXPECT_EQ(look_up("900", "", 1), "(none)");
  EXPECT_TRUE(logged("_cfg_get_contact_name failed: cfg_get_black_list return NULL."));
  host().lists().give_blacklist(true);
  host().lists().give_contacts(false);
  EXPECT_EQ(look_up("900", "", 1), "(none)");
  EXPECT_TRUE(logged("_cfg_get_contact_name failed: cfg_get_contact_list return NULL."));
}

// --- The file

TEST_F(HistoryTest, TheFileHoldsEveryFieldButTheHostsOwn) {
  HISTORY_DATA_T record = call("+44 20 <7946>");
  record.CallID = -8;
  record.Status = 3;
  set(record.Date, "2024-02-29");
  set(record.Time, "23:59:58");
  set(record.RemoteSipServer, "pbx");
  record.RemoteSipPort = 5080;
  set(record.CallDuration, "00:01:02");
  add(record);
  EXPECT_EQ(read(kFile),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<History>
    <Call ID="1" CallID="-8" Type="1" Status="3" Date="2024-02-29" Time="23:59:58" )"
            R"(LocalSipName="2001" LocalSipServer="pbx.example.net" LocalSipPort="5060" )"
            R"(RemoteSipName="+44 20 &lt;7946&gt;" RemoteDisplayName="stored" )"
            R"(RemoteSipServer="pbx" RemoteSipPort="5080" CallDuration="00:01:02"/>
</History>
)");
  struct stat status {};
  ASSERT_EQ(::stat(on_disk(kFile).c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U) << "the history is private";
}

TEST_F(HistoryTest, AnyRootIsReadAndKept) {
  const std::string text(80, 'x');
  write(kFile, R"(<Calls made="by hand"><Call CallDuration=")" + text + R"(" ID="5" Date=")" +
                   text +
                   R"("/><Call ID="0"/><Other ID="6"/><Call ID="7" Type="2"/><Call/></Calls>)");
  ASSERT_EQ(history_init(&history()), 0);
  EXPECT_EQ(ids(), (std::vector<int>{7, 5}));
  EXPECT_EQ(history().Records[0].Date, text.substr(0, 15));
  EXPECT_EQ(history().Records[0].CallDuration, text.substr(0, 11));
  EXPECT_STREQ(history().Records[1].Date, "");
  cfg_del_all_history(0);
  EXPECT_EQ(read(kFile), "<Calls made=\"by hand\"/>\n");
}

TEST_F(HistoryTest, OnlyTheFirstHundredCallsAreRead) {
  std::string text = "<History>";
  for (int id = 150; id > 0; --id) text += "<Call ID='" + std::to_string(id) + "'/>";
  write(kFile, text + "</History>");
  const auto tables = std::make_unique<std::array<HISTORY_DATA_LIST, 2>>();
  ASSERT_EQ(history_init(&tables->front()), 0);
  EXPECT_EQ(tables->front().Records[99].ID, 51);
  EXPECT_EQ(tables->back().Records[0].ID, 0) << "nothing is written behind the table";

  history() = tables->front();
  EXPECT_EQ(add(call("1")), 151) << "the call that gives way counts among the largest ids";
  EXPECT_EQ(history().Records[0].ID, 149);
}

TEST_F(HistoryTest, AFileThatDoesNotParseIsKeptAsideAndReadAsEmpty) {
  write(kFile, "<History><Call ID='1'");
  EXPECT_EQ(history_init(&history()), 0);
  EXPECT_EQ(history().Records[0].ID, 0);
  EXPECT_FALSE(exists(kFile)) << "nothing is written back";
  EXPECT_EQ(read(kFile + std::string(".corrupt")), "<History><Call ID='1'");
  EXPECT_TRUE(logged(std::string("get_history_xml:<") + kFile + "> no root node, create!"));
  EXPECT_EQ(get_history_xml(nullptr, nullptr), -1);
}

TEST_F(HistoryTest, TextOutsideTheRootCostsNoCall) {
  write(kFile, "before<History><Call ID='1'/></History>behind</History>");
  ASSERT_EQ(history_init(&history()), 0);
  EXPECT_EQ(history().Records[0].ID, 1);
  EXPECT_EQ(add(call("2")), 2);
  history() = {};
  ASSERT_EQ(history_init(&history()), 0);
  EXPECT_EQ(history().Records[1].ID, 2) << "what was written can be read";
  EXPECT_FALSE(exists(kFile + std::string(".corrupt")));
}

TEST_F(HistoryTest, AFailedSaveLeavesTheFileAndTheChange) {
  add(call("1"));
  const std::string before = read(kFile);
  EXPECT_EQ(save_history_xml(kFile, nullptr), -1);
  EXPECT_TRUE(logged("save_history_xml failed: cfg_get_history_list return NULL."));
  EXPECT_EQ(read(kFile), before);

  std::filesystem::rename(on_disk("/config/Phone/History"), on_disk("/elsewhere"));
  EXPECT_EQ(add(call("2")), 2);
  EXPECT_TRUE(logged("save_history_xml doc.SaveFile failed."));
  EXPECT_EQ(ids(), (std::vector<int>{2, 1}));
}

}  // namespace
