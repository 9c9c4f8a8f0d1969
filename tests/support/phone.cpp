#include "support/phone.h"

#include <cfgxml/remote.h>
#include <cfgxml/search.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "runtime/files.h"
#include "runtime/locks.h"
#include "runtime/logging.h"
#include "runtime/shell.h"

namespace phone_test {
namespace {

namespace fs = std::filesystem;

/// Thousands of profiles are written and synced: in memory where that can be had.
[[maybe_unused]] const bool in_memory =
    ::access("/dev/shm", W_OK) == 0 && ::setenv("TMPDIR", "/dev/shm", /*overwrite=*/0) == 0;

fs::path new_folder() {
  std::string name = (fs::temp_directory_path() / "phone-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
  return name;
}

void switch_saving_off(const ::host::Callbacks& callbacks) {
  callbacks.contact_save_init(0);
  callbacks.black_save_init(0);
  callbacks.history_save_init(0);
}

/// The index and the remote books outlive a test; both would point into what the next one clears.
void empty_plugin() {
  CfgTrieReloadLocalBookInfo();
  for (int book = 0; book < CFGXML_REMOTE_BOOK_COUNT; ++book) {
    const std::string path = "/tmp/remote_contact.xml" + std::to_string(book);
    CfgTrieRemoveRemoteBookInfo(book);
    cfg_destory_remote_conatct_list(path.c_str());
  }
}

}  // namespace

Phone::Phone()
    : root_(new_folder()),
      faulty_releases_(::host::locks::faulty_releases()),
      lock_inversions_(::host::locks::inversions()) {}

Phone::~Phone() {
  std::error_code error;
  fs::remove_all(root_, error);
}

void Phone::SetUp() {
  fs::create_directories(on_disk("/config/Phone/Contact"));
  fs::create_directories(on_disk("/config/Phone/History"));
  fs::create_directories(on_disk("/tmp"));
  cfgxml_set_root(root_.c_str());
  host().bind(cfgxml_cb_init);
  host().open_profile(root_);
  host().lists().clear();
  host().saver().forget();
  switch_saving_off(host().callbacks());
  watch_host();
}

void Phone::TearDown() {
  EXPECT_EQ(::host::locks::held(), 0) << "a host lock is still taken";
  EXPECT_EQ(::host::locks::faulty_releases(), faulty_releases_)
      << "a host lock was released by a thread that did not hold it";
  EXPECT_EQ(::host::locks::inversions(), lock_inversions_)
      << "a host lock was taken inside another that is not to be held around it";
  ::host::observe_log(nullptr);
  ::host::observe_commands(nullptr);
  host().saver().observe(nullptr);
  switch_saving_off(host().callbacks());
  host().saver().forget();
  host().saver().stop();
  host().lists().clear();
  empty_plugin();
}

void Phone::watch_host() {
  ::host::observe_log([this](::host::LogLevel /*level*/, const std::string& message) {
    const std::lock_guard<std::mutex> hold(mutex_);
    log_.push_back(message);
  });
  ::host::observe_commands([this](const std::string& command) {
    const std::lock_guard<std::mutex> hold(mutex_);
    commands_.push_back(command);
  });
  host().saver().observe([this](int code) {
    const std::lock_guard<std::mutex> hold(mutex_);
    posted_.push_back(code);
  });
}

void Phone::write(const std::string& path, const std::string& text) const {
  ASSERT_TRUE(::host::files::replace(on_disk(path), text)) << path;
}

std::string Phone::read(const std::string& path) const {
  return ::host::files::read(on_disk(path)).value_or("");
}

bool Phone::exists(const std::string& path) const { return fs::exists(on_disk(path)); }

std::vector<std::string> Phone::log() const {
  const std::lock_guard<std::mutex> hold(mutex_);
  return log_;
}

bool Phone::logged(const std::string& text) const {
  const std::vector<std::string> messages = log();
  return std::find(messages.begin(), messages.end(), text) != messages.end();
}

void Phone::forget_log() {
  const std::lock_guard<std::mutex> hold(mutex_);
  log_.clear();
}

void Phone::set_item(int section, int key, const std::string& value) {
  host().settings().set(section, key, value);
}

std::string Phone::item(int section, int key) {
  return host().settings().get(section, key).value_or("");
}

std::vector<int> Phone::posted() const {
  const std::lock_guard<std::mutex> hold(mutex_);
  return posted_;
}

std::vector<std::string> Phone::commands() const {
  const std::lock_guard<std::mutex> hold(mutex_);
  return commands_;
}

}  // namespace phone_test
