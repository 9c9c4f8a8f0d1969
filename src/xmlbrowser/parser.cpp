// The frame of a parse: the document from the cache or its file, its type by the root element, and
// the new object in its slot.
#include <cfgxml/host.h>
#include <cfgxml/xmlbrowser.h>

#include <cstdio>
#include <type_traits>

#include "support/chain.h"
#include "support/lock.h"
#include "support/text.h"
#include "support/xml_file.h"
#include "xmlbrowser/attributes.h"
#include "xmlbrowser/bodies.h"
#include "xmlbrowser/file_cache.h"
#include "xmlbrowser/screens.h"

namespace cfgxml::xmlbrowser {
namespace {

using tinyxml2::XMLElement;

/// Makes the object of a document and stores it in its slot. When memory is out the slot keeps what
/// it holds, and the type is none.
template <int Type, auto Slot>
int make(const XMLElement& root, TagNames& names) {
  using Screen = std::remove_pointer_t<std::remove_reference_t<decltype(screens.*Slot)>>;
  screens.type = Type;
  HostBlock<Screen> screen(new_block<Screen>());
  if (screen == nullptr) {
    screens.type = XML_TYPE_NONE;
    rl_log_err("%s failed: out of memory.", "cfg_parse_remote_xml");
    return -1;
  }
  read_header(root, screen->header);
  read_body(root, names, *screen);
  screen->header.type = Type;
  screens.*Slot = screen.release();
  return 0;
}

/// A type of document, by what follows the prefix in its root element's name.
struct DocumentType {
  const char* name;
  int (*make)(const XMLElement& root, TagNames& names);
};

constexpr DocumentType kTypes[] = {
    {"TextScreen", make<XML_TYPE_TEXT_SCREEN, &Screens::text_screen>},
    {"TextMenu", make<XML_TYPE_TEXT_MENU, &Screens::text_menu>},
    {"Directory", make<XML_TYPE_DIRECTORY, &Screens::directory>},
    {"InputScreen", make<XML_TYPE_INPUT_SCREEN, &Screens::input_screen>},
    {"Configuration", make<XML_TYPE_CONFIGURATION, &Screens::configuration>},
};

/// The type of the root element's name, or nullptr.
const DocumentType* find_type(const XMLElement& root, const char* prefix) {
  for (const DocumentType& type : kTypes) {
    char name[64];  // a longer one is cut
    std::snprintf(name, sizeof name, "%s%s", prefix, type.name);
    if (equal_ignoring_case(root.Value(), name)) return &type;
  }
  return nullptr;
}

int parse(const char* path) {
  screens.type = XML_TYPE_NONE;
  if (path == nullptr) {
    rl_log_err("load file <%s> fail!", "NULL");
    return -1;
  }
  XmlFile document(path);
  const XML_FILE_CACHE_T* cached = find_in_cache(path);
  if (cached != nullptr) {
    rl_log_debug("%s %d %s %s ===================cache file found", __FILE_NAME__, __LINE__,
                 cached->path, path);
    document.parse(cached->text);
  } else if (!document.load()) {
    rl_log_err("load file <%s> fail!", path);
    return -1;
  }
  const XMLElement* root = document.root();
  if (root == nullptr) return -1;

  TagNames names(cached != nullptr ? TagNames::Source::kDefaults
                                   : TagNames::Source::kConfiguration);
  names.read({Tag::kRootPrefix});
  const DocumentType* type = find_type(*root, names.name(Tag::kRootPrefix));
  return type != nullptr ? type->make(*root, names) : 0;
}

}  // namespace
}  // namespace cfgxml::xmlbrowser

int cfg_parse_remote_xml(const char* path) {
  return cfgxml::guarded(-1, cfgxml::xmlbrowser::parse, path);
}
