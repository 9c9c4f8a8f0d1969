// Finds the names for a whole list of calls in one walk over the phonebook: the calls wait in
// buckets by their number, and every entry is offered to those that wait for one of its numbers.
#include "history/names.h"

#include <cfgxml/host.h>

#include <cstddef>
#include <cstdint>

#include "support/text.h"

namespace cfgxml::history {
namespace {

/// The configuration items of an account; its section is its index.
enum AccountItem : int { kUserName = 4, kServer = 16, kServerPort = 18 };
constexpr int kDefaultPort = 5060;

/// FNV-1a.
std::uint32_t hash_of(const char* number) {
  std::uint32_t hash = 2166136261U;
  for (; *number != '\0'; ++number) hash = (hash ^ static_cast<unsigned char>(*number)) * 16777619U;
  return hash;
}

/// The calls that have no name from the phonebook yet.
class WaitingCalls {
 public:
  explicit WaitingCalls(HISTORY_SUMMARY_T* calls) {
    for (; calls != nullptr && count_ < waiting_.size(); calls = calls->next) add(calls);
  }
  WaitingCalls(const WaitingCalls&) = delete;
  WaitingCalls& operator=(const WaitingCalls&) = delete;

  /// Gives every call the name of the first entry of the list that is for it.
  void name_from(const CONTACT_SUMMARY_T* entry) {
    for (; entry != nullptr && count_ > 0; entry = entry->next) {
      offer(*entry, entry->OfficeNumber);
      offer(*entry, entry->MobileNumber);
      offer(*entry, entry->OtherNumber);
    }
  }

 private:
  struct Waiting {
    HISTORY_SUMMARY_T* call;
    std::uint32_t hash;
    Waiting* next;  // in the same bucket
  };

  Waiting*& bucket(std::uint32_t hash) { return buckets_[(hash ^ hash >> 16) % buckets_.size()]; }

  void add(HISTORY_SUMMARY_T* call) {
    const std::uint32_t hash = hash_of(call->RemoteSipName);
    Waiting& waiting = waiting_[count_++];
    waiting = {call, hash, bucket(hash)};
    bucket(hash) = &waiting;
  }

  void offer(const CONTACT_SUMMARY_T& entry, const char* number) {
    const std::uint32_t hash = hash_of(number);
    Waiting** link = &bucket(hash);
    while (Waiting* waiting = *link) {
      HISTORY_SUMMARY_T& call = *waiting->call;
      if (waiting->hash == hash && equal(call.RemoteSipName, number) && is_for(entry, call)) {
        copy_text(call.RemoteDisplayName, entry.DisplayName);
        *link = waiting->next;
        --count_;
      } else {
        link = &waiting->next;
      }
    }
  }

  bool is_for(const CONTACT_SUMMARY_T& entry, const HISTORY_SUMMARY_T& call) {
    if (entry.Line == 0) return true;
    const int account = accounts_.number_of(call);
    return account == 0 || account == entry.Line;
  }

  std::array<Waiting, CFGXML_HISTORY_CAPACITY> waiting_{};
  std::size_t count_ = 0;
  std::array<Waiting*, 256> buckets_{};
  Accounts accounts_;
};

}  // namespace

void Accounts::read() {
  int section = 0;
  for (Account& account : accounts_) {
    cfg_get_string(section, kUserName, account.user, sizeof account.user, "");
    cfg_get_string(section, kServer, account.server, sizeof account.server, "");
    account.port = cfg_get_int(section, kServerPort, kDefaultPort);
    ++section;
  }
  read_ = true;
}

int Accounts::number_of(const HISTORY_SUMMARY_T& call) {
  if (is_empty(call.LocalSipName) || is_empty(call.LocalSipServer)) return 0;
  if (!read_) read();
  int number = 1;
  for (const Account& account : accounts_) {
    if (equal(account.user, call.LocalSipName) && equal(account.server, call.LocalSipServer) &&
        account.port == call.LocalSipPort) {
      return number;
    }
    ++number;
  }
  return 0;
}

Phonebook::Phonebook()
    : contacts_(cfg_get_contact_summary("")), blacklist_(cfg_get_black_summary()) {}

void Phonebook::name(HISTORY_SUMMARY_T* calls) const {
  WaitingCalls waiting(calls);
  waiting.name_from(contacts_.get());
  waiting.name_from(blacklist_.get());
}

}  // namespace cfgxml::history
