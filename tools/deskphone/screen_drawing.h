// The screens of the XML browser as the phone would show them, drawn in the terminal.
#pragma once

#include <cfgxml/xmlbrowser.h>

#include <string>

namespace deskphone {

std::string draw(const XML_TEXT_SCREEN_T& screen);
std::string draw(const XML_TEXT_MENU_T& menu);
std::string draw(const XML_DIRECTORY_T& directory);
std::string draw(const XML_INPUT_SCREEN_T& form);
/// No screen: the assignments of the keys as a table.
std::string draw(const XML_CONFIGURATION_T& configuration);

}  // namespace deskphone
