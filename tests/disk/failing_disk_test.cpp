// Every call to the disk fails once, in turn, in every way it can: the operation says so, no file
// is worse for it, nothing is left lying about, and the next operation succeeds.
#include <cfgxml/csv.h>
#include <cfgxml/dialrule.h>
#include <cfgxml/history.h>
#include <cfgxml/host.h>
#include <cfgxml/message.h>
#include <cfgxml/notify.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>

#include <cerrno>
#include <tuple>

#include "disk/disk_phone.h"

namespace disk_test {
namespace {

using recorded_calls::Kind;

/// What can be wrong with a call.
std::vector<int> errors_of(Kind kind) {
  switch (kind) {
    case Kind::kOpen:
      return {EIO, EACCES, EMFILE};
    case Kind::kCreate:
      return {ENOSPC, EIO, EACCES, EMFILE};
    case Kind::kRename:
      return {ENOSPC, EIO, EACCES};
    case Kind::kRemove:
    case Kind::kLook:
      return {EIO, EACCES};
    case Kind::kWrite:
    case Kind::kSync:
      return {EIO, ENOSPC};
    case Kind::kRead:
    case Kind::kMode:
    case Kind::kClose:
      return {EIO};
  }
  return {};
}

/// How an operation's caller learns of a save that failed: by the result; not at all, since the
/// memory has the change and the next save will write it; or not at all, since the shell's result
/// is not looked at, and memory and file stay as they were together.
enum class Tells { kResult, kNothing, kNothingAndChangesNothing };

/// An operation on the profile of the fixture, and another one on the same file.
struct Operation {
  const char* what;
  int (*make)();
  int (*next)();
  Tells tells = Tells::kResult;
  const char* damaged = nullptr;  // a file that holds nothing readable before
};

std::string upload_path(const char* name) {
  return ::host::the_host().on_disk((std::string("/") + name).c_str());
}

template <int (*Upload)(const char*)>
int upload() {
  return Upload(upload_path("upload.xml").c_str());
}

DIAL_NOW_DATA_T now_rule(const char* text) {
  DIAL_NOW_DATA_T rule{};
  rl_strcpy_s(rule.Rule, sizeof rule.Rule, text);
  return rule;
}
int add_now(const char* text) {
  const DIAL_NOW_DATA_T rule = now_rule(text);
  return cfg_add_dialnow_data(&rule);
}
int add_replace(const char* text) {
  DIAL_REPLACE_DATA_T rule{};
  rl_strcpy_s(rule.Prefix, sizeof rule.Prefix, text);
  return cfg_add_dialreplace_data(&rule);
}
int add_block() {
  const BLOCKOUT_DATA_T rule{0, 1, "0190", nullptr};
  return cfg_add_blockout_data(&rule);
}
int add_message() {
  SMS_DATA_T sms{};
  return cfg_add_inbox_data(&sms);
}
int save_notifications() {
  const NOTIFICATION_T one{"b", 2, nullptr};
  return cfg_save_notification_list(&one);
}
int add_contact(const char* name) {
  CONTACT_DATA_T one = contact(name);
  return cfg_add_contact_data(&one);
}
int add_entry(const char* name) {
  CONTACT_DATA_T one = contact(name);
  return cfg_add_black_data(&one);
}
int add_call() {
  HISTORY_DATA_T one{};
  return cfg_add_history(&one);
}
int add_both() { return add_contact("Next") != 0 ? -1 : add_entry("Last"); }
int export_csv() {
  CONTACT_SUMMARY_T* summary = cfg_get_contact_summary("");
  const int result = save_contact_csv(upload_path("upload.csv").c_str(), summary);
  cfg_destory_contact_summary(summary);
  return result;
}
int save_community() {
  GROUP_SUMMARY_T work{};
  work.Id = 1;
  COMMUNITY_DATA_T data{{nullptr, nullptr}, &work, nullptr};
  return save_community_xml(upload_path("upload.xml").c_str(), &data);
}

const Operation kOperations[] = {
    {"add a contact", [] { return add_contact("Cyd"); }, [] { return add_contact("Next"); },
     Tells::kNothing},
    {"add an entry", [] { return add_entry("Oz"); }, [] { return add_entry("Next"); },
     Tells::kNothing},
    {"add a call", add_call, add_call, Tells::kNothing},
    {"move a contact", [] { return cfg_mov_contact_data(2); }, add_both, Tells::kNothing},
    {"move an entry", [] { return cfg_mov_black_data(1); }, add_both, Tells::kNothing},
    {"write the contacts", contact_delay_save, contact_delay_save},
    {"write the blacklist", black_delay_save, black_delay_save},
    {"write the history", history_delay_save, history_delay_save},
    {"add a rule", [] { return add_now("2xx"); }, [] { return add_now("3xx"); }},
    {"set a rule",
     [] {
       const DIAL_NOW_DATA_T rule = now_rule("4xx");
       return cfg_set_dialnow_data(1, &rule);
     },
     [] { return add_now("3xx"); }},
    {"remove a rule", [] { return cfg_remove_dialnow_data(1); }, [] { return add_now("3xx"); }},
    {"replace rule", [] { return add_replace("2"); }, [] { return add_replace("3"); }},
    {"block rule", add_block, add_block},
    {"message", add_message, add_message},
    {"empty the inbox", cfg_remove_inbox_all, add_message},
    {"notifications", save_notifications, save_notifications},
    {"community file", save_community, save_community},
    {"export", export_csv, export_csv},
    {"upload contacts", upload<cfg_upload_contact>, contact_delay_save,
     Tells::kNothingAndChangesNothing},
    {"upload a list of contacts",
     [] { return cfg_upload_contact(upload_path("upload.csv").c_str()); }, contact_delay_save},
    {"upload a blacklist", upload<cfg_upload_blacklist>, black_delay_save,
     Tells::kNothingAndChangesNothing},
    {"upload rules", upload<cfg_upload_dialnow>, [] { return add_now("3xx"); },
     Tells::kNothingAndChangesNothing},
    {"upload replace rules", upload<cfg_upload_dialreplace>, [] { return add_replace("3"); },
     Tells::kNothingAndChangesNothing},
    {"add to damaged rules", [] { return add_now("2xx"); }, [] { return add_now("3xx"); },
     Tells::kResult, kDialNow},
    {"write over damaged contacts", contact_delay_save, contact_delay_save, Tells::kResult,
     kContacts},
    {"write over a damaged history", history_delay_save, history_delay_save, Tells::kResult,
     kHistory},
    {"write over damaged notifications", save_notifications, save_notifications, Tells::kResult,
     kNotifications},
};

class FailingDisk : public DiskPhone {
 protected:
  void prepare(const Operation& operation) {
    recorded_calls::stop();
    start_anew();
    if (operation.damaged != nullptr) write(operation.damaged, kDamaged);
  }

