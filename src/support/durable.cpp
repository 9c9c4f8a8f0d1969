#include "support/durable.h"

#include <cfgxml/host.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <memory>
#include <thread>
#include <utility>

namespace cfgxml::durable {
namespace {

constexpr std::string_view kTemporary = ".tmp";
constexpr std::size_t kTemporaryDigits = 6;
constexpr char kBefore[] = ".before-change";
constexpr char kCorrupt[] = ".corrupt";

constexpr int kMostLinks = 40;  // in a chain, as the system has it
/// How often, and after which pause, restore() looks whether another process has ended its change.
constexpr int kLooks = 200;
constexpr std::chrono::milliseconds kPause{10};

std::string folder_of(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

std::string name_in_folder(const std::string& path) { return path.substr(path.rfind('/') + 1); }

/// A link is refused: what it points to is nobody's file but its own.
Descriptor open_beside(const std::string& file) {
  return Descriptor(
      ::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
}

/// Creates, renames and removals in the folder are on the disk after this. A file system that
/// cannot sync a folder (EINVAL) has nothing better to give.
bool sync_folder(const std::string& name) {
  const Descriptor folder(::open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return folder.is_open() && (::fsync(folder.number()) == 0 || errno == EINVAL);
}

/// False when the file is locked, so its writer lives. Where files cannot be locked, none is.
bool lock_if_free(const Descriptor& file) {
  return ::flock(file.number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

/// True for a regular file that still has a name.
bool is_named_file(const Descriptor& file) {
  struct stat status {};
  return ::fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink > 0;
}

bool is_absence(int error) { return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG; }

bool may_exist(const std::string& file) {
  struct stat status {};
  return ::lstat(file.c_str(), &status) == 0 || !is_absence(errno);
}

bool write_all(const Descriptor& file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(file.number(), text.data(), text.size());
    if (count == 0) errno = EIO;  // a device that takes nothing
    if (count < 1 && errno != EINTR) return false;
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

std::string temporary_name(const std::string& target) {
  static std::atomic<unsigned> next{static_cast<unsigned>(::getpid())};
  char digits[kTemporaryDigits + 1];
  std::snprintf(digits, sizeof digits, "%06x", next++ % 0x1000000);
  return target + std::string(kTemporary) + digits;
}

Access access_of(const struct stat& status) {
  return {status.st_uid, status.st_gid, status.st_mode & 0777};
}

/// A new file beside another, locked, and removed again unless it gets another name. When it cannot
/// be made, errno tells why.
class NewFile {
 public:
  /// Makes the file with this mode less the umask; with what the old file had, when there was one.
  NewFile(const std::string& target, mode_t mode, const std::optional<Access>& old) : old_(old) {
    do {
      // Created exclusively: a link or a file that waits under the name is not touched.
      name_ = temporary_name(target);
      file_ = Descriptor(::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                                old_ ? S_IRUSR | S_IWUSR : mode));
    } while (file_.is_open() ? !keep_from_sweeps() : errno == EEXIST);
    if (!file_.is_open()) name_.clear();
  }
  ~NewFile() {
    if (!name_.empty()) ::unlink(name_.c_str());
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// Gives it its content, which is on the disk then.
  bool write(std::string_view text) {
    return file_.is_open() && write_all(file_, text) && (!old_ || resemble(*old_)) &&
           ::fsync(file_.number()) == 0;
  }

  bool rename_to(const std::string& file) {
    if (::rename(name_.c_str(), file.c_str()) != 0) return false;
    name_.clear();
    return true;
  }

  /// Hands over the open file with its lock. Closing it can lose nothing that was synced, so the
  /// result of that is not looked at.
  Descriptor release() { return std::move(file_); }

 private:
  /// Waits for a sweep that came before the lock; false when that removed the file.
  bool keep_from_sweeps() const {
    while (::flock(file_.number(), LOCK_EX) != 0 && errno == EINTR) continue;
    struct stat status {};
    return ::fstat(file_.number(), &status) != 0 || status.st_nlink > 0;
  }

  /// Owner and group as far as the process may give them away; where the group changes, it gets no
  /// rights. A file system without modes, a memory stick's, refuses (EPERM); the file is no wider
  /// for it.
  bool resemble(const Access& old) const {
    mode_t mode = old.mode;
    if (::fchown(file_.number(), old.owner, old.group) != 0 &&
        ::fchown(file_.number(), static_cast<uid_t>(-1), old.group) != 0) {
      rl_log_debug("<%s> changes its owner.", name_.c_str());
      mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    return ::fchmod(file_.number(), mode) == 0 || errno == EPERM;
  }

  std::optional<Access> old_;
  std::string name_;
  Descriptor file_;
};

/// As replace(); gives 0, or the error that ended it.
int try_to_replace(const std::string& file, std::string_view text, mode_t mode,
                   std::optional<Access> old) {
  struct stat status {};
  if (::lstat(file.c_str(), &status) == 0) {
    if (!S_ISREG(status.st_mode)) return EINVAL;
    if (::access(file.c_str(), W_OK) != 0) return errno;
    old = access_of(status);
  } else if (errno != ENOENT) {
    return errno;
  }
  const std::string folder = folder_of(file);  // no memory is taken after the rename
  NewFile written(file, mode, old);
  if (!written.write(text)) return errno;
  {
    const Hold step(steps);  // not between another thread's look at a bad file and its removal
    if (!written.rename_to(file)) return errno;
  }
  return sync_folder(folder) ? 0 : EIO;
}

/// A pipe that nobody reads is not waited for; one that is read slowly is.
bool write_in_place(const std::string& file, std::string_view text) {
  const Descriptor target(
      ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666));
  return target.is_open() && ::fcntl(target.number(), F_SETFL, 0) == 0 && write_all(target, text) &&
         (::fsync(target.number()) == 0 || errno == EINVAL);
}

bool is_temporary_of(const std::string& target, std::string_view name) {
  const std::string stem = target + std::string(kTemporary);
  return name.size() == stem.size() + kTemporaryDigits && name.substr(0, stem.size()) == stem;
}

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

}  // namespace

std::string target_of(std::string file) {
  for (int links = 0; links < kMostLinks; ++links) {
    char text[PATH_MAX];
    const ssize_t length = ::readlink(file.c_str(), text, sizeof text);
    if (length < 1) break;
    const std::string target(text, static_cast<std::size_t>(length));
    file = target.front() == '/' ? target : folder_of(file) + target;
  }
  return file;
}

bool replace(const std::string& file, std::string_view text, mode_t mode,
             const std::optional<Access>& old) {
  return try_to_replace(file, text, mode, old) == 0;
}

bool replace_or_write_in_place(const std::string& file, std::string_view text, mode_t mode) {
  struct stat old {};
  if (::lstat(file.c_str(), &old) == 0 && (!S_ISREG(old.st_mode) || old.st_nlink > 1)) {
    return write_in_place(file, text);
  }
  const int error = try_to_replace(file, text, mode, std::nullopt);
  for (const int refused : {EACCES, EPERM, EBUSY, EROFS, ENAMETOOLONG}) {
    if (error == refused) return write_in_place(file, text);
  }
  return error == 0;
}

bool sync(const std::string& file) {
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!descriptor.is_open()) return errno == ENOENT;
  return (::fsync(descriptor.number()) == 0 || errno == EINVAL) && sync_folder(folder_of(file));
}

void sweep(const std::string& file) {
  const std::string folder_name = folder_of(file);
  const std::unique_ptr<DIR, CloseFolder> folder(::opendir(folder_name.c_str()));
  if (folder == nullptr) return;
  const std::string target = name_in_folder(file);
  while (const dirent* entry = ::readdir(folder.get())) {
    if (!is_temporary_of(target, entry->d_name)) continue;
    const std::string left = folder_name + entry->d_name;
    const Descriptor descriptor = open_beside(left);
    if (descriptor.is_open() && lock_if_free(descriptor) && is_named_file(descriptor)) {
      ::unlink(left.c_str());
    }
  }
}

Before::Names::Names(const std::string& changed)
    : file(changed),
      before(changed + kBefore),
      corrupt(changed + kCorrupt),
      folder(folder_of(changed)) {}

Before* Before::first_ = nullptr;

std::optional<Access> Before::access(mode_t widest) const {
  struct stat kept {};
  if (!kept_ || ::fstat(locked_.number(), &kept) != 0) return std::nullopt;
  Access access = access_of(kept);
  access.mode &= widest;
  return access;
}

bool Before::copy(const std::string& file) {
  const Hold step(steps);
  Names names(file);
  if (may_exist(names.before)) return false;
  std::string text;
  const Reading reading = read_file(file, text);
  if (reading != Reading::kWhole) return reading == Reading::kNoFile;
  struct stat old {};
  if (::stat(file.c_str(), &old) != 0) return false;
  NewFile written(file, 0, access_of(old));
  if (!written.write(text) || !written.rename_to(names.before)) return false;
  return keep(std::move(names), written.release());
}

bool Before::move(const std::string& file) {
  const Hold step(steps);
  if (kept_) return true;
  Names names(file);
  if (may_exist(names.before)) return false;
  Descriptor old = open_beside(file);
  if (!old.is_open()) {
    if (is_absence(errno) || errno == ELOOP) return true;
    return !is_shortage(errno) && quarantine_unread(std::move(names));
  }
  if (!is_named_file(old)) return true;
  if (!lock_if_free(old) || ::rename(file.c_str(), names.before.c_str()) != 0) return false;
  return keep(std::move(names), std::move(old));
}

void Before::let_commands_hold() const { ::fcntl(locked_.number(), F_SETFD, 0); }

bool Before::commit() {
  const Hold step(steps);
  if (!kept_) return true;
  if (::unlink(kept_->before.c_str()) != 0) return settle(false);
  return sync_folder(forget().folder);
}

bool Before::quarantine() {
  const Hold step(steps);
  if (!kept_) return true;
  // An empty file has nothing to keep, and would push out an older copy that has.
  struct stat old {};
  const bool empty = ::fstat(locked_.number(), &old) == 0 && old.st_size == 0;
  const bool settled = empty ? ::unlink(kept_->before.c_str()) == 0
                             : ::rename(kept_->before.c_str(), kept_->corrupt.c_str()) == 0;
  return settled ? sync_folder(forget().folder) : settle(false);
}

void Before::roll_back() {
  if (!kept_) return;
  const Hold step(steps);
  const Names names = forget();
  if (::rename(names.before.c_str(), names.file.c_str()) != 0 || !sync_folder(names.folder)) {
    rl_log_err("%s failed: <%s> is put back when it is opened next.", __func__, names.file.c_str());
  }
  locked_ = Descriptor();
}

bool Before::is_under_way(const std::string& file) {
  const Hold step(steps);
  const Before* change = first_;
  while (change != nullptr && change->kept_->file != file) change = change->next_;
  return change != nullptr;
}

bool Before::quarantine_unread(Names names) {
  names.before = names.corrupt;
  if (::rename(names.file.c_str(), names.before.c_str()) != 0) return false;
  rl_log_err("%s failed: <%s> becomes <%s>.", "read_file", names.file.c_str(),
             names.corrupt.c_str());
  return keep(std::move(names), Descriptor());
}

bool Before::keep(Names names, Descriptor locked) {
  kept_ = std::move(names);
  locked_ = std::move(locked);
  next_ = std::exchange(first_, this);
  return settle(sync_folder(kept_->folder));
}

Before::Names Before::forget() {
  Before** place = &first_;
  while (*place != this) place = &(*place)->next_;
  *place = next_;
  Names names = std::move(*kept_);
  kept_.reset();
  return names;
}

bool Before::settle(bool settled) {
  if (!settled) roll_back();
  return settled;
}

namespace {

/// One look at what a change left. Nothing while another process holds its lock.
std::optional<bool> try_to_restore(const std::string& before, const std::string& file) {
  const Hold step(steps);
  if (Before::is_under_way(file)) return true;
  const Descriptor left = open_beside(before);
  if (left.is_open()) {
    if (!lock_if_free(left)) return std::nullopt;
    if (!is_named_file(left)) return true;
  } else if (is_absence(errno) || errno == ELOOP) {
    return true;
  } else if (is_shortage(errno)) {
    return false;
  }
  rl_log_warn("<%s> is put back: a change of it was cut short.", file.c_str());
  const std::string folder = folder_of(file);
  return ::rename(before.c_str(), file.c_str()) == 0 && sync_folder(folder);
}

}  // namespace

bool restore(const std::string& file) {
  const std::string before = file + kBefore;
  for (int looks = 0; looks < kLooks; ++looks) {
    if (!may_exist(before)) return true;
    if (const auto restored = try_to_restore(before, file)) return *restored;
    std::this_thread::sleep_for(kPause);
  }
  rl_log_err("%s failed: another process is changing <%s>.", __func__, file.c_str());
  return false;
}

}  // namespace cfgxml::durable
