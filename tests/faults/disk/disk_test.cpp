// Every operation that touches files, with a disk that fails. The power is cut at every moment of
// it: whatever the disk holds then, the phone finds what it had before or what it has after. Every
// call to the disk fails once in every way it can: the operation says so, no file is worse for it,
// nothing is left lying about, and the next attempt succeeds.
//
// Each operation runs as it is, with its changes saved later, moves also with one of their lists
// saved later; and once for each data file, which is damaged.
#include <cfgxml/binding.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>
#include <tuple>

#include "faults/disk/disk_phone.h"
#include "faults/disk/disk_states.h"
#include "operations/operation.h"
#include "support/paths.h"

namespace disk_test {
namespace {

using operations::Files;
using operations::is_one_of;
using operations::Operation;
using recorded_calls::Kind;

constexpr const char* kDataFiles[] = {cfgxml::paths::kContacts,    cfgxml::paths::kBlacklist,
                                      cfgxml::paths::kHistory,     cfgxml::paths::kDialNow,
                                      cfgxml::paths::kDialReplace, cfgxml::paths::kBlockOut,
                                      cfgxml::paths::kMessages,    cfgxml::paths::kNotifications};

/// What all operations add up to; printed at the end.
struct Figures : ::testing::Environment {
  int operations = 0, states = 0, loads = 0, faults = 0;
  void TearDown() override {
    std::printf("disk: %d operations, %d states after a cut (%d of them different), %d faults\n",
                operations, states, loads, faults);
  }
};
Figures& figures = *static_cast<Figures*>(::testing::AddGlobalTestEnvironment(new Figures));

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
    default:
      return {EIO};
  }
}

// What the results and the log do not tell, as names with "|" between them.
/// The result of the shell's copy is not looked at: memory and file stay as they were then.
constexpr char kCopies[] =
    "cfg_upload_contact|cfg_upload_blacklist|cfg_upload_dialnow|cfg_upload_dialreplace|"
    "copy_contact_xml";
/// What is read is empty, though the file can not be replaced, or read.
constexpr char kReaders[] = "get_history_xml|history_init|get_contact_csv";
constexpr char kSilent[] = "save_contact_csv|copy_contact_xml";
/// The host's file is the host's; and what is undone meets a second fault.
constexpr char kOthersFaults[] = "cfg_match_timezone_name|mov_contact_data_undone";

/// How an operation is run, and what came of it.
struct Setting {
  bool contacts_later = false;  // saved then, by the host's saver
  bool others_later = false;
  const char* damaged = nullptr;
};
struct Course {
  operations::Result result;
  operations::State before, after;
  std::vector<recorded_calls::Known> known;
  std::vector<recorded_calls::Event> events;
  std::vector<Kind> calls;
  bool failed = false;
};

class DiskTest : public DiskPhone, public ::testing::WithParamInterface<Operation> {
 protected:
  Course follow(const Setting& setting, const std::function<void()>& fault = nullptr) {
    const Operation& operation = GetParam();
    operations::PlainChoices plain;
    start();
    if (operation.prepare != nullptr) operation.prepare(world_);
    if (setting.damaged != nullptr) world_.write(setting.damaged, operations::kDamaged);
    forget_log();
    contact_save_init(setting.contacts_later ? 1 : 0);
    black_save_init(setting.others_later ? 1 : 0);
    history_save_init(setting.others_later ? 1 : 0);
    const bool all_later = setting.contacts_later && setting.others_later;
    if (all_later) make(plain);
    Course course;
    world_.watch(
        [&] {
          course.before = state();
          course.known = recorded_calls::watch(root());
          if (fault) fault();
        },
        [&] {
          if (!all_later) host().saver().stop();
          course.events = recorded_calls::take_events();
          course.calls = recorded_calls::calls();
          course.failed = recorded_calls::failed();
          recorded_calls::stop();
          course.after = state();
        });
    if (all_later) {
      world_.call([] { return host().saver().stop(); });
    } else {
      course.result = make(plain);
    }
    world_.watch(nullptr, nullptr);
    return course;
  }

  operations::Result make(operations::Choices& choices) {
    const Operation& operation = GetParam();
    const operations::HostLock hold(operation.callers_lock ? operation.lock
                                                           : operations::Lock::kNone);
    return operation.call(world_, choices);
  }

