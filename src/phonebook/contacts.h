// The contact workers that the moves share. All run under the caller's phonebook lock.
#pragma once

#include <cfgxml/phonebook.h>

namespace cfgxml::phonebook {

int _cfg_get_contact_data(int id, CONTACT_DATA_T* contact_data);
int _cfg_add_contact_data(CONTACT_DATA_T* contact_data);
int _cfg_del_contact_data(int id);

/// Adds a contact that must not be lost, under a new id, and saves. The table has a free slot. When
/// memory is out the contact is not in the search index until that is loaded again.
void put_back_contact(CONTACT_DATA_LIST_T& list, const CONTACT_DATA_T& contact);

}  // namespace cfgxml::phonebook
