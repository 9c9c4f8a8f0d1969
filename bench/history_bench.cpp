// Listing a full history with names from a full phonebook, and the naming by itself.
#include <benchmark/benchmark.h>
#include <cfgxml/history.h>
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>

#include <cstdio>
#include <cstring>

#include "history/names.h"

namespace {

constexpr int kHistoryLock = 45075;

/// 500 contacts with two or three numbers on lines 0 to 2, 100 blacklist entries, and 100 calls
/// over two accounts: 40 of contacts, 10 of blacklist entries, 50 of strangers.
void fill_lists() {
  cfg_set_string(0, 4, "2001");
  cfg_set_string(0, 16, "pbx.example.net");
  cfg_set_string(1, 4, "2002");
  cfg_set_string(1, 16, "pbx.example.net");

  CONTACT_DATA_LIST_T& contacts = *cfg_get_contact_list();
  for (int i = 0; i < CFGXML_CONTACT_CAPACITY; ++i) {
    CONTACT_DATA_T& contact = contacts.Contacts[i];
    contact = {};
    contact.Id = i + 1;
    contact.Line = i % 3;
    std::snprintf(contact.DisplayName, sizeof contact.DisplayName, "Name %03d", i * 7 % 500);
    std::snprintf(contact.OfficeNumber, sizeof contact.OfficeNumber, "%04d", 3000 + i);
    std::snprintf(contact.MobileNumber, sizeof contact.MobileNumber, "07700900%03d", i);
    if (i % 4 == 0) std::snprintf(contact.OtherNumber, sizeof contact.OtherNumber, "0161%05d", i);
  }
  BLACK_DATA_LIST_T& blacklist = *cfg_get_black_list();
  for (int i = 0; i < CFGXML_BLACKLIST_CAPACITY; ++i) {
    CONTACT_DATA_T& entry = blacklist.Entries[i];
    entry = {};
    entry.Id = i + 1;
    std::snprintf(entry.DisplayName, sizeof entry.DisplayName, "Nuisance %02d", i);
    std::snprintf(entry.OfficeNumber, sizeof entry.OfficeNumber, "0900123%03d", i);
  }
  HISTORY_DATA_LIST& history = *cfg_get_history_list();
  for (int i = 0; i < CFGXML_HISTORY_CAPACITY; ++i) {
    HISTORY_DATA_T& call = history.Records[i];
    call = {};
    call.ID = i + 1;
    std::snprintf(call.LocalSipName, sizeof call.LocalSipName, "200%d", 1 + i % 2);
    std::snprintf(call.LocalSipServer, sizeof call.LocalSipServer, "pbx.example.net");
    call.LocalSipPort = 5060;
    const char* number = i % 10 < 4 ? "07700900%03d" : i % 10 == 4 ? "0900123%03d" : "0207946%03d";
    // One of three literals above, each with one number.
    std::snprintf(call.RemoteSipName, sizeof call.RemoteSipName, number, i);  // NOLINT
    std::snprintf(call.RemoteDisplayName, sizeof call.RemoteDisplayName, "Unknown");
  }
}

// --- The plain way: both lists are walked for every call, and the accounts read for every call.

int match_account(const char* name, const char* server, int port) {
  if (rl_str_isempty(name) != 0 || rl_str_isempty(server) != 0) return 0;
  for (int account = 0; account < 2; ++account) {
    char user[64] = {};
    char host[64] = {};
    cfg_get_string(account, 4, user, sizeof user, "");
    cfg_get_string(account, 16, host, sizeof host, "");
    if (rl_strcmp(user, name) == 0 && rl_strcmp(host, server) == 0 &&
        cfg_get_int(account, 18, 5060) == port) {
      return account + 1;
    }
  }
  return 0;
}

bool match_list(HISTORY_SUMMARY_T* call, const CONTACT_SUMMARY_T* entry, int account) {
  for (; entry != nullptr; entry = entry->next) {
    if (entry->Line != 0 && account != 0 && entry->Line != account) continue;
    if (rl_strcmp(call->RemoteSipName, entry->OfficeNumber) == 0 ||
        rl_strcmp(call->RemoteSipName, entry->MobileNumber) == 0 ||
        rl_strcmp(call->RemoteSipName, entry->OtherNumber) == 0) {
      if (rl_strcmp(call->RemoteDisplayName, entry->DisplayName) != 0) {
        rl_strcpy_s(call->RemoteDisplayName, sizeof call->RemoteDisplayName, entry->DisplayName);
      }
      return true;
    }
  }
  return false;
}

void match_contact(HISTORY_SUMMARY_T* call, const CONTACT_SUMMARY_T* contacts,
                   const CONTACT_SUMMARY_T* blacklist) {
  if (contacts == nullptr && blacklist == nullptr) return;
  const int account = match_account(call->LocalSipName, call->LocalSipServer, call->LocalSipPort);
  if (!match_list(call, contacts, account)) match_list(call, blacklist, account);
}

template <std::size_t Capacity>
void copy(char (&field)[Capacity], const char* text) {
  rl_strcpy_s(field, Capacity, text);
}

HISTORY_SUMMARY_T* list_by_walks() {
  rl_sem_lock(kHistoryLock);
  const HISTORY_DATA_LIST* table = cfg_get_history_list();
  CONTACT_SUMMARY_T* contacts = cfg_get_contact_summary("");
  CONTACT_SUMMARY_T* blacklist = cfg_get_black_summary();
  HISTORY_SUMMARY_T* newest = nullptr;
  for (int i = 0; i < CFGXML_HISTORY_CAPACITY && table->Records[i].ID >= 1; ++i) {
    const HISTORY_DATA_T& call = table->Records[i];
    auto* node = static_cast<HISTORY_SUMMARY_T*>(rl_malloc(sizeof(HISTORY_SUMMARY_T)));
    if (node == nullptr) break;
    rl_memset(node, 0, sizeof *node);
    node->ID = call.ID;
    node->Type = call.Type;
    node->Status = call.Status;
    copy(node->Date, call.Date);
    copy(node->Time, call.Time);
    copy(node->LocalSipName, call.LocalSipName);
    copy(node->LocalSipServer, call.LocalSipServer);
    node->LocalSipPort = call.LocalSipPort;
    copy(node->RemoteSipName, call.RemoteSipName);
    copy(node->RemoteSipServer, call.RemoteSipServer);
    copy(node->RemoteDisplayName, call.RemoteDisplayName);
    node->RemoteSipPort = call.RemoteSipPort;
    match_contact(node, contacts, blacklist);
    node->next = newest;
    newest = node;
  }
  cfg_destory_contact_summary(contacts);
  cfg_destory_contact_summary(blacklist);
  rl_sem_unlock(kHistoryLock);
  return newest;
}

/// True when both lists hold the same calls with the same names, some of them the phonebook's.
bool same_calls() {
  HISTORY_SUMMARY_T* ours = cfg_get_history_summary();
  HISTORY_SUMMARY_T* plain = list_by_walks();
  const HISTORY_SUMMARY_T* left = ours;
  const HISTORY_SUMMARY_T* right = plain;
  int named = 0;
  while (left != nullptr && right != nullptr && left->ID == right->ID &&
         std::strcmp(left->RemoteDisplayName, right->RemoteDisplayName) == 0) {
    if (std::strcmp(left->RemoteDisplayName, "Unknown") != 0) ++named;
    left = left->next;
    right = right->next;
  }
  const bool same = left == nullptr && right == nullptr && named > 0;
  cfg_destory_history_summary(ours);
  cfg_destory_history_summary(plain);
  return same;
}

void list_calls(benchmark::State& state, HISTORY_SUMMARY_T* (*list)()) {
  fill_lists();
  if (!same_calls()) {
    state.SkipWithError("the two ways list different calls");
    return;
  }
  for ([[maybe_unused]] auto _ : state) cfg_destory_history_summary(list());
}

void name_calls(benchmark::State& state, bool plainly) {
  fill_lists();
  const cfgxml::history::Phonebook phonebook;
  CONTACT_SUMMARY_T* contacts = cfg_get_contact_summary("");
  CONTACT_SUMMARY_T* blacklist = cfg_get_black_summary();
  HISTORY_SUMMARY_T* calls = cfg_get_history_summary();
  for ([[maybe_unused]] auto _ : state) {
    for (auto* call = calls; call != nullptr; call = call->next) {
      copy(call->RemoteDisplayName, "Unknown");
      if (plainly) match_contact(call, contacts, blacklist);
    }
    if (!plainly) phonebook.name(calls);
  }
  cfg_destory_history_summary(calls);
  cfg_destory_contact_summary(blacklist);
  cfg_destory_contact_summary(contacts);
}

BENCHMARK_CAPTURE(list_calls, ours, cfg_get_history_summary)
    ->Name("list 100 calls, 600 entries:ours");
BENCHMARK_CAPTURE(list_calls, plain, list_by_walks)
    ->Name("list 100 calls, 600 entries:a walk per call");
BENCHMARK_CAPTURE(name_calls, ours, false)->Name("name 100 calls of a list:ours");
BENCHMARK_CAPTURE(name_calls, plain, true)->Name("name 100 calls of a list:a walk per call");

}  // namespace
