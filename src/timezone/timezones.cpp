// The table of time zones: the list, daylight saving, and the repair of the configured zone's name.
#include <cfgxml/host.h>
#include <cfgxml/timezone.h>

#include <cstddef>

#include "support/chain.h"
#include "support/fields.h"
#include "support/lock.h"
#include "support/paths.h"
#include "support/text.h"
#include "support/xml_file.h"

namespace cfgxml::timezone {
namespace {

constexpr Field<TIMEZONE_DATA_T> kZoneTable[] = {
    field<&TIMEZONE_DATA_T::Id>("Id"),
    field<&TIMEZONE_DATA_T::TimeZone>("TimeZone"),
    field<&TIMEZONE_DATA_T::Name>("Name"),
};
constexpr Fields<TIMEZONE_DATA_T> kZoneFields(kZoneTable);

constexpr Field<DST_INFO_T> kDaylightTable[] = {
    field<&DST_INFO_T::Type>("Type"),
    field<&DST_INFO_T::Start>("Start"),
    field<&DST_INFO_T::End>("End"),
    field<&DST_INFO_T::Offset>("Offset"),
};
constexpr Fields<DST_INFO_T> kDaylightFields(kDaylightTable);

static_assert(offsetof(TIMEZONE_DATA_T, TimeZone) == 4);
static_assert(offsetof(TIMEZONE_DATA_T, Name) == 68);
static_assert(offsetof(TIMEZONE_DATA_T, next) == (sizeof(void*) == 8 ? 136 : 132));
static_assert(offsetof(DST_INFO_T, Start) == 4);
static_assert(sizeof(DST_INFO_T) == 196);

// The host's configuration: the zone and its name.
constexpr int kSection = 26;
constexpr int kZoneItem = 64;
constexpr int kNameItem = 65;

/// A name may be given in full, or cut as the list hands it out.
bool is_called(const tinyxml2::XMLElement& zone, const char* name) {
  TIMEZONE_DATA_T record{};
  copy_text(record.Name, zone.Attribute("Name"));
  return equal(zone.Attribute("Name"), name) || equal(record.Name, name);
}

const tinyxml2::XMLElement* find_zone(tinyxml2::XMLElement* root, const char* name) {
  for (const tinyxml2::XMLElement& zone : Children(root)) {
    if (is_called(zone, name)) return &zone;
  }
  return nullptr;
}

using Zones = Chain<TIMEZONE_DATA_T>;

/// Reads the table, as far as there is one; false when memory ran out on the way.
bool read_zones(Zones* zones) {
  XmlFile file(paths::kTimezones);
  if (!file.load()) {
    rl_log_debug("load file <%s> fail!\n", file.path());
    return true;
  }
  if (file.root() == nullptr) return true;

  for (const tinyxml2::XMLElement& zone : Children(file.root())) {
    TIMEZONE_DATA_T* node = zones->append();
    if (node == nullptr) return false;
    kZoneFields.read(zone, *node);
  }
  return true;
}

}  // namespace

TIMEZONE_DATA_T* _cfg_get_timezone_list() {
  Zones zones;
  read_zones(&zones);
  return zones.release();
}

int cfg_destory_timezone_list(TIMEZONE_DATA_T* timezone_header) {
  if (timezone_header == nullptr) {
    rl_log_err("%s failed: timezone_header is NULL.", __func__);
    return -1;
  }
  free_chain(timezone_header);
  return 0;
}

int cfg_get_dst_info_by_timezone(const char* name, DST_INFO_T* out) {
  if (name == nullptr || out == nullptr) {
    rl_log_err("%s failed: input is NULL.", __func__);
    return -1;
  }
  XmlFile file(paths::kTimezones);
  if (!file.load()) {
    rl_log_debug("load file <%s> failed!", file.path());
    return -1;
  }
  if (file.root() == nullptr) return -1;
  const tinyxml2::XMLElement* zone = find_zone(file.root(), name);
  if (zone == nullptr) return -1;
  if (is_empty(zone->Attribute("Type"))) {
    rl_log_debug("%s failed, has no type node.", __func__);
    return -1;
  }
  kDaylightFields.read(*zone, *out);
  return 0;
}

/// A table that was read in part does not tell whether it knows the zone.
int cfg_match_timezone_name() {
  Zones zones;
  const bool whole = under_lock(Lock::kTimezones, false, read_zones, &zones);
  if (!whole || zones.head() == nullptr) {
    rl_log_info("%s null pointer", __func__);
    return -1;
  }
  char zone[64] = {};
  char name[64] = {};
  cfg_get_string(kSection, kZoneItem, zone, sizeof zone, "");
  cfg_get_string(kSection, kNameItem, name, sizeof name, "");

  const char* fallback = nullptr;
  for (const TIMEZONE_DATA_T* node = zones.head(); node != nullptr; node = node->next) {
    if (!equal(node->TimeZone, zone)) continue;
    if (equal(node->Name, name)) return 0;
    if (fallback == nullptr) fallback = node->Name;
  }
  cfg_set_string(kSection, kNameItem, fallback != nullptr ? fallback : "");
  cfg_save(kSection);
  return 0;
}

}  // namespace cfgxml::timezone

using cfgxml::guarded;
using cfgxml::under_lock;
namespace zones = cfgxml::timezone;

TIMEZONE_DATA_T* cfg_get_timezone_list() {
  return under_lock<TIMEZONE_DATA_T*>(cfgxml::Lock::kTimezones, nullptr,
                                      zones::_cfg_get_timezone_list);
}
int cfg_destory_timezone_list(TIMEZONE_DATA_T* timezone_header) {
  return zones::cfg_destory_timezone_list(timezone_header);
}
int cfg_get_dst_info_by_timezone(const char* name, DST_INFO_T* out) {
  return guarded(-1, zones::cfg_get_dst_info_by_timezone, name, out);
}
int cfg_match_timezone_name() { return guarded(-1, zones::cfg_match_timezone_name); }
