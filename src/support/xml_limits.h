// What a document must not be made of. Documents come from servers that the phone's owner does not
// control, and the XML library takes time that grows with the square of two things: the attributes
// of one element, and numeric references that are never closed.
#pragma once

namespace cfgxml {

/// False for a text with an element of more than 1000 attributes, or with more than 1000 numeric
/// references ("&#") that no ";" closes. Takes time proportional to the text.
bool within_limits(const char* text);

}  // namespace cfgxml
