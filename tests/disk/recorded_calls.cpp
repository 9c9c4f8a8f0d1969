#include "disk/recorded_calls.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <utility>

namespace recorded_calls {
namespace {

/// Programs for 32 bits are built with 64-bit offsets and times. The functions that take them have
/// names of their own there, which the declarations below get by themselves.
constexpr bool kWide = sizeof(void*) == 4;

/// The system's function of this name.
template <typename Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

class Record {
 public:
  std::vector<Known> watch(const std::string& folder) {
    *this = {};
    std::vector<Known> known;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      if (!entry.is_regular_file() || entry.is_symlink()) continue;
      std::ifstream stream(entry.path(), std::ios::binary);
      known.push_back({entry.path(), number_of(entry.path()),
                       std::string(std::istreambuf_iterator<char>(stream), {})});
    }
    folder_ = folder + "/";
    return known;
  }

  bool sees(const char* path) const {
    return !folder_.empty() && path != nullptr &&
           folder_.compare(0, folder_.npos, path, 0, folder_.size()) == 0;
  }
  bool sees(int descriptor) const { return !folder_.empty() && open_.count(descriptor) != 0; }

  /// Counts a call; true when it is the one to fail, or on a file that always does, with errno set.
  bool fails(Kind kind, int file = 0) {
    calls_.push_back(kind);
    if (file != 0 && file == bad_file_ && kind == bad_kind_) {
      errno = error_;
      return true;
    }
    if (calls_.size() != fail_at_ + 1) return false;
    failed_ = true;
    errno = error_;
    return true;
  }
  /// The same for a write, which may fail by halves.
  bool fails_writing(std::size_t& size) {
    const bool due = fails(Kind::kWrite);
    if (!due || !short_write_) return due;
    short_write_ = false;
    size /= 2;
    if (error_ != 0) fail_at_ = calls_.size();
    return false;
  }

  void opened(int descriptor, const std::string& path, bool created, int flags) {
    struct stat status {};
    const bool folder = ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
    if (created) names_.erase(path);
    open_[descriptor] = {folder ? -1 : number_of(path), path, 0};
    if (created) {
      events_.push_back({Effect::kCreated, number_of(path), path, {}, 0, {}});
    } else if ((flags & O_TRUNC) != 0) {
      events_.push_back({Effect::kEmptied, number_of(path), path, {}, 0, {}});
    }
  }
  void closed(int descriptor) { open_.erase(descriptor); }
  void wrote(int descriptor, const void* data, std::size_t size) {
    Open& open = open_[descriptor];
    events_.push_back({Effect::kWritten,
                       open.file,
                       {},
                       {},
                       open.offset,
                       std::string(static_cast<const char*>(data), size)});
    open.offset += size;
  }
  void synced(int descriptor) {
    const Open& open = open_[descriptor];
    if (open.file < 0) {
      events_.push_back({Effect::kFolderSynced, 0, open.path, {}, 0, {}});
    } else {
      events_.push_back({Effect::kFileSynced, open.file, {}, {}, 0, {}});
    }
  }
  void renamed(const std::string& from, const std::string& to) {
    const int file = number_of(from);
    names_.erase(from);
    names_[to] = file;
    events_.push_back({Effect::kRenamed, file, from, to, 0, {}});
  }
  void removed(const std::string& path) {
    events_.push_back({Effect::kRemoved, number_of(path), path, {}, 0, {}});
    names_.erase(path);
  }

  void fail(std::size_t call, int error, bool short_write) {
    fail_at_ = call;
    error_ = error;
    short_write_ = short_write;
  }
  void fail_always(Kind kind, const std::string& path, int error) {
    bad_kind_ = kind;
    bad_file_ = number_of(path);
    error_ = error;
  }
  int file_at(const std::string& path) { return number_of(path); }
  int file_of(int descriptor) { return open_[descriptor].file; }
  bool failed() const { return failed_; }
  std::vector<Event> take_events() { return std::exchange(events_, {}); }
  const std::vector<Kind>& calls() const { return calls_; }

 private:
  struct Open {
    int file;  // -1 for a folder
    std::string path;
    std::size_t offset;
  };

  int number_of(const std::string& path) {
    return names_.try_emplace(path, static_cast<int>(++files_)).first->second;
  }

