// The full directory list: every text of every entry, paging, search.
#include <cfgxml/broadsoft.h>
#include <cfgxml/host.h>

#include <algorithm>
#include <utility>

#include "remote/broadsoft_page.h"
#include "support/lock.h"
#include "support/mutex.h"
#include "support/text.h"

namespace cfgxml::remote {
namespace {

static_assert(offsetof(BSFT_CONTACT_DATA_T, LastName) == 8);
static_assert(offsetof(BSFT_CONTACT_DATA_T, Mobile) == 8 + 6 * 64);
static_assert(offsetof(BSFT_CONTACT_DATA_T, YahooId) == 8 + 6 * 64 + 32);
static_assert(offsetof(BSFT_CONTACT_DATA_T, next) == 8 + 18 * 64 + 32);
static_assert(sizeof(BSFT_CONTACT_DATA_T) == 8 + 18 * 64 + 32 + sizeof(void*));
static_assert(sizeof(BSFT_CONTACT_POS_T) == 16);

using Entry = BSFT_CONTACT_DATA_T;

/// A text of an entry: where it stands and the element that carries it.
struct TextField {
  const char* element;
  char* (*of)(Entry& entry);
  std::size_t capacity;
};

template <auto Field>
constexpr TextField text_field(const char* element) {
  return {element, [](Entry& entry) -> char* { return entry.*Field; },
          sizeof(std::declval<Entry&>().*Field)};
}

/// In the order of the record.
constexpr TextField kTexts[] = {
    text_field<&Entry::LastName>("lastName"),
    text_field<&Entry::FirstName>("firstName"),
    text_field<&Entry::UserId>("userId"),
    text_field<&Entry::GroupId>("groupId"),
    text_field<&Entry::Number>("number"),
    text_field<&Entry::Extension>("extension"),
    text_field<&Entry::Mobile>("mobile"),
    text_field<&Entry::YahooId>("yahooId"),
    text_field<&Entry::Pager>("pager"),
    text_field<&Entry::EmailAddress>("emailAddress"),
    text_field<&Entry::Title>("title"),
    text_field<&Entry::Location>("location"),
    text_field<&Entry::AddressLine1>("addressLine1"),
    text_field<&Entry::AddressLine2>("addressLine2"),
    text_field<&Entry::City>("city"),
    text_field<&Entry::State>("state"),
    text_field<&Entry::Zip>("zip"),
    text_field<&Entry::Country>("country"),
    text_field<&Entry::Department>("department"),
};

/// The other element that carries the first name; of both, the later one counts.
constexpr TextField kName = text_field<&Entry::FirstName>("name");

// Guarded by the remote lock.
Entry* full_list = nullptr;

/// The full list's position, which callers read without the remote lock.
class SharedPosition {
 public:
  BSFT_CONTACT_POS_T get() const {
    const Hold hold(mutex_);
    return position_;
  }
  void set(const BSFT_CONTACT_POS_T& position) {
    const Hold hold(mutex_);
    position_ = position;
  }