  /// Each file is what it was or what it becomes, in one piece, and there is no other.
  static void expect_each_old_or_new(const Files& now, const Files& before, const Files& after) {
    for (const auto& [path, text] : now) {
      const auto old_file = before.find(path);
      const auto new_file = after.find(path);
      ASSERT_TRUE(old_file != before.end() || new_file != after.end()) << "left behind: " << path;
      EXPECT_TRUE((old_file != before.end() && old_file->second == text) ||
                  (new_file != after.end() && new_file->second == text))
          << path << " holds\n"
          << text;
    }
    for (const auto& [path, text] : before) EXPECT_EQ(now.count(path), 1u) << path << " is lost";
  }

  /// A file that could not be read may be kept, though the next attempt would have read it.
  void forgive_quarantine(Files& now) const {
    for (const auto& [path, text] : before_) {
      const auto kept = now.find(path + ".corrupt");
      const bool expected = after_.count(path + ".corrupt") != 0;
      if (kept != now.end() && kept->second == text && !expected) now.erase(kept);
    }
  }

  bool told_of_it() const {
    for (const std::string& message : log()) {
      for (const char* words : {" failed", " fail!"}) {
        if (message.find(words) != std::string::npos) return true;
      }
    }
    return false;
  }

  /// Lets one call of the operation fail, and looks at what came of it.
  void fail_once(const Operation& operation, std::size_t call, int error,
                 void (*fail)(std::size_t call, int error) = recorded_calls::fail) {
    SCOPED_TRACE(std::string(operation.what) + ", call " + std::to_string(call) + ": " +
                 ::strerror(error) + (fail == recorded_calls::fail ? "" : ", short write"));
    ++figures().faults;
    prepare(operation);
    recorded_calls::watch(root());
    fail(call, error);
    const int result = operation.make();
    ASSERT_TRUE(recorded_calls::failed());
    recorded_calls::stop();

    Files now = files();
    forgive_quarantine(now);
    expect_each_old_or_new(now, before_, after_);
    if (error == 0 || (operation.tells == Tells::kResult && result == 0)) {
      EXPECT_TRUE(now == after_) << "it says that all went well";
    }
    EXPECT_TRUE(result == 0 || result == -1) << result;
    if (operation.make != export_csv) {
      EXPECT_TRUE(told_of_it() || (result == 0 && now == after_)) << "nothing in the log";
    }
    const bool may_be_unchanged =
        result != 0 || operation.tells == Tells::kNothingAndChangesNothing;
    EXPECT_TRUE(in_memory() == memory_after_ || (may_be_unchanged && in_memory() == memory_before_))
        << in_memory();
    EXPECT_EQ(operation.next(), 0);
    for (const auto& [path, text] : files()) {
      EXPECT_EQ(path.find(".tmp"), std::string::npos) << path;
      EXPECT_EQ(path.find(".before"), std::string::npos) << path;
    }
  }

