// The process-wide index, and the exported operations on it but for the books' own.
#include "search/index.h"

#include <new>

#include "support/lock.h"

namespace cfgxml::search {
namespace {

constexpr std::size_t kWord = sizeof(void*);
static_assert(sizeof(TRIE_INFO_T) == 2 * kWord && offsetof(TRIE_INFO_T, record) == kWord);
static_assert(sizeof(TRIE_ENTRY_T) == 3 * kWord && offsetof(TRIE_ENTRY_T, next) == 2 * kWord);
static_assert(sizeof(TRIE_RESULT_T) == 6001 * kWord &&
              offsetof(TRIE_RESULT_T, others) == 6000 * kWord);

int search_keys(const char* keys, TRIE_RESULT_T** out) {
  const Hold hold(the_index().mutex);
  if (!the_index().trie.rooted()) return 0;
  *out = nullptr;
  const int steps = the_index().keypad_search.run(the_index().trie, keys, the_index().hits);
  if (steps == KeypadSearch::kNoMatch) return 0;
  *out = the_index().hits.words();
  return steps;
}

}  // namespace

Index& the_index() {
  // Never destroyed: a thread of the host may still search while the process exits. In memory of
  // its own, so that it is there when no other is.
  alignas(Index) static std::byte memory[sizeof(Index)];
  static Index* const instance = new (memory) Index;
  return *instance;
}

bool add_texts(const TRIE_INFO_T& info, const Texts& texts) {
  const Hold hold(the_index().mutex);
  return the_index().trie.insert(texts, info);
}

void remove_texts(const TRIE_INFO_T& info, const Texts& texts) {
  const Hold hold(the_index().mutex);
  the_index().trie.erase(texts, info.record);
}

bool replace_contact(CONTACT_DATA_T& slot, const CONTACT_DATA_T& contact) {
  const Hold hold(the_index().mutex);
  Trie& trie = the_index().trie;
  if (!trie.reserve(texts_of(contact), CFGXML_BOOK_LOCAL)) return false;
  trie.erase(texts_of(slot), &slot);
  slot = contact;
  return trie.insert(texts_of(slot), {CFGXML_BOOK_LOCAL, &slot});
}

int purge(int book) {
  const Hold hold(the_index().mutex);
  return the_index().trie.purge(book);
}

}  // namespace cfgxml::search

using cfgxml::Hold;
using namespace cfgxml::search;  // NOLINT(google-build-using-namespace): the file is about them

int TrieIncreaseInfo(const char* str, const TRIE_INFO_T* info) {
  if (is_blank(str) || info == nullptr) return -1;
  const Hold hold(the_index().mutex);
  return the_index().trie.insert({str}, *info) ? 0 : -1;
}

int TrieDecreaseInfo(const char* str, const TRIE_INFO_T* info) {
  if (is_blank(str) || info == nullptr) return -1;
  const Hold hold(the_index().mutex);
  if (!the_index().trie.rooted()) return -1;
  the_index().trie.erase({str}, info->record);
  return 0;
}

int CfgTrieSearchVague(const char* keys, TRIE_RESULT_T** out) {
  if (keys == nullptr || out == nullptr) return 0;
  return cfgxml::guarded(0, search_keys, keys, out);
}

int CfgTrieSearchOfCount(const char* prefix, TRIE_ENTRY_T** out) {
  if (prefix == nullptr) return 0;
  const Hold hold(the_index().mutex);
  if (!the_index().trie.rooted()) return 0;
  const Trie::Place place = the_index().trie.find(prefix);
  if (place.node == nullptr) return 0;
  if (out != nullptr) *out = place.at_end ? place.node->entries : nullptr;
  return static_cast<int>(place.node->count);
}
