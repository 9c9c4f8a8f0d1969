#include <cfgxml/history.h>
#include <cfgxml/remote.h>
#include <sys/stat.h>

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
  HistoryTest() {
    contact_.Id = entry_.Id = 0;
  }

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
    const int largest = [&] {
      int id = 0;
      for (const auto& record : model) id = std::max(id, record.ID);
      return id;
    }();
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

TEST_F(HistoryTest, NewCallsTakeTheLargestIdPlusOne) {
  history().Records[0].ID = 3;
  history().Records[1].ID = 9;
  EXPECT_EQ(add(call("1")), 10);
  EXPECT_EQ(cfg_del_history(10), 0);
  EXPECT_EQ(add(call("2")), 10);
  EXPECT_EQ(ids(), (std::vector<int>{10, 9, 3}));
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
  HISTORY_DATA_T record = call("2");
  EXPECT_EQ(cfg_add_history(nullptr), -1);
  EXPECT_TRUE(logged("_cfg_add_history failed: history_data is NULL."));
  EXPECT_EQ(cfg_mod_history(id, nullptr), -1);
  EXPECT_TRUE(logged("_cfg_mod_history failed: history_data is NULL."));
  EXPECT_EQ(cfg_del_history(0), -1);
  EXPECT_TRUE(logged("_cfg_del_history failed: invalid id 0."));
  EXPECT_EQ(cfg_get_history_data(-2, nullptr), -1);
  EXPECT_TRUE(logged("_cfg_get_history_data failed: invalid id -2."));
  EXPECT_EQ(cfg_get_history_data(id, nullptr), -1);
  EXPECT_TRUE(logged("_cfg_get_history_data failed: history is NULL."));
  EXPECT_EQ(cfg_get_history_data(id + 1, &record), -1);
  EXPECT_EQ(cfg_destory_history_summary(nullptr), -1);
  cfg_get_history_summary_set(nullptr);
  cfg_summary_sync_out(nullptr);

  HISTORY_SUMMARY_SET_T set{};
  set.count = 7;
  host().lists().give_history(false);
  EXPECT_EQ(cfg_add_history(&record), -1);
  EXPECT_EQ(cfg_mod_history(id, &record), -1);
  EXPECT_EQ(cfg_del_history(id), -1);
  EXPECT_EQ(cfg_del_all_history(0), -1);
  EXPECT_EQ(cfg_get_history_data(id, &record), -1);
  EXPECT_EQ(cfg_get_history_summary(), nullptr);
  cfg_get_history_summary_set(&set);
  for (const char* worker :
       {"_cfg_add_history", "_cfg_mod_history", "_cfg_del_history", "_cfg_del_all_history",
        "_cfg_get_history_data", "_cfg_get_history_summary", "cfg_get_history_summary_set"}) {
    EXPECT_TRUE(logged(std::string(worker) + " failed: cfg_get_history_list return NULL."));
  }
  EXPECT_EQ(set.count, 7);
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

TEST_F(HistoryTest, NamesAreThoseOfAWalkPerCall) {
  std::mt19937 random(5301);
  history_save_init(1);
  const auto number = [&] { return std::string(random() % 3, '7') + std::to_string(random() % 9); };
  for (int i = 0; i < 60; ++i) {
    put_contact("C" + std::to_string(random() % 90), static_cast<int>(random() % 4), number(),
                random() % 4 == 0 ? "" : number(), number());
    put_black("B" + std::to_string(i), static_cast<int>(random() % 4), number());
  }
  for (int round = 0; round < 20; ++round) {
    cfg_del_all_history(0);
    Names expected;
    CONTACT_SUMMARY_T* books[] = {cfg_get_contact_summary(""), cfg_get_black_summary()};
    for (int i = 0; i < 100; ++i) {
      const int account = static_cast<int>(random() % 3);
      const std::string called = random() % 20 == 0 ? "" : number() + (i % 5 == 0 ? "8" : "");
      add(call(called, account));
      std::string name = "stored";
      for (const auto* entry = books[0]; name == "stored" && entry != nullptr; entry = entry->next) {
        const bool on_line = entry->Line == 0 || account == 0 || entry->Line == account;
        if (on_line && (called == entry->OfficeNumber || called == entry->MobileNumber ||
                        called == entry->OtherNumber)) {
          name = entry->DisplayName;
        }
        if (entry->next == nullptr && entry->DisplayName[0] == 'C') entry = nullptr;
        if (entry == nullptr) break;
      }
      expected.push_back(name);
    }
    for (CONTACT_SUMMARY_T* book : books) cfg_destory_contact_summary(book);
    EXPECT_EQ(names(), expected);
  }
}
}  // namespace
