// The bodies of the five types: each fills the rest of a screen whose header holds the common
// attributes already. TagNames fetches the names that a body goes by.
#pragma once

#include <cfgxml/xmlbrowser.h>
#include <tinyxml2.h>

#include "xmlbrowser/tag_names.h"

namespace cfgxml::xmlbrowser {

void read_body(const tinyxml2::XMLElement& root, TagNames& names, XML_TEXT_SCREEN_T& screen);
void read_body(const tinyxml2::XMLElement& root, TagNames& names, XML_TEXT_MENU_T& menu);
void read_body(const tinyxml2::XMLElement& root, TagNames& names, XML_DIRECTORY_T& directory);
void read_body(const tinyxml2::XMLElement& root, TagNames& names, XML_INPUT_SCREEN_T& screen);
void read_body(const tinyxml2::XMLElement& root, TagNames& names, XML_CONFIGURATION_T& screen);

}  // namespace cfgxml::xmlbrowser
