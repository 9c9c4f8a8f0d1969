// What every operation of the catalogue owes its caller: its lock around every look at the data,
// the published result for arguments that are no good and for blocks that are missing, and nothing
// changed then.
#include <climits>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <regex>
#include <set>

#include "operations/operation.h"
#include "runtime/locks.h"
#include "runtime/logging.h"
#include "support/paths.h"
#include "support/phone.h"

namespace {

using namespace operations;  // NOLINT(google-build-using-namespace): they are its subject

/// Plain choices but for one argument, which gets one of its odd values.
class BadChoices : public PlainChoices {
 public:
  BadChoices(int argument, std::size_t value) : argument_(argument), value_(value) {}

  bool odd(Argument kind) override {
    if (kind == Argument::kContent || ++asked_ != argument_) return false;
    kind_ = kind;
    return value_ < count();
  }
  int odd_number() override { return kind_ == Argument::kId ? kIds[value_] : kNumbers[value_]; }
  std::optional<std::string> odd_text() override {
    constexpr const char* kTexts[] = {"", "/nowhere/to/be.xml"};
    if (value_ == 0) return std::nullopt;
    return kTexts[value_ - 1];
  }

  bool any_argument() const { return asked_ >= argument_; }
  bool any_value() const { return value_ < count(); }
  Argument kind() const { return kind_; }
  const char* expected(const Operation& operation) const {
    const bool unknown =
        (kind_ == Argument::kId && kIds[value_] > 0) || (kind_ == Argument::kPath && value_ == 2);
    if (unknown) return operation.unknown;
    const bool number = kind_ == Argument::kId || kind_ == Argument::kNumber;
    return number ? operation.out_of_range : operation.refused;
  }

 private:
  static constexpr int kIds[] = {0, -1, INT_MIN, 9999, INT_MAX};
  static constexpr int kNumbers[] = {-1, INT_MIN, 99, INT_MAX};

  std::size_t count() const {
    switch (kind_) {
      case Argument::kId:
        return std::size(kIds);
      case Argument::kNumber:
        return std::size(kNumbers);
      case Argument::kPath:
        return 3;
      case Argument::kText:
      case Argument::kWords:
        return 2;
      default:
        return 1;
    }
  }

  int argument_;  // counted from 1
  std::size_t value_;
  int asked_ = 0;
  Argument kind_ = Argument::kContent;
};

/// The data that a lock guards is there only while the lock is held.
class HiddenData {
 public:
  explicit HiddenData(World& world) : world_(world) {
    for (const Lock lock : {Lock::kMessages, Lock::kHistory, Lock::kDialNow, Lock::kDialReplace,
                            Lock::kPhonebook, Lock::kTimezones}) {
      locks_.push_back(static_cast<int>(lock));
    }
  }

  void turn_all() {
    for (const int lock : locks_) turn(lock);
  }

  /// Hides the data that is there, and shows what is hidden.
  void turn(int lock) {
    namespace paths = cfgxml::paths;
    switch (static_cast<Lock>(lock)) {
      case Lock::kPhonebook:
        std::swap(world_.contacts(), *contacts_);
        return std::swap(world_.blacklist(), *blacklist_);
      case Lock::kHistory:
        return std::swap(world_.history(), *history_);
      case Lock::kMessages:
        return turn_file(paths::kMessages);
      case Lock::kDialNow:
        return turn_file(paths::kDialNow);
      case Lock::kDialReplace:
        return turn_file(paths::kDialReplace);
      case Lock::kTimezones:
        return turn_file(paths::kTimezones);
      default:
        return;
    }
  }

 private:
  void turn_file(const std::string& path) {
    const std::string file = world_.on_disk(path);
    const std::string hidden = world_.on_disk(path) + "-hidden";
    const bool is_hidden = std::filesystem::exists(hidden);
    std::filesystem::rename(is_hidden ? hidden : file, is_hidden ? file : hidden);
  }

