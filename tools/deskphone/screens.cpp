#include "screens.h"

#include <cfgxml/xmlbrowser.h>
#include <fmt/format.h>
#include <tinyxml2.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "failure.h"
#include "screen_drawing.h"
#include "screen_json.h"
#include "text.h"

namespace deskphone {
namespace {

namespace fs = std::filesystem;

constexpr char kFactoryFolder[] = "/app/factory/Static/XMLBrowser/";

/// Both forms of the current object of a type, which is released.
template <typename Type>
Screen take(const Plugin& plugin, const char* accessor, const char* release) {
  const Function<Type*()> object{plugin, accessor};
  const Function<int()> free_object{plugin, release};
  Screen screen{draw(*object()), fields_of(*object())};
  free_object();
  return screen;
}

/// The screen of the document that was parsed last; nothing when its type is unknown.
std::optional<Screen> take_screen(const Plugin& plugin) {
  const Function<decltype(cfg_get_remote_xml_type)> type{plugin, "cfg_get_remote_xml_type"};
  switch (type()) {
    case XML_TYPE_TEXT_MENU:
      return take<XML_TEXT_MENU_T>(plugin, "cfg_get_text_menu_object",
                                   "cfg_destory_text_menu_object");
    case XML_TYPE_TEXT_SCREEN:
      return take<XML_TEXT_SCREEN_T>(plugin, "cfg_get_text_screen_object",
                                     "cfg_destory_text_screen_object");
    case XML_TYPE_DIRECTORY:
      return take<XML_DIRECTORY_T>(plugin, "cfg_get_xml_browser_directory_object",
                                   "cfg_destory_xml_browser_directory_object");
    case XML_TYPE_INPUT_SCREEN:
      return take<XML_INPUT_SCREEN_T>(plugin, "cfg_get_xml_browser_input_screen_object",
                                      "cfg_destory_xml_browser_input_screen_object");
    case XML_TYPE_CONFIGURATION:
      return take<XML_CONFIGURATION_T>(plugin, "cfg_get_xml_browser_configuration_object",
                                       "cfg_destory_xml_browser_configuration_object");
    default:
      return std::nullopt;
  }
}

/// "XML_ERROR_MISMATCHED_ELEMENT" as "mismatched element".
std::string words_of(const std::string& error) {
  std::string words = error.substr(error.rfind("XML_ERROR_", 0) == 0 ? 10 : 0);
  for (char& letter : words) {
    letter =
        letter == '_' ? ' ' : static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return words;
}

/// What is wrong with a document that the plug-in did not take.
std::string fault_of(const fs::path& file, const std::string& name) {
  std::error_code error;
  if (!fs::is_regular_file(file, error)) {
    return fmt::format("{} can not be read: {}. Check the path.", name,
                       error ? error.message() : "it is no file");
  }
  tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
  if (document.LoadFile(file.c_str()) == tinyxml2::XML_ERROR_FILE_COULD_NOT_BE_OPENED) {
    return fmt::format("{} can not be read. Check its permissions.", name);
  }
  if (document.Error()) {
    return fmt::format("{} is not well-formed XML: line {}, {}. Correct it there.", name,
                       std::max(document.ErrorLineNum(), 1), words_of(document.ErrorName()));
  }
  if (document.RootElement() == nullptr) {
    return fmt::format("{} holds no element. A screen is one, as in samples/screens.", name);
  }
  return fmt::format(
      "{} is refused: an element has more than 1000 attributes, or more than 1000 references "
      "(\"&#\") are not closed.",
      name);
}

/// Why a well-formed document shows nothing.
std::string unknown_type(const fs::path& file, const std::string& name, const std::string& prefix) {
  tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
  document.LoadFile(file.c_str());
  return fmt::format(
      "{0} is no screen that the phone knows: its root element is {1}. Use {2}TextScreen, "
      "{2}TextMenu, {2}Directory, {2}InputScreen or {2}Configuration.",
      name, document.RootElement() != nullptr ? printable(document.RootElement()->Value()) : "none",
      prefix);
}

Screen open(const Phone& phone, const char* path, const fs::path& file, const std::string& name,
            const std::string& prefix) {
  const Function<decltype(cfg_parse_remote_xml)> parse{phone.plugin(), "cfg_parse_remote_xml"};
  if (parse(path) != 0) throw Failure(fault_of(file, name));
  std::optional<Screen> screen = take_screen(phone.plugin());
  if (!screen) throw Failure(unknown_type(file, name, prefix));
  return std::move(*screen);
}

std::string factory_names(const fs::path& folder) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + printable(name);
  return list.empty() ? "none" : list;
}

}  // namespace

Screen open_screen(const Phone& phone, const std::string& path, const std::string& name) {
  constexpr int kTagNames = 46;
  constexpr int kRootPrefix = 0;
  const std::string prefix =
      phone.host().settings().get(kTagNames, kRootPrefix).value_or("IPPhone");
  return open(phone, path.c_str(), path, name, prefix);
}

Screen open_factory_screen(const Phone& phone, const std::string& name) {
  const Function<decltype(cfg_load_local_xml_file_cache)> load{phone.plugin(),
                                                               "cfg_load_local_xml_file_cache"};
  const fs::path folder = phone.host().on_disk(kFactoryFolder);
  if (load() != 0) {
    throw Failure(
        fmt::format("The factory documents can not be read. Put them into {}.", folder.string()));
  }
  if (fs::path(name).filename() != name || !fs::is_regular_file(folder / name)) {
    throw Failure(fmt::format("There is no factory document {}. In {} there are: {}.", name,
                              folder.string(), factory_names(folder)));
  }
  const std::string path = kFactoryFolder + name;
  return open(phone, path.c_str(), folder / name, name, "IPPhone");
}

}  // namespace deskphone
