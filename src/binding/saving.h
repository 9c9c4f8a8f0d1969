// What the operations have to know of saving, besides the functions that end a change.
#pragma once

namespace cfgxml::binding {

/// True while a change of contacts and one of the blacklist are both written before they return.
bool saves_phonebook_at_once();

}  // namespace cfgxml::binding
