// The lists that live in files alone: dial rules, messages, notifications, time zones.
#include <cfgxml/dialrule.h>
#include <cfgxml/message.h>
#include <cfgxml/notify.h>
#include <cfgxml/timezone.h>

#include "operations/shapes.h"
#include "support/paths.h"

namespace operations {
namespace {

namespace paths = cfgxml::paths;

template <const auto& Path>
void damaged(World& world) {
  world.write(Path, kDamaged);
}

/// What a file holds is not checked by the library.
template <auto Function, const auto& Path>
Result uploading(World& world, Choices& choices) {
  return number_of(world.call(Function, world.file(choices, Path)));
}

constexpr char kNowRules[] = "/import/dialnow.xml";
constexpr char kReplaceRules[] = "/import/dialreplace.xml";

/// The configured name belongs to another zone than the configured one.
void with_wrong_name(World& world) {
  world.host().settings().set(26, 64, "-9");
  world.host().settings().set(26, 65, "Berlin");
}

/// The first of the zones that has daylight saving.
Result daylight(World& world, Choices& choices) {
  auto record = untouched<DST_INFO_T>();
  const char* name = choices.text("Anchorage");
  auto* argument = choices.argument(record);
  return with_record(record,
                     [&] { return world.call(cfg_get_dst_info_by_timezone, name, argument); });
}

Result match_name(World& world, Choices& choices) {
  const int result = world.call(cfg_match_timezone_name);
  const std::string name = world.host().settings().get(26, 65).value_or("");
  world.require(choices.varies() || name == (result == 0 ? "Anchorage" : "Berlin"),
                "the zone is called " + name);
  return number_of(result);
}

Result save_notifications(World& world, Choices& choices) {
  NOTIFICATION_T second{};
  NOTIFICATION_T first{};
  fill_record(second, choices);
  fill_record(first, choices);
  if (choices.number(1, 0, 1) == 1) first.next = &second;
  return number_of(world.call(cfg_save_notification_list, choices.argument(first)));
}

// A row per function of a list of rules, or of a box.

#define RULES(list, absent_rule)                                            \
  OPERATION(listing, cfg_get_##list##_list).lists(),                        \
      OPERATION(getting, cfg_get_##list##_data).runs_out("-1").is(kQuiet),  \
      OPERATION(adding, cfg_add_##list##_data).also("7|10").runs_out("-1"), \
      OPERATION(setting, cfg_set_##list##_data)                             \
          .absent(absent_rule)                                              \
          .also("7")                                                        \
          .runs_out("-1")                                                   \
          .is(kQuiet),                                                      \
      OPERATION(by_id, cfg_remove_##list##_data).absent("0").runs_out("-1")

#define BOX(box)                                                            \
  OPERATION(listing, cfg_get_##box##_list).lists(),                         \
      OPERATION(getting, cfg_get_##box##_data).runs_out("-1"),              \
      OPERATION(setting, cfg_set_##box##_data).runs_out("-1"),              \
      OPERATION(adding, cfg_add_##box##_data).runs_out("-1"),               \
      OPERATION(by_id, cfg_remove_##box##_data).absent("0").runs_out("-1"), \
      OPERATION(calling, cfg_remove_##box##_all).runs_out("-1").often(1)

}  // namespace

Operations list_operations() {
  // clang-format off
  return joined({
      family(Lock::kDialNow, 0, 0, {
          RULES(dialnow, "4"),
          OPERATION(adding, cfg_add_dialnow_data).with_story("damaged")
              .after(damaged<paths::kDialNow>).runs_out("-1").is(kBlockLost).never_at_random(),
          Operation("cfg_upload_dialnow", uploading<cfg_upload_dialnow, kNowRules>)
              .runs_out("-1").is(kFileReplaced).often(1),
      }),
      family(Lock::kDialReplace, 0, 0, {
          RULES(dialreplace, "4"),
          Operation("cfg_upload_dialreplace", uploading<cfg_upload_dialreplace, kReplaceRules>)
              .runs_out("-1").is(kFileReplaced).often(1),
      }),
      family(Lock::kNone, 0, kQuiet, {RULES(blockout, "-1")}),
      family(Lock::kMessages, 0, kQuiet, {
          BOX(inbox), BOX(outbox), BOX(sentbox), BOX(draftbox),
          OPERATION(adding, cfg_add_outbox_data).with_story("damaged")
              .after(damaged<paths::kMessages>).runs_out("-1").is(kBlockLost).never_at_random(),
          OPERATION(listing, cfg_get_all_sms_details_list).lists(),
          OPERATION(calling, cfg_get_inbox_unread).gives("3").also("*").runs_out("-1"),
      }),
      family(Lock::kTimezones, 0, 0, {
          OPERATION(listing, cfg_get_timezone_list).lists().often(1),
          Operation("cfg_match_timezone_name", match_name).after(with_wrong_name).runs_out("-1"),
      }),
      family(Lock::kNone, 0, 0, {
          Operation("cfg_destory_timezone_list",
                    releasing<cfg_destory_timezone_list, cfg_get_timezone_list>),
          Operation("cfg_get_dst_info_by_timezone", daylight).runs_out("-1").is(kQuiet),
          OPERATION(listing, cfg_get_notification_list).lists(),
          Operation("cfg_destory_notification_list",
                    releasing<cfg_destory_notification_list, cfg_get_notification_list>),
          Operation("cfg_save_notification_list", save_notifications).runs_out("-1"),
          Operation("cfg_save_notification_list", save_notifications).with_story("damaged")
              .after(damaged<paths::kNotifications>).runs_out("-1").is(kBlockLost)
              .never_at_random(),
      }),
  });
  // clang-format on
}

}  // namespace operations
