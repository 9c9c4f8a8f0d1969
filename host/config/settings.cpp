#include "config/settings.h"

#include <cfgxml/host.h>

#include <utility>

#include "host.h"
#include "runtime/files.h"

namespace host {

void Settings::open(std::filesystem::path file) {
  const std::lock_guard<std::mutex> hold(mutex_);
  file_ = std::move(file);
  saved_ = nlohmann::json::parse(files::read(file_).value_or("{}"), nullptr, false);
  if (!saved_.is_object()) {
    rl_log_err("<%s> holds no settings; the defaults apply.", file_.c_str());
    saved_ = nlohmann::json::object();
  }
  items_ = saved_;
}

std::optional<std::string> Settings::get(int section, int key) const {
  const std::lock_guard<std::mutex> hold(mutex_);
  const auto group = items_.find(std::to_string(section));
  if (group == items_.end() || !group->is_object()) return std::nullopt;
  const auto item = group->find(std::to_string(key));
  if (item == group->end()) return std::nullopt;
  return item->is_string() ? item->get<std::string>() : item->dump();
}

void Settings::set(int section, int key, const std::string& value) {
  const std::lock_guard<std::mutex> hold(mutex_);
  nlohmann::json& group = items_[std::to_string(section)];
  if (!group.is_object()) group = nlohmann::json::object();
  group[std::to_string(key)] = value;
}

bool Settings::save(int section) {
  constexpr auto kBadText = nlohmann::json::error_handler_t::replace;
  const std::lock_guard<std::mutex> hold(mutex_);
  const std::string name = std::to_string(section);
  if (!items_.contains(name)) return true;
  nlohmann::json changed = saved_;
  changed[name] = items_[name];
  if (!files::replace(file_, changed.dump(2, ' ', false, kBadText) + "\n")) return false;
  saved_ = std::move(changed);
  return true;
}

}  // namespace host

/// 0, or -1 when the fallback was used.
int cfg_get_string(int section, int key, char* buffer, int size, const char* fallback) {
  if (buffer == nullptr || size < 1) return -1;
  const std::optional<std::string> value = host::the_host().settings().get(section, key);
  rl_strcpy_s(buffer, static_cast<size_t>(size), value ? value->c_str() : fallback);
  return value ? 0 : -1;
}

int cfg_get_int(int section, int key, int fallback) {
  const std::optional<std::string> value = host::the_host().settings().get(section, key);
  return value ? rl_atoi(value->c_str()) : fallback;
}

int cfg_set_string(int section, int key, const char* value) {
  host::the_host().settings().set(section, key, value != nullptr ? value : "");
  return 0;
}

int cfg_save(int section) {
  if (host::the_host().settings().save(section)) return 0;
  rl_log_err("the settings of section %d can not be saved.", section);
  return -1;
}
