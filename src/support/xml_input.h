// A document's text on its way to the XML library, which has two weaknesses. It takes time that
// grows with the square of an element's attributes, and documents come from servers that the
// phone's owner does not control. And once a reference or a line end has made a text shorter, it
// puts some other letter in the place of an "&" that begins no reference.
#pragma once

#include <string>

namespace cfgxml {

/// False for a document with an element of more than 1000 attributes, or with more than 1000 open
/// numeric references ("&#" without digits and ";" after it) in one text or value of an attribute.
/// Else `escaped` gets the document with "&amp;" for every "&" that begins neither one of XML's
/// five entities nor a closed reference; it stays empty when there is none. Comments, CDATA
/// sections, declarations and the like keep theirs. Takes time proportional to the document.
bool prepare_xml(const char* text, std::string& escaped);

}  // namespace cfgxml
