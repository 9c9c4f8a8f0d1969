// What a command prints on standard output: tables for people, or JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace deskphone {

/// A record as printed, with its fields in order.
using Row = nlohmann::ordered_json;

/// A field of a row that a table shows, and the title of its column.
struct Column {
  const char* field;
  const char* title;
};

class Output {
 public:
  explicit Output(const bool& json) : json_(json) {}

  /// Rows as a table of the given columns with their number below it, or as a JSON array with all
  /// their fields. The noun is what they are: "contacts".
  void list(const std::vector<Row>& rows, const std::vector<Column>& columns,
            const std::string& noun) const;

  /// One record, a line a field.
  void record(const Row& row) const;

  /// A record that was changed: what was done in words, or the record as JSON.
  void done(const std::string& words, const Row& row) const;

  /// A line for people; nothing with --json.
  void say(const std::string& words) const;

  bool json() const { return json_; }

 private:
  const bool& json_;  // the option, which is read when the command runs
};

/// A remark that is no failure, on standard error.
void remark(const std::string& words);

/// A row as one line of JSON, whatever bytes its texts hold.
std::string json_text(const nlohmann::ordered_json& value);

}  // namespace deskphone
