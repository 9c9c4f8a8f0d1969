// The calls of the interface, to be made in any order by one caller or many, and what the callers
// have to keep among themselves.
#pragma once

#include <cfgxml/broadsoft.h>
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <initializer_list>
#include <mutex>
#include <string>
#include <vector>

#include "calls/choices.h"

namespace calls {

constexpr int kRemoteLock = 45070;
constexpr int kHistoryLock = 45075;
constexpr int kPhonebookLock = 45081;

/// Holds one of the host's locks, as the host does around several calls that belong together.
class HostLock {
 public:
  explicit HostLock(int id) : id_(id) { rl_sem_lock(id_); }
  ~HostLock() { rl_sem_unlock(id_); }
  HostLock(const HostLock&) = delete;
  HostLock& operator=(const HostLock&) = delete;

 private:
  int id_;
};

/// A book of the search other than the local one. Who loads, indexes or frees a book does so alone.
struct Book {
  std::mutex mutex;
  CONTACT_SUMMARY_T* head = nullptr;  // guarded by mutex, as are the following
  bool indexed = false;
  BSFT_CONTACT_POS_T position{};
};

class World {
 public:
  /// Files are below this folder, which is the library's root. A single caller may leave the index
  /// behind the contacts for a while.
  World(std::filesystem::path root, bool single_caller)
      : root_(std::move(root)), single_caller_(single_caller) {}

  /// Every data file as it is on a new phone, and nothing else.
  void write_profile() const;
  /// Writes a file and gives its path on the disk, as the imports want it.
  std::string write(const std::string& path, const std::string& text) const;
  std::string on_disk(const std::string& path) const { return root_.string() + path; }

  /// One search runs at a time, and its result is read before the next: the table exists once.
  std::mutex& one_search() { return one_search_; }

  /// By book number, from CFGXML_BOOK_REMOTE_FIRST on.
  Book& book(int number) { return books_[static_cast<std::size_t>(number)]; }
  /// Takes every book out of the index and frees it.
  void free_books();

  bool single_caller() const { return single_caller_; }

  /// Between a bulk change of the contacts, which leaves the index and the positions behind, and
  /// the reload that follows it.
  void fall_behind() { ++behind_; }
  void catch_up() { behind_ = single_caller_ ? 0 : behind_ - 1; }
  /// False while some caller is between the two. Ask it with the phonebook's lock held.
  bool index_in_step() const { return behind_ == 0; }

  /// False once a caller gave a contact a position of its own choice.
  bool positions_kept() const { return positions_kept_; }
  void set_positions_kept(bool kept) { positions_kept_ = kept; }
  /// False once a caller imported a dial-rule list without care.
  bool rules_kept() const { return rules_kept_; }
  void set_rules_kept(bool kept) { rules_kept_ = kept; }

  /// Whether the host has none of its lists to give for a moment: then -1 is a result of every
  /// call.
  void set_lists_missing(bool missing) { lists_missing_ = missing; }

  /// Records of searches that were looked at.
  void count_hit() { ++hits_; }
  long hits() const { return hits_; }

  /// Notes what must not be; the first of them is kept.
  void require(bool holds, const std::string& fault);
  void expect_result(const char* call, int result, std::initializer_list<int> results);
  std::string fault() const;

 private:
  std::filesystem::path root_;
  bool single_caller_;
  std::mutex one_search_;
  std::array<Book, CFGXML_BOOK_COUNT> books_;
  std::atomic<int> behind_{0};
  std::atomic<bool> positions_kept_{true};
  std::atomic<bool> rules_kept_{true};
  std::atomic<bool> lists_missing_{false};
  std::atomic<long> hits_{0};
  mutable std::mutex mutex_;
  std::string fault_;  // guarded by mutex_
};

/// One call, or a few that belong together.
struct Call {
  const char* kind;
  int weight;  // how often it is made, beside the others
  void (*make)(World& world, Choices& choices);
};

extern const std::vector<Call> kPhonebookCalls;
extern const std::vector<Call> kSearchCalls;
extern const std::vector<Call> kRemoteCalls;
extern const std::vector<Call> kHistoryCalls;
extern const std::vector<Call> kListCalls;  // those that live in files

/// All of them.
std::vector<Call> all_calls();

}  // namespace calls
