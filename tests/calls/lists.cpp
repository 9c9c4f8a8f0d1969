// The lists that live in files alone: dial rules, BlockOut, messages, notifications, time zones.
#include <cfgxml/dialrule.h>
#include <cfgxml/message.h>
#include <cfgxml/notify.h>
#include <cfgxml/timezone.h>

#include <utility>

#include "calls/files.h"
#include "calls/world.h"
#include "support/list_functions.h"

namespace calls {
namespace {

using namespace list_functions;  // NOLINT(google-build-using-namespace): they are its subject

template <typename Node>
void free_list(Node* head) {
  while (head != nullptr) rl_free(std::exchange(head, head->next));
}

void fill_rule(DIAL_NOW_DATA_T& rule, Choices& choices) { fill(rule.Rule, choices.phone_number()); }
void fill_rule(BLOCKOUT_DATA_T& rule, Choices& choices) { fill(rule.Rule, choices.phone_number()); }
void fill_rule(DIAL_REPLACE_DATA_T& rule, Choices& choices) {
  fill(rule.Prefix, choices.phone_number());
  fill(rule.Replace, choices.phone_number());
}

/// A file of rules in place of the list's. What it holds is not checked by the library.
template <typename Rule>
int upload(const RuleList<Rule>& list, World& world, Choices& choices) {
  // Alone: the file is read after the call of another may have begun to write it.
  static std::mutex one_upload;
  const std::lock_guard<std::mutex> own(one_upload);
  if (choices.odd()) world.set_rules_kept(false);
  const std::string path =
      world.write(std::string("/rules-") + list.name + ".xml", rule_file(choices, list.name));
  return list.upload(Text(choices, path));
}

template <typename Rule, const RuleList<Rule>& List>
void use_rules(World& world, Choices& choices) {
  Rule rule{};
  rule.Line = choices.line();
  fill_rule(rule, choices);
  int result = 0;
  switch (choices.number(0, 10)) {
    case 0:
      free_list(List.list());
      break;
    case 1:
    case 2:
      result = List.get(choices.id(), choices.argument(rule));
      break;
    case 3:
    case 4:
    case 5:
      result = List.add(choices.argument(rule));
      break;
    case 6:
    case 7:
      result = List.set(choices.id(), choices.argument(rule));
      break;
    case 8:
    case 9:
      result = List.remove(choices.id());
      break;
    default:
      if (List.upload != nullptr) result = upload(List, world, choices);
  }
  world.expect_result(List.name, result, {0, 4, 7, 10, -1});
}

SMS_DATA_T message_of(Choices& choices) {
  SMS_DATA_T message{};
  message.status = choices.number(0, 1);
  message.port = choices.line();
  fill(message.from_user, choices.phone_number());
  fill(message.from_display, choices.name());
  fill(message.to_user, choices.phone_number());
  fill(message.to_display, choices.name());
  fill(message.content, choices.name());
  fill(message.date, choices.word());
  fill(message.time, choices.word());
  return message;
}

void use_box(World& world, Choices& choices) {
  const Box& box = kBoxes[choices.number(0, 3)];
  SMS_DATA_T message = message_of(choices);
  int result = 0;
  switch (choices.number(0, 10)) {
    case 0:
    case 1:
      free_list(box.list());
      break;
    case 2:
    case 3:
      result = box.get(choices.id(), choices.argument(message));
      break;
    case 4:
    case 5:
    case 6:
      result = box.add(choices.argument(message));
      break;
    case 7:
    case 8:
      result = box.set(choices.id(), choices.argument(message));
      break;
    case 9:
      result = box.remove(choices.id());
      break;
    default:
      if (choices.number(0, 5) == 0) result = box.remove_all();
  }
  world.expect_result("a message function", result, {0, -1});
}

void read_all_messages(World& world, Choices& /*choices*/) {
  free_list(cfg_get_all_sms_details_list());
  world.require(cfg_get_inbox_unread() >= -1, "less than no message is unread");
}

void replace_notifications(World& world, Choices& choices) {
  std::array<NOTIFICATION_T, 3> list{};
  for (std::size_t i = 0; i != list.size(); ++i) {
    fill(list[i].Name, choices.word());
    list[i].Notify = choices.line();
    if (i + 1 != list.size() && choices.flag()) list[i].next = &list[i + 1];
    if (list[i].next == nullptr) break;
  }
  world.expect_result("cfg_save_notification_list",
                      cfg_save_notification_list(choices.argument(list.front())), {0, -1});
  NOTIFICATION_T* stored = cfg_get_notification_list();
  if (stored != nullptr) cfg_destory_notification_list(stored);
}

void use_time_zones(World& world, Choices& choices) {
  TIMEZONE_DATA_T* zones = cfg_get_timezone_list();
  if (zones != nullptr) cfg_destory_timezone_list(zones);
  DST_INFO_T rule;
  const Text name(choices, choices.flag() ? "Zone" : choices.word());
  world.expect_result("cfg_get_dst_info_by_timezone",
                      cfg_get_dst_info_by_timezone(name, choices.argument(rule)), {0, -1});
  world.expect_result("cfg_match_timezone_name", cfg_match_timezone_name(), {0, -1});
}

}  // namespace

const std::vector<Call> kListCalls = {
    {"DialNow", 6, use_rules<DIAL_NOW_DATA_T, kDialNow>},
    {"DialReplace", 6, use_rules<DIAL_REPLACE_DATA_T, kDialReplace>},
    {"BlockOut", 6, use_rules<BLOCKOUT_DATA_T, kBlockOut>},
    {"messages", 10, use_box},
    {"read all messages", 2, read_all_messages},
    {"notifications", 2, replace_notifications},
    {"time zones", 1, use_time_zones},
};

}  // namespace calls
