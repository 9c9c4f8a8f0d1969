// Moving a record from the contacts to the blacklist and back. A move whose second half fails puts
// the record back where it came from, under a new id.
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>

#include "binding/saving.h"
#include "phonebook/blacklist.h"
#include "phonebook/contacts.h"
#include "phonebook/file_format.h"
#include "phonebook/tables.h"
#include "support/durable.h"
#include "support/lock.h"
#include "support/paths.h"
#include "support/xml_file.h"

namespace cfgxml::phonebook {
namespace {

/// A move writes the file that loses the record before the one that gains it, or that takes it
/// back. Where both lists are written at once, this keeps the first file as it was until the record
/// is on the disk again, so that neither a cut in between nor a failed write leaves it nowhere.
/// Where one is written later, nothing is kept: what is written at once stays.
class LosingFile {
 public:
  LosingFile(const char* path, SaveOrder& gaining_saves) : path_(path) {
    expect_save(gaining_saves);
    if (binding::saves_phonebook_at_once() && XmlFile(path).load()) {
      before_.copy(durable::target_of(paths::on_disk(path)));
    }
  }

  /// Called before the change of the list whose save is to bring the record to the disk.
  void expect_save(SaveOrder& saves) {
    saves_ = &saves;
    begun_ = saves.take();
  }

  /// Called after it. Without that save, the old file takes its place again and has the record
  /// until it is saved next.
  void finish(const char* worker) {
    if (saves_->saved() <= begun_) {
      before_.roll_back();
    } else if (!before_.commit()) {
      rl_log_err("%s failed: <%s> may have the record until it is saved next.", worker, path_);
    }
  }

 private:
  const char* path_;
  SaveOrder* saves_ = nullptr;
  SaveOrder::Number begun_ = 0;
  durable::Before before_;
};

int _cfg_mov_contact_data(int id) {
  if (id < 1) {
    rl_log_err("%s failed: invalid contact_id id %d.", __func__, id);
    return -1;
  }
  CONTACT_DATA_T record{};
  if (_cfg_get_contact_data(id, &record) != 0) {
    rl_log_err("%s failed: cfg_get_contact_data failed.", __func__);
    return -1;
  }
  char group[sizeof record.Group];
  copy_text(group, record.Group);
  copy_text(record.Group, kDefaultGroup);
  if (is_name_in_black(record.DisplayName, kNoId) == 1) {
    rl_log_err("%s failed: black name exists.", __func__);
    return 7;
  }
  LosingFile contacts(paths::kContacts, blacklist_saves);
  if (const int result = _cfg_del_contact_data(id); result != 0) {
    rl_log_err("%s failed: cfg_del_contact_data failed %d.", __func__, result);
    return result;
  }
  if (const int result = _cfg_add_black_data(&record); result != 0) {
    copy_text(record.Group, group);
    contacts.expect_save(contact_saves);
    put_back_contact(*cfg_get_contact_list(), record);
    contacts.finish(__func__);
    rl_log_err("%s failed: cfg_add_black_data failed %d.", __func__, result);
    return result;
  }
  contacts.finish(__func__);
  return 0;
}

int _cfg_mov_black_data(int id) {
  if (id < 1) {
    rl_log_err("%s failed: invalid blacklist id %d.", __func__, id);
    return -1;
  }
  CONTACT_DATA_T record{};
  if (_cfg_get_black_data(id, &record) != 0) {
    rl_log_err("%s failed: cfg_get_black_data failed.", __func__);
    return -1;
  }
  copy_text(record.Group, kDefaultGroup);
  if (is_name_in_contact(record.DisplayName, kNoId) == 1) {
    rl_log_err("%s failed: contact name exists.", __func__);
    return 7;
  }
  LosingFile blacklist(paths::kBlacklist, contact_saves);
  if (const int result = _cfg_remove_black_data(id); result != 0) {
    rl_log_err("%s failed: cfg_remove_black_data failed %d.", __func__, result);
    return result;
  }
  if (const int result = _cfg_add_contact_data(&record); result != 0) {
    blacklist.expect_save(blacklist_saves);
    insert_black(*cfg_get_black_list(), record);
    blacklist.finish(__func__);
    rl_log_err("%s failed: cfg_add_contact_data failed %d.", __func__, result);
    return result;
  }
  blacklist.finish(__func__);
  return 0;
}

}  // namespace
}  // namespace cfgxml::phonebook

using namespace cfgxml;             // NOLINT(google-build-using-namespace): the boundary
using namespace cfgxml::phonebook;  // NOLINT(google-build-using-namespace): the boundary

int mov_contact_data(int id) { return guarded(-1, _cfg_mov_contact_data, id); }
int mov_black_data(int id) { return guarded(-1, _cfg_mov_black_data, id); }

int cfg_mov_contact_data(int id) {
  return under_lock(Lock::kPhonebook, -1, adapter_move_contact_to_blackList, id);
}

int cfg_mov_black_data(int id) {
  return under_lock(Lock::kPhonebook, -1, adapter_move_blackList_to_contact, id);
}
