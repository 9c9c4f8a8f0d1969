// What the operations have to know of saving, besides the functions that end a change.
#pragma once

namespace cfgxml::binding {

/// True while a change of contacts, or of the blacklist, is written before it returns.
bool writes_contacts_at_once();
bool writes_blacklist_at_once();

}  // namespace cfgxml::binding
