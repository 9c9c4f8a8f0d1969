// The callback table, the storage root, and the entry points that do nothing.
#include <cfgxml/binding.h>
#include <cfgxml/csv.h>
#include <cfgxml/host.h>
#include <cfgxml/timezone.h>

#include "support/lock.h"
#include "support/paths.h"

namespace cfgxml::binding {
namespace {

template <typename Function>
CFGXML_CALLBACK_T slot(Function* function) {
  return reinterpret_cast<CFGXML_CALLBACK_T>(function);
}

const CFGXML_CALLBACK_T kCallbacks[CFGXML_SLOT_COUNT] = {
    slot(contact_init),
    slot(contact_save_init),
    slot(contact_delay_save),
    slot(mov_contact_data),
    slot(mov_black_data),
    slot(get_contact_xml),
    slot(save_contact_xml),
    slot(get_contact_csv),
    slot(save_contact_csv),
    slot(copy_contact_xml),
    slot(get_community_contact_csv),
    slot(save_community_xml),
    slot(is_valid_contact_file_xml),
    slot(is_valid_contact_file_csv),
    slot(history_init),
    slot(history_save_init),
    slot(history_delay_save),
    slot(get_history_xml),
    slot(save_history_xml),
    slot(history_deinit),
    slot(black_init),
    slot(black_save_init),
    slot(black_delay_save),
    slot(get_blacklist_xml),
    slot(save_blacklist_xml),
    slot(get_blacklist_csv),
    slot(save_blacklist_csv),
    slot(cfg_match_timezone_name),
    slot(cfg_del_contact_ring_info),
    slot(cfg_del_contact_photo_info),
};

}  // namespace
}  // namespace cfgxml::binding

void cfgxml_cb_init(CFGXML_CALLBACK_T* table) {
  for (const CFGXML_CALLBACK_T callback : cfgxml::binding::kCallbacks) *table++ = callback;
}

void cfgxml_set_root(const char* directory) {
  cfgxml::guarded(-1, [=] {
    cfgxml::paths::set_root(directory);
    return 0;
  });
}

void* contact_deinit(void* argument) { return argument; }
void* black_deinit(void* argument) { return argument; }
void* history_deinit(void* argument) { return argument; }

int get_file_xml(void) { return 0; }
int save_file_xml(void) { return -1; }

void* find_group_id(void* first, void* second, void* third, void* fourth) {
  return adapter_find_group_id(first, second, third, fourth);
}

void* find_contacts_ring_url(void* first, void* second, void* third, void* fourth) {
  return adapter_find_contacts_ring_url(first, second, third, fourth);
}
