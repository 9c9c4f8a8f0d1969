#include "adapter/adapter.h"

#include <cfgxml/host.h>

#include <cstring>

#include "host.h"

namespace host {
namespace {

/// A data file and the two slots that know its format.
struct Route {
  const char* path;
  int (*read)(const Callbacks& callbacks, const char* path, void* list);
  int (*write)(const Callbacks& callbacks, const char* path, void* list);
};

template <typename List, int (Callbacks::*Slot)(const char*, List*) const>
int through(const Callbacks& callbacks, const char* path, void* list) {
  return (callbacks.*Slot)(path, static_cast<List*>(list));
}

constexpr Route kRoutes[] = {
    {"/config/Phone/Contact/Contact.xml", through<CONTACT_DATA_LIST_T, &Callbacks::get_contact_xml>,
     through<CONTACT_DATA_LIST_T, &Callbacks::save_contact_xml>},
    {"/config/Phone/Contact/Blacklist.xml",
     through<BLACK_DATA_LIST_T, &Callbacks::get_blacklist_xml>,
     through<BLACK_DATA_LIST_T, &Callbacks::save_blacklist_xml>},
    {"/config/Phone/History/History.xml", through<HISTORY_DATA_LIST, &Callbacks::get_history_xml>,
     through<HISTORY_DATA_LIST, &Callbacks::save_history_xml>},
};

/// The route of this path, or nullptr, which is logged.
const Route* find_route(const char* path) {
  for (const Route& route : kRoutes) {
    if (path != nullptr && std::strcmp(path, route.path) == 0) return &route;
  }
  rl_log_err("<%s> is no data file of the phone.", path != nullptr ? path : "");
  return nullptr;
}

}  // namespace

int Adapter::read(void* list, const char* path) const {
  const Route* route = find_route(path);
  return route != nullptr ? route->read(host_.callbacks(), path, list) : -1;
}

int Adapter::write(void* list, const char* path) const {
  const Route* route = find_route(path);
  return route != nullptr ? route->write(host_.callbacks(), path, list) : -1;
}

}  // namespace host

int adapter_read_file_ex(void* list, const char* path) {
  return host::the_host().adapter().read(list, path);
}

int adapter_write_file_ex(void* list, const char* path) {
  return host::the_host().adapter().write(list, path);
}

int adapter_move_contact_to_blackList(int id) {
  return host::the_host().callbacks().mov_contact_data(id);
}

int adapter_move_blackList_to_contact(int id) {
  return host::the_host().callbacks().mov_black_data(id);
}
