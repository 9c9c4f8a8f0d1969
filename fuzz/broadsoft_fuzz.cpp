// Any bytes as pages of a BroadSoft directory, parted by NUL bytes, read into both kinds of list.
#include <cfgxml/broadsoft.h>
#include <cfgxml/host.h>
#include <cfgxml/search.h>

#include <cstring>
#include <utility>

#include "input_file.h"

namespace {

template <typename Node>
int length_of(const Node* list) {
  int length = 0;
  for (; list != nullptr; list = list->next) ++length;
  return length;
}

/// A page adds at most 500 entries in front of which the list stays.
template <typename Node>
const Node* check_growth(const Node* before, int length, const Node* after) {
  if (after == nullptr) return before;
  require(before == nullptr || before == after);
  const int added = length_of(after) - length;
  require(added >= 0 && added <= CFGXML_BROADSOFT_PAGE_CAPACITY);
  return after;
}

void check_positions(const CONTACT_SUMMARY_T* list, const BSFT_CONTACT_POS_T& pos) {
  const int length = length_of(list);
  for (; list != nullptr; list = list->next) {
    check_text(list->DisplayName);
    check_text(list->OfficeNumber);
    require(list->position >= 0 && list->position < length);
    require(pos.state >= 0);
  }
}

void search_full_list(const BSFT_CONTACT_DATA_T* list) {
  const int length = length_of(list);
  BSFT_CONTACT_DATA_T* found = cfg_search_broadsoft_contact_info("");
  require(length_of(found) == length);
  while (found != nullptr) {
    require(found->flag == -1);
    rl_free(std::exchange(found, found->next));
  }
  BSFT_CONTACT_DATA_T data = {};
  require(cfg_get_broadsoft_contact_data(0, &data) == (length > 0 ? 0 : -1));
}

/// Leaves no list, and no position, which an empty list would keep.
void forget(const InputFile& file) {
  constexpr char kPage[] = "<Personal xmlns='http://schema.broadsoft.com/xsi'><entry/></Personal>";
  file.hold(reinterpret_cast<const std::uint8_t*>(kPage), sizeof kPage - 1);
  require(cfg_add_broadsoft_contact_summary_to_tail(file.path()) != nullptr);
  require(cfg_destory_broadsoft_conatct_list() == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const InputFile file;
  const BSFT_CONTACT_DATA_T* full = nullptr;
  const CONTACT_SUMMARY_T* simple = nullptr;
  BSFT_CONTACT_POS_T pos = {};
  while (size > 0) {
    const auto* end = static_cast<const std::uint8_t*>(std::memchr(data, '\0', size));
    const std::size_t length = end != nullptr ? static_cast<std::size_t>(end - data) : size;
    file.hold(data, length);
    const int full_length = length_of(full);
    const BSFT_CONTACT_DATA_T* full_head = cfg_add_broadsoft_contact_summary_to_tail(file.path());
    full = check_growth(full, full_length, full_head);
    const int simple_length = length_of(simple);
    const CONTACT_SUMMARY_T* simple_head =
        cfg_append_broadsoft_simple_contact_summary(3, file.path(), &pos);
    simple = check_growth(simple, simple_length, simple_head);
    check_positions(simple, pos);
    const std::size_t used = end != nullptr ? length + 1 : length;
    data += used;
    size -= used;
  }
  search_full_list(full);
  require(cfg_destory_broadsoft_simple_conatct_list(3) == (simple != nullptr ? 0 : -1));
  forget(file);
  TRIE_RESULT_T* hits = nullptr;
  CfgTrieSearchVague("", &hits);
  return 0;
}