  World& world_;
  std::vector<int> locks_;
  std::unique_ptr<CONTACT_DATA_LIST_T> contacts_ = std::make_unique<CONTACT_DATA_LIST_T>();
  std::unique_ptr<BLACK_DATA_LIST_T> blacklist_ = std::make_unique<BLACK_DATA_LIST_T>();
  std::unique_ptr<HISTORY_DATA_LIST> history_ = std::make_unique<HISTORY_DATA_LIST>();
};

class ContractTest : public phone_test::Phone {
 protected:
  struct Outcome {
    Result result;
    State after;
  };

  void prepare(const Operation& operation) {
    world_.start();
    if (operation.prepare != nullptr) operation.prepare(world_);
  }

  Outcome make(const Operation& operation, Choices& choices) {
    Outcome outcome;
    {
      const HostLock hold(operation.callers_lock ? operation.lock : Lock::kNone);
      outcome.result = operation.call(world_, choices);
    }
    outcome.after = world_.state();
    EXPECT_EQ(world_.take_fault(), "");
    EXPECT_EQ(::host::locks::held(), 0) << "a lock is left";
    return outcome;
  }

  Outcome make_plain(const Operation& operation) {
    PlainChoices plain;
    return make(operation, plain);
  }

  static void expect_same(const Outcome& outcome, const Outcome& whole) {
    EXPECT_EQ(outcome.result.text, whole.result.text);
    EXPECT_TRUE(outcome.result == whole.result) << "another list or record";
    EXPECT_EQ(changes(whole.after, outcome.after), "");
  }

  static void expect_failed(const Outcome& outcome, const char* expected, const State& before) {
    if (outcome.result.is_list) {
      EXPECT_TRUE(outcome.result.nodes.empty());
    } else {
      EXPECT_EQ(outcome.result.text, expected);
    }
    EXPECT_TRUE(outcome.result.record == outcome.result.given) << "the record was filled";
    EXPECT_EQ(changes(before, outcome.after), "");
  }

  int errors_logged() const { return errors_; }

  void SetUp() override {
    Phone::SetUp();
    ::host::observe_log([this](::host::LogLevel level, const std::string&) {
      errors_ += level == ::host::LogLevel::kError ? 1 : 0;
    });
  }
  void TearDown() override {
    ::host::locks::observe(nullptr);
    Phone::TearDown();
  }

