#include "phone.h"

#include <cfgxml/binding.h>
#include <fmt/format.h>

#include <string>
#include <vector>

#include "failure.h"
#include "runtime/logging.h"
#include "shutdown.h"

namespace deskphone {
namespace {

namespace fs = std::filesystem;

/// A file of the phone, and what the phone is without it.
struct DataFile {
  const char* path;
  const char* content;
};

constexpr DataFile kContactFile = {"/config/Phone/Contact/Contact.xml", "contacts"};
constexpr DataFile kBlacklistFile = {"/config/Phone/Contact/Blacklist.xml", "blacklist entries"};
constexpr DataFile kHistoryFile = {"/config/Phone/History/History.xml", "calls"};

host::Verbosity verbosity_of(const Options& options) {
  if (options.verbosity == 0) return host::Verbosity::kQuiet;
  return options.verbosity == 1 ? host::Verbosity::kProblems : host::Verbosity::kEverything;
}

/// The errors that are logged while it lives.
class ErrorLog {
 public:
  ErrorLog() {
    host::observe_log([this](host::LogLevel level, const std::string& message) {
      if (level == host::LogLevel::kError) messages_.push_back(message);
    });
  }
  ~ErrorLog() { host::observe_log(nullptr); }
  ErrorLog(const ErrorLog&) = delete;
  ErrorLog& operator=(const ErrorLog&) = delete;

  bool names(const std::string& path) const {
    for (const std::string& message : messages_) {
      if (message.find("<" + path + ">") != std::string::npos) return true;
    }
    return false;
  }

 private:
  std::vector<std::string> messages_;
};

/// Says what is wrong with a file that the phone has read at its start. A file that is missing, or
/// that holds no record, is nothing to talk about.
void report(const DataFile& file, int result, const fs::path& on_disk, const ErrorLog& errors) {
  if (result == -1 && fs::exists(on_disk) && errors.names(file.path)) {
    remark(
        fmt::format("{} can not be read; the phone has no {}. Put a good copy there; the next "
                    "change keeps this one as {}.corrupt.",
                    on_disk.string(), file.content, on_disk.filename().string()));
  }
  const std::string note = loading_note(result);
  if (!note.empty() && result != 18) remark(fmt::format("{}: {}", on_disk.string(), note));
}

}  // namespace

Phone::~Phone() {
  try {
    stop();
  } catch (const Failure& failure) {
    remark(failure.what());
  }
}

void Phone::start() { start(options_.root); }

void Phone::start(const fs::path& root) {
  profile_ = std::make_unique<Profile>(root);
  host::show_log(verbosity_of(options_));
  load_plugin();
  read_files();
  phonebook_->index_contacts();
  host().start_saving();
  watch_signals();
}

void Phone::load_plugin() {
  plugin_ = std::make_unique<Plugin>(Plugin::find());
  const Function<decltype(cfgxml_set_root)> set_root{*plugin_, "cfgxml_set_root"};
  const Function<decltype(cfgxml_cb_init)> fill_table{*plugin_, "cfgxml_cb_init"};
  set_root(profile_->root().c_str());
  host().bind(fill_table);
  host().open_profile(profile_->root());
  phonebook_ = std::make_unique<Phonebook>(*plugin_);
  search_ = std::make_unique<Search>(*plugin_);
}

void Phone::read_files() {
  const ErrorLog errors;
  const host::InitResults results = host().load();
  report(kContactFile, results.contacts, host().on_disk(kContactFile.path), errors);
  report(kBlacklistFile, results.blacklist, host().on_disk(kBlacklistFile.path), errors);
  report(kHistoryFile, results.history, host().on_disk(kHistoryFile.path), errors);
}

void Phone::stop() {
  if (profile_ == nullptr) return;
  if (search_ == nullptr) {  // the plug-in could not be loaded: nothing was changed
    profile_.reset();
    return;
  }
  unwatch_signals();
  const bool written = host().stop_saving();
  const fs::path root = profile_->root();
  profile_.reset();
  if (!written) {
    throw Failure(
        fmt::format("The changes can not be written below {}. Check the free space and "
                    "the permissions of its files.",
                    root.string()));
  }
}

void Phone::load_remote_books() const {
  for (int book = 0; book < CFGXML_REMOTE_BOOK_COUNT; ++book) {
    if (fs::exists(host().on_disk(remote_path(book).c_str()))) search_->load_book(book);
  }
}

}  // namespace deskphone
