// Reading the XML file of a remote phonebook.
#pragma once

#include <cfgxml/phonebook.h>
#include <tinyxml2.h>

namespace cfgxml::remote {

/// The document's records, at most 500, sorted by name in byte order (equal names in document
/// order); in document order as far as they were read when memory runs out. NULL for none.
CONTACT_SUMMARY_T* read_book(tinyxml2::XMLElement& root);

}  // namespace cfgxml::remote
