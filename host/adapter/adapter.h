// The file adapter: routes a data file's path to the slot that reads or writes that kind of file.
#pragma once

#include <cfgxml/phonebook.h>

namespace host {

class Host;

class Adapter {
 public:
  explicit Adapter(Host& host) : host_(host) {}

  /// The slot's result; -1 for a path of no data file.
  int read(void* list, const char* path) const;
  int write(void* list, const char* path) const;

  /// Contact files (XML, or CSV by their extension) that are not the phone's own. Whether a file is
  /// acceptable; what it holds, read as an empty phone would; and its import, which replaces the
  /// phone's contacts or, when it fails, leaves them and their file as they were.
  bool is_contact_file(const char* path) const;
  int read_contact_file(const char* path, CONTACT_DATA_LIST_T& contacts) const;
  int import_contact_file(const char* path) const;

 private:
  int import_xml(const char* path) const;
  int import_csv(const char* path) const;

  Host& host_;
};

}  // namespace host
