// Deferred saving: collects the save codes that changes post, and writes each kind once, a short
// while after the first of them.
//
// The kind that was posted last is written first. A move between contacts and blacklist posts the
// list that lost the record before the one that gained it, so that a cut between the two writes
// leaves the record in both files, never in none.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace host {

/// The files that are written later, by the codes that the plug-in posts.
enum class SaveCode : int { kHistory = 1, kContacts = 3, kBlacklist = 4 };

class Saver {
 public:
  using Milliseconds = std::chrono::milliseconds;
  /// Writes one kind now; 0, or its failure. Called without a lock of the saver's.
  using Write = std::function<int(SaveCode)>;
  /// Called with every posted code.
  using Observer = std::function<void(int)>;

  explicit Saver(Write write) : write_(std::move(write)) {}
  ~Saver() { stop(); }
  Saver(const Saver&) = delete;
  Saver& operator=(const Saver&) = delete;

  /// Starts the thread that writes what was posted, after the pause. A write that fails is tried
  /// again after ten pauses.
  void start(Milliseconds pause = Milliseconds(500));

  /// Ends the thread, then writes everything outstanding. False when something could not be
  /// written; it stays outstanding. May be called again, and from any thread but the saver's.
  bool stop();

  /// Queues a write; -1 for a code that names no file.
  int post(int code);

  /// Writes a kind now if its code was posted; false when that fails.
  bool write_if_outstanding(SaveCode code);

  /// Forgets what was posted; for tests.
  void forget();

  void observe(Observer observer);

 private:
  void run(Milliseconds pause);
  void note(SaveCode code);
  bool write_outstanding();
  std::vector<SaveCode> newest_first();
  bool take(SaveCode code);

  Write write_;
  std::mutex control_;  // held around start and stop
  std::thread thread_;  // guarded by control_
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<SaveCode> outstanding_;  // each once, the newest last; guarded by mutex_, as are the
                                       // following
  bool stopping_ = false;
  Observer observer_;
};

}  // namespace host
