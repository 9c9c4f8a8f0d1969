// deskphone timezones: list, dst, match.
#include <cfgxml/timezone.h>
#include <fmt/format.h>

#include <memory>
#include <optional>

#include "commands.h"
#include "failure.h"
#include "node_list.h"

namespace deskphone {
namespace {

constexpr char kFile[] = "/config/System/TimeZone.xml";

// Where the configuration keeps the zone and its name.
constexpr int kSection = 26;
constexpr int kZoneItem = 64;
constexpr int kNameItem = 65;

[[noreturn]] void fail_without_table(const Phone& phone) {
  throw Failure(fmt::format("{} is missing, or no table of zones. Copy it from the samples.",
                            phone.host().on_disk(kFile).string()));
}

std::vector<TIMEZONE_DATA_T> zones(const Phone& phone) {
  const Function<decltype(cfg_get_timezone_list)> get{phone.plugin(), "cfg_get_timezone_list"};
  TIMEZONE_DATA_T* head = get();
  if (head == nullptr) fail_without_table(phone);
  return take_list(head);
}

void list_zones(const Phone& phone, const std::optional<std::string>& offset) {
  std::vector<Row> rows;
  for (const TIMEZONE_DATA_T& zone : zones(phone)) {
    if (offset && *offset != zone.TimeZone) continue;
    rows.push_back({{"id", zone.Id}, {"zone", zone.TimeZone}, {"name", zone.Name}});
  }
  phone.output().list(rows, {{"id", "Id"}, {"zone", "Zone"}, {"name", "Name"}}, "zones");
}

void show_daylight_saving(const Phone& phone, const std::string& name) {
  const Function<decltype(cfg_get_dst_info_by_timezone)> look_up{phone.plugin(),
                                                                 "cfg_get_dst_info_by_timezone"};
  DST_INFO_T info{};
  if (look_up(name.c_str(), &info) == 0) {
    phone.output().record({{"name", name},
                           {"type", info.Type},
                           {"start", info.Start},
                           {"end", info.End},
                           {"offset", info.Offset}});
    return;
  }
  for (const TIMEZONE_DATA_T& zone : zones(phone)) {
    if (name != zone.Name) continue;
    phone.output().done(fmt::format("{} has no daylight saving.", name),
                        {{"name", name}, {"type", nullptr}});
    return;
  }
  throw Failure(fmt::format(
      "There is no zone with the name \"{}\". The names are in 'deskphone timezones list'.", name));
}

void match_name(const Phone& phone, const std::optional<std::string>& zone) {
  host::Settings& settings = phone.host().settings();
  if (zone) {
    settings.set(kSection, kZoneItem, *zone);
    settings.save(kSection);
  }
  const std::string before = settings.get(kSection, kNameItem).value_or("");
  const Function<decltype(cfg_match_timezone_name)> match{phone.plugin(),
                                                          "cfg_match_timezone_name"};
  if (match() != 0) fail_without_table(phone);
  const std::string configured = settings.get(kSection, kZoneItem).value_or("");
  const std::string name = settings.get(kSection, kNameItem).value_or("");
  phone.output().done(name == before
                          ? fmt::format("The zone {} keeps the name \"{}\".", configured, name)
                          : fmt::format("The zone {} has the name \"{}\" now; it was \"{}\".",
                                        configured, name, before),
                      {{"zone", configured}, {"name", name}, {"before", before}});
}

}  // namespace

void add_timezone_commands(Command app, Phone& phone) {
  Command family = add_family(app, "timezones", "The time zones that the phone offers");
  auto offset = std::make_shared<std::optional<std::string>>();
  Command list = add_command(family, "list", "List the zones",
                             "timezones list\n"
                             "timezones list --zone=-3:30");
  list.add_option("--zone", *offset, "Only the zones with this offset");
  on_run(list, phone, [&phone, offset] { list_zones(phone, *offset); });

  auto name = std::make_shared<std::string>();
  Command dst =
      add_command(family, "dst", "Show a zone's daylight saving", "timezones dst \"New York\"");
  dst.add_option("name", *name, "The zone's name").required();
  on_run(dst, phone, [&phone, name] { show_daylight_saving(phone, *name); });

  auto zone = std::make_shared<std::optional<std::string>>();
  Command match =
      add_command(family, "match", "Bring the configured zone's name into line with the zone",
                  "timezones match\n"
                  "timezones match --zone +9");
  match.add_option("--zone", *zone, "Configure this zone before");
  on_run(match, phone, [&phone, zone] { match_name(phone, *zone); });
}

}  // namespace deskphone
