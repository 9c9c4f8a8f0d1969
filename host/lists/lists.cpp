#include "lists/lists.h"

#include <cfgxml/host.h>

#include "host.h"

namespace host {

void Lists::clear() {
  *blocks_ = Blocks{};
  gives_contacts_ = gives_blacklist_ = gives_history_ = true;
}

}  // namespace host

CONTACT_DATA_LIST_T* cfg_get_contact_list(void) {
  return host::the_host().lists().given_contacts();
}

BLACK_DATA_LIST_T* cfg_get_black_list(void) { return host::the_host().lists().given_blacklist(); }

HISTORY_DATA_LIST* cfg_get_history_list(void) { return host::the_host().lists().given_history(); }
