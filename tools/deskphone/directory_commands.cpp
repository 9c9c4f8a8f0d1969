// deskphone directory: the full list of a BroadSoft directory, and the six simple lists that the
// keypad search reads.
#include <fmt/format.h>

#include <memory>

#include "commands.h"
#include "directory.h"
#include "failure.h"

namespace deskphone {
namespace {

const std::vector<Column> kEntryColumns = {{"index", "Index"},           {"last_name", "Last name"},
                                           {"first_name", "First name"}, {"number", "Number"},
                                           {"extension", "Extension"},   {"mobile", "Mobile"},
                                           {"department", "Department"}};

void list_entries(const Phone& phone, const Entries& entries) {
  std::vector<Row> rows;
  for (const BSFT_CONTACT_DATA_T& entry : entries) rows.push_back(row_of(entry));
  phone.output().list(rows, kEntryColumns, "entries");
}

/// What was loaded, and whether the server has more.
void report(const Phone& phone, const std::string& what, const Pages& pages, std::size_t entries,
            const BSFT_CONTACT_POS_T& position) {
  phone.output().done(
      fmt::format("Loaded {} pages into {}: {} entries.", pages.size(), what, entries),
      {{"pages", pages.size()}, {"entries", entries}, {"total", position.total}});
  const std::int64_t end = std::int64_t{position.start} + position.count;
  if (end < position.total) {
    remark(fmt::format("The last page ends at entry {} of {}: more pages remain.", end,
                       position.total));
  }
}

void use_simple_list(const Phone& phone, int list, const Pages& pages) {
  const Directory directory(phone);
  if (!pages.empty()) {
    const BSFT_CONTACT_POS_T position = directory.load_simple(list, pages);
    report(phone, fmt::format("the simple list {}", list), pages, directory.simple(list).size(),
           position);
    return;
  }
  std::vector<Row> rows;
  for (const CONTACT_SUMMARY_T& record : directory.simple(list)) rows.push_back(row_of(record));
  phone.output().list(rows,
                      {{"id", "Id"},
                       {"name", "Name"},
                       {"office", "Office"},
                       {"mobile", "Mobile"},
                       {"other", "Other"}},
                      "entries");
}

void add_load_commands(Command family, Phone& phone) {
  auto pages = std::make_shared<Pages>();
  Command load = add_command(
      family, "load", "Load the pages of a directory, in their order, in place of the last one",
      "directory load group-1.xml group-2.xml group-3.xml");
  load.add_option("page", *pages, "The pages that the server sent").required();
  on_run(load, phone, [&phone, pages] {
    const Directory directory(phone);
    const BSFT_CONTACT_POS_T position = directory.load(*pages);
    report(phone, "the directory", *pages, directory.entries().size(), position);
  });

  auto list = std::make_shared<int>();
  auto simple_pages = std::make_shared<Pages>();
  Command simple = add_command(
      family, "simple",
      "Load pages into a simple list, whose entries the command keys finds; without pages, list it",
      "directory simple 0 group-1.xml group-2.xml group-3.xml\n"
      "directory simple 0\n"
      "keys 266");
  simple.add_option("list", *list, "The simple list, 0 to 5")
      .required()
      .range(0, CFGXML_BROADSOFT_LIST_COUNT - 1);
  simple.add_option("page", *simple_pages, "The pages that the server sent");
  on_run(simple, phone,
         [&phone, list, simple_pages] { use_simple_list(phone, *list, *simple_pages); });
}

void add_read_commands(Command family, Phone& phone) {
  Command list = add_command(family, "list", "List the entries, in the server's order",
                             "directory list\n"
                             "--json directory list");
  on_run(list, phone, [&phone] { list_entries(phone, Directory(phone).entries()); });

  auto text = std::make_shared<std::string>();
  Command search = add_command(family, "search", "List the entries with a text in any field",
                               "directory search Sales\n"
                               "directory search 7946");
  search.add_option("text", *text, "The text; letter case counts").required();
  on_run(search, phone, [&phone, text] { list_entries(phone, Directory(phone).search(*text)); });

  auto index = std::make_shared<int>();
  Command show = add_command(family, "show", "Show all of one entry", "directory show 12");
  show.add_option("index", *index, "The entry's index").required();
  on_run(show, phone,
         [&phone, index] { phone.output().record(row_of(Directory(phone).entry(*index))); });
}

}  // namespace

void add_directory_commands(Command app, Phone& phone) {
  Command family = add_family(app, "directory", "The directory of a BroadSoft server");
  add_load_commands(family, phone);
  add_read_commands(family, phone);
}

}  // namespace deskphone
