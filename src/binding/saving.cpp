// Reading and writing the host's three blocks: the init slots, the switches of deferred saving, and
// the save that ends every change.
#include "binding/saving.h"

#include <cfgxml/binding.h>
#include <cfgxml/host.h>

#include <atomic>

#include "support/lock.h"
#include "support/paths.h"

namespace cfgxml::binding {
namespace {

/// What the host is to write later; the numbers are its save codes.
enum class SaveCode : int { kHistory = 1, kContacts = 3, kBlacklist = 4 };

/// One kind of data that the host owns.
struct Kind {
  const char* path;
  Lock lock;
  SaveCode code;
  std::atomic<bool> deferred{false};
};

Kind contacts{paths::kContacts, Lock::kPhonebook, SaveCode::kContacts};
Kind blacklist{paths::kBlacklist, Lock::kPhonebook, SaveCode::kBlacklist};
Kind history{paths::kHistory, Lock::kHistory, SaveCode::kHistory};

int read(const Kind& kind, void* list) {
  const ScopedLock hold(kind.lock);
  return adapter_read_file_ex(list, kind.path);
}

int switch_deferred(Kind& kind, int flag) {
  kind.deferred = flag != 0;
  return flag != 0 ? 1 : 0;
}

int write(const Kind& kind, void* list) { return adapter_write_file_ex(list, kind.path); }

template <typename List>
int save(const Kind& kind, List* (*host_list)()) {
  if (kind.deferred) {
    cfg_add_save_msg(static_cast<int>(kind.code));
  } else {
    write(kind, host_list());
  }
  return 0;
}

}  // namespace

bool saves_phonebook_at_once() { return !contacts.deferred && !blacklist.deferred; }

}  // namespace cfgxml::binding

using namespace cfgxml::binding;  // NOLINT(google-build-using-namespace): the file is about them

int contact_init(CONTACT_DATA_LIST_T* list) { return read(contacts, list); }
int black_init(BLACK_DATA_LIST_T* list) { return read(blacklist, list); }
int history_init(HISTORY_DATA_LIST* list) { return read(history, list); }

int contact_save_init(int flag) { return switch_deferred(contacts, flag); }
int black_save_init(int flag) { return switch_deferred(blacklist, flag); }
int history_save_init(int flag) { return switch_deferred(history, flag); }

int contact_save(void) { return save(contacts, cfg_get_contact_list); }
int black_save(void) { return save(blacklist, cfg_get_black_list); }
int history_save(void) { return save(history, cfg_get_history_list); }

int contact_delay_save(void) { return write(contacts, cfg_get_contact_list()); }
int black_delay_save(void) { return write(blacklist, cfg_get_black_list()); }

int history_delay_save(void) {
  const cfgxml::ScopedLock hold(cfgxml::Lock::kHistory);
  return write(history, cfg_get_history_list());
}
