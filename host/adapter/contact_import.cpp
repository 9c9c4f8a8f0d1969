// Importing a contact file: the host's half of cfg_upload_contact, called under the phonebook lock.
//
// An import replaces the phonebook. The plug-in reads Contact.xml again afterwards, whatever came
// of it, so the file is complete at that moment in every case: changes that were not yet written
// are written first, and an import that fails leaves the old file and the old contacts.
#include <cfgxml/host.h>

#include <memory>
#include <string_view>

#include "adapter/file_backup.h"
#include "host.h"
#include "runtime/files.h"

namespace host {
namespace {

constexpr char kContactFile[] = "/config/Phone/Contact/Contact.xml";

bool is_csv(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  const std::string_view extension =
      dot != std::string_view::npos ? path.substr(dot + 1) : std::string_view();
  return extension == "csv" || extension == "CSV";
}

/// True for the results that stand for a list that was read, if only as far as the limits and the
/// names in use allowed.
bool was_read(int result) { return result == 0 || (result >= 16 && result <= 19); }

/// Copies the file over Contact.xml; the plug-in reads it from there.
int import_xml(Host& host, const char* path) {
  FileBackup backup(host.on_disk(kContactFile));
  if (!backup.safe()) {
    rl_log_err("%s failed: <%s> can not be backed up.", __func__, kContactFile);
    return -1;
  }
  const int result = host.callbacks().copy_contact_xml(path);
  const auto file = host.on_disk(kContactFile);
  const bool copied = result == 0 && files::read(path) == files::read(file) && files::sync(file);
  if (!copied) {
    rl_log_err("%s failed: <%s> can not be copied.", __func__, path);
    return result != 0 ? result : -1;
  }
  backup.keep_change();
  return 0;
}

/// Reads the file into the host's list and writes Contact.xml from it.
int import_csv(Host& host, const char* path) {
  CONTACT_DATA_LIST_T* list = host.lists().given_contacts();
  if (list == nullptr) return -1;
  const auto old_contacts = std::make_unique<CONTACT_DATA_LIST_T>(*list);
  const int result = host.callbacks().get_contact_csv(path, list);
  if (was_read(result) && host.callbacks().save_contact_xml(kContactFile, list) == 0) return result;

  rl_log_err("%s failed: <%s> can not be imported.", __func__, path);
  *list = *old_contacts;
  return -1;
}

int import_contacts(Host& host, const char* path) {
  if (!host.saver().write_if_outstanding(SaveCode::kContacts)) return -1;
  return is_csv(path) ? import_csv(host, path) : import_xml(host, path);
}

}  // namespace
}  // namespace host

int adapter_check_contact_file_valid(const char* path) {
  if (path == nullptr) return 0;
  const host::Callbacks& callbacks = host::the_host().callbacks();
  return host::is_csv(path) ? callbacks.is_valid_contact_file_csv(path)
                            : callbacks.is_valid_contact_file_xml(path);
}

int adapter_read_contact_file(const char* path) {
  return path != nullptr ? host::import_contacts(host::the_host(), path) : -1;
}
