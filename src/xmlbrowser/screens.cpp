#include "xmlbrowser/screens.h"

#include <cfgxml/host.h>

namespace cfgxml::xmlbrowser {

Screens screens;

namespace {

/// Frees the object of a slot; the slot's name is the one that the message gives it.
template <typename Screen>
int release(const char* function, const char* slot_name, Screen*& slot) {
  if (slot == nullptr) {
    rl_log_err("%s failed: %s is NULL.", function, slot_name);
    return -1;
  }
  rl_free(slot);
  slot = nullptr;
  return 0;
}

}  // namespace
}  // namespace cfgxml::xmlbrowser

using cfgxml::xmlbrowser::release;
using cfgxml::xmlbrowser::screens;

int cfg_get_remote_xml_type(void) { return screens.type; }

XML_TEXT_SCREEN_T* cfg_get_text_screen_object(void) { return screens.text_screen; }
XML_TEXT_MENU_T* cfg_get_text_menu_object(void) { return screens.text_menu; }
XML_DIRECTORY_T* cfg_get_xml_browser_directory_object(void) { return screens.directory; }
XML_INPUT_SCREEN_T* cfg_get_xml_browser_input_screen_object(void) { return screens.input_screen; }
XML_CONFIGURATION_T* cfg_get_xml_browser_configuration_object(void) {
  return screens.configuration;
}

int cfg_destory_text_screen_object(void) {
  return release(__func__, "g_text_screen_object", screens.text_screen);
}

int cfg_destory_text_menu_object(void) {
  return release(__func__, "g_text_menu_object", screens.text_menu);
}

int cfg_destory_xml_browser_directory_object(void) {
  return release(__func__, "g_directory_object", screens.directory);
}

int cfg_destory_xml_browser_input_screen_object(void) {
  return release(__func__, "g_input_screen_object", screens.input_screen);
}

int cfg_destory_xml_browser_configuration_object(void) {
  return release(__func__, "g_configuration_object", screens.configuration);
}
