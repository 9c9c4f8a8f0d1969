// What lies beside a data file, or in its place, when it is opened or saved: the remains of a cut,
// links, and files that could not be read.
#include <cfgxml/dialrule.h>
#include <cfgxml/history.h>
#include <cfgxml/host.h>
#include <cfgxml/message.h>
#include <cfgxml/notify.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <future>

#include "faults/disk/disk_phone.h"
#include "support/paths.h"

namespace disk_test {
namespace {

namespace fs = std::filesystem;
using namespace cfgxml::paths;  // NOLINT(google-build-using-namespace): the files are its subject
using operations::kDamaged;

constexpr char kRules[] = "/import/dialnow.xml";
constexpr char kColleagues[] = "/import/new-colleagues.xml";
constexpr char kColleague[] = "Ida Nygård";
constexpr const char* kBooks[] = {kContacts, kBlacklist, kHistory};

int add_rule(const char* text) {
  DIAL_NOW_DATA_T rule{};
  rl_strcpy_s(rule.Rule, sizeof rule.Rule, text);
  return cfg_add_dialnow_data(&rule);
}

/// Saves when nearly everything else of the process is gone, if a test asks for it: it was there
/// before the plug-in was given its root.
struct LateSave {
  ~LateSave() {
    if (wanted) ::_exit(add_rule("9xx"));
  }
  bool wanted = false;
} late_save;

class LeftBehind : public DiskPhone {
 protected:
  static int add_contact() {
    CONTACT_DATA_T one{};
    operations::fill(one.DisplayName, "Cyd");
    return cfg_add_contact_data(&one);
  }
  static int init(const char* path) {
    if (path == kContacts) return contact_init(&contacts());
    return path == kBlacklist ? black_init(&blacklist()) : history_init(&history());
  }
  int upload_rules() const { return cfg_upload_dialnow(on_disk(kRules).c_str()); }
  int upload_contacts() const { return cfg_upload_contact(on_disk(kColleagues).c_str()); }
  bool has(const std::string& path, const char* text) const {
    return read(path).find(text) != std::string::npos;
  }
  unsigned mode_of(const char* path) const {
    struct stat status {};
    return ::lstat(on_disk(path).c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
  }
  std::pair<uid_t, gid_t> owner_of(const char* path) const {
    struct stat status {};
    EXPECT_EQ(::lstat(on_disk(path).c_str(), &status), 0);
    return {status.st_uid, status.st_gid};
  }
  /// Locks a file as the one who is at work on it does.
  int lock(const std::string& path) const {
    const int descriptor = ::open(on_disk(path).c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(::flock(descriptor, LOCK_EX), 0);
    return descriptor;
  }
};

TEST_F(LeftBehind, TemporaryFilesOfTheSameFileThatNobodyHoldsAreSwept) {
  const std::string file = kDialNow;
  for (const char* end : {".tmpAbCd12", ".tmpQQQQQQ", ".tmpAbCd123", ".tmp", ".bak"}) {
    write(file + end, "x");
  }
  write(std::string(kBlockOut) + ".tmpAbCd12", "x");
  fs::create_symlink(on_disk(kRules), on_disk(file + ".tmpLiNk00"));
  const int held = lock(file + ".tmpQQQQQQ");
  EXPECT_EQ(add_rule("8xx"), 0);
  ::close(held);
  EXPECT_FALSE(exists(file + ".tmpAbCd12"));
  for (const char* end : {".tmpQQQQQQ", ".tmpAbCd123", ".tmp", ".bak", ".tmpLiNk00"}) {
    EXPECT_TRUE(exists(file + end)) << end;
  }
  EXPECT_TRUE(exists(std::string(kBlockOut) + ".tmpAbCd12")) << "another file's";
  EXPECT_TRUE(exists(kRules));
}

TEST_F(LeftBehind, AnInterruptedChangeIsUndoneUnlessItIsStillOnItsWay) {
  const std::string before = std::string(kDialNow) + ".before-change";
  fs::rename(on_disk(kDialNow), on_disk(before));
  const int held = lock(before);
  EXPECT_EQ(upload_rules(), -1) << "it does not end";
  std::future<int> ended = std::async(std::launch::async, ::close, held);
  write(kDialNow, "<Dial><DialN");
  EXPECT_EQ(add_rule("8xx"), 0);
  DIAL_NOW_DATA_T rule{};
  EXPECT_EQ(cfg_get_dialnow_data(1, &rule), 0);
  EXPECT_STREQ(rule.Rule, "1xx");
  EXPECT_FALSE(exists(before));
  EXPECT_FALSE(exists(std::string(kDialNow) + ".corrupt"));
}

TEST_F(LeftBehind, ACommandThatOutlivesItsHostIsWaitedFor) {
  int alive[2];  // closed by the last process of the other host
  ASSERT_EQ(::pipe(alive), 0);
  const pid_t other_host = ::fork();
  if (other_host == 0) {
    ::host::run_commands_with([](const std::string& command) {
      const std::string late = "sleep 0.3; " + command;
      if (::fork() == 0) ::execl("/bin/sh", "sh", "-c", late.c_str(), nullptr);
      return ::raise(SIGKILL);
    });
    ::_exit(upload_rules());
  }
  ::close(alive[1]);
  ASSERT_EQ(::waitpid(other_host, nullptr, 0), other_host);
  EXPECT_EQ(add_rule("8xx"), 0);
  EXPECT_EQ(::read(alive[0], &alive[1], 1), 0);
  ::close(alive[0]);
  EXPECT_TRUE(has(kDialNow, "1xx"));
  EXPECT_TRUE(has(kDialNow, "8xx"));
  EXPECT_FALSE(exists(std::string(kDialNow) + ".before-change"));
}

TEST_F(LeftBehind, ASaveFromTheLastDestructorsFindsItsFile) {
  EXPECT_EXIT((late_save.wanted = true, std::exit(1)), ::testing::ExitedWithCode(0), "");
  EXPECT_TRUE(has(kDialNow, "9xx"));
}

TEST_F(LeftBehind, ARefusedMoveTouchesNoFile) {
  blacklist().Entries[0] = contacts().Contacts[0];
  recorded_calls::watch(root());
  EXPECT_EQ(cfg_mov_contact_data(1), 7);
  EXPECT_EQ(cfg_mov_black_data(1), 7);
  for (const int id : {0, 77}) {
    EXPECT_EQ(cfg_mov_contact_data(id), -1);
    EXPECT_EQ(cfg_mov_black_data(id), -1);
  }
  EXPECT_TRUE(recorded_calls::take_events().empty());
}

TEST_F(LeftBehind, LinksAreNeverFollowedWhenSomethingIsWritten) {
  write("/outside", "not the phone's");
  const std::string outside = on_disk("/outside");
  fs::permissions(outside, fs::perms(0777));
  const std::string now = kDialNow;
  // The name of a temporary file cannot be foretold; the fixed names can.
  for (const char* end : {".corrupt", ".before-change"})
    fs::create_symlink(outside, on_disk(now + end));
  EXPECT_EQ(add_rule("8xx"), 0);
  fs::remove(on_disk(now + ".before-change"));
  write(kDialNow, kDamaged);
  EXPECT_EQ(cfg_remove_dialnow_data(9), 0);
  EXPECT_EQ(read(now + ".corrupt"), kDamaged);

  EXPECT_EQ(read("/outside"), "not the phone's");
}

TEST_F(LeftBehind, ALinkInPlaceOfAFileLeadsToTheOneThatIsReplaced) {
  fs::rename(on_disk(kMessages), on_disk("/messages"));
  fs::create_symlink("../../../messages", on_disk(kMessages));
  EXPECT_EQ(cfg_remove_inbox_data(1), 0);
  EXPECT_FALSE(has("/messages", "Hamburg offer"));
  write("/messages", kDamaged);
  EXPECT_EQ(cfg_remove_inbox_all(), 0);
  EXPECT_EQ(read("/messages.corrupt"), kDamaged);
  EXPECT_TRUE(fs::is_symlink(on_disk(kMessages)));

  fs::rename(on_disk(kDialNow), on_disk("/rules"));
  fs::create_symlink(on_disk("/rules"), on_disk(kDialNow));
  ::host::run_commands_with([this](const std::string&) {
    write("/rules", "<B>");
    return 1;
  });
  EXPECT_EQ(upload_rules(), 0);
  EXPECT_TRUE(has("/rules", "1xx")) << "put back";
  EXPECT_TRUE(fs::is_symlink(on_disk(kDialNow)));

  fs::remove(on_disk(kHistory));
  fs::create_symlink(on_disk("/calls"), on_disk(kHistory));
  EXPECT_EQ(history_delay_save(), 0);
  EXPECT_NE(read("/calls"), "") << "where there was no file yet";
  EXPECT_TRUE(fs::is_symlink(on_disk(kHistory)));

  fs::remove(on_disk("/calls"));
  ASSERT_EQ(::mkfifo(on_disk("/calls").c_str(), 0600), 0);
  EXPECT_EQ(history_init(&history()), -1);
  EXPECT_EQ(history_delay_save(), -1);
  EXPECT_TRUE(fs::is_fifo(on_disk("/calls"))) << "not the library's to remove";
}

TEST_F(LeftBehind, FilesKeepTheirOwnerAndModeAndPrivateOnesStartPrivate) {
  const mode_t umask = ::umask(027);
  // Only root may give files away.
  const bool gives = ::geteuid() == 0;
  const std::pair<uid_t, gid_t> owner = gives ? std::make_pair(12u, 34u) : owner_of(kDialNow);
  for (const char* path : {kDialNow, kMessages}) {
    EXPECT_EQ(::chown(on_disk(path).c_str(), owner.first, owner.second), 0);
  }
  for (const char* path : {kHistory, kNotifications}) fs::remove(on_disk(path));
  fs::permissions(on_disk(kDialNow), fs::perms(0640));
  fs::permissions(on_disk(kMessages), fs::perms(0644));
  HISTORY_DATA_T call{};
  const NOTIFICATION_T one{"a", 1, nullptr};
  EXPECT_EQ(cfg_add_history(&call), 0);
  EXPECT_EQ(cfg_save_notification_list(&one), 0);
  EXPECT_EQ(upload_rules(), 0);
  EXPECT_EQ(add_rule("8xx"), 0);
  EXPECT_EQ(cfg_remove_inbox_data(1), 0);
  EXPECT_EQ(mode_of(kHistory), 0600u);
  EXPECT_EQ(mode_of(kNotifications), 0640u) << "what the umask leaves";
  EXPECT_EQ(mode_of(kDialNow), 0640u);
  EXPECT_EQ(mode_of(kMessages), 0644u) << "it had this mode";
  write(kMessages, kDamaged);
  fs::permissions(on_disk(kMessages), fs::perms(0644));
  EXPECT_EQ(cfg_remove_inbox_all(), 0);
  EXPECT_EQ(mode_of(kMessages), 0600u) << "a new file in place of a damaged one";
  EXPECT_EQ(owner_of(kDialNow), owner);
  write(kDialNow, kDamaged);
  fs::permissions(on_disk(kDialNow), fs::perms(0604));
  EXPECT_EQ(::chown(on_disk(kDialNow).c_str(), owner.first, owner.second), 0);
  EXPECT_EQ(add_rule("3xx"), 0);
  EXPECT_EQ(mode_of(kDialNow), 0604u) << "the one of the damaged file";
  EXPECT_EQ(owner_of(kDialNow), owner);
  ::umask(umask);
}

TEST_F(LeftBehind, AFileThatCouldNotBeReadIsNotWrittenOver) {
  const operations::State before = world_.state();
  for (const int error : {EIO, EMFILE, EACCES, ENOMEM}) {
    start();
    for (const char* path : kBooks) {
      recorded_calls::watch(root());
      recorded_calls::fail(1, error);  // after the look for an interrupted change
      EXPECT_EQ(init(path), path == kHistory && (error == EIO || error == EACCES) ? 0 : -1)
          << "only the history is read again before it is given up";
      EXPECT_TRUE(recorded_calls::failed());
      recorded_calls::stop();
    }
    EXPECT_TRUE(same(world_.state(), before));
  }

  // A phone that starts like this has empty lists; its first save keeps what it never read.
  host().lists().clear();
  HISTORY_DATA_T call{};
  EXPECT_EQ(add_contact(), 0);
  EXPECT_EQ(cfg_add_history(&call), 0);
  for (const char* path : {kContacts, kHistory}) {
    EXPECT_EQ(read(std::string(path) + ".corrupt"), before.files.at(path));
    fs::remove(on_disk(std::string(path) + ".corrupt"));
  }
  EXPECT_TRUE(has(kContacts, "Cyd"));
  EXPECT_EQ(contact_delay_save(), 0);
  EXPECT_FALSE(exists(std::string(kContacts) + ".corrupt")) << "once";
}

TEST_F(LeftBehind, AnUploadWhoseCommandDoesNothingOrFailsHalfWayLeavesTheFile) {
  const std::string old = read(kDialNow);
  ::host::run_commands_with([](const std::string&) { return 0; });
  EXPECT_EQ(upload_rules(), 0);
  EXPECT_EQ(read(kDialNow), old);
  ::host::run_commands_with([this](const std::string&) {
    write(kDialNow, "<B>");
    return 1;
  });
  EXPECT_EQ(upload_rules(), 0);
  EXPECT_EQ(read(kDialNow), old);
  EXPECT_EQ(copy_contact_xml(on_disk(kColleagues).c_str()), 1) << "the shell's result";
  fs::remove(on_disk(kDialNow));
  EXPECT_EQ(upload_rules(), 0);
  EXPECT_FALSE(exists(kDialNow)) << "half a file where there was none";
}

TEST_F(LeftBehind, ASaveThatBeganBeforeAnUploadDoesNotUndoIt) {
  std::future<int> upload;
  recorded_calls::before_temporary_file([&] {  // the save has its copy of the list by now
    upload = std::async(std::launch::async, [this] { return upload_contacts(); });
    upload.wait_for(std::chrono::milliseconds(50));
  });
  EXPECT_EQ(contact_delay_save(), 0);
  EXPECT_EQ(upload.get(), 0);
  EXPECT_STREQ(contacts().Contacts[0].DisplayName, kColleague);
  EXPECT_TRUE(has(kContacts, kColleague));
}

TEST_F(LeftBehind, ASaveDuringAnUploadNeitherUndoesNorSpoilsIt) {
  std::future<int> save;
  ::host::run_commands_with([&](const std::string&) {
    // As cp -f does it, with a thread of the host's that writes the contacts half way.
    write(kContacts, "<B><Gro");
    save = std::async(std::launch::async, contact_delay_save);
    EXPECT_EQ(save.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    fs::copy_file(on_disk(kColleagues), on_disk(kContacts), fs::copy_options::overwrite_existing);
    return 0;
  });
  EXPECT_EQ(upload_contacts(), 0);
  EXPECT_EQ(save.get(), 0);
  EXPECT_STREQ(contacts().Contacts[0].DisplayName, kColleague);
  EXPECT_TRUE(has(kContacts, kColleague));
  EXPECT_FALSE(exists(std::string(kContacts) + ".corrupt"));
}

TEST_F(LeftBehind, AnUndoneMoveWhoseSaveFailsLeavesTheContactInItsFile) {
  std::vector<std::size_t> creations;
  for (const bool fails : {false, true}) {
    start();
    for (int i = 0; i != CFGXML_BLACKLIST_CAPACITY; ++i) blacklist().Entries[i].Id = i + 1;
    const CONTACT_DATA_T moved = contacts().Contacts[0];
    recorded_calls::watch(root());
    if (fails) recorded_calls::fail(creations.back(), ENOSPC);
    EXPECT_EQ(cfg_mov_contact_data(moved.Id), 18);
    EXPECT_EQ(recorded_calls::failed(), fails);
    const auto& calls = recorded_calls::calls();
    for (std::size_t i = 0; !fails && i != calls.size(); ++i) {
      if (calls[i] == recorded_calls::Kind::kCreate) creations.push_back(i);
    }
    recorded_calls::stop();
    EXPECT_TRUE(has(kContacts, moved.DisplayName)) << fails;
  }
}

}  // namespace
}  // namespace disk_test
