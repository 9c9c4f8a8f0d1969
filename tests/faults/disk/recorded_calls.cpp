#include "faults/disk/recorded_calls.h"

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

struct Open {
  int file;  // -1 for a folder
  std::string path;
  std::size_t offset;
};

/// What is watched, what happened, and what is to fail.
struct Record {
  std::string folder;  // empty while nobody watches
  std::map<std::string, int> names;
  std::map<int, Open> open;
  int files = 0;
  std::vector<Event> events;
  std::vector<Kind> calls;
  std::size_t fail_at = static_cast<std::size_t>(-2);
  int error = 0;
  bool short_write = false;
  bool failed = false;
  Kind bad_kind = Kind::kOpen;
  int bad_file = 0;  // none

  int number_of(const std::string& path) {
    return names.try_emplace(path, static_cast<int>(++files)).first->second;
  }
  bool sees(const char* path) const {
    return !folder.empty() && path != nullptr &&
           folder.compare(0, folder.npos, path, 0, folder.size()) == 0;
  }
  bool sees(int descriptor) const { return !folder.empty() && open.count(descriptor) != 0; }

  /// Counts a call; true when it is the one to fail, or on a file that always does, with errno set.
  bool fails(Kind kind, int file = 0) {
    calls.push_back(kind);
    const bool due = calls.size() == fail_at + 1;
    failed = failed || due;
    if (!due && (file == 0 || file != bad_file || kind != bad_kind)) return false;
    errno = error;
    return true;
  }
  /// The same for a write, which may fail by halves.
  bool fails_writing(std::size_t& size) {
    const bool due = fails(Kind::kWrite);
    if (!due || !short_write) return due;
    short_write = false;
    size /= 2;
    if (error != 0) fail_at = calls.size();
    return false;
  }

  void opened(int descriptor, const std::string& path, bool created, int flags) {
    struct stat status {};
    const bool is_folder = ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
    if (created) names.erase(path);
    open[descriptor] = {is_folder ? -1 : number_of(path), path, 0};
    if (!created && (flags & O_TRUNC) == 0) return;
    events.push_back({created ? Effect::kCreated : Effect::kEmptied, number_of(path), path});
  }
  void wrote(int descriptor, const void* data, std::size_t size) {
    auto& [file, path, offset] = open[descriptor];
    const std::string text(static_cast<const char*>(data), size);
    events.push_back({Effect::kWritten, file, {}, {}, std::exchange(offset, offset + size), text});
  }
  void synced(int descriptor) {
    const auto& [file, path, offset] = open[descriptor];
    events.push_back({file < 0 ? Effect::kFolderSynced : Effect::kFileSynced, file, path});
  }
  void renamed(const std::string& from, const std::string& to) {
    const int file = number_of(from);
    names.erase(from);
    names[to] = file;
    events.push_back({Effect::kRenamed, file, from, to});
  }
  void removed(const std::string& path) {
    events.push_back({Effect::kRemoved, number_of(path), path});
    names.erase(path);
  }
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
  if (record().fails(creates ? Kind::kCreate : Kind::kOpen, record().number_of(path))) return -1;
  const int descriptor = real(path, flags, mode);
  if (descriptor >= 0) record().opened(descriptor, path, creates, flags);
  return descriptor;
}

int remove_by(const char* name, const char* path) {
  const auto real = next<int(const char*)>(name);
  if (!record().sees(path)) return real(path);
  if (record().fails(Kind::kRemove)) return -1;
  const int result = real(path);
  if (result == 0) record().removed(path);
  return result;
}

int look_by(const char* name, const char* path, struct stat* status) {
  if (record().sees(path) && record().fails(Kind::kLook)) return -1;
  return next<int(const char*, struct stat*)>(name)(path, status);
}

}  // namespace

std::vector<Known> watch(const std::string& folder) {
  record() = {};
  std::vector<Known> known;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file() || entry.is_symlink()) continue;
    std::ifstream stream(entry.path(), std::ios::binary);
    known.push_back({entry.path(), record().number_of(entry.path()),
                     std::string(std::istreambuf_iterator<char>(stream), {})});
  }
  record().folder = folder + "/";
  return known;
}
void stop() { record() = {}; }
std::vector<Event> take_events() { return std::exchange(record().events, {}); }
const std::vector<Kind>& calls() { return record().calls; }
void fail(std::size_t call, int error) {
  record().fail_at = call;
  record().error = error;
}
void cut_short(std::size_t call, int error) {
  fail(call, error);
  record().short_write = true;
}
void fail_always(Kind kind, const std::string& path, int error) {
  record().bad_kind = kind;
  record().bad_file = record().number_of(path);
  record().error = error;
}
void before_temporary_file(std::function<void()> call) { interruption = std::move(call); }
bool failed() { return record().failed; }

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
ssize_t read(int descriptor, void* buffer, size_t size) {
  static const auto real = next<ssize_t(int, void*, size_t)>("read");
  if (record().sees(descriptor) && record().fails(Kind::kRead, record().open[descriptor].file)) {
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
/// The record knows what is synced; the disk itself need not wear.
int fsync(int descriptor) {
  if (!record().sees(descriptor)) return 0;
  if (record().fails(Kind::kSync)) return -1;
  record().synced(descriptor);
  return 0;
}
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
  record().open.erase(descriptor);
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
