// The sorted lists of contacts and blacklist entries that callers receive.
#pragma once

#include "phonebook/tables.h"
#include "support/chain.h"

namespace cfgxml::phonebook {

/// Whether a summary carries the record's ring and photo.
enum class Media { kWith, kWithout };

/// Byte order of names.
inline bool name_less(const CONTACT_SUMMARY_T& left, const CONTACT_SUMMARY_T& right) {
  return rl_strcmp(left.DisplayName, right.DisplayName) < 0;
}

void fill_summary(CONTACT_SUMMARY_T& node, const CONTACT_DATA_T& record, Media media);

/// Copies of the used records that are wanted, sorted by name; equal names in reverse table order.
/// Memory that runs out ends the list early.
template <typename Slots, typename Wanted>
CONTACT_SUMMARY_T* summarize(const Slots& slots, Media media, Wanted wanted) {
  Chain<CONTACT_SUMMARY_T> chain;
  for (const CONTACT_DATA_T& record : slots) {
    if (!wanted(record)) continue;
    CONTACT_SUMMARY_T* node = chain.push_front();
    if (node == nullptr) break;
    fill_summary(*node, record, media);
  }
  return sort_chain(chain.release(), name_less);
}

}  // namespace cfgxml::phonebook
