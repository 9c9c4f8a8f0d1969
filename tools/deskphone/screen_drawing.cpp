#include "screen_drawing.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>
#include <string_view>
#include <vector>

#include "text.h"

namespace deskphone {
namespace {

constexpr std::size_t kColumns = 60;  // of the phone's screen, within its frame
constexpr std::size_t kNumberColumns = 6;
constexpr std::size_t kKeyColumns = 14;

constexpr const char* kPresenceSigns[] = {" ", "○", "⊘", "●", "◐", "♪", "■", "♫", "→", "←"};

struct TypeName {
  int code;
  const char* name;
};

constexpr TypeName kInputTypes[] = {{XML_INPUT_UNKNOWN, "unknown"},  {XML_INPUT_EDIT, "text"},
                                    {XML_INPUT_COMBOX, "choice"},    {XML_INPUT_IPADDR, "address"},
                                    {XML_INPUT_DATE, "date"},        {XML_INPUT_TIME, "time"},
                                    {XML_INPUT_PROGRESS, "progress"}};

/// The start of a text that fits the columns, and no less than one character.
std::string head_of(const std::string& text, std::size_t columns) {
  std::string head = fit(text, columns);
  head.erase(head.find_last_not_of(' ') + 1);
  return head.empty() ? text : head;
}

/// One line of text, broken between its words where it does not fit the columns.
void wrap_line(const std::string& text, std::size_t columns, std::vector<std::string>& lines) {
  std::istringstream words(text);
  std::string line;
  for (std::string word; words >> word;) {
    word = printable(word);
    if (!line.empty() && display_width(line) + 1 + display_width(word) > columns) {
      lines.push_back(line);
      line.clear();
    }
    while (display_width(word) > columns) {
      lines.push_back(head_of(word, columns));
      word.erase(0, lines.back().size());
    }
    line += (line.empty() ? "" : " ") + word;
  }
  lines.push_back(line);
}

std::vector<std::string> wrap(const std::string& text, std::size_t columns) {
  std::vector<std::string> lines;
  std::istringstream given(text);
  for (std::string line; std::getline(given, line);) wrap_line(line, columns, lines);
  return lines;
}

/// A screen in its frame, line by line.
class Frame {
 public:
  Frame() { rule(); }

  void line(const std::string& text) { drawing_ += "| " + fit(text, kColumns) + " |\n"; }

  void rule() { drawing_ += "+" + std::string(kColumns + 2, '-') + "+\n"; }

  /// A text of one line or more, the later ones set in.
  void text(const std::string& first, const std::string& indent, const std::string& rest,
            bool wrapped) {
    const std::size_t room = kColumns - display_width(first);
    const std::vector<std::string> lines =
        wrapped ? wrap(rest, room) : std::vector<std::string>{printable(rest)};
    for (std::size_t i = 0; i < lines.size(); ++i) line((i == 0 ? first : indent) + lines[i]);
  }

  /// The title, with how many there are of what it heads.
  template <typename Shown>
  void title(const Shown& screen, const std::string& count) {
    const std::vector<std::string> lines = screen.wrap != 0
                                               ? wrap(screen.Title, kColumns - count.size())
                                               : std::vector<std::string>{trimmed(screen.Title)};
    for (std::size_t i = 0; i < lines.size(); ++i) {
      line(fit(lines[i], kColumns - count.size()) + (i == 0 ? count : ""));
    }
    rule();
  }

  /// The soft keys along the bottom.
  std::string with_keys(const XML_SOFTKEY_T (&keys)[CFGXML_SOFT_KEY_CAPACITY]) {
    rule();
    std::string labels;
    for (const XML_SOFTKEY_T& key : keys) {
      labels += (labels.empty() ? "" : "|") + fit(" " + printable(key.Label), kKeyColumns);
    }
    line(labels);
    rule();
    return drawing_;
  }

 private:
  static std::string trimmed(const char* title) {
    const std::vector<std::string> lines = wrap(title, kColumns);
    return lines.empty() ? "" : lines.front();
  }

