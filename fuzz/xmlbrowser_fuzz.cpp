// Any bytes as a document of the XML browser, by both roads: loaded from a file, and from the cache
// of factory documents. Both make the same of a document.
#include <cfgxml/xmlbrowser.h>

#include "phone.h"

namespace {

constexpr char kCached[] = "/app/factory/Static/XMLBrowser/document.xml";
constexpr char kLoaded[] = "/tmp/remote_contact.xml";

void check_header(const XML_BROWSER_HEADER_T& header, int type) {
  require(header.type == type, "the object has its type");
  check_text(header.style);
  check_text(header.InputType);
  check_text(header.Next);
  check_text(header.Previous);
  check_text(header.Selection);
  check_text(header.Exit);
  for (const int32_t word : header.Reserved) require(word == 0, "what is reserved is zero");
}

template <typename Screen>
void check_soft_keys(const Screen& screen) {
  check_text(screen.Title);
  for (const XML_SOFTKEY_T& key : screen.SoftKeys) {
    check_text(key.Label);
    check_text(key.URI);
  }
}

template <typename Record>
void check_options(const Record& record) {
  for (const XML_OPTION_T& option : record.Options) {
    check_text(option.text);
    check_text(option.value);
  }
}

void check(const XML_TEXT_SCREEN_T& screen) {
  check_header(screen.header, XML_TYPE_TEXT_SCREEN);
  check_soft_keys(screen);
  check_text(screen.Text);
}

void check(const XML_TEXT_MENU_T& menu) {
  check_header(menu.header, XML_TYPE_TEXT_MENU);
  check_soft_keys(menu);
  require(menu.ItemCount >= 0 && menu.ItemCount <= CFGXML_MENU_ITEM_CAPACITY, "items fit");
  for (int i = 0; i < CFGXML_MENU_ITEM_CAPACITY; ++i) {
    const XML_MENU_ITEM_T& item = menu.Items[i];
    require((item.Prompt[0] != '\0') == (i < menu.ItemCount), "items with a prompt count");
    check_text(item.Prompt);
    check_text(item.URI);
    check_text(item.PromptDataID);
    check_text(item.DataID);
    check_options(item);
  }
}

void check(const XML_DIRECTORY_T& directory) {
  check_header(directory.header, XML_TYPE_DIRECTORY);
  check_soft_keys(directory);
  require(directory.EntryCount >= 0 && directory.EntryCount <= CFGXML_ENTRY_CAPACITY,
          "entries fit");
  for (int i = 0; i < CFGXML_ENTRY_CAPACITY; ++i) {
    const XML_DIRECTORY_ENTRY_T& entry = directory.Entries[i];
    require((entry.Name[0] != '\0') == (i < directory.EntryCount), "entries with a name count");
    check_text(entry.Name);
    check_text(entry.Presence);
    check_text(entry.URI);
    require(
        entry.PresenceState >= XML_PRESENCE_NONE && entry.PresenceState <= XML_PRESENCE_MISSED_CALL,
        "the presence is one of the known");
  }
}

void check(const XML_INPUT_SCREEN_T& screen) {
  check_header(screen.header, XML_TYPE_INPUT_SCREEN);
  check_soft_keys(screen);
  require(screen.FieldCount >= 1 && screen.FieldCount <= CFGXML_INPUT_FIELD_CAPACITY, "fields fit");
  for (const XML_INPUT_FIELD_T& field : screen.Fields) {
    check_text(field.Prompt);
    check_text(field.URL);
    check_options(field);
  }
}

void check(const XML_CONFIGURATION_T& configuration) {
  check_header(configuration.header, XML_TYPE_CONFIGURATION);
  for (const XML_KEY_CONFIG_T& key : configuration.Keys) {
    check_text(key.Type);
    check_text(key.Label);
    check_text(key.Param1);
    for (const char byte : key.Reserved) require(byte == '\0', "what is reserved is zero");
  }
}

/// Takes the object of a slot out as its bytes, checked; "" for none.
template <typename Screen>
std::string take(Screen* screen, int (*release)()) {
  if (screen == nullptr) return "";
  check(*screen);
  std::string bytes(reinterpret_cast<const char*>(screen), sizeof *screen);
  release();
  return bytes;
}

/// The result, the type and the object of a parse as bytes.
std::string parse(const char* path) {
  const int result = cfg_parse_remote_xml(path);
  const int type = cfg_get_remote_xml_type();
  require(result == 0 || (result == -1 && type == XML_TYPE_NONE), "a failed parse has no type");
  std::string object =
      take(cfg_get_text_screen_object(), cfg_destory_text_screen_object) +
      take(cfg_get_text_menu_object(), cfg_destory_text_menu_object) +
      take(cfg_get_xml_browser_directory_object(), cfg_destory_xml_browser_directory_object) +
      take(cfg_get_xml_browser_input_screen_object(), cfg_destory_xml_browser_input_screen_object) +
      take(cfg_get_xml_browser_configuration_object(),
           cfg_destory_xml_browser_configuration_object);
  require(object.empty() == (type == XML_TYPE_NONE), "a type has its object");
  return std::to_string(result) + "," + std::to_string(type) + "," + object;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Phone phone;
  phone.write(kLoaded, text_of_input(data, size));
  const std::string loaded = parse(kLoaded);

  phone.write(kCached, text_of_input(data, size));
  require(cfg_load_local_xml_file_cache() == 0, "the cache loads");
  const std::string cached = parse(kCached);
  cfg_free_local_xml_file_cache();

  // Where the cache makes one line end of CR LF, the file road also makes one of LF CR.
  const bool same_lines = std::memchr(data, '\r', size) == nullptr;
  require(!same_lines || loaded == cached, "both roads give the same object");
  return 0;
}
