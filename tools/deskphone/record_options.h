// The options that fill the record of a contact or a blacklist entry.
#pragma once

#include <optional>
#include <string>

#include "commands.h"
#include "phonebook.h"

namespace deskphone {

/// The fields given on the command line; one that was not given leaves the record's as it is.
struct RecordFields {
  std::optional<std::string> name;
  std::optional<std::string> office;
  std::optional<std::string> mobile;
  std::optional<std::string> other;
  std::optional<std::string> group;
  std::optional<std::string> ring;
  std::optional<std::string> photo;
  std::optional<int> line;

  bool empty() const;
  /// Throws Failure for a text that the record can't hold.
  void put_into(CONTACT_DATA_T& record) const;
};

/// Numbers and line, which both kinds of record use.
void add_number_options(Command command, RecordFields& fields);
/// Group, ring and photo, which contacts use.
void add_contact_options(Command command, RecordFields& fields);

}  // namespace deskphone
