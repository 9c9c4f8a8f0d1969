// deskphone remote: the five remote phonebooks. A book that was loaded is kept in the profile, as
// /tmp/remote_contact.xml0 to 4, and is loaded from there by every command that reads it.
#include <fmt/format.h>

#include <memory>
#include <optional>

#include "commands.h"
#include "failure.h"
#include "runtime/files.h"
#include "user_file.h"

namespace deskphone {
namespace {

namespace fs = std::filesystem;

const std::vector<Column> kRecordColumns = {{"book", "Book"},     {"id", "Id"},
                                            {"name", "Name"},     {"office", "Office"},
                                            {"mobile", "Mobile"}, {"other", "Other"}};

fs::path file_of(const Phone& phone, int book) {
  return phone.host().on_disk(remote_path(book).c_str());
}

void expect_loaded(const Phone& phone, int book) {
  if (fs::exists(file_of(phone, book))) return;
  throw Failure(
      fmt::format("The remote book {0} is not loaded. Load it first: deskphone remote load "
                  "FILE --book {0}",
                  book));
}

/// The books that a command is about: the one given, or all that are loaded.
std::vector<int> chosen_books(const Phone& phone, const std::optional<int>& book) {
  if (book) {
    expect_loaded(phone, *book);
    return {*book};
  }
  std::vector<int> books;
  for (int each = 0; each < CFGXML_REMOTE_BOOK_COUNT; ++each) {
    if (fs::exists(file_of(phone, each))) books.push_back(each);
  }
  return books;
}

void append_rows(std::vector<Row>& rows, int book, const Summaries& records) {
  for (const CONTACT_SUMMARY_T& record : records) {
    Row row = {{"book", book}};
    row.update(row_of(record));
    rows.push_back(std::move(row));
  }
}

void load_book(const Phone& phone, const std::string& file, int book) {
  check_file(file);
  const fs::path kept = file_of(phone, book);
  const std::optional<std::string> old = host::files::read(kept);
  const std::optional<std::string> content = host::files::read(file);
  if (!content || !host::files::replace(kept, *content)) {
    throw Failure(
        fmt::format("{} can not be copied to {}. Check the free space.", file, kept.string()));
  }
  phone.search().free_book(book);
  const std::size_t records = phone.search().load_book(book);
  if (records == 0) {
    if (old) {
      host::files::replace(kept, *old);
    } else {
      fs::remove(kept);
    }
    throw Failure(
        fmt::format("{} is not a phonebook: it needs to be well-formed XML with Contact or "
                    "DirectoryEntry elements. Book {} is as it was.",
                    file, book));
  }
  phone.output().done(
      fmt::format("Loaded {} into the remote book {}: {} records.", file, book, records),
      {{"book", book}, {"records", records}});
}

void list_books(const Phone& phone) {
  std::vector<Row> rows;
  for (int book = 0; book < CFGXML_REMOTE_BOOK_COUNT; ++book) {
    const bool loaded = fs::exists(file_of(phone, book));
    rows.push_back({{"book", book},
                    {"records", loaded ? phone.search().load_book(book) : 0},
                    {"file", loaded ? file_of(phone, book).string() : ""}});
  }
  phone.output().list(rows, {{"book", "Book"}, {"records", "Records"}, {"file", "File"}}, "books");
}

void list_records(const Phone& phone, int book) {
  expect_loaded(phone, book);
  std::vector<Row> rows;
  append_rows(rows, book, phone.search().book(book));
  phone.output().list(rows, kRecordColumns, "records");
}

void search_records(const Phone& phone, const std::string& text, const std::optional<int>& book) {
  std::vector<Row> rows;
  for (const int each : chosen_books(phone, book)) {
    phone.search().load_book(each);
    append_rows(rows, each, phone.search().search_book(each, text));
  }
  phone.output().list(rows, kRecordColumns, "records");
}

void show_record(const Phone& phone, int book, int id) {
  expect_loaded(phone, book);
  phone.search().load_book(book);
  const Row record = row_of(phone.search().book_record(book, id));
  phone.output().record({{"book", book},
                         {"id", id},
                         {"name", record["name"]},
                         {"office", record["office"]},
                         {"mobile", record["mobile"]},
                         {"other", record["other"]}});
}

void free_book(const Phone& phone, int book) {
  expect_loaded(phone, book);
  phone.search().free_book(book);
  fs::remove(file_of(phone, book));
  phone.output().done(fmt::format("Freed the remote book {}.", book), {{"book", book}});
}

template <typename Book>
Option add_book_option(Command command, Book& book) {
  return command.add_option("--book", book, "The number of the remote book")
      .range(0, CFGXML_REMOTE_BOOK_COUNT - 1);
}

void add_file_commands(Command family, Phone& phone) {
  auto file = std::make_shared<std::string>();
  auto loaded = std::make_shared<int>();
  Command load = add_command(
      family, "load",
      "Load an XML phonebook as one of the five remote books. The file is kept in the profile, as "
      "/tmp/remote_contact.xml and the book's number, and loaded again by the commands that use "
      "it.",
      "remote load samples/remote/company.xml --book 0\n"
      "remote load samples/remote/town.xml --book 1");
  load.add_option("file", *file, "The phonebook file").required();
  add_book_option(load, *loaded).required();
  on_run(load, phone, [&phone, file, loaded] { load_book(phone, *file, *loaded); });

  auto freed = std::make_shared<int>();
  Command free =
      add_command(family, "free", "Free a remote book and remove its file", "remote free --book 0");
  add_book_option(free, *freed).required();
  on_run(free, phone, [&phone, freed] { free_book(phone, *freed); });
}

void add_read_commands(Command family, Phone& phone) {
  auto listed = std::make_shared<std::optional<int>>();
  Command list = add_command(family, "list", "List the books, or the records of one",
                             "remote list\n"
                             "remote list --book 0\n"
                             "--json remote list --book 0");
  add_book_option(list, *listed);
  on_run(list, phone, [&phone, listed] {
    if (*listed) {
      list_records(phone, **listed);
    } else {
      list_books(phone);
    }
  });

  auto text = std::make_shared<std::string>();
  auto searched = std::make_shared<std::optional<int>>();
  Command search = add_command(
      family, "search", "List the records with a text in their name or in one of their numbers",
      "remote search Bakery\n"
      "remote search 7946 --book 0");
  search.add_option("text", *text, "The text; letter case counts").required();
  add_book_option(search, *searched);
  on_run(search, phone, [&phone, text, searched] { search_records(phone, *text, *searched); });

  auto id = std::make_shared<int>();
  auto shown = std::make_shared<int>();
  Command show = add_command(family, "show", "Show one record", "remote show 12 --book 0");
  show.add_option("id", *id, "The record's id").required();
  add_book_option(show, *shown).required();
  on_run(show, phone, [&phone, id, shown] { show_record(phone, *shown, *id); });
}

}  // namespace

void add_remote_commands(Command app, Phone& phone) {
  Command family = add_family(app, "remote", "The remote phonebooks");
  add_file_commands(family, phone);
  add_read_commands(family, phone);
}

}  // namespace deskphone
