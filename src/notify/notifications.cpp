// The list of notification settings: read into a list for the caller, and written back whole.
#include <cfgxml/host.h>
#include <cfgxml/notify.h>

#include <cstddef>

#include "support/chain.h"
#include "support/fields.h"
#include "support/lock.h"
#include "support/mutex.h"
#include "support/paths.h"
#include "support/xml_file.h"

namespace cfgxml::notify {
namespace {

constexpr std::size_t kNameRead = 128;  // of a name's 256 bytes, the reader fills these
constexpr shell::HostWords kRemovalWords{10, 2};

static_assert(offsetof(NOTIFICATION_T, Notify) == 256);
static_assert(offsetof(NOTIFICATION_T, next) == (sizeof(void*) == 8 ? 264 : 260));

Mutex file_mutex;  // held while the file is loaded, changed and saved
constexpr const char* kFile GUARDED_BY(file_mutex) = paths::kNotifications;

}  // namespace

NOTIFICATION_T* cfg_get_notification_list() {
  const Hold hold(file_mutex);
  XmlFile file(kFile);
  if (!file.load()) {
    rl_log_debug("load file <%s> fail!\n", file.path());
    return nullptr;
  }
  if (file.root() == nullptr) return nullptr;

  Chain<NOTIFICATION_T> chain(Allocator::kC);
  for (const tinyxml2::XMLElement& parameter : Children(file.root())) {
    NOTIFICATION_T* node = chain.append();
    if (node == nullptr) break;
    node->Notify = int_attribute(parameter, "Notify");
    copy_text(node->Name, kNameRead, parameter.Attribute("Name"));
  }
  return chain.release();
}

int cfg_save_notification_list(const NOTIFICATION_T* list) {
  if (list == nullptr) {
    rl_log_err("%s failed: list is NULL.", __func__);
    return -1;
  }
  const Hold hold(file_mutex);
  XmlFile file(kFile);
  if (!file.load() && !file.recreate(__func__, kRemovalWords)) return -1;
  tinyxml2::XMLElement* root = file.root_or_new(__func__, "cwmp:notification");
  root->DeleteChildren();

  for (const NOTIFICATION_T* node = list; node != nullptr; node = node->next) {
    tinyxml2::XMLElement* parameter = append_element(root, __func__, "Pameter");
    if (parameter == nullptr) return -1;
    write_value(*parameter, "Notify", node->Notify);
    write_value(*parameter, "Name", node->Name);
  }
  return file.save(__func__);
}

int cfg_destory_notification_list(NOTIFICATION_T* list) {
  if (list == nullptr) {
    rl_log_err("%s failed: list is NULL.", __func__);
    return -1;
  }
  free_chain(list);
  return 0;
}

}  // namespace cfgxml::notify

using cfgxml::guarded;
namespace notify = cfgxml::notify;

NOTIFICATION_T* cfg_get_notification_list() {
  return guarded<NOTIFICATION_T*>(nullptr, notify::cfg_get_notification_list);
}
int cfg_save_notification_list(const NOTIFICATION_T* list) {
  return guarded(-1, notify::cfg_save_notification_list, list);
}
int cfg_destory_notification_list(NOTIFICATION_T* list) {
  return notify::cfg_destory_notification_list(list);
}
