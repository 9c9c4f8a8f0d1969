#include "profile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <mutex>
#include <set>
#include <thread>

#include "failure.h"
#include "text.h"

namespace deskphone {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr char kLockFile[] = ".lock";
constexpr auto kPatience = 3s;

/// The folders that the phone's files live in.
constexpr const char* kFolders[] = {"config/Phone/Contact",
                                    "config/Phone/History",
                                    "config/Phone/General/DialRule",
                                    "config/Phone/Message",
                                    "config/System",
                                    "config/Network/Rcpe",
                                    "tmp"};

bool holds_anything(const fs::path& folder) {
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().filename() != kLockFile) return true;
  }
  return false;
}

std::mutex scratch_mutex;
std::set<fs::path> scratch_folders;  // guarded by scratch_mutex

}  // namespace

Profile::Profile(const fs::path& root) try : root_(fs::absolute(root).lexically_normal()) {
  if (is_unsafe_path(root_.string())) {
    throw Failure(
        fmt::format("The path of {} holds a double quote, \"$\", a backquote, a backslash or a "
                    "control character, which the phone refuses. Give another --root.",
                    printable(root_.string())));
  }
  if (fs::exists(root_) && !fs::exists(root_ / "config") && holds_anything(root_)) {
    throw Failure(
        fmt::format("{} is not a phone's folder: it has no folder config. Give --root a "
                    "new or an empty folder.",
                    root.string()));
  }
  fs::create_directories(root_);
  lock();
  if (!fs::exists(root_ / "config")) fill();
  for (const char* folder : kFolders) fs::create_directories(root_ / folder);
} catch (const fs::filesystem_error& error) {
  throw Failure(
      fmt::format("The phone's folder {} can not be used: {}. Give --root a folder that "
                  "you may write to.",
                  root.string(), error.code().message()));
}

Profile::~Profile() {
  if (lock_ >= 0) ::close(lock_);
}

void Profile::lock() {
  const fs::path file = root_ / kLockFile;
  lock_ = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (lock_ < 0) throw fs::filesystem_error("", {errno, std::generic_category()});
  const auto give_up = std::chrono::steady_clock::now() + kPatience;
  while (::flock(lock_, LOCK_EX | LOCK_NB) != 0) {
    if (std::chrono::steady_clock::now() > give_up) {
      ::close(lock_);
      throw Failure(
          fmt::format("The phone's folder {} is in use by another deskphone. End that one, "
                      "or give another --root.",
                      root_.string()));
    }
    std::this_thread::sleep_for(20ms);
  }
}

/// The folder config appears in one piece, so that a first use that is cut short is made again.
void Profile::fill() {
  const fs::path source = samples() / "profile";
  const fs::path part = root_ / ".new";
  fs::remove_all(part);
  fs::copy(source, part, fs::copy_options::recursive);
  for (const fs::directory_entry& entry : fs::directory_iterator(part)) {
    if (entry.path().filename() != "config") {
      fs::remove_all(root_ / entry.path().filename());
      fs::rename(entry.path(), root_ / entry.path().filename());
    }
  }
  fs::rename(part / "config", root_ / "config");
  fs::remove_all(part);
}

fs::path program_file() { return fs::read_symlink("/proc/self/exe"); }

fs::path samples() {
  if (const char* chosen = std::getenv("DESKPHONE_SAMPLES")) return chosen;
  const fs::path here = program_file().parent_path();
  for (const char* candidate : {"samples", "../share/cfgxml/samples"}) {
    if (fs::exists(here / candidate / "profile")) return here / candidate;
  }
  throw Failure(
      fmt::format("The sample files are neither in {0}/samples nor in {0}/../share/cfgxml/samples. "
                  "Set DESKPHONE_SAMPLES to where they are.",
                  here.string()));
}

ScratchFolder::ScratchFolder() {
  std::string name = (fs::temp_directory_path() / "deskphone-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) {
    throw Failure(
        fmt::format("No temporary folder can be made in {}.", fs::temp_directory_path().string()));
  }
  path_ = name;
  const std::lock_guard<std::mutex> hold(scratch_mutex);
  scratch_folders.insert(path_);
}

ScratchFolder::~ScratchFolder() {
  const std::lock_guard<std::mutex> hold(scratch_mutex);
  scratch_folders.erase(path_);
  std::error_code error;
  fs::remove_all(path_, error);
}

void ScratchFolder::remove_all() {
  const std::lock_guard<std::mutex> hold(scratch_mutex);
  std::error_code error;
  for (const fs::path& folder : scratch_folders) fs::remove_all(folder, error);
}

}  // namespace deskphone
