// The screen objects of the XML browser field by field, by the names that they have in C.
#pragma once

#include <cfgxml/xmlbrowser.h>

#include "output.h"

namespace deskphone {

Row fields_of(const XML_TEXT_SCREEN_T& screen);
Row fields_of(const XML_TEXT_MENU_T& menu);
Row fields_of(const XML_DIRECTORY_T& directory);
Row fields_of(const XML_INPUT_SCREEN_T& form);
Row fields_of(const XML_CONFIGURATION_T& configuration);

}  // namespace deskphone
