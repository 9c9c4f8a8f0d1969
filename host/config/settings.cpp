#include "config/settings.h"

#include <cfgxml/host.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

#include "host.h"
#include "runtime/files.h"

namespace host {
namespace {

using nlohmann::json;
using Event = json::parse_event_t;

/// Goes through a text and tells how far.
struct Reader {
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  const char* at;
  const char** reached;

  const char& operator*() const { return *at; }
  Reader& operator++() {
    *reached = ++at;
    return *this;
  }
  bool operator!=(const Reader& other) const { return at != other.at; }
};

/// "line 3, column 7: WHAT", with the byte at this offset.
std::string place(std::string_view text, std::size_t offset, const std::string& what) {
  const std::string_view before = text.substr(0, offset);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::size_t column = offset - (before.rfind('\n') + 1) + 1;
  return "line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + what;
}

bool is_item(const json& value) { return value.is_string() || value.is_number_integer(); }

/// What is wrong with an event of the parser: sections are objects, items texts or whole numbers.
const char* fault(int depth, Event event, const json& value) {
  constexpr int kItem = 2;
  const bool opens = event == Event::object_start || event == Event::array_start;
  if (!opens && event != Event::value) return nullptr;
  if (depth >= kItem) return opens || !is_item(value) ? "a text or a whole number is due" : nullptr;
  if (event == Event::object_start) return nullptr;
  return depth == 0 ? "an object of sections is due" : "an object of items is due";
}

json parse(const std::string& text) {
  constexpr char kBlank[] = " \t\r\n";
  const char* reached = text.data();
  std::size_t value_at = text.find_first_not_of(kBlank);
  const auto check = [&](int depth, Event event, const json& value) {
    if (event == Event::key) {
      const auto after = static_cast<std::size_t>(reached - text.data());
      value_at =
          text.find_first_not_of(kBlank, std::min(text.find(':', after), text.size() - 1) + 1);
    }
    if (const char* what = fault(depth, event, value)) {
      throw SettingsError(place(text, value_at, what));
    }
    return true;
  };
  try {
    const char* const end = text.data() + text.size();
    return json::parse(Reader{text.data(), &reached}, Reader{end, &reached}, check);
  } catch (const json::parse_error& error) {
    const std::string_view what = error.what();  // "[...] parse error at line 3, column 7: WHAT"
    const std::size_t offset = error.byte > 0 ? error.byte - 1 : 0;
    throw SettingsError(place(text, offset, std::string(what.substr(what.find(": ") + 2))));
  } catch (const json::exception&) {
    throw SettingsError(place(text, value_at, "a number is out of its range"));
  }
}

}  // namespace

void Settings::open(std::filesystem::path file) {
  const std::lock_guard<std::mutex> hold(mutex_);
  file_.clear();
  items_ = saved_ = json::object();
  const std::optional<std::string> text = files::read(file);
  std::error_code error;
  if (!text && std::filesystem::exists(file, error)) {
    throw SettingsError(file.string() + " can not be read.");
  }
  try {
    if (text) saved_ = parse(*text);
  } catch (const SettingsError& found) {
    throw SettingsError(file.string() + ", " + found.what() +
                        ". The file stays as it is; correct or remove it.");
  }
  items_ = saved_;
  file_ = std::move(file);
}

std::optional<std::string> Settings::get(int section, int key) const {
  const std::lock_guard<std::mutex> hold(mutex_);
  const auto group = items_.find(std::to_string(section));
  if (group == items_.end()) return std::nullopt;
  const auto item = group->find(std::to_string(key));
  if (item == group->end()) return std::nullopt;
  return item->is_string() ? item->get<std::string>() : item->dump();
}

void Settings::set(int section, int key, const std::string& value) {
  const std::lock_guard<std::mutex> hold(mutex_);
  items_[std::to_string(section)][std::to_string(key)] = value;
}

bool Settings::save(int section) {
  constexpr auto kBadText = json::error_handler_t::replace;
  const std::lock_guard<std::mutex> hold(mutex_);
  const std::string name = std::to_string(section);
  if (!items_.contains(name)) return true;
  if (file_.empty()) return false;
  json changed = saved_;
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
