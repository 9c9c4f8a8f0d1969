// Moving a record from the contacts to the blacklist and back. A move whose second half fails puts
// the record back where it came from, under a new id.
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>

#include <functional>

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
  if (const int result = _cfg_del_contact_data(id); result != 0) {
    rl_log_err("%s failed: cfg_del_contact_data failed %d.", __func__, result);
    return result;
  }
  if (const int result = _cfg_add_black_data(&record); result != 0) {
    copy_text(record.Group, group);
    put_back_contact(*cfg_get_contact_list(), record);
    rl_log_err("%s failed: cfg_add_black_data failed %d.", __func__, result);
    return result;
  }
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
  if (const int result = _cfg_remove_black_data(id); result != 0) {
    rl_log_err("%s failed: cfg_remove_black_data failed %d.", __func__, result);
    return result;
  }
  if (const int result = _cfg_add_contact_data(&record); result != 0) {
    insert_black(*cfg_get_black_list(), record);
    rl_log_err("%s failed: cfg_add_contact_data failed %d.", __func__, result);
    return result;
  }
  return 0;
}

/// A move writes the file that loses the record before the one that gains it. Where these writes
/// are not left to the host, the first file is kept as it was until the other is written, so that
/// neither a cut in between nor a failed write leaves the record in neither. After a failed write
/// it is in the first file until that is saved next.
int keep_during(int (*move)(int), int id, const char* losing_file, bool writes_at_once,
                SaveOrder& gaining_saves) {
  durable::Before before;
  if (writes_at_once && XmlFile(losing_file).load()) before.copy(paths::on_disk(losing_file));
  const SaveOrder::Number saved = gaining_saves.saved();
  const int result = move(id);
  if (result == 0 && gaining_saves.saved() == saved) {
    before.put_back();
  } else if (!before.drop()) {
    rl_log_err("%s failed: <%s> may have the record until it is saved next.", __func__,
               losing_file);
  }
  return result;
}

}  // namespace
}  // namespace cfgxml::phonebook

using namespace cfgxml;             // NOLINT(google-build-using-namespace): the boundary
using namespace cfgxml::phonebook;  // NOLINT(google-build-using-namespace): the boundary

int mov_contact_data(int id) {
  return guarded(-1, keep_during, _cfg_mov_contact_data, id, paths::kContacts,
                 binding::writes_contacts_at_once(), std::ref(blacklist_saves));
}

int mov_black_data(int id) {
  return guarded(-1, keep_during, _cfg_mov_black_data, id, paths::kBlacklist,
                 binding::writes_blacklist_at_once(), std::ref(contact_saves));
}

int cfg_mov_contact_data(int id) {
  return under_lock(Lock::kPhonebook, -1, adapter_move_contact_to_blackList, id);
}

int cfg_mov_black_data(int id) {
  return under_lock(Lock::kPhonebook, -1, adapter_move_blackList_to_contact, id);
}
