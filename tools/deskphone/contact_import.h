// Adding the contacts of a file to those that are there.
#pragma once

#include <cstddef>
#include <string>

#include "phone.h"
#include "user_file.h"

namespace deskphone {

struct ImportCounts {
  int result = 0;  // of reading the file
  std::size_t added = 0;
  std::size_t name_used = 0;
  std::size_t no_room = 0;
  std::size_t groups_left_out = 0;
};

/// Throws Failure unless the plug-in takes the upload for a contact file; name is what the user
/// calls it.
void expect_contact_file(const Phone& phone, const Upload& upload, const std::string& name);

/// Adds the file's groups that are missing, then its contacts, one by one.
ImportCounts merge_contacts(const Phone& phone, const Upload& upload, const std::string& name);

}  // namespace deskphone