  World world_{root(), Callers::kOne};
  int errors_ = 0;
};

TEST_F(ContractTest, EveryOperationSucceedsAndIsSaved) {
  for (const Operation& operation : all()) {
    SCOPED_TRACE(operation.title());
    prepare(operation);
    const Files before = world_.files();
    const Outcome outcome = make_plain(operation);
    if (outcome.result.is_list) {
      EXPECT_FALSE(outcome.result.nodes.empty());
    } else {
      EXPECT_EQ(outcome.result.text, operation.success);
    }
    EXPECT_TRUE(!operation.has(kSaveDropped) || outcome.after.files != before) << "not saved";
  }
}

TEST_F(ContractTest, DataIsLookedAtOnlyUnderItsLock) {
  HiddenData data(world_);
  std::vector<int> taken;
  int held = 0;
  ::host::locks::observe([&](int id, bool take) {
    if (held < 0) return;
    if (take && held++ == 0) taken.push_back(id);
    data.turn(id);
    if (!take) --held;
  });
  for (const Operation& operation : all()) {
    SCOPED_TRACE(operation.title());
    const bool takes = operation.lock != Lock::kNone && !operation.callers_lock;
    held = -1;
    prepare(operation);
    const Outcome whole = make_plain(operation);
    prepare(operation);
    taken.clear();
    world_.watch(
        [&] {
          held = 0;
          if (takes) data.turn_all();
        },
        [&] {
          if (takes) data.turn_all();
          held = -1;
        });
    const Outcome outcome = make_plain(operation);
    world_.watch(nullptr, nullptr);
    EXPECT_EQ(taken,
              takes ? std::vector<int>{static_cast<int>(operation.lock)} : std::vector<int>{});
    expect_same(outcome, whole);
  }
}

TEST_F(ContractTest, BadArgumentsAreRefusedAndChangeNothing) {
  for (const Operation& operation : all()) {
    SCOPED_TRACE(operation.title());
    prepare(operation);
    const Outcome whole = make_plain(operation);
    prepare(operation);
    const State before = world_.state();
    for (int argument = 1;; ++argument) {
      std::optional<Result> for_null;
      std::size_t value = 0;
      for (;; ++value) {
        BadChoices choices(argument, value);
        SCOPED_TRACE("argument " + std::to_string(argument) + ", bad value " +
                     std::to_string(value));
        const int errors = errors_logged();
        const Outcome outcome = make(operation, choices);
        if (!choices.any_argument() || !choices.any_value()) {
          prepare(operation);  // it was a plain call
          break;
        }
        if (choices.kind() == Argument::kWords) {
          if (!for_null) for_null = outcome.result;
          EXPECT_TRUE(outcome.result == *for_null) << "NULL does not stand for an empty text";
          EXPECT_EQ(changes(before, outcome.after), "");
          continue;
        }
        const char* expected = choices.expected(operation);
        expect_failed(outcome, expected, before);
        const bool logs = expected != operation.unknown && !operation.has(kQuiet);
        EXPECT_TRUE(!logs || errors_logged() > errors) << "nothing in the log";
      }
      if (value == 0) break;
    }
    expect_same(make_plain(operation), whole);
  }
}

TEST_F(ContractTest, AHostWithoutABlockGetsTheFailure) {
  for (const Operation& operation : all()) {
    SCOPED_TRACE(operation.title());
    prepare(operation);
    const Outcome whole = make_plain(operation);
    for (const unsigned missing : {0U + kContacts, 0U + kBlacklist, 0U + kHistory, 7U}) {
      SCOPED_TRACE("without blocks " + std::to_string(missing));
      prepare(operation);
      const State before = world_.state();
      host().lists().give_contacts((missing & kContacts) == 0);
      host().lists().give_blacklist((missing & kBlacklist) == 0);
      host().lists().give_history((missing & kHistory) == 0);
      const Outcome outcome = make_plain(operation);
      world_.set_blocks_missing(false);
      if ((missing & operation.blocks) != 0) {
        expect_failed(outcome, operation.without_blocks, before);
      } else if (!operation.has(kNamed)) {
        expect_same(outcome, whole);
      }
    }
  }
}

/// The names in the library's version script, with the arguments of those that have C++ linkage.
std::set<std::string> published_names() {
  std::ifstream file(CFGXML_EXPORTS);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const std::regex name("\n +\"?([a-zA-Z][^\";{\n]*)\"?;(?=\n)");
  std::set<std::string> names;
  for (std::sregex_iterator at(text.begin(), text.end(), name), end; at != end; ++at) {
    names.insert((*at)[1]);
  }
  return names;
}

TEST(ExportsTest, LibraryExportsThePublishedNamesAndNothingElse) {
  std::set<std::string> exported;
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(
      popen("nm -D -C --defined-only '" CFGXML_LIBRARY "' | sed 's/^[^ ]* . //'", "r"), pclose);
  for (char line[256]; fgets(line, sizeof line, pipe.get()) != nullptr;) {
    exported.insert(std::string(line).substr(0, std::strlen(line) - 1));
  }
  EXPECT_EQ(exported, published_names());
}

TEST(ExportsTest, CatalogueHoldsEveryExportedFunction) {
  std::set<std::string> named;
  for (const Operation& operation : all()) named.insert(operation.name);
  std::set<std::string> published;
  for (const std::string& name : published_names())
    published.insert(name.substr(0, name.find('(')));
  EXPECT_EQ(named, published);
  EXPECT_GT(published.size(), 170U);
}

}  // namespace