  /// A cut at any moment leaves what was there before or what is there after; when the operation
  /// has returned, the latter.
  void cut_at_every_moment(const Course& course) {
    disk_states::Disk disk(course.known);
    const std::string before = found(course, course.before.files);
    const std::string after = found(course, course.after.files);
    for (const recorded_calls::Event& event : course.events) {
      disk.apply(event);
      for (const Files& state : disk.after_a_cut()) {
        ++figures.states;
        const std::string now = found(course, below_root(state));
        if (now != before) ASSERT_EQ(now, after) << "before it was\n" << before << describe(state);
      }
    }
    for (const Files& state : disk.after_a_cut()) {
      ASSERT_EQ(found(course, below_root(state)), after) << "it has returned\n" << describe(state);
    }
  }

  /// A file that can't be read for good is kept under another name when it is replaced; one that
  /// can't be for want of resources stays.
  void refuse_to_read(const char* path, const Course& plain) {
    static constexpr std::tuple<Kind, int, bool> kErrors[] = {
        {Kind::kRead, EIO, true},     {Kind::kOpen, EACCES, true},  {Kind::kOpen, EPERM, true},
        {Kind::kOpen, EMFILE, false}, {Kind::kOpen, ENFILE, false}, {Kind::kOpen, ENOMEM, false},
        {Kind::kOpen, EINTR, false}};
    const std::string& old = plain.before.files.at(path);
    for (const auto& [kind, error, lasting] : kErrors) {
      SCOPED_TRACE(std::string(path) + ": " + ::strerror(error));
      Course now = follow({}, [&, wrong = kind, number = error] {
        recorded_calls::fail_always(wrong, on_disk(path), number);
      });
      EXPECT_EQ(now.after.files[path + std::string(".corrupt")], lasting ? old : "");
      EXPECT_EQ(now.after.files[path] == old, !lasting);
      EXPECT_EQ(now.after.files.count(path + std::string(".before-change")), 0u);
    }
  }

  /// Lets each call fail: the first time that a course like this is seen in every way, then in one.
  void fail_every_call(const Setting& setting, const Course& plain) {
    if (is_one_of(kOthersFaults, GetParam().title())) return;
    static std::set<std::vector<Kind>> seen;
    const bool in_every_way = seen.insert(plain.calls).second;
    for (std::size_t call = 0; call != plain.calls.size(); ++call) {
      std::vector<int> errors = errors_of(plain.calls[call]);
      if (!in_every_way) errors.resize(1);
      for (const int error : errors) fail_once(setting, plain, call, error, recorded_calls::fail);
      if (plain.calls[call] != Kind::kWrite || !in_every_way) continue;
      for (const int error : {0, ENOSPC}) {
        fail_once(setting, plain, call, error, recorded_calls::cut_short);
      }
    }
  }

  void fail_once(const Setting& setting, const Course& plain, std::size_t call, int error,
                 void (*fail)(std::size_t call, int error)) {
    SCOPED_TRACE("call " + std::to_string(call) + ": " + ::strerror(error) +
                 (fail == recorded_calls::fail ? "" : ", short write"));
    ++figures.faults;
    Course now = follow(setting, [&] { fail(call, error); });
    ASSERT_TRUE(now.failed);
    forgive_quarantine(now.after.files, plain);
    expect_each_old_or_new(now.after.files, plain.before.files, plain.after.files);

    const bool same_result = now.result == plain.result;
    const bool done = same_result && now.result.text == GetParam().success;
    const bool written = now.after.files == plain.after.files;
    const bool unchanged = same(now.after, plain.before);
    const bool dropped = done && GetParam().has(operations::kSaveDropped);
    const bool copied = unchanged && is_one_of(kCopies, GetParam().name);
    const bool reads = is_one_of(kReaders, GetParam().name);
    const bool mixed = dropped || reads || GetParam().has(operations::kBlocksMixed);
    EXPECT_TRUE(error != 0 || (same_result && written));
    EXPECT_TRUE(written || !done || dropped || copied || reads) << "says that all went well";
    EXPECT_TRUE((same_result && written) || told_of_it() || plain.events.empty() || reads ||
                is_one_of(kSilent, GetParam().name))
        << "nothing in the log";
    EXPECT_TRUE(mixed || now.after.blocks == plain.after.blocks ||
                (now.after.blocks == plain.before.blocks && (!done || copied)));
    expect_next_attempt_succeeds(plain, unchanged && !same_result, dropped);
  }

  /// A file that could not be read may be kept, though the next attempt would have read it.
  static void forgive_quarantine(Files& now, const Course& plain) {
    for (const auto& [path, text] : plain.before.files) {
      const auto kept = now.find(path + ".corrupt");
      if (kept != now.end() && kept->second == text && plain.after.files.count(kept->first) == 0) {
        now.erase(kept);
      }
    }
  }