 private:
  mutable Mutex mutex_;
  BSFT_CONTACT_POS_T position_ GUARDED_BY(mutex_) = {};
};
SharedPosition full_position;

const TextField* text_of_element(const char* name) {
  for (const TextField& text : kTexts) {
    if (equal(name, text.element)) return &text;
  }
  return equal(name, kName.element) ? &kName : nullptr;
}

bool fill(Entry& entry, const tinyxml2::XMLElement& element, std::int32_t index) {
  entry.index = index;
  for (const tinyxml2::XMLElement* child = element.FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement()) {
    const TextField* text = text_of_element(child->Name());
    if (text != nullptr) copy_text(text->of(entry), text->capacity, child->GetText());
  }
  return true;
}

void copy_texts(Entry& to, Entry& from) {
  for (const TextField& text : kTexts) copy_text(text.of(to), text.capacity, text.of(from));
}

bool mentions(Entry& entry, const char* keywords) {
  return std::any_of(std::begin(kTexts), std::end(kTexts),
                     [&](const TextField& text) { return contains(text.of(entry), keywords); });
}

Entry* _cfg_add_broadsoft_contact_summary_to_tail(const char* path) {
  if (is_empty(path)) {
    rl_log_err("%s failed: input is NULL.", __func__);
    return nullptr;
  }
  DirectoryPage page(path);
  if (!page.load()) return nullptr;
  BSFT_CONTACT_POS_T position = full_position.get();
  append_page(page, position, full_list, fill);
  full_position.set(position);
  return full_list;
}

void free_full_list() {
  free_chain(std::exchange(full_list, nullptr));
  full_position.set({});
}

Entry* _cfg_get_broadsoft_contact_summary(const char* path) {
  if (full_list != nullptr) free_full_list();
  return _cfg_add_broadsoft_contact_summary_to_tail(path);
}

int _cfg_get_broadsoft_contact_data(int index, Entry* contact_data) {
  if (contact_data == nullptr) {
    rl_log_err("%s failed, contact_data is NULL!", __func__);
    return 5;
  }
  if (full_list == nullptr) {
    rl_log_err("%s failed, g_broadsoft_contact is NULL!", __func__);
    return -1;
  }
  for (Entry* entry = full_list; entry != nullptr; entry = entry->next) {
    if (entry->index != index) continue;
    contact_data->flag = entry->flag;
    copy_texts(*contact_data, *entry);
    break;
  }
  return 0;
}

Entry* _cfg_search_broadsoft_contact_info(const char* keywords) {
  if (keywords == nullptr) {
    rl_log_err("%s failed, keywords is NULL!", __func__);
    return nullptr;
  }
  if (full_list == nullptr) {
    rl_log_err("%s failed, g_broadsoft_contact is NULL!", __func__);
    return nullptr;
  }
  Chain<Entry> found;
  for (Entry* entry = full_list; entry != nullptr; entry = entry->next) {
    if (!mentions(*entry, keywords)) continue;
    Entry* copy = found.append();
    if (copy == nullptr) break;
    copy->index = entry->index;
    copy->flag = -1;
    copy_texts(*copy, *entry);
  }
  return found.release();
}

int _cfg_destory_broadsoft_conatct_list() {
  if (full_list == nullptr) {
    rl_log_err("%s failed, g_broadsoft_contact is NULL!", __func__);
    return -1;
  }
  free_full_list();
  return 0;
}

}  // namespace
}  // namespace cfgxml::remote

using namespace cfgxml;          // NOLINT(google-build-using-namespace): the file is about them
using namespace cfgxml::remote;  // NOLINT(google-build-using-namespace)

BSFT_CONTACT_DATA_T* cfg_get_broadsoft_contact_summary(const char* path) {
  return under_lock(Lock::kRemote, static_cast<Entry*>(nullptr), _cfg_get_broadsoft_contact_summary,
                    path);
}

BSFT_CONTACT_DATA_T* cfg_add_broadsoft_contact_summary_to_tail(const char* path) {
  return under_lock(Lock::kRemote, static_cast<Entry*>(nullptr),
                    _cfg_add_broadsoft_contact_summary_to_tail, path);
}

BSFT_CONTACT_POS_T* cfg_get_broadsoft_conatct_pos(BSFT_CONTACT_POS_T* pos) {
  if (pos != nullptr) *pos = full_position.get();
  return pos;
}

int cfg_get_broadsoft_contact_data(int index, BSFT_CONTACT_DATA_T* contact_data) {
  return under_lock(Lock::kRemote, -1, _cfg_get_broadsoft_contact_data, index, contact_data);
}

BSFT_CONTACT_DATA_T* cfg_search_broadsoft_contact_info(const char* keywords) {
  return under_lock(Lock::kRemote, static_cast<Entry*>(nullptr), _cfg_search_broadsoft_contact_info,
                    keywords);
}

int cfg_destory_broadsoft_conatct_list(void) {
  return under_lock(Lock::kRemote, -1, _cfg_destory_broadsoft_conatct_list);
}
