// CSV files and the documents of the XML browser.
#include <cfgxml/csv.h>
#include <cfgxml/xmlbrowser.h>

#include "operations/shapes.h"
#include "support/paths.h"

namespace operations {
namespace {

// ---- CSV files

constexpr char kRows[] = "/import/phone.csv";

CSV_CONTACT_LIST_T* columns() {
  CSV_CONTACT_LIST_T* list = nullptr;
  get_contact_csv_head((World::host().on_disk(kRows)).c_str(), &list);
  return list;
}

Result check_header(World& world, Choices& choices) {
  return number_of(world.call(is_valid_contact_file_csv, world.file(choices, kRows)));
}

/// All columns, or none; the result says only whether the file was opened.
Result read_header(World& world, Choices& choices) {
  CSV_CONTACT_LIST_T* list = nullptr;
  const char* path = world.file(choices, kRows);
  Result result = number_of(world.call(get_contact_csv_head, path, choices.argument(list)));
  const std::size_t count = list_taken(list).nodes.size();
  world.require(choices.varies() || count == 0 || count == 25, "some of the columns");
  if (count == 0) result.text = "-1";
  return result;
}

/// The list stays the caller's when it gets no further column.
Result add_column(World& world, Choices& /*choices*/) {
  CSV_CONTACT_LIST_T* list = columns();
  const std::size_t count = list_seen(list).nodes.size();
  char name[] = "MORE";
  CSV_CONTACT_LIST_T* longer = world.call(list_add_contact_section, list, static_cast<char*>(name));
  const bool added = longer != nullptr;
  world.require(list_taken(added ? longer : list).nodes.size() == count + (added ? 1 : 0),
                "a column is lost");
  return number_of(added ? 0 : -1);
}

Result compare_columns(World& world, Choices& /*choices*/) {
  CSV_CONTACT_LIST_T* list = columns();
  const int result = world.call(list_loop_compare, list);
  list_free(list);
  return number_of(result);
}

Result release_columns(World& world, Choices& /*choices*/) {
  CSV_CONTACT_LIST_T* list = columns();
  return number_of(world.call([&] { return list_free(list), 0; }));
}

Result import_rows(World& world, Choices& choices) {
  const char* path = world.file(choices, kRows, Argument::kWord);
  return number_of(world.call(get_contact_csv, path, choices.argument(world.contacts())));
}

/// What was built: every contact with its group, which the files of community data need.
Result read_community(World& world, Choices& choices) {
  COMMUNITY_DATA_T* data = world.call(get_community_contact_csv, world.file(choices, kRows));
  Result result = list_of({});
  if (data == nullptr) return result;
  for (const COMMUNITY_CONTACT_T* node = data->Contacts; node != nullptr; node = node->next) {
    const GROUP_SUMMARY_T* group = data->Groups;
    while (group != nullptr && std::string(group->Name) != node->Contact.Group) group = group->next;
    world.require(group != nullptr && group->Id >= 1, "a contact of no group");
    result.nodes.push_back(bytes_of(*node));
  }
  list_taken(data->Groups);
  list_taken(data->Contacts);
  rl_free(data);
  return result;
}

Result export_contacts(World& world, Choices& choices) {
  CONTACT_SUMMARY_T* summary = cfg_get_contact_summary("");
  const char* path = world.target(choices, "/import/export.csv");
  const int result = world.call(save_contact_csv, path, summary);
  if (summary != nullptr) cfg_destory_contact_summary(summary);
  return number_of(result);
}

/// Kinds that have no CSV form; NULL is as good as any block.
template <auto Function>
Result no_csv(World& world, Choices& /*choices*/) {
  return number_of(world.call(Function, "x", nullptr));
}
Result get_nothing(World& world, Choices& /*choices*/) {
  return number_of(world.call(get_file_csv, "x", 0));
}
Result save_nothing(World& world, Choices& /*choices*/) {
  return number_of(world.call(save_file_csv, "x", nullptr, 0));
}

// ---- The XML browser

/// A type of document: a file, and its object.
struct Screen {
  const char* file;
  const void* (*object)();
};

template <auto Function>
const void* object_of() {
  return Function();
}

/// In the order of the types, from 1.
constexpr Screen kScreens[] = {
    {"/screens/text_menu.xml", object_of<cfg_get_text_menu_object>},
    {"/screens/text_screen.xml", object_of<cfg_get_text_screen_object>},
    {"/screens/directory.xml", object_of<cfg_get_xml_browser_directory_object>},
    {"/screens/input_screen.xml", object_of<cfg_get_xml_browser_input_screen_object>},
    {"/screens/configuration.xml", object_of<cfg_get_xml_browser_configuration_object>},
};

void with_screens(World& world) {
  for (const Screen& screen : kScreens) {
    world.copy_sample(screen.file);
    cfg_parse_remote_xml(world.on_disk(screen.file).c_str());
  }
}

void with_cache(World& world) {
  with_screens(world);
  cfg_load_local_xml_file_cache();
}

/// A document that is parsed replaces its object, which the caller releases; one that is not
/// leaves it and no type.
Result parse(World& world, const char* path) {
  const void* old[5];
  for (int i = 0; i != 5; ++i) old[i] = kScreens[i].object();
  const int result = world.call(cfg_parse_remote_xml, path);
  const int type = cfg_get_remote_xml_type();
  world.require(result == 0 || type == XML_TYPE_NONE, "a type that was not parsed");
  for (int i = 0; i != 5; ++i) {
    const bool made = kScreens[i].object() != old[i];
    world.require(made == (result == 0 && type == i + 1), "an object of another type");
    if (made) rl_free(const_cast<void*>(old[i]));
  }
  return number_of(result);
}

template <int Type>
Result parse_screen(World& world, Choices& choices) {
  return parse(world, world.file(choices, kScreens[Type - 1].file));
}

Result parse_cached(World& world, Choices& choices) {
  return parse(world, choices.path(std::string(cfgxml::paths::kFactoryDocuments) + "Services.xml"));
}

template <auto Function>
Result object(World& world, Choices& /*choices*/) {
  return number_of(world.call(Function) != nullptr ? 0 : -1);
}

/// A cache that could not be filled is emptied, for the next try.
Result load_cache(World& world, Choices& /*choices*/) {
  const int result = world.call(cfg_load_local_xml_file_cache);
  if (result != 0) cfg_free_local_xml_file_cache();
  return number_of(result);
}

Result replace_text(World& world, Choices& choices) {
  char text[64] = "All calls to All lines";
  char* argument = choices.odd(Argument::kRecord) ? nullptr : text;
  const char* old_text = choices.text("All");
  const char* new_text = choices.text("12", Argument::kWord);
  const int result =
      world.call(xmlbrowser_str_replace, argument, int{sizeof text}, old_text, new_text);
  const std::string expected = result == 0 ? "12 calls to 12 lines" : "All calls to All lines";
  world.require(choices.varies() || text == expected, std::string("the text is ") + text);
  return number_of(result);
}

/// They belong to one thread, which may find no object.
Operations after_screens(Operations operations) {
  for (Operation& one : operations) {
    one = one.also("*").is(kOneCaller);
    if (one.prepare == nullptr) one = one.after(with_screens);
  }
  return operations;
}

}  // namespace

Operations document_operations() {
  // clang-format off
  return joined({
      family(Lock::kNone, 0, 0, {
          Operation("is_valid_contact_file_csv", check_header).gives("1").fails("0").runs_out("0"),
          Operation("get_contact_csv_head", read_header).runs_out("-1").is(kQuiet),
          Operation("list_add_contact_section", add_column).runs_out("-1"),
          Operation("list_loop_compare", compare_columns).gives("1"),
          Operation("list_free", release_columns),
          Operation("get_community_contact_csv", read_community).lists(),
          OPERATION(no_csv, get_blacklist_csv).gives("-1"),
          OPERATION(no_csv, save_blacklist_csv).gives("-1"),
          OPERATION(no_csv, get_history_csv).gives("-1"),
          OPERATION(no_csv, save_history_csv).gives("-1"),
          Operation("get_file_csv", get_nothing),
          Operation("save_file_csv", save_nothing).gives("-1"),
      }),
      in_callers_lock(family(Lock::kPhonebook, 0, kNamed, {
          Operation("get_contact_csv", import_rows).runs_out("-1").is(kIndexStale)
              .never_at_random(),
          Operation("save_contact_csv", export_contacts).runs_out("-1"),
      })),
      after_screens({
          Operation("cfg_parse_remote_xml", parse_screen<1>).with_story("menu").runs_out("-1"),
          Operation("cfg_parse_remote_xml", parse_screen<2>).with_story("text").runs_out("-1"),
          Operation("cfg_parse_remote_xml", parse_screen<3>).with_story("directory").runs_out("-1"),
          Operation("cfg_parse_remote_xml", parse_screen<4>).with_story("input").runs_out("-1"),
          Operation("cfg_parse_remote_xml", parse_screen<5>).with_story("keys").runs_out("-1"),
          Operation("cfg_parse_remote_xml", parse_cached).with_story("cached").after(with_cache)
              .runs_out("-1"),
          OPERATION(calling, cfg_get_remote_xml_type).gives("5"),
          OPERATION(object, cfg_get_text_screen_object),
          OPERATION(object, cfg_get_text_menu_object),
          OPERATION(object, cfg_get_xml_browser_directory_object),
          OPERATION(object, cfg_get_xml_browser_input_screen_object),
          OPERATION(object, cfg_get_xml_browser_configuration_object),
          OPERATION(calling, cfg_destory_text_screen_object),
          OPERATION(calling, cfg_destory_text_menu_object),
          OPERATION(calling, cfg_destory_xml_browser_directory_object),
          OPERATION(calling, cfg_destory_xml_browser_input_screen_object),
          OPERATION(calling, cfg_destory_xml_browser_configuration_object),
          Operation("cfg_load_local_xml_file_cache", load_cache).runs_out("-1"),
          OPERATION(calling, cfg_free_local_xml_file_cache).after(with_cache),
          Operation("xmlbrowser_str_replace", replace_text).runs_out("-1").is(kQuiet),
      }),
  });
  // clang-format on
}

}  // namespace operations
