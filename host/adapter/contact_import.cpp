// Contact files to import: the host's half of cfg_upload_contact, called under the phonebook lock.
//
// An import replaces the phonebook. The plug-in reads Contact.xml again afterwards, whatever came
// of it, so the file is complete at that moment in every case: changes that were not yet written
// are written first, and an import that fails leaves the old file and the old contacts.
#include <cfgxml/host.h>

#include <memory>
#include <string_view>
#include <utility>

#include "host.h"
#include "runtime/locks.h"

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

/// Puts aside what the phone's lists hold, and back again, with the phonebook lock held.
class ListsAside {
 public:
  explicit ListsAside(Lists& lists) : lists_(lists) {
    *contacts_ = std::exchange(lists.contacts(), {});
    *blacklist_ = std::exchange(lists.blacklist(), {});
  }
  ~ListsAside() {
    lists_.contacts() = *contacts_;
    lists_.blacklist() = *blacklist_;
  }
  ListsAside(const ListsAside&) = delete;
  ListsAside& operator=(const ListsAside&) = delete;

 private:
  const PhonebookLock hold_;
  Lists& lists_;
  std::unique_ptr<CONTACT_DATA_LIST_T> contacts_ = std::make_unique<CONTACT_DATA_LIST_T>();
  std::unique_ptr<BLACK_DATA_LIST_T> blacklist_ = std::make_unique<BLACK_DATA_LIST_T>();
};

}  // namespace

bool Adapter::is_contact_file(const char* path) const {
  const Callbacks& callbacks = host_.callbacks();
  return (is_csv(path) ? callbacks.is_valid_contact_file_csv(path)
                       : callbacks.is_valid_contact_file_xml(path)) != 0;
}

/// The readers check names against the phone's lists, so these are empty meanwhile.
int Adapter::read_contact_file(const char* path, CONTACT_DATA_LIST_T& contacts) const {
  const ListsAside aside(host_.lists());
  CONTACT_DATA_LIST_T& list = host_.lists().contacts();
  const int result = is_csv(path) ? host_.callbacks().get_contact_csv(path, &list)
                                  : host_.callbacks().get_contact_xml(path, &list);
  contacts = list;
  return result;
}

int Adapter::import_contact_file(const char* path) const {
  if (!host_.saver().write_if_outstanding(SaveCode::kContacts)) return -1;
  return is_csv(path) ? import_csv(path) : import_xml(path);
}

/// Copies the file over Contact.xml; the plug-in reads it from there. It keeps the old file until
/// the new one is on the disk, and puts it back when the copy fails.
int Adapter::import_xml(const char* path) const {
  const int result = host_.callbacks().copy_contact_xml(path);
  if (result != 0) rl_log_err("%s failed: <%s> can not be copied.", __func__, path);
  return result;
}

/// Reads the file into the host's list and writes Contact.xml from it.
int Adapter::import_csv(const char* path) const {
  CONTACT_DATA_LIST_T* list = host_.lists().given_contacts();
  if (list == nullptr) return -1;
  const auto old_contacts = std::make_unique<CONTACT_DATA_LIST_T>(*list);
  const int result = host_.callbacks().get_contact_csv(path, list);
  if (was_read(result) && host_.callbacks().save_contact_xml(kContactFile, list) == 0) {
    return result;
  }
  rl_log_err("%s failed: <%s> can not be imported.", __func__, path);
  *list = *old_contacts;
  return -1;
}

}  // namespace host

int adapter_check_contact_file_valid(const char* path) {
  return path != nullptr && host::the_host().adapter().is_contact_file(path) ? 1 : 0;
}

int adapter_read_contact_file(const char* path) {
  return path != nullptr ? host::the_host().adapter().import_contact_file(path) : -1;
}
