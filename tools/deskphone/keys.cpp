// deskphone keys: the keypad search, for a string of keys or live, key by key.
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "commands.h"
#include "directory.h"
#include "failure.h"
#include "terminal.h"
#include "text.h"

namespace deskphone {
namespace {

constexpr std::string_view kKeys =
    "0123456789* abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
const std::vector<Column> kHitColumns = {{"book", "Book"},     {"id", "Id"},
                                         {"name", "Name"},     {"office", "Office"},
                                         {"mobile", "Mobile"}, {"other", "Other"}};

bool is_key(char key) { return kKeys.find(key) != std::string_view::npos; }

void find_once(const Phone& phone, const std::string& keys) {
  const auto wrong = std::find_if_not(keys.begin(), keys.end(), is_key);
  if (keys.empty() || wrong != keys.end()) {
    throw Failure(
        fmt::format("\"{}\" can not be typed on the keypad. Use 0 to 9, *, and the letters "
                    "a to z.",
                    printable(keys)));
  }
  const Hits hits = phone.search().find(keys);
  phone.output().list(hits.rows, kHitColumns, "hits");
  if (!hits.complete) phone.output().say("There may be more; type more keys.");
}

/// What a byte from the keyboard asks for.
enum class Press { kKey, kErase, kEnd, kNothing };

Press meaning_of(int byte) {
  constexpr int kEndOfInput = 4;  // Ctrl-D
  constexpr int kBackspace = 8;
  constexpr int kDelete = 127;
  if (byte == -1 || byte == kEndOfInput || byte == '\n' || byte == '\r') return Press::kEnd;
  if (byte == kBackspace || byte == kDelete) return Press::kErase;
  return byte < 128 && is_key(static_cast<char>(byte)) ? Press::kKey : Press::kNothing;
}

/// The phone's screen: the keys, and the hits that fit.
void draw(const Phone& phone, const std::string& keys) {
  const bool on_screen = draws_screens();
  const Hits hits = keys.empty() ? Hits{{}, true} : phone.search().find(keys);
  const std::size_t room = on_screen ? std::max<std::size_t>(screen_lines(), 8) - 5 : 10;

  if (on_screen) clear_screen();
  fmt::print("Keys: {}_   {}{}\n", keys, counted(hits.rows.size(), "hits"),
             hits.complete ? "" : " or more");
  for (std::size_t i = 0; i < std::min(room, hits.rows.size()); ++i) {
    const Row& row = hits.rows[i];
    fmt::print("  {} {} {}\n", fit(row["book"], 9),
               fit(printable(row["name"].get<std::string>()), 34),
               printable(row["office"].get<std::string>()));
  }
  if (hits.rows.size() > room) fmt::print("  and {} more\n", hits.rows.size() - room);
  fmt::print("{}\n", on_screen ? "\n0-9 * a-z: type   Backspace: take back   Enter: end" : "");
  std::fflush(stdout);
}

void search_live(const Phone& phone) {
  const RawTerminal keyboard;
  std::string keys;
  draw(phone, keys);
  while (true) {
    const int byte = read_key();
    switch (meaning_of(byte)) {
      case Press::kEnd:
        return;
      case Press::kErase:
        if (!keys.empty()) keys.pop_back();
        break;
      case Press::kKey:
        keys.push_back(static_cast<char>(byte));
        break;
      case Press::kNothing:
        continue;
    }
    draw(phone, keys);
  }
}

}  // namespace

void add_keys_command(Command app, Phone& phone) {
  auto keys = std::make_shared<std::string>();
  Command command = add_command(
      app, "keys",
      "Find records by the keys of their name or number, in the contacts, the remote books "
      "and the simple lists of the directory. "
      "Without keys: reads them one at a time and shows the hits after each.",
      "keys 2662\n"
      "keys\n"
      "--json keys 0300\n"
      "printf 266 | deskphone keys");
  Option given = command.add_option("keys", *keys, "0 to 9, *, or letters in their place");
  on_run(command, phone, [&phone, keys, given] {
    phone.load_remote_books();
    Directory(phone).load_all_simple();
    if (given.given()) {
      find_once(phone, *keys);
    } else if (phone.output().json()) {
      throw Failure("--json needs the keys. Give them: deskphone --json keys 2662");
    } else {
      search_live(phone);
    }
  });
}

}  // namespace deskphone
