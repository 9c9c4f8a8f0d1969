// A list that lives in an XML file alone: a child of the root, whose entries carry an "ID". The
// rules of a dial list and the messages of a box are such lists. Every operation opens the file,
// works on the tree and, after a change, saves it.
#pragma once

#include <tinyxml2.h>

#include <cstdint>

#include "support/xml_file.h"

namespace cfgxml {

/// Where a list stands.
struct ListPlace {
  const char* path;
  const char* root;  // the name of a root that has to be created; an existing one has any name
  const char* list;
  const char* list_title;  // what the message of a missing list calls it
  const char* entry;
  XmlFile::Privacy privacy = XmlFile::Privacy::kShared;
};

/// The file of a list, for one operation.
class ListFile {
 public:
  explicit ListFile(const ListPlace& place) : place_(place), file_(place.path, place.privacy) {}

  /// Opens the file for reading, and gives its list or nullptr.
  tinyxml2::XMLElement* read();

  /// Opens the file for a change, and gives its list. A file that does not load, a root and a list
  /// that are missing are recreated, which is logged for the worker; nullptr when there is no
  /// file, or one that cannot be read.
  tinyxml2::XMLElement* open(const char* worker);

  int save(const char* worker) { return file_.save(worker); }

 private:
  const ListPlace& place_;
  XmlFile file_;
};

/// The id of an entry. Ids in files are unsigned, and records carry them as signed numbers of the
/// same bits.
int id_of(const tinyxml2::XMLElement& entry);

/// The first entry of this name and id, or nullptr.
tinyxml2::XMLElement* find_entry(tinyxml2::XMLElement* list, const char* name, int id);

std::size_t count_entries(tinyxml2::XMLElement* list, const char* name);

/// The id of a new entry: the largest plus 1, by unsigned comparison. Behind the largest number
/// there is, the lowest id that is free, from 0.
std::uint32_t next_id(tinyxml2::XMLElement* list, const char* name);

}  // namespace cfgxml
