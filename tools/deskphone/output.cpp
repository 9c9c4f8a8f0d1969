#include "output.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

#include "text.h"

namespace deskphone {
namespace {

constexpr std::size_t kWidestColumn = 40;
constexpr char kGap[] = "  ";

std::string cell(const Row& row, const char* field) {
  const auto value = row.find(field);
  if (value == row.end()) return "";
  return printable(value->is_string() ? value->get<std::string>() : value->dump());
}

std::size_t column_width(const Column& column, const std::vector<Row>& rows) {
  std::size_t width = display_width(column.title);
  for (const Row& row : rows) width = std::max(width, display_width(cell(row, column.field)));
  return std::min(width, kWidestColumn);
}

std::string without_end_blanks(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

std::string line_of(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    line += (i > 0 ? kGap : "") + fit(cells[i], widths[i]);
  }
  return without_end_blanks(line);
}

}  // namespace

void Output::list(const std::vector<Row>& rows, const std::vector<Column>& columns,
                  const std::string& noun) const {
  if (json_) {
    fmt::print("{}\n", json_text(Row(rows)));
    return;
  }
  std::vector<std::size_t> widths;
  std::vector<std::string> titles;
  for (const Column& column : columns) {
    widths.push_back(column_width(column, rows));
    titles.emplace_back(column.title);
  }
  if (!rows.empty()) fmt::print("{}\n", line_of(titles, widths));
  for (const Row& row : rows) {
    std::vector<std::string> cells;
    for (const Column& column : columns) cells.push_back(cell(row, column.field));
    fmt::print("{}\n", line_of(cells, widths));
  }
  fmt::print("{}\n", counted(rows.size(), noun));
}

void Output::record(const Row& row) const {
  if (json_) {
    fmt::print("{}\n", json_text(row));
    return;
  }
  for (const auto& [field, value] : row.items()) {
    fmt::print("{:<10} {}\n", field, cell(row, field.c_str()));
  }
}

void Output::done(const std::string& words, const Row& row) const {
  if (json_) {
    fmt::print("{}\n", json_text(row));
  } else {
    say(words);
  }
}

void Output::say(const std::string& words) const {
  if (!json_) fmt::print("{}\n", words);
}

void remark(const std::string& words) { fmt::print(stderr, "deskphone: {}\n", words); }

std::string json_text(const nlohmann::ordered_json& value) {
  return value.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace deskphone
