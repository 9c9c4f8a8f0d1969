// Changes of files that lose nothing: wherever the power is cut, the disk holds what the file held
// before the change or what it holds after it, and a disk that is full or fails leaves the old
// file.
//
// A save is one step for the reader: the text is written to "<file>.tmpXXXXXX", synced, renamed
// over the file, and the folder is synced. A cut leaves at most a stale temporary file.
//
// A change in several steps (an upload, a move that writes two files, the replacement of a file
// that does not parse) keeps the old file first:
//   1. copy() or move() makes "<file>.before-change". A cut from here on rolls back: the next
//      restore() renames it over the file, whatever that holds by then.
//   2. The new file is written and synced.
//   3. commit() removes the old file, or quarantine() renames it to "<file>.corrupt": now a cut
//      leaves the new one. roll_back(), or the destructor, goes back to the old one instead.
//
// Temporary and kept files are locked (flock) by whoever works on them, and by the commands it
// started. One whose lock is free is stale: its writer has died. The steps that look at a name and
// then change it exclude each other by a mutex; no host lock is taken inside it.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

#include "support/mutex.h"
#include "support/regular_file.h"

namespace cfgxml::durable {

/// Keeps the steps of changes apart while one of several steps looks at the file first. Held for
/// moments, but for the removal of a file that does not parse, which takes a shell; never around a
/// host lock.
inline RecursiveMutex steps;

/// Who owns a file, and who may use it.
struct Access {
  uid_t owner;
  gid_t group;
  mode_t mode;
};

/// Where the link at this path leads, or the path when there is none: the file to change, and to
/// keep things beside.
std::string target_of(std::string file);

/// Replaces a file with the text: written beside it, synced, and renamed over it. The new one gets
/// owner, group and mode of the one it replaces, as far as the process may give them: of the file
/// itself, else of the old one that is named, which was moved away. A new file gets the mode less
/// the umask. True when the new file is on the disk. False leaves the old one, except when all that
/// failed is the sync of the folder: then the new one is in place, and a cut may still bring the
/// old one back.
bool replace(const std::string& file, std::string_view text, mode_t mode,
             const std::optional<Access>& old = std::nullopt);

/// The same, for a file of the user's. What can't be replaced in one piece is written in place: a
/// link, a device, a file with a second name, one whose name is too long for a temporary one, or
/// whose folder takes no new file. A write that fails half way costs the old content then.
bool replace_or_write_in_place(const std::string& file, std::string_view text, mode_t mode);

/// Waits until what others wrote into a file is on the disk; true also when there is no file.
bool sync(const std::string& file);

/// Removes what replace() left beside the file when a cut ended it.
void sweep(const std::string& file);

/// What a file held, kept as "<file>.before-change" while the file is replaced in more than one
/// step. After a cut in between, the next restore() rolls back.
class Before {
 public:
  Before() = default;
  /// Rolls back what was neither committed nor put into quarantine.
  ~Before() { roll_back(); }
  Before(const Before&) = delete;
  Before& operator=(const Before&) = delete;

  /// Keeps a copy; true also when there is no file. False when that fails, or when another one is
  /// being kept at the moment.
  bool copy(const std::string& file);

  /// Keeps the file itself, which is gone then; true also when there was none, and when it is kept
  /// already. False as for copy(). A file that can't even be opened, for a lasting reason, can't be
  /// locked: it becomes "<file>.corrupt" at once, which takes no reading.
  bool move(const std::string& file);

  bool keeps() const { return kept_.has_value(); }

  /// Who may do what with the file that is kept, with no wider a mode; nothing when none is, or
  /// none that can be read.
  std::optional<Access> access(mode_t widest) const;

  /// The commands that the process starts from now on hold the lock too: one that outlives the
  /// process is still at work on the file.
  void let_commands_hold() const;

  /// True while a change of the file in several steps is on its way in this process.
  static bool is_under_way(const std::string& file);

  /// The new file is on the disk: the old one is removed. False when that fails, which rolls back.
  bool commit();

  /// The new file, if there is one, is on the disk already: the old one becomes "<file>.corrupt"
  /// unless it is empty. False when that fails, which rolls back.
  bool quarantine();

  /// The old file takes its place again.
  void roll_back();

 private:
  /// The names that the steps need, made before the first one: on the way back no memory is taken.
  struct Names {
    explicit Names(const std::string& changed);
    std::string file;
    std::string before;  // what the old file is called meanwhile
    std::string corrupt;
    std::string folder;
  };

  bool quarantine_unread(Names names) REQUIRES(steps);
  bool keep(Names names, Descriptor locked) REQUIRES(steps);
  Names forget() REQUIRES(steps);
  bool settle(bool settled) REQUIRES(steps);

  static Before* first_ GUARDED_BY(steps);  // of those that keep something
  Before* next_ GUARDED_BY(steps) = nullptr;
  std::optional<Names> kept_;  // nothing when nothing is kept
  Descriptor locked_;          // what is kept
};

/// Rolls back what a cut left of a change. While another process is at work on it, or a command
/// that outlived one, this waits, for two seconds at most. False when the file is not to be used:
/// the roll-back failed, or the other has not ended.
bool restore(const std::string& file);

}  // namespace cfgxml::durable