  void learn(const Operation& operation) {
    prepare(operation);
    before_ = files();
    memory_before_ = in_memory();
    recorded_calls::watch(root());
    ASSERT_EQ(operation.make(), 0) << operation.what;
    calls_ = recorded_calls::calls();
    recorded_calls::stop();
    after_ = files();
    memory_after_ = in_memory();
    ++figures().operations;
  }

  std::vector<Kind> calls_;
  Files before_;
  Files after_;
  std::string memory_before_;
  std::string memory_after_;
};

TEST_F(FailingDisk, EveryCallFailsOnceInEveryWay) {
  for (const Operation& operation : kOperations) {
    learn(operation);
    for (std::size_t call = 0; call < calls_.size(); ++call) {
      for (const int error : errors_of(calls_[call])) fail_once(operation, call, error);
      if (calls_[call] != Kind::kWrite) continue;
      for (const int error : {0, ENOSPC})
        fail_once(operation, call, error, recorded_calls::cut_short);
    }
  }
}

/// A file that cannot be read, and a change of it.
struct Unread {
  const char* path;
  int (*change)();
};

const Unread kUnread[] = {
    {kContacts, contact_delay_save},
    {kContacts, upload<cfg_upload_contact>},
    {kBlacklist, black_delay_save},
    {kBlacklist, upload<cfg_upload_blacklist>},
    {kHistory, history_delay_save},
    {kDialNow, [] { return add_now("2xx"); }},
    {kDialNow, upload<cfg_upload_dialnow>},
    {kDialReplace, [] { return add_replace("2"); }},
    {kBlockOut, add_block},
    {kMessages, add_message},
    {kNotifications, save_notifications},
};

TEST_F(FailingDisk, AFileThatCanNotBeReadIsQuarantinedUnlessItIsForWantOfResources) {
  const std::tuple<Kind, int, bool> kErrors[] = {
      {Kind::kRead, EIO, true},     {Kind::kOpen, EACCES, true},  {Kind::kOpen, EPERM, true},
      {Kind::kOpen, EMFILE, false}, {Kind::kOpen, ENFILE, false}, {Kind::kOpen, ENOMEM, false},
      {Kind::kOpen, EINTR, false},
  };
  for (const Unread& one : kUnread) {
    for (const auto& [kind, error, lasting] : kErrors) {
      const std::string corrupt = std::string(one.path) + ".corrupt";
      SCOPED_TRACE(std::string(one.path) + ": " + ::strerror(error));
      start_anew();
      const std::string old = read(one.path);
      recorded_calls::watch(root());
      recorded_calls::fail_always(kind, on_disk(one.path), error);
      EXPECT_EQ(one.change(), lasting ? 0 : -1);
      recorded_calls::stop();
      EXPECT_EQ(read(lasting ? corrupt : one.path), old);
      EXPECT_NE(one.change(), -1);
      EXPECT_NE(read(one.path), old);
      EXPECT_EQ(exists(corrupt), lasting);
      EXPECT_FALSE(exists(std::string(one.path) + ".before-change"));
    }
  }
}

}  // namespace
}  // namespace disk_test
