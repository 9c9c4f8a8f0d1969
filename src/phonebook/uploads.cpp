// Importing files: the checks, the copies over the phonebook's files, and the reloads.
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>

#include <cstdio>
#include <cstring>
#include <optional>

#include "phonebook/file_format.h"
#include "phonebook/tables.h"
#include "support/copy_over.h"
#include "support/lock.h"
#include "support/paths.h"

namespace cfgxml::phonebook {
namespace {

/// What the host's shell receives with the copy of a phonebook file.
constexpr shell::HostWords kCopyWords{20, 3};

/// Copies a checked file over one of the phonebook's, so that a save that began before does not
/// undo it; nothing when the copy is refused, else the shell's result.
std::optional<int> copy(const char* source, const char* data_file, SaveOrder& saves) {
  std::optional<Copied> copied;
  saves.replace([&] {
    copied = copy_over(source, data_file, kCopyWords);
    return copied && copied->replaced;
  });
  if (!copied) return std::nullopt;
  return copied->result;
}

int copy_contacts(const char* source) {
  return copy(source, paths::kContacts, contact_saves).value_or(-1);
}

int check_contact_file(const char* path, const char* worker) {
  return is_valid_upload(path, kGroupElement, worker) ? 1 : 0;
}

bool is_valid_blacklist_file(const char* path) {
  return is_valid_upload(path, kBlacklistElement, __func__);
}

bool is_csv(const char* extension) { return equal(extension, "csv") || equal(extension, "CSV"); }

/// The extension after the path's first "." says whose result counts: a CSV file's import fills
/// the list itself, an XML file's only replaces the file.
bool names_csv(const char* path) {
  char base[256] = "";
  char extension[256] = "";
  std::sscanf(path, "%255[^.].%255s", base, extension);  // NOLINT(cert-err34-c): no number is read
  return is_csv(extension);
}

/// An XML file is copied by the shell; a CSV file's path, whatever it holds, reaches none.
bool is_copied(const char* path) {
  const char* dot = std::strrchr(path, '.');
  return dot == nullptr || !is_csv(dot + 1);
}

int _cfg_upload_contact(const char* path) {
  if (path == nullptr || adapter_check_contact_file_valid(path) == 0) {
    rl_log_err("%s failed: file is invalid.", __func__);
    return -1;
  }
  if (is_copied(path) && !can_copy_over(path, paths::kContacts)) return -1;
  const int imported = adapter_read_contact_file(path);
  const int reloaded = adapter_read_file_ex(cfg_get_contact_list(), paths::kContacts);
  return names_csv(path) ? imported : reloaded;
}

int _cfg_upload_blacklist(const char* path) {
  if (!is_valid_blacklist_file(path)) {
    rl_log_err("%s failed: file is invalid.", __func__);
    return -1;
  }
  if (!copy(path, paths::kBlacklist, blacklist_saves)) return -1;
  return adapter_read_file_ex(cfg_get_black_list(), paths::kBlacklist);
}

}  // namespace
}  // namespace cfgxml::phonebook

using namespace cfgxml;             // NOLINT(google-build-using-namespace): the boundary
using namespace cfgxml::phonebook;  // NOLINT(google-build-using-namespace): the boundary

int is_valid_contact_file_xml(const char* path) {
  return guarded(0, check_contact_file, path, __func__);
}

int copy_contact_xml(const char* path) { return guarded(-1, copy_contacts, path); }

int cfg_upload_contact(const char* path) {
  return under_lock(Lock::kPhonebook, -1, _cfg_upload_contact, path);
}

int cfg_upload_blacklist(const char* path) {
  return under_lock(Lock::kPhonebook, -1, _cfg_upload_blacklist, path);
}
