#include "support/list_file.h"

#include <cfgxml/host.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace cfgxml {

tinyxml2::XMLElement* ListFile::read() {
  if (!file_.exists() || !file_.load()) return nullptr;
  tinyxml2::XMLElement* root = file_.root();
  return root != nullptr ? root->FirstChildElement(place_.list) : nullptr;
}

tinyxml2::XMLElement* ListFile::open(const char* worker) {
  if (!file_.exists()) return nullptr;
  if (!file_.load()) {
    rl_log_debug("%s:load file <%s> failed, create a new file!", worker, file_.path());
    if (!file_.recreate(worker)) return nullptr;
  }
  tinyxml2::XMLElement* root = file_.root_or_new(worker, place_.root);
  return file_.child_or_new(root, worker, place_.list, place_.list_title);
}

int id_of(const tinyxml2::XMLElement& entry) {
  // The host's number reader may stop at the largest int, where unsigned ids go on.
  const char* text = entry.Attribute("ID");
  return text != nullptr ? static_cast<int>(std::strtoll(text, nullptr, 10)) : 0;
}

tinyxml2::XMLElement* find_entry(tinyxml2::XMLElement* list, const char* name, int id) {
  for (tinyxml2::XMLElement& entry : Children(list, name)) {
    if (id_of(entry) == id) return &entry;
  }
  return nullptr;
}

std::size_t count_entries(tinyxml2::XMLElement* list, const char* name) {
  std::size_t count = 0;
  for ([[maybe_unused]] const tinyxml2::XMLElement& entry : Children(list, name)) ++count;
  return count;
}

std::uint32_t next_id(tinyxml2::XMLElement* list, const char* name) {
  std::uint32_t largest = 0;
  for (const tinyxml2::XMLElement& entry : Children(list, name)) {
    largest = std::max(largest, static_cast<std::uint32_t>(id_of(entry)));
  }
  if (largest < std::numeric_limits<std::uint32_t>::max()) return largest + 1;
  std::uint32_t id = 0;
  while (find_entry(list, name, static_cast<int>(id)) != nullptr) ++id;
  return id;
}

}  // namespace cfgxml
