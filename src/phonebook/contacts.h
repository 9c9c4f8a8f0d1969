// The contact workers that the moves share. All run under the caller's phonebook lock.
#pragma once

#include <cfgxml/phonebook.h>

namespace cfgxml::phonebook {

int _cfg_get_contact_data(int id, CONTACT_DATA_T* contact_data);
int _cfg_add_contact_data(CONTACT_DATA_T* contact_data);
int _cfg_del_contact_data(int id);

/// Adds a contact whose name is known to be free, or that must not be lost, and saves. The table
/// has a free slot.
void insert_contact(CONTACT_DATA_LIST_T& list, CONTACT_DATA_T& contact);

}  // namespace cfgxml::phonebook
