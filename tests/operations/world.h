// What the operations work on: one phone with a bit of everything, which every driver prepares and
// looks at in the same way.
#pragma once

#include <cfgxml/broadsoft.h>
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <string>

#include "host.h"
#include "operations/choices.h"
#include "support/invariants.h"

namespace operations {

/// The host's locks, by the data that they guard.
enum class Lock : int {
  kNone = 0,
  kMessages = 45067,
  kRemote = 45070,
  kHistory = 45075,
  kDialNow = 45076,
  kDialReplace = 45077,
  kPhonebook = 45081,
  kTimezones = 45082,
};

/// Holds one of them, as the host does around several calls that belong together.
class HostLock {
 public:
  explicit HostLock(Lock lock) : id_(static_cast<int>(lock)) {
    if (id_ != 0) rl_sem_lock(id_);
  }
  ~HostLock() {
    if (id_ != 0) rl_sem_unlock(id_);
  }
  HostLock(const HostLock&) = delete;
  HostLock& operator=(const HostLock&) = delete;

 private:
  int id_;
};

/// Paths below the phone's folder, and contents.
using Files = std::map<std::string, std::string>;

/// What outlives a call: the host's blocks, byte by byte, and the files.
struct State {
  std::string blocks;
  Files files;
};

/// What the second has that the first has not, for a person to read; "" when they are the same.
std::string changes(const State& from, const State& to);

/// What a damaged file holds; it must not be lost either.
inline constexpr char kDamaged[] = "<Damaged><Group Name=\"Friends\"";

/// A book of the search other than the local one, as its owner knows it.
struct Book {
  CONTACT_SUMMARY_T* head = nullptr;
  bool indexed = false;
  BSFT_CONTACT_POS_T position{};
};

enum class Callers { kOne, kMany };

class World {
 public:
  /// The files are below the folder, which becomes the library's root. One caller may leave the
  /// index behind the contacts for a while.
  World(std::filesystem::path root, Callers callers);
  /// Leaves nothing in the library but what it keeps for good, and nothing in the host.
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  /// The state that every operation starts from: a profile of the samples, each list cut to its
  /// first four entries, loaded and indexed, two accounts, saving at once; remote books, directory
  /// pages and files to import, not loaded yet.
  void start();
  /// Without its profile.
  void clear();

  /// Makes the call of an operation, the only part of it that a driver watches.
  template <typename Function, typename... Arguments>
  auto call(Function function, Arguments... arguments) {
    const Watched watched(*this);
    try {
      return function(arguments...);
    } catch (...) {
      require(false, "an exception left the library");
      return decltype(function(arguments...))();
    }
  }
  /// What a driver does before and after it; set where one thread calls.
  void watch(std::function<void()> before, std::function<void()> after);

  // --- The phone

  static host::Host& host() { return host::the_host(); }
  static CONTACT_DATA_LIST_T& contacts() { return host().lists().contacts(); }
  static BLACK_DATA_LIST_T& blacklist() { return host().lists().blacklist(); }
  static HISTORY_DATA_LIST& history() { return host().lists().history(); }

  const std::filesystem::path& root() const { return root_; }
  std::string on_disk(const std::string& path) const { return root_.string() + path; }
  void write(const std::string& path, const std::string& text) const;
  std::string read(const std::string& path) const;
  /// Puts a file of the samples, cut like the others, where it lies among them.
  void copy_sample(const std::string& path) const;

  /// A file as an argument: the one at this path or, where choices vary, one of the caller's own
  /// like it.
  const char* file(Choices& choices, const std::string& path, Argument kind = Argument::kPath);
  /// What a file of the common state holds, varied as choices will.
  std::string varied(const std::string& path, Choices& choices) const;
  /// A path of the caller's own to write to.
  const char* target(Choices& choices, const std::string& path,
                     Argument kind = Argument::kPath) const;

  State state() const;
  Files files() const;
  /// What a phone finds that starts with these files: its lists, what the library lists from files,
  /// whether a list's file is there, and whether damaged content is still there. This phone goes on
  /// as it was.
  std::string found(const Files& files);

  // --- What the callers keep among themselves

  bool single_caller() const { return callers_ == Callers::kOne; }

  /// Who loads, indexes, frees or looks through a book does so alone; so does who searches, since
  /// the table of results exists once.
  std::mutex& books_mutex() { return books_mutex_; }
  /// By book number, from CFGXML_BOOK_REMOTE_FIRST on.
  Book& book(int number) { return books_[static_cast<std::size_t>(number)]; }
  /// The lists behind the indexed books.
  phone_test::Books indexed_books() const;

  /// Between a change of the contacts that leaves the index and the positions behind, and the
  /// reload that follows it.
  void fall_behind() { ++behind_; }
  void catch_up() { behind_ = single_caller() ? 0 : behind_ - 1; }
  /// False while some caller is between the two. Ask it with the phonebook's lock held.
  bool index_in_step() const { return behind_ == 0; }

  /// False once a caller gave a contact a position of its own choice.
  bool positions_kept() const { return positions_kept_; }
  void set_positions_kept(bool kept) { positions_kept_ = kept; }
  /// False once a caller put a file in a list's place that no library wrote.
  bool lists_kept() const { return lists_kept_; }
  void set_lists_kept(bool kept) { lists_kept_ = kept; }

  /// Whether the host has none of its blocks to give for a moment.
  bool blocks_missing() const { return blocks_missing_; }
  void set_blocks_missing(bool missing);

  /// Records of searches that were looked at.
  void count_hit() { ++hits_; }
  long hits() const { return hits_; }

  /// Notes what must not be; the first of them is kept until it is taken.
  void require(bool holds, const std::string& fault);
  std::string take_fault();

 private:
  class Watched {
   public:
    explicit Watched(World& world) : world_(world) {
      if (world_.before_) world_.before_();
    }
    ~Watched() {
      if (world_.after_) world_.after_();
    }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

   private:
    World& world_;
  };

  void start_phone(const std::filesystem::path& root);
  std::string found_in(const std::filesystem::path& folder);

  std::filesystem::path root_;
  Callers callers_;
  std::function<void()> before_;
  std::function<void()> after_;
  std::mutex books_mutex_;
  std::array<Book, CFGXML_BOOK_COUNT> books_;  // guarded by books_mutex_
  std::atomic<int> behind_{0};
  std::atomic<bool> positions_kept_{true};
  std::atomic<bool> lists_kept_{true};
  std::atomic<bool> blocks_missing_{false};
  std::atomic<long> hits_{0};
  std::mutex mutex_;
  std::string fault_;  // guarded by mutex_
};

}  // namespace operations
