#include "host.h"

#include <cfgxml/host.h>

#include "adapter/file_backup.h"

namespace host {
namespace {

constexpr int kPhonebookLock = 45081;
/// What deskphone replaces under a FileBackup.
constexpr const char* kBackedUpFiles[] = {"/config/Phone/Contact/Blacklist.xml"};
constexpr char kSettings[] = "/config/settings.json";

}  // namespace

Host::Host() : adapter_(*this), saver_([this](SaveCode code) { return write_now(code); }) {}

void Host::bind(decltype(&cfgxml_cb_init) fill_table) { callbacks_.fill(fill_table); }

void Host::open_profile(const std::filesystem::path& root) {
  root_ = root;
  settings_.open(on_disk(kSettings));
  for (const char* file : kBackedUpFiles) FileBackup::recover(on_disk(file));
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

/// The phonebook's lock is held around its writes, so that an import, which replaces the contact
/// file under it, and a write that began before never cross.
int Host::write_now(SaveCode code) {
  if (code == SaveCode::kHistory) return callbacks_.history_delay_save();
  rl_sem_lock(kPhonebookLock);
  const int result =
      code == SaveCode::kContacts ? callbacks_.contact_delay_save() : callbacks_.black_delay_save();
  rl_sem_unlock(kPhonebookLock);
  return result;
}

Host& the_host() {
  static Host host;
  return host;
}

}  // namespace host
