// Contact files (XML, or CSV by their extension), and adding what they hold to the phone.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "phone.h"
#include "user_file.h"

namespace deskphone {

/// What a contact file holds.
struct FileContents {
  std::vector<GROUP_DATA_T> groups;
  std::vector<CONTACT_DATA_T> contacts;
  std::string note;  // what was left out when it was read; "" when nothing was
};

struct ImportCounts {
  std::size_t added = 0;
  std::size_t name_used = 0;
  std::size_t no_name = 0;
  std::size_t no_group = 0;  // for lack of room for their group
  std::size_t no_room = 0;
};

struct FreeCommunity {
  void operator()(COMMUNITY_DATA_T* data) const;
};
using Community = std::unique_ptr<COMMUNITY_DATA_T, FreeCommunity>;

/// Every row of a CSV file, whatever names the phone uses; throws Failure when it can not be read.
Community read_community(const Phone& phone, const Upload& upload, const std::string& name);

/// Throws Failure unless the plug-in takes the upload for a contact file; name is what the user
/// calls it.
void expect_contact_file(const Phone& phone, const Upload& upload, const std::string& name);

/// Reads a contact file beside the phone's own lists, after the same check.
FileContents read_contacts(const Phone& phone, const Upload& upload, const std::string& name);

/// Adds the groups that are missing, then the contacts, one by one.
ImportCounts merge_contacts(const Phonebook& phonebook, const FileContents& contents);

}  // namespace deskphone
