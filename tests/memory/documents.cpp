// CSV files and the documents of the XML browser.
#include <cfgxml/csv.h>
#include <cfgxml/xmlbrowser.h>

#include <cstdio>

#include "scenario.h"

namespace memory_test {
namespace {

// ---- CSV files

constexpr char kHeader[] =
    "FN,N,EMAIL,TEL_HOME,TEL_WORK,TEL_MOBILE,TEL_OTHER,TEL_FAX,TEL_CUSTOM,"
    "RING,COMPANY,TITLE,ADDR_MAIN,ADDR_OTHER,IMS,WEB,NOTES,BIRTHDAY,"
    "X-IRMC-LUID,GROUP,GROUP_RING,GROUP_DESCRIPTION,PHOTO,LINE,END\n";

void with_csv(Stage& stage) {
  with_phonebook(stage);
  stage.write("/import/some.csv", std::string(kHeader) +
                                      "Xenia,,,,301,,,,,Auto,,,,,,,,,,Home,Auto,,Default,0,END\n"
                                      "Yves,,,,302,,,,,Auto,,,,,,,,,,Desk,Auto,,Default,0,END\n"
                                      "Zita,,,,303,,,,,Auto,,,,,,,,,,Desk,Auto,,Default,0,END\n");
}

void nothing(Stage& /*stage*/) {}

std::string csv_path(const Stage& stage) { return stage.on_disk("/import/some.csv"); }

CSV_CONTACT_LIST_T* columns(const Stage& stage) {
  CSV_CONTACT_LIST_T* list = nullptr;
  get_contact_csv_head(csv_path(stage).c_str(), &list);
  return list;
}

Result header_checked(Stage& stage) {
  const std::string path = csv_path(stage);
  return result_of(stage.call(is_valid_contact_file_csv, path.c_str()));
}

/// All columns, or none.
Result header_read(Stage& stage) {
  const std::string path = csv_path(stage);
  CSV_CONTACT_LIST_T* list = nullptr;
  const int result = stage.call(get_contact_csv_head, path.c_str(), &list);
  const std::size_t count = list_taken(list).nodes.size();
  return {std::to_string(result) + " " + std::to_string(count), {}, false};
}

/// The list stays the caller's when it gets no further column.
Result column_added(Stage& stage) {
  CSV_CONTACT_LIST_T* list = columns(stage);
  char name[] = "MORE";
  CSV_CONTACT_LIST_T* longer = stage.call(list_add_contact_section, list, name);
  const bool added = longer != nullptr;
  EXPECT_EQ(list_taken(list).nodes.size(), added ? 26U : 25U);
  return result_of(added ? 0 : -1);
}

Result columns_compared(Stage& stage) {
  CSV_CONTACT_LIST_T* list = columns(stage);
  const int result = stage.call(list_loop_compare, list);
  list_free(list);
  return result_of(result);
}

Result columns_released(Stage& stage) {
  CSV_CONTACT_LIST_T* list = columns(stage);
  return result_of(stage.call([&] { return list_free(list), 0; }));
}

Result contacts_imported(Stage& stage) {
  const std::string path = csv_path(stage);
  return result_of(stage.call(get_contact_csv, path.c_str(), &stage.contacts()));
}

/// What was built: every contact with its group, which the files of community data need.
Result community_read(Stage& stage) {
  const std::string path = csv_path(stage);
  COMMUNITY_DATA_T* data = stage.call(get_community_contact_csv, path.c_str());
  Result result{"list", {}, true};
  if (data == nullptr) return result;
  for (const COMMUNITY_CONTACT_T* node = data->Contacts; node != nullptr; node = node->next) {
    const GROUP_SUMMARY_T* group = data->Groups;
    while (group != nullptr && std::string(group->Name) != node->Contact.Group) group = group->next;
    EXPECT_TRUE(group != nullptr && group->Id >= 1) << node->Contact.Group;
    result.nodes.push_back(bytes_of(*node));
  }
  list_taken(data->Groups);
  list_taken(data->Contacts);
  rl_free(data);
  return result;
}

Result contacts_exported(Stage& stage) {
  const std::string path = csv_path(stage);
  CONTACT_SUMMARY_T* summary = cfg_get_contact_summary("");
  const int result = stage.call(save_contact_csv, path.c_str(), summary);
  cfg_destory_contact_summary(summary);
  return result_of(result);
}

template <auto Function, typename... Arguments>
Result fixed(Stage& stage, Arguments... arguments) {
  return result_of(stage.call(Function, "", arguments...));
}

Scenarios csv_scenarios() {
  return {
      {"is_valid_contact_file_csv", "", with_csv, header_checked, "0"},
      {"get_contact_csv_head", "", with_csv, header_read, "-1 0"},
      {"list_add_contact_section", "", with_csv, column_added, "-1"},
      {"list_loop_compare", "", with_csv, columns_compared, nullptr},
      {"list_free", "", with_csv, columns_released, nullptr},
      {"get_contact_csv", "", with_csv, contacts_imported, "-1", kIndexStale},
      {"get_community_contact_csv", "", with_csv, community_read, kEndsEarly},
      {"save_contact_csv", "", with_csv, contacts_exported, "-1"},
      {"get_blacklist_csv", "", nothing,
       [](Stage& stage) { return fixed<get_blacklist_csv>(stage, &stage.blacklist()); }, nullptr},
      {"save_blacklist_csv", "", nothing,
       [](Stage& stage) { return fixed<save_blacklist_csv>(stage, &stage.blacklist()); }, nullptr},
      {"get_history_csv", "", nothing,
       [](Stage& stage) { return fixed<get_history_csv>(stage, &stage.history()); }, nullptr},
      {"save_history_csv", "", nothing,
       [](Stage& stage) { return fixed<save_history_csv>(stage, &stage.history()); }, nullptr},
      {"get_file_csv", "", nothing, [](Stage& stage) { return fixed<get_file_csv>(stage, 0); },
       nullptr},
      {"save_file_csv", "", nothing,
       [](Stage& stage) {
         return fixed<save_file_csv>(stage, static_cast<INI_SECTION_T*>(nullptr), 0);
       },
       nullptr},
  };
}

// ---- The XML browser

/// A type of document: a text, and its object.
struct Screen {
  const char* text;
  const void* (*object)();
};

constexpr Screen kScreens[] = {
    {R"(<IPPhoneTextMenu><Title>Menu</Title><MenuItem><Prompt>One</Prompt></MenuItem></IPPhoneTextMenu>)",
     [] { return static_cast<const void*>(cfg_get_text_menu_object()); }},
    {R"(<IPPhoneTextScreen><Title>Text</Title><Text>Soup &amp; salad</Text></IPPhoneTextScreen>)",
     [] { return static_cast<const void*>(cfg_get_text_screen_object()); }},
    {R"(<IPPhoneDirectory><MenuItem><Prompt>Ann</Prompt><Telephone>1</Telephone></MenuItem></IPPhoneDirectory>)",
     [] { return static_cast<const void*>(cfg_get_xml_browser_directory_object()); }},
    {R"(<IPPhoneInputScreen><InputField><Prompt>Name</Prompt></InputField></IPPhoneInputScreen>)",
     [] { return static_cast<const void*>(cfg_get_xml_browser_input_screen_object()); }},
    {R"(<IPPhoneConfiguration><DssKey index="1"><Type>13</Type></DssKey></IPPhoneConfiguration>)",
     [] { return static_cast<const void*>(cfg_get_xml_browser_configuration_object()); }},
};

constexpr char kFactory[] = "/app/factory/Static/XMLBrowser/";

std::string screen_path(const Stage& stage, int type) {
  return stage.on_disk("/import/screen" + std::to_string(type) + ".xml");
}

/// The documents, of which every one was parsed.
void with_screens(Stage& stage) {
  for (int type = 1; type <= 5; ++type) {
    stage.write("/import/screen" + std::to_string(type) + ".xml", kScreens[type - 1].text);
    cfg_parse_remote_xml(screen_path(stage, type).c_str());
  }
}

void with_factory_files(Stage& stage) {
  stage.write(std::string(kFactory) + "menu.xml", kScreens[0].text);
  stage.write(std::string(kFactory) + "text.xml", kScreens[1].text);
}

void with_cache(Stage& stage) {
  with_factory_files(stage);
  cfg_load_local_xml_file_cache();
}

/// A document that is parsed replaces its object, which the caller releases; one that is not
/// leaves it and no type.
Result parsed(Stage& stage, const std::string& path, int type) {
  const Screen& screen = kScreens[type - 1];
  auto* old = const_cast<void*>(screen.object());
  const int result = stage.call(cfg_parse_remote_xml, path.c_str());
  EXPECT_EQ(cfg_get_remote_xml_type(), result == 0 ? type : 0);
  EXPECT_EQ(screen.object() == old, result != 0);
  if (result == 0) rl_free(old);
  return result_of(result);
}

template <int Type>
Result screen_parsed(Stage& stage) {
  return parsed(stage, screen_path(stage, Type), Type);
}

Result cached_parsed(Stage& stage) {
  return parsed(stage, std::string(kFactory) + "menu.xml", XML_TYPE_TEXT_MENU);
}

template <auto Function>
Result object(Stage& stage) {
  return result_of(stage.call(Function) != nullptr ? 1 : 0);
}

template <auto Function>
Result released(Stage& stage) {
  return result_of(stage.call(Function));
}

/// A cache that could not be filled is emptied, for the next try.
Result cache_loaded(Stage& stage) {
  const int result = stage.call(cfg_load_local_xml_file_cache);
  if (result != 0) cfg_free_local_xml_file_cache();
  return result_of(result);
}

Result text_replaced(Stage& stage) {
  char text[64] = "All calls to All lines";
  const int result = stage.call(xmlbrowser_str_replace, text, int{sizeof text}, "All", "12");
  EXPECT_STREQ(text, result == 0 ? "12 calls to 12 lines" : "All calls to All lines");
  return result_of(result);
}

Scenarios screen_scenarios() {
  return {
      {"cfg_parse_remote_xml", "menu", with_screens, screen_parsed<1>, "-1"},
      {"cfg_parse_remote_xml", "text", with_screens, screen_parsed<2>, "-1"},
      {"cfg_parse_remote_xml", "directory", with_screens, screen_parsed<3>, "-1"},
      {"cfg_parse_remote_xml", "input", with_screens, screen_parsed<4>, "-1"},
      {"cfg_parse_remote_xml", "configuration", with_screens, screen_parsed<5>, "-1"},
      {"cfg_parse_remote_xml", "cached", with_cache, cached_parsed, "-1"},
      {"cfg_get_remote_xml_type", "", with_screens, released<cfg_get_remote_xml_type>, nullptr},
      {"cfg_get_text_screen_object", "", with_screens, object<cfg_get_text_screen_object>, nullptr},
      {"cfg_get_text_menu_object", "", with_screens, object<cfg_get_text_menu_object>, nullptr},
      {"cfg_get_xml_browser_directory_object", "", with_screens,
       object<cfg_get_xml_browser_directory_object>, nullptr},
      {"cfg_get_xml_browser_input_screen_object", "", with_screens,
       object<cfg_get_xml_browser_input_screen_object>, nullptr},
      {"cfg_get_xml_browser_configuration_object", "", with_screens,
       object<cfg_get_xml_browser_configuration_object>, nullptr},
      {"cfg_destory_text_screen_object", "", with_screens, released<cfg_destory_text_screen_object>,
       nullptr},
      {"cfg_destory_text_menu_object", "", with_screens, released<cfg_destory_text_menu_object>,
       nullptr},
      {"cfg_destory_xml_browser_directory_object", "", with_screens,
       released<cfg_destory_xml_browser_directory_object>, nullptr},
      {"cfg_destory_xml_browser_input_screen_object", "", with_screens,
       released<cfg_destory_xml_browser_input_screen_object>, nullptr},
      {"cfg_destory_xml_browser_configuration_object", "", with_screens,
       released<cfg_destory_xml_browser_configuration_object>, nullptr},
      {"cfg_load_local_xml_file_cache", "", with_factory_files, cache_loaded, "-1"},
      {"cfg_free_local_xml_file_cache", "", with_cache, released<cfg_free_local_xml_file_cache>,
       nullptr},
      {"xmlbrowser_str_replace", "", nothing, text_replaced, "-1"},
  };
}

}  // namespace

Scenarios document_scenarios() {
  Scenarios all;
  for (const Scenarios& some : {csv_scenarios(), screen_scenarios()}) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

}  // namespace memory_test
