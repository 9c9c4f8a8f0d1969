#include "host.h"

#include <cfgxml/host.h>

#include "adapter/file_backup.h"
#include "runtime/locks.h"

namespace host {
namespace {

constexpr char kBlacklist[] = "/config/Phone/Contact/Blacklist.xml";
constexpr char kSettings[] = "/config/settings.json";

}  // namespace

Host::Host() : adapter_(*this), saver_([this](SaveCode code) { return write_now(code); }) {}

void Host::bind(decltype(&cfgxml_cb_init) fill_table) { callbacks_.fill(fill_table); }

void Host::open_profile(const std::filesystem::path& root) {
  root_ = root;
  settings_.open(on_disk(kSettings));
  FileBackup::recover(on_disk(kBlacklist));
}

std::filesystem::path Host::on_disk(const char* path) const { return root_.string() + path; }

InitResults Host::load() {
  InitResults results{};
  results.contacts = callbacks_.contact_init(&lists_.contacts());
  results.blacklist = callbacks_.black_init(&lists_.blacklist());
  results.history = callbacks_.history_init(&lists_.history());
  return results;
}

void Host::start_saving() {
  saver_.start();
  callbacks_.contact_save_init(1);
  callbacks_.black_save_init(1);
  callbacks_.history_save_init(1);
}

bool Host::stop_saving() {
  callbacks_.contact_save_init(0);
  callbacks_.black_save_init(0);
  callbacks_.history_save_init(0);
  return saver_.stop();
}

/// The plug-in copies the file over the old one before it looks for entries in it.
int Host::upload_blacklist(decltype(&cfg_upload_blacklist) upload, const char* path) {
  const PhonebookLock hold;
  if (!saver_.write_if_outstanding(SaveCode::kBlacklist)) return -1;
  {
    FileBackup backup(on_disk(kBlacklist));
    if (!backup.safe()) {
      rl_log_err("<%s> can not be backed up.", kBlacklist);
      return -1;
    }
    const int result = upload(path);
    if (result != -1) {
      backup.keep_change();
      return result;
    }
  }
  callbacks_.black_init(&lists_.blacklist());
  return -1;
}

/// The phonebook's lock is held around its writes, so that an import, which replaces the contact
/// file under it, and a write that began before never cross.
int Host::write_now(SaveCode code) {
  if (code == SaveCode::kHistory) return callbacks_.history_delay_save();
  const PhonebookLock hold;
  return code == SaveCode::kContacts ? callbacks_.contact_delay_save()
                                     : callbacks_.black_delay_save();
}

Host& the_host() {
  static Host host;
  return host;
}

}  // namespace host
