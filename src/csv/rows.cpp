#include "csv/rows.h"

#include <cfgxml/host.h>

#include <cstring>

#include "support/text.h"

namespace cfgxml::csv {
namespace {

/// Reads the fields of a row. A field counts when a comma follows it; commas cannot be quoted.
void read_row(Line& line, Rows& rows) {
  char* field = line;
  for (const Column& column : kColumns) {
    char* comma = std::strchr(field, ',');
    if (comma == nullptr) break;
    *comma = '\0';
    if (equal(field, kEndOfRow)) break;
    if (column.imported != Value::kNothing) {
      rl_strtrim(field);
      if (!rows.take(column.imported, field)) return;
    }
    field = comma + 1;
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
