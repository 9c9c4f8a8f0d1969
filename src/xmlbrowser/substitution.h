// Putting one string in the place of another within a text.
#pragma once

namespace cfgxml::xmlbrowser {

/// Writes the text to the result with every occurrence of old_text, which is not empty, replaced;
/// from left to right, without overlaps. The result holds what comes out and its terminator.
void substitute(const char* text, const char* old_text, const char* new_text, char* result);

}  // namespace cfgxml::xmlbrowser
