// Adding, changing and deleting calls in the host's table. Every change ends with a save.
#include <cfgxml/binding.h>
#include <cfgxml/history.h>
#include <cfgxml/host.h>

#include <algorithm>
#include <iterator>

#include "history/records.h"
#include "support/lock.h"

namespace cfgxml::history {
namespace {

bool is_given(const char* worker, const HISTORY_DATA_T* history_data) {
  if (history_data == nullptr) rl_log_err("%s failed: history_data is NULL.", worker);
  return history_data != nullptr;
}

int _cfg_add_history(HISTORY_DATA_T* history_data) {
  if (!is_given(__func__, history_data)) return -1;
  HISTORY_DATA_LIST* table = host_table(__func__);
  if (table == nullptr) return -1;

  const Calls calls(table->Records);
  history_data->ID = calls.next_id();
  if (calls.full()) calls.remove(calls.begin());
  rl_memcpy(calls.end(), history_data, sizeof *history_data);
  history_save();
  return 0;
}

int _cfg_mod_history(int id, const HISTORY_DATA_T* history_data) {
  if (!is_given(__func__, history_data)) return -1;
  HISTORY_DATA_LIST* table = host_table(__func__);
  if (table == nullptr) return -1;

  HISTORY_DATA_T* call = Calls(table->Records).find(id);
  if (call == nullptr) return 0;
  call->Status = history_data->Status;
  history_save();
  return 0;
}

int _cfg_del_history(int id) {
  if (id < 1) {
    rl_log_err("%s failed: invalid id %d.", __func__, id);
    return -1;
  }
  HISTORY_DATA_LIST* table = host_table(__func__);
  if (table == nullptr) return -1;

  const Calls calls(table->Records);
  HISTORY_DATA_T* call = calls.find(id);
  if (call == nullptr) return 0;
  calls.remove(call);
  history_save();
  return 0;
}

/// Deletes the records of a type in all slots, used or not; true when there were any.
bool remove_type(HISTORY_DATA_LIST* table, int type) {
  HISTORY_DATA_T* limit = std::end(table->Records);
  HISTORY_DATA_T* rest = std::remove_if(std::begin(table->Records), limit,
                                        [=](const auto& call) { return call.Type == type; });
  rl_memset(rest, 0, static_cast<std::size_t>(limit - rest) * sizeof *rest);
  return rest != limit;
}

int _cfg_del_all_history(int type) {
  HISTORY_DATA_LIST* table = host_table(__func__);
  if (table == nullptr) return -1;

  if (type == 0) {
    Calls(table->Records).clear();
  } else if (!remove_type(table, type)) {
    return 0;
  }
  history_save();
  return 0;
}

}  // namespace
}  // namespace cfgxml::history

using namespace cfgxml;           // NOLINT(google-build-using-namespace): the file is about them
using namespace cfgxml::history;  // NOLINT(google-build-using-namespace)

int cfg_add_history(HISTORY_DATA_T* history_data) {
  return under_lock(Lock::kHistory, -1, _cfg_add_history, history_data);
}

int cfg_mod_history(int id, const HISTORY_DATA_T* history_data) {
  return under_lock(Lock::kHistory, -1, _cfg_mod_history, id, history_data);
}

int cfg_del_history(int id) { return under_lock(Lock::kHistory, -1, _cfg_del_history, id); }

int cfg_del_all_history(int type) {
  return under_lock(Lock::kHistory, -1, _cfg_del_all_history, type);
}
