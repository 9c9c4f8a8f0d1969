// The blacklist workers that the moves share. All run under the caller's phonebook lock.
#pragma once

#include <cfgxml/phonebook.h>

namespace cfgxml::phonebook {

int _cfg_get_black_data(int id, CONTACT_DATA_T* black_data);
int _cfg_add_black_data(CONTACT_DATA_T* black_data);
int _cfg_remove_black_data(int id);

/// Adds an entry whose name is known to be free, or that must not be lost, and saves. The table
/// has a free slot.
void insert_black(BLACK_DATA_LIST_T& list, CONTACT_DATA_T& entry);

}  // namespace cfgxml::phonebook
