// Calls copied out of the host's table for callers, and the names put to them.
#include <cfgxml/history.h>
#include <cfgxml/host.h>
#include <cfgxml/remote.h>

#include <memory>

#include "history/names.h"
#include "history/records.h"
#include "support/chain.h"
#include "support/lock.h"
#include "support/text.h"

namespace cfgxml::history {

HISTORY_DATA_LIST* host_table(const char* worker) {
  HISTORY_DATA_LIST* table = cfg_get_history_list();
  if (table == nullptr) rl_log_err("%s failed: cfg_get_history_list return NULL.", worker);
  return table;
}

void summarise(const HISTORY_DATA_T& call, HISTORY_SUMMARY_T* summary) {
  summary->ID = call.ID;
  summary->Type = call.Type;
  summary->Status = call.Status;
  copy_text(summary->Date, call.Date);
  copy_text(summary->Time, call.Time);
  copy_text(summary->LocalSipName, call.LocalSipName);
  copy_text(summary->LocalSipServer, call.LocalSipServer);
  summary->LocalSipPort = call.LocalSipPort;
  copy_text(summary->RemoteSipName, call.RemoteSipName);
  copy_text(summary->RemoteSipServer, call.RemoteSipServer);
  copy_text(summary->RemoteDisplayName, call.RemoteDisplayName);
  summary->RemoteSipPort = call.RemoteSipPort;
}

namespace {

HISTORY_SUMMARY_T* _cfg_get_history_summary() {
  HISTORY_DATA_LIST* table = host_table(__func__);
  if (table == nullptr) return nullptr;

  const Phonebook phonebook;
  Chain<HISTORY_SUMMARY_T> summaries;
  for (const HISTORY_DATA_T& call : Calls(table->Records)) {
    HISTORY_SUMMARY_T* summary = summaries.push_front();
    if (summary == nullptr) break;
    summarise(call, summary);
  }
  phonebook.name(summaries.head());
  return summaries.release();
}

int _cfg_destory_history_summary(HISTORY_SUMMARY_T* history_header) {
  if (history_header == nullptr) {
    rl_log_err("%s failed: history_header is NULL.", __func__);
    return -1;
  }
  free_chain(history_header);
  return 0;
}

int _cfg_get_history_data(int id, HISTORY_DATA_T* history) {
  if (id < 1) {
    rl_log_err("%s failed: invalid id %d.", __func__, id);
    return -1;
  }
  if (history == nullptr) {
    rl_log_err("%s failed: history is NULL.", __func__);
    return -1;
  }
  HISTORY_DATA_LIST* table = host_table(__func__);
  if (table == nullptr) return -1;

  const Phonebook phonebook;
  const HISTORY_DATA_T* call = Calls(table->Records).find(id);
  if (call == nullptr) return -1;
  rl_memcpy(history, call, sizeof *history);

  Chain<HISTORY_SUMMARY_T> named;
  HISTORY_SUMMARY_T* summary = named.append();
  if (summary == nullptr) return -1;
  summarise(*history, summary);
  phonebook.name(summary);
  copy_text(history->RemoteDisplayName, summary->RemoteDisplayName);
  return 0;
}

bool is_given(const char* worker, const HISTORY_SUMMARY_SET_T* set) {
  if (set == nullptr) rl_log_err("%s failed: set is NULL.", worker);
  return set != nullptr;
}

/// The first entry with the wanted ID, or entry 0.
int sync_index_of(const HISTORY_SUMMARY_SET_T& set) {
  for (int index = 0; index < CFGXML_HISTORY_CAPACITY; ++index) {
    if (set.entries[index].ID == set.sync_id) return index;
  }
  return 0;
}

}  // namespace
}  // namespace cfgxml::history

using namespace cfgxml;           // NOLINT(google-build-using-namespace): the file is about them
using namespace cfgxml::history;  // NOLINT(google-build-using-namespace)

HISTORY_SUMMARY_T* cfg_get_history_summary(void) {
  return under_lock<HISTORY_SUMMARY_T*>(Lock::kHistory, nullptr, _cfg_get_history_summary);
}

int cfg_destory_history_summary(HISTORY_SUMMARY_T* history_header) {
  return under_lock(Lock::kHistory, -1, _cfg_destory_history_summary, history_header);
}

int cfg_get_history_data(int id, HISTORY_DATA_T* history) {
  return under_lock(Lock::kHistory, -1, _cfg_get_history_data, id, history);
}

void cfg_get_history_summary_set(HISTORY_SUMMARY_SET_T* set) {
  const ScopedLock hold(Lock::kHistory);
  if (!is_given(__func__, set)) return;
  HISTORY_DATA_LIST* table = host_table(__func__);
  if (table == nullptr) return;

  set->count = 0;
  rl_memset(set->entries, 0, sizeof set->entries);
  for (const HISTORY_DATA_T& call : Calls(table->Records)) {
    summarise(call, &set->entries[set->count++]);
  }
}

void cfg_summary_sync_out(HISTORY_SUMMARY_SET_T* set) {
  if (!is_given(__func__, set)) return;
  set->sync_index = sync_index_of(*set);
  HISTORY_SUMMARY_T& entry = set->entries[set->sync_index];
  const int line = Accounts().number_of(entry);
  const std::unique_ptr<char[]> name(
      cfg_get_contact_name(entry.RemoteSipName, entry.RemoteDisplayName, line));
  if (name != nullptr) copy_text(entry.RemoteDisplayName, name.get());
}
