// The columns that both imports treat alike.
#pragma once

#include <cfgxml/phonebook.h>

#include "csv/columns.h"

namespace cfgxml::csv {

/// The source file's name in the messages about missing arguments.
inline constexpr char kSourceFile[] = "adapter_handle_csv";

/// Stores a contact's own value: name, number, ring, photo or line.
void store(CONTACT_DATA_T& contact, Value value, const char* text);

/// The group that a field of the column GROUP names.
const char* group_or_default(const char* text);

/// The ring that a field of the column GROUP_RING names.
const char* ring_or_default(const char* text);

}  // namespace cfgxml::csv
