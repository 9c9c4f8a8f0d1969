// Reading the lines and rows of a contact CSV file, for both imports.
#pragma once

#include "csv/columns.h"
#include "support/regular_file.h"

namespace cfgxml::csv {

using Line = char[kLineCapacity];

/// Reads a line without its line end; false at the end of the file. A line longer than 4095
/// characters comes in pieces, each a line of its own; a NUL byte ends the text of its line.
bool read_line(std::FILE* file, Line& line);

/// An import: what it takes from the rows.
class Rows {
 public:
  /// A row comes; false stops the reading.
  virtual bool start_row() = 0;
  /// A field of the row, trimmed; false drops the row, whose rest is not read.
  virtual bool take(Value value, const char* text) = 0;
  /// The row was read to its end.
  virtual void end_row() = 0;

 protected:
  ~Rows() = default;
};

/// Hands the rows behind the header line to an import. Blank lines are logged for the worker and
/// skipped.
void read_rows(std::FILE* file, const char* worker, Rows& rows);

}  // namespace cfgxml::csv
