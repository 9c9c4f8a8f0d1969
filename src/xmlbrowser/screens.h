// The current screen objects.
#pragma once

#include <cfgxml/xmlbrowser.h>

namespace cfgxml::xmlbrowser {

/// The object of each type, made by the parser and freed by the release functions, and the type of
/// the last document parsed. They belong to the thread of the user interface.
struct Screens {
  int type = XML_TYPE_NONE;
  XML_TEXT_SCREEN_T* text_screen = nullptr;
  XML_TEXT_MENU_T* text_menu = nullptr;
  XML_DIRECTORY_T* directory = nullptr;
  XML_INPUT_SCREEN_T* input_screen = nullptr;
  XML_CONFIGURATION_T* configuration = nullptr;
};

extern Screens screens;

}  // namespace cfgxml::xmlbrowser
