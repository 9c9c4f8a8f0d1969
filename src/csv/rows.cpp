#include "csv/rows.h"

#include <cfgxml/host.h>

#include <cstring>
#include <iterator>
#include <string_view>

namespace cfgxml::csv {
namespace {

/// The fields of a row, in the order of the columns.
struct Fields {
  char* texts[std::size(kColumns)];
  std::size_t count = 0;
};

/// True for bytes that no trimming takes away.
bool is_visible(char sign) { return sign > ' ' && sign < 0x7f; }

/// Trims the text before its terminator at end; the host is asked when there may be white space.
void trim(char* text, const char* end) {
  if (text != end && !(is_visible(*text) && is_visible(end[-1]))) rl_strtrim(text);
}

/// A field counts when a comma follows it; commas cannot be quoted.
Fields split(Line& line) {
  Fields fields;
  char* field = line;
  for (char* at = line; *at != '\0' && fields.count < std::size(kColumns); ++at) {
    if (*at != ',') continue;
    if (std::string_view(field, static_cast<std::size_t>(at - field)) == kEndOfRow) break;
    *at = '\0';
    trim(field, at);
    fields.texts[fields.count++] = field;
    field = at + 1;
  }
  return fields;
}

void read_row(Line& line, Rows& rows) {
  const Fields fields = split(line);
  for (std::size_t i = 0; i < fields.count; ++i) {
    const Value value = kColumns[i].imported;
    if (value != Value::kNothing && !rows.take(value, fields.texts[i])) return;
  }
  rows.end_row();
}

}  // namespace

bool read_line(std::FILE* file, Line& line) {
  if (std::fgets(line, sizeof line, file) == nullptr) return false;
  std::size_t length = std::strlen(line);
  while (length > 0 && (line[length - 1] == '\n' || line[length - 1] == '\r')) --length;
  line[length] = '\0';
  return true;
}

void read_rows(std::FILE* file, const char* worker, Rows& rows) {
  Line line;
  if (!read_line(file, line)) return;
  while (read_line(file, line)) {
    if (line[0] == '\0') {
      rl_log_info("%s, %d  is a blank line", worker, __LINE__);
      continue;
    }
    if (!rows.start_row()) return;
    read_row(line, rows);
  }
}

}  // namespace cfgxml::csv