  std::string folder_;  // empty while nobody watches
  std::map<std::string, int> names_;
  std::map<int, Open> open_;
  int files_ = 0;
  std::vector<Event> events_;
  std::vector<Kind> calls_;
  std::size_t fail_at_ = static_cast<std::size_t>(-2);
  int error_ = 0;
  bool short_write_ = false;
  bool failed_ = false;
  Kind bad_kind_ = Kind::kOpen;
  int bad_file_ = 0;  // none
};

Record& record() {
  static Record& only = *new Record;  // files are closed until the very end
  return only;
}

bool exists(const char* path) {
  struct stat status {};
  return next<int(const char*, struct stat*)>(kWide ? "__lstat64_time64" : "lstat")(path,
                                                                                    &status) == 0;
}

std::function<void()> interruption;

/// Opens by one of the system's functions, which all take the same arguments.
int open_by(const char* name, const char* path, int flags, mode_t mode) {
  if ((flags & O_EXCL) != 0) {
    if (const auto interrupt = std::exchange(interruption, nullptr)) interrupt();
  }
  const auto real = next<int(const char*, int, ...)>(name);
  if (!record().sees(path)) return real(path, flags, mode);
  const bool creates = (flags & O_CREAT) != 0 && !exists(path);
  if (record().fails(creates ? Kind::kCreate : Kind::kOpen, record().file_at(path))) return -1;
  const int descriptor = real(path, flags, mode);
  if (descriptor >= 0) record().opened(descriptor, path, creates, flags);
  return descriptor;
}

/// The record knows what is synced; the disk itself need not wear.
int sync(int descriptor) {
  if (!record().sees(descriptor)) return 0;
  if (record().fails(Kind::kSync)) return -1;
  record().synced(descriptor);
  return 0;
}

int remove_by(const char* name, const char* path) {
  const auto real = next<int(const char*)>(name);
  if (!record().sees(path)) return real(path);
  if (record().fails(Kind::kRemove)) return -1;
  const int result = real(path);
  if (result == 0) record().removed(path);
  return result;
}

template <typename Status>
int look_by(const char* name, const char* path, Status* status) {
  if (record().sees(path) && record().fails(Kind::kLook)) return -1;
  return next<int(const char*, Status*)>(name)(path, status);
}

}  // namespace

std::vector<Known> watch(const std::string& folder) { return record().watch(folder); }
void stop() { record() = {}; }
std::vector<Event> take_events() { return record().take_events(); }
const std::vector<Kind>& calls() { return record().calls(); }
void fail(std::size_t call, int error) { record().fail(call, error, false); }
void cut_short(std::size_t call, int error) { record().fail(call, error, true); }
void fail_always(Kind kind, const std::string& path, int error) {
  record().fail_always(kind, path, error);
}
void before_temporary_file(std::function<void()> call) { interruption = std::move(call); }
bool failed() { return record().failed(); }

}  // namespace recorded_calls

using namespace recorded_calls;  // NOLINT(google-build-using-namespace): below are its doors

extern "C" {

int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return open_by(kWide ? "open64" : "open", path, flags, mode);
}
int stat(const char* path, struct stat* status) noexcept {
  return look_by(kWide ? "__stat64_time64" : "stat", path, status);
}
int lstat(const char* path, struct stat* status) noexcept {
  return look_by(kWide ? "__lstat64_time64" : "lstat", path, status);
}
#if __SIZEOF_POINTER__ == 8
int open64(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return open_by("open64", path, flags, mode);
}
int stat64(const char* path, struct stat64* status) noexcept {
  return look_by("stat64", path, status);
}
int lstat64(const char* path, struct stat64* status) noexcept {
  return look_by("lstat64", path, status);
}
#endif

ssize_t read(int descriptor, void* buffer, size_t size) {
  static const auto real = next<ssize_t(int, void*, size_t)>("read");
  if (record().sees(descriptor) && record().fails(Kind::kRead, record().file_of(descriptor))) {
    return -1;
  }
  return real(descriptor, buffer, size);
}
ssize_t write(int descriptor, const void* data, size_t size) {
  static const auto real = next<ssize_t(int, const void*, size_t)>("write");
  if (!record().sees(descriptor)) return real(descriptor, data, size);
  if (record().fails_writing(size)) return -1;
  const ssize_t written = real(descriptor, data, size);
  if (written > 0) record().wrote(descriptor, data, static_cast<std::size_t>(written));
  return written;
}
int fsync(int descriptor) { return sync(descriptor); }
int fdatasync(int descriptor) { return sync(descriptor); }
int fchown(int descriptor, uid_t owner, gid_t group) noexcept {
  if (record().sees(descriptor) && record().fails(Kind::kMode)) return -1;
  return next<int(int, uid_t, gid_t)>("fchown")(descriptor, owner, group);
}
int fchmod(int descriptor, mode_t mode) noexcept {
  if (record().sees(descriptor) && record().fails(Kind::kMode)) return -1;
  return next<int(int, mode_t)>("fchmod")(descriptor, mode);
}
/// A close that fails has closed the file all the same.
int close(int descriptor) {
  static const auto real = next<int(int)>("close");
  if (!record().sees(descriptor)) return real(descriptor);
  record().closed(descriptor);
  const bool fails = record().fails(Kind::kClose);
  const int error = errno;
  const int result = real(descriptor);
  if (!fails) return result;
  errno = error;
  return -1;
}
int rename(const char* from, const char* to) noexcept {
  const auto real = next<int(const char*, const char*)>("rename");
  if (!record().sees(to)) return real(from, to);
  if (record().fails(Kind::kRename)) return -1;
  const int result = real(from, to);
  if (result == 0) record().renamed(from, to);
  return result;
}
int unlink(const char* path) noexcept { return remove_by("unlink", path); }
int remove(const char* path) noexcept { return remove_by("remove", path); }
DIR* opendir(const char* path) {
  if (record().sees(path) && record().fails(Kind::kLook)) return nullptr;
  return next<DIR*(const char*)>("opendir")(path);
}

}  // extern "C"