  /// The same once more, when nothing came of it; what memory holds is written by the next save.
  void expect_next_attempt_succeeds(const Course& plain, bool again, bool dropped) {
    operations::PlainChoices choices;
    if (again) {
      const operations::Result result = make(choices);
      EXPECT_TRUE(result == plain.result && same(state(), plain.after)) << result.text;
    }
    EXPECT_EQ(contact_delay_save() + black_delay_save() + history_delay_save(), 0);
    const operations::State saved = state();
    EXPECT_TRUE(!dropped || saved.blocks == plain.after.blocks);
    for (const auto& [path, text] : saved.files) {
      EXPECT_TRUE(path.find(".tmp") == path.npos && path.find(".before") == path.npos) << path;
      const auto old_file = plain.before.files.find(path);
      const auto new_file = plain.after.files.find(path);
      if (!dropped || new_file == plain.after.files.end() || old_file == plain.before.files.end() ||
          *old_file == *new_file) {
        continue;
      }
      EXPECT_EQ(text, new_file->second) << "the next save does not write the change to " << path;
    }
  }

  /// The world's, without the contacts' positions, which change with every load.
  operations::State state() const {
    operations::State state = world_.state();
    auto* contacts = reinterpret_cast<CONTACT_DATA_LIST_T*>(state.blocks.data());
    for (CONTACT_DATA_T& contact : contacts->Contacts) contact.position = 0;
    return state;
  }

  /// Each file is what it was or what it becomes, in one piece, and there is no other.
  static void expect_each_old_or_new(const Files& now, const Files& before, const Files& after) {
    for (const auto& [path, text] : now) {
      const auto old_file = before.find(path);
      const auto new_file = after.find(path);
      EXPECT_TRUE((old_file != before.end() && old_file->second == text) ||
                  (new_file != after.end() && new_file->second == text))
          << path << " holds\n"
          << text;
    }
    for (const auto& [path, text] : before) {
      EXPECT_TRUE(now.count(path) == 1 || after.count(path) == 0) << path << " is lost";
    }
  }

  bool told_of_it() const {
    for (const std::string& message : log()) {
      if (message.find(" fail") != message.npos) return true;
    }
    return false;
  }

  /// What a phone finds with these files, and the text of those that are the user's.
  const std::string& found(const Course& course, const Files& files) {
    const auto known = found_.find(files);
    if (known != found_.end()) return known->second;
    ++figures.loads;
    Files profile;
    std::string text;
    for (const auto& [path, content] : files) {
      if (path.rfind("/config/", 0) == 0) {
        profile[path] = content;
      } else if (course.after.files.count(path) != 0) {
        text += path + ":\n" + content + "\n";
      }
    }
    return found_[files] = world_.found(profile) + text;
  }

  Files below_root(const Files& files) const {
    Files result;
    for (const auto& [path, text] : files) result[path.substr(root().string().size())] = text;
    return result;
  }

  static std::string describe(const Files& files) {
    std::string text = "\nwith\n";
    for (const auto& [path, content] : files) text += path + ": " + content + "\n";
    return text;
  }

  std::map<Files, std::string> found_;
};

TEST_P(DiskTest, LeavesWhatWasThereOrWhatIsThereAfterwards) {
  const Course plain = follow({});
  if (!plain.calls.empty()) ++figures.operations;
  cut_at_every_moment(plain);
  fail_every_call({}, plain);
  cut_at_every_moment(follow({/*contacts_later=*/true, /*others_later=*/true}));
  const auto changes = [&](const char* path) {
    const auto old_file = plain.before.files.find(path);
    const auto new_file = plain.after.files.find(path);
    return old_file != plain.before.files.end() && new_file != plain.after.files.end() &&
           *old_file != *new_file;
  };
  // A cut may cost what a move has not written yet; in the end both files have it.
  const bool moves = changes(kDataFiles[0]) && changes(kDataFiles[1]);
  for (const bool contacts_later : {true, false}) {
    if (!moves || GetParam().callers_lock) break;
    const Course mixed = follow({contacts_later, !contacts_later});
    EXPECT_EQ(found(mixed, mixed.after.files), found(plain, plain.after.files));
  }
  static std::set<std::string> damaged_files;  // once each
  for (const char* path : kDataFiles) {
    if (!changes(path)) continue;
    refuse_to_read(path, plain);
    if (moves || !damaged_files.insert(path).second) continue;
    SCOPED_TRACE(std::string("damaged: ") + path);
    const Setting damaged{false, false, path};
    const Course broken = follow(damaged);
    cut_at_every_moment(broken);
    fail_every_call(damaged, broken);
  }
}

INSTANTIATE_TEST_SUITE_P(Of, DiskTest, ::testing::ValuesIn(operations::all()),
                         [](const auto& info) { return info.param.title(); });

}  // namespace
}  // namespace disk_test