  std::string drawing_;
};

template <typename Shown>
std::string count_of(const Shown& screen, int count) {
  return screen.showlistcount != 0 ? fmt::format("  ({})", count) : "";
}

/// The number of an entry, counted from 1, and the mark of the one that is chosen at first.
std::string number(const XML_BROWSER_HEADER_T& header, int index) {
  const bool chosen = index + 1 == std::max(header.defaultIndex, 1);
  return fmt::format("{} {:>3}. ", chosen ? ">" : " ", index + 1).substr(0, kNumberColumns + 1);
}

const std::string& indent() {
  static const std::string blanks(kNumberColumns + 1, ' ');
  return blanks;
}

/// The used ones of a record's options: up to the last that holds something.
std::vector<XML_OPTION_T> used(const XML_OPTION_T (&options)[CFGXML_OPTION_CAPACITY]) {
  std::size_t count = CFGXML_OPTION_CAPACITY;
  while (count > 0 && options[count - 1].value[0] == '\0' && options[count - 1].text[0] == '\0') {
    --count;
  }
  return {options, options + count};
}

std::string caption(const XML_OPTION_T& option) {
  return option.text[0] != '\0' ? option.text : option.value;
}

void draw_options(Frame& frame, const XML_OPTION_T (&options)[CFGXML_OPTION_CAPACITY],
                  const std::string& chosen) {
  std::string captions;
  for (const XML_OPTION_T& option : used(options)) {
    const bool is_chosen = !chosen.empty() && chosen == option.value;
    captions +=
        (captions.empty() ? "" : "\n") + std::string(is_chosen ? "(x) " : "( ) ") + caption(option);
  }
  if (!captions.empty()) frame.text(indent(), indent(), captions, true);
}

std::string input_type(int code) {
  for (const TypeName& type : kInputTypes) {
    if (type.code == code) return type.name;
  }
  return "";
}

/// What a field of a form takes: its type and whatever else is particular about it.
std::string kind_of(const XML_INPUT_SCREEN_BLOCK_T& block, int field) {
  std::string kind = input_type(block.type[field]);
  if (block.password[field] != 0) kind += ", hidden";
  if (block.emptyable[field] != 0) kind += ", may be empty";
  if (block.is_interger[field] != 0) {
    kind += fmt::format(", {} to {} by {}", block.min[field], block.max[field], block.step[field]);
  }
  return kind;
}

}  // namespace

std::string draw(const XML_TEXT_SCREEN_T& screen) {
  Frame frame;
  frame.title(screen, "");
  frame.text("", "", screen.Text, true);
  return frame.with_keys(screen.SoftKeys);
}

std::string draw(const XML_TEXT_MENU_T& menu) {
  Frame frame;
  frame.title(menu, count_of(menu, menu.ItemCount));
  for (int i = 0; i < menu.ItemCount; ++i) {
    const XML_MENU_ITEM_T& item = menu.Items[i];
    frame.text(number(menu.header, i), indent(), item.Prompt, menu.header.wrapList != 0);
    draw_options(frame, item.Options, "");
  }
  return frame.with_keys(menu.SoftKeys);
}

std::string draw(const XML_DIRECTORY_T& directory) {
  constexpr std::size_t kNameColumns = 22;
  constexpr std::size_t kPhoneColumns = 14;
  Frame frame;
  frame.title(directory, count_of(directory, directory.EntryCount));
  for (int i = 0; i < directory.EntryCount; ++i) {
    const XML_DIRECTORY_ENTRY_T& entry = directory.Entries[i];
    frame.line(number(directory.header, i) + fit(printable(entry.Name), kNameColumns) + " " +
               fit(printable(entry.Telephone), kPhoneColumns) + " " +
               kPresenceSigns[entry.PresenceState] + " " + printable(entry.Presence));
    if (entry.Telephone1[0] != '\0') {
      frame.line(indent() + std::string(kNameColumns + 1, ' ') + printable(entry.Telephone1));
    }
  }
  return frame.with_keys(directory.SoftKeys);
}

std::string draw(const XML_INPUT_SCREEN_T& form) {
  Frame frame;
  frame.title(form, count_of(form, form.FieldCount));
  for (int i = 0; i < form.FieldCount; ++i) {
    const XML_INPUT_FIELD_T& field = form.Fields[i];
    const XML_INPUT_SCREEN_BLOCK_T& block = form.header.block.input;
    const std::string preset = block.password[i] != 0
                                   ? std::string(display_width(printable(field.Default)), '*')
                                   : printable(field.Default);
    frame.line(number(form.header, i) + fit(printable(field.Prompt), 24) + " [" + preset + "]");
    frame.line(indent() + kind_of(block, i));
    draw_options(frame, field.Options, field.Default);
  }
  return frame.with_keys(form.SoftKeys);
}

std::string draw(const XML_CONFIGURATION_T& configuration) {
  const auto row = [](const std::string& key, const std::string& type, const std::string& label,
                      const std::string& param1, const std::string& param2,
                      const std::string& param3) {
    return fit(key, 4) + fit(type, 6) + fit(label, 18) + fit(param1, 36) + fit(param2, 8) + param3 +
           "\n";
  };
  std::string table = row("Key", "Type", "Label", "Param1", "Param2", "Param3");
  for (std::size_t i = 0; i < CFGXML_KEY_CAPACITY; ++i) {
    const XML_KEY_CONFIG_T& key = configuration.Keys[i];
    table += row(std::to_string(i + 1), printable(key.Type), printable(key.Label),
                 printable(key.Param1), printable(key.Param2), printable(key.Param3));
  }
  return table;
}

}  // namespace deskphone
