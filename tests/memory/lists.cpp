// The lists that live in files: calls, dial rules, messages, time zones, notifications.
#include <cfgxml/dialrule.h>
#include <cfgxml/history.h>
#include <cfgxml/message.h>
#include <cfgxml/notify.h>
#include <cfgxml/timezone.h>

#include <cstdio>

#include "scenario.h"

namespace memory_test {
namespace {

constexpr char kDialNowFile[] = "/config/Phone/General/DialRule/DialNow.xml";
constexpr char kDialReplaceFile[] = "/config/Phone/General/DialRule/DialReplace.xml";
constexpr char kBlockOutFile[] = "/config/Phone/General/DialRule/BlockOut.xml";

// One text for the three: each has its own list, and looks at no other.
constexpr char kRules[] = R"(<Dial>
<DialNow><Data ID="1" Rule="3xx" Line="1"/><Data ID="2" Rule="4xx" Line="1"/></DialNow>
<DialReplace><Data ID="1" Prefix="00" Replace="+" Line="1"/><Data ID="2" Prefix="0" Replace="+49" Line="1"/></DialReplace>
<BlockOut><Data ID="1" Rule="900" Line="1"/><Data ID="2" Rule="901" Line="1"/></BlockOut>
</Dial>)";

constexpr char kMessages[] = R"(<Message>
<InboxData Total="2" Unread="1">
<Inbox ID="1" FromDisplay="Anna" FromUser="100" Server="pbx.example.com" Port="5060" Content="Lunch?" Status="1" Date="2024-05-02" Time="12:00:00"/>
<Inbox ID="2" FromDisplay="" FromUser="#101" Content="Call me" Status="0"/></InboxData>
<OutboxData Total="1"><Outbox ID="1" ToUser="100" Content="Yes"/></OutboxData>
<SentboxData Total="1"><Sentbox ID="1" ToUser="100" Content="Later"/></SentboxData>
<DraftboxData Total="1"><Draftbox ID="1" Content="Dear" Date="2024-05-03"/></DraftboxData>
</Message>)";

constexpr char kZones[] = R"(<TimeZoneData>
<Zone Id="1" TimeZone="0" Name="London" Type="1" Start="M3.5.0/01:00" End="M10.5.0/02:00" Offset="60"/>
<Zone Id="2" TimeZone="1" Name="Berlin"/><Zone Id="3" TimeZone="1" Name="Rome"/>
</TimeZoneData>)";

constexpr char kNotifications[] = R"(<cwmp:notification>
<Pameter Notify="2" Name="Device.DeviceInfo.SoftwareVersion"/>
<Pameter Notify="1" Name="Device.Time.LocalTimeZone"/></cwmp:notification>)";

// ---- Calls

void with_older_calls(Stage& stage) {
  with_phonebook(stage);
  stage.history() = {};
  stage.history().Records[0].ID = 9;
}

void with_a_set(Stage& stage) {
  with_phonebook(stage);
  history_save_init(1);
}

template <auto Function, int Argument>
Result change_calls(Stage& stage) {
  return result_of(stage.call(Function, Argument));
}

HISTORY_DATA_T call_from(const char* number) {
  HISTORY_DATA_T call{};
  call.Type = 1;
  std::snprintf(call.RemoteSipName, sizeof call.RemoteSipName, "%s", number);
  return call;
}

/// The calls alone: who called may not be found in a phonebook that ends early.
Result calls_listed(Stage& stage) {
  Result result{"list", {}, true};
  HISTORY_SUMMARY_T* calls = stage.call(cfg_get_history_summary);
  for (const HISTORY_SUMMARY_T* call = calls; call != nullptr; call = call->next) {
    result.nodes.push_back(std::to_string(call->ID) + " " + call->RemoteSipName);
  }
  if (calls != nullptr) cfg_destory_history_summary(calls);
  return result;
}

Result calls_released(Stage& stage) {
  HISTORY_SUMMARY_T* calls = cfg_get_history_summary();
  return result_of(stage.call(cfg_destory_history_summary, calls));
}

Result set_filled(Stage& stage) {
  HISTORY_SUMMARY_SET_T set{};
  stage.call([&] { return cfg_get_history_summary_set(&set), 0; });
  return result_of(set.count);
}

/// The call keeps the name it had.
Result set_named(Stage& stage) {
  HISTORY_SUMMARY_SET_T set{};
  cfg_get_history_summary_set(&set);
  set.sync_id = 2;
  stage.call([&] { return cfg_summary_sync_out(&set), 0; });
  return {set.entries[1].RemoteDisplayName, {}, false};
}

Scenarios history_scenarios() {
  return {
      {"get_history_xml", "", with_older_calls,
       [](Stage& stage) { return result_of(stage.call(get_history_xml, "", &stage.history())); },
       "-1"},
      {"save_history_xml", "", with_phonebook,
       [](Stage& stage) { return result_of(stage.call(save_history_xml, "", &stage.history())); },
       "-1"},
      {"cfg_get_history_summary", "", with_phonebook, calls_listed, kEndsEarly},
      {"cfg_destory_history_summary", "", with_phonebook, calls_released, nullptr},
      {"cfg_get_history_summary_set", "", with_a_set, set_filled, nullptr},
      {"cfg_summary_sync_out", "", with_phonebook, set_named, "?"},
      {"cfg_get_history_data", "", with_phonebook,
       [](Stage& stage) {
         HISTORY_DATA_T call{};
         return result_of(stage.call(cfg_get_history_data, 2, &call));
       },
       "-1"},
      {"cfg_add_history", "", with_phonebook,
       [](Stage& stage) {
         HISTORY_DATA_T call = call_from("102");
         return result_of(stage.call(cfg_add_history, &call));
       },
       "-1", kSaveDropped},
      {"cfg_mod_history", "", with_phonebook,
       [](Stage& stage) {
         HISTORY_DATA_T call = call_from("102");
         return result_of(stage.call(cfg_mod_history, 1, &call));
       },
       "-1", kSaveDropped},
      {"cfg_del_history", "", with_phonebook, change_calls<cfg_del_history, 1>, "-1", kSaveDropped},
      {"cfg_del_all_history", "", with_phonebook, change_calls<cfg_del_all_history, 0>, "-1",
       kSaveDropped},
  };
}

// ---- Dial rules

void with_rules(Stage& stage) {
  for (const char* file : {kDialNowFile, kDialReplaceFile, kBlockOutFile}) {
    stage.write(file, kRules);
  }
  stage.write("/import/rules.xml", kRules);
}

template <typename Rule>
Rule rule();
template <>
DIAL_NOW_DATA_T rule() {
  return {0, 2, "5xxx", nullptr};
}
template <>
DIAL_REPLACE_DATA_T rule() {
  return {0, 2, "9", "+44", nullptr};
}
template <>
BLOCKOUT_DATA_T rule() {
  return {0, 2, "902", nullptr};
}

/// Functions of a list, file or store that return one.
template <auto Function>
Result listed(Stage& stage) {
  return list_taken(stage.call(Function));
}

template <auto Function, typename Record>
Result got(Stage& stage) {
  Record record{};
  return result_of(stage.call(Function, 1, &record));
}

template <auto Function, typename Rule>
Result rule_added(Stage& stage) {
  const Rule item = rule<Rule>();
  return result_of(stage.call(Function, &item));
}

template <auto Function, typename Rule>
Result rule_set(Stage& stage) {
  const Rule item = rule<Rule>();
  return result_of(stage.call(Function, 2, &item));
}

template <auto Function>
Result removed(Stage& stage) {
  return result_of(stage.call(Function, 1));
}

template <auto Function>
Result uploaded(Stage& stage) {
  const std::string path = stage.on_disk("/import/rules.xml");
  return result_of(stage.call(Function, path.c_str()));
}

Scenarios rule_scenarios() {
  using Now = DIAL_NOW_DATA_T;
  using Replace = DIAL_REPLACE_DATA_T;
  using Block = BLOCKOUT_DATA_T;
  return {
      {"cfg_get_dialnow_list", "", with_rules, listed<cfg_get_dialnow_list>, kEndsEarly},
      {"cfg_get_dialnow_data", "", with_rules, got<cfg_get_dialnow_data, Now>, "-1"},
      {"cfg_add_dialnow_data", "", with_rules, rule_added<cfg_add_dialnow_data, Now>, "-1"},
      {"cfg_set_dialnow_data", "", with_rules, rule_set<cfg_set_dialnow_data, Now>, "-1"},
      {"cfg_remove_dialnow_data", "", with_rules, removed<cfg_remove_dialnow_data>, "-1"},
      {"cfg_upload_dialnow", "", with_rules, uploaded<cfg_upload_dialnow>, "-1"},
      {"cfg_get_dialreplace_list", "", with_rules, listed<cfg_get_dialreplace_list>, kEndsEarly},
      {"cfg_get_dialreplace_data", "", with_rules, got<cfg_get_dialreplace_data, Replace>, "-1"},
      {"cfg_add_dialreplace_data", "", with_rules, rule_added<cfg_add_dialreplace_data, Replace>,
       "-1"},
      {"cfg_set_dialreplace_data", "", with_rules, rule_set<cfg_set_dialreplace_data, Replace>,
       "-1"},
      {"cfg_remove_dialreplace_data", "", with_rules, removed<cfg_remove_dialreplace_data>, "-1"},
      {"cfg_upload_dialreplace", "", with_rules, uploaded<cfg_upload_dialreplace>, "-1"},
      {"cfg_get_blockout_list", "", with_rules, listed<cfg_get_blockout_list>, kEndsEarly},
      {"cfg_get_blockout_data", "", with_rules, got<cfg_get_blockout_data, Block>, "-1"},
      {"cfg_add_blockout_data", "", with_rules, rule_added<cfg_add_blockout_data, Block>, "-1"},
      {"cfg_set_blockout_data", "", with_rules, rule_set<cfg_set_blockout_data, Block>, "-1"},
      {"cfg_remove_blockout_data", "", with_rules, removed<cfg_remove_blockout_data>, "-1"},
  };
}

// ---- Messages

void with_messages(Stage& stage) { stage.write("/config/Phone/Message/Message.xml", kMessages); }

SMS_DATA_T message() {
  SMS_DATA_T message{};
  message.status = 1;
  std::snprintf(message.from_user, sizeof message.from_user, "103");
  std::snprintf(message.content, sizeof message.content, "A \"new\" message & more");
  return message;
}

template <auto Function>
Result message_added(Stage& stage) {
  const SMS_DATA_T record = message();
  return result_of(stage.call(Function, &record));
}

template <auto Function>
Result message_set(Stage& stage) {
  const SMS_DATA_T record = message();
  return result_of(stage.call(Function, 1, &record));
}

template <auto Function>
Result number(Stage& stage) {
  return result_of(stage.call(Function));
}

Scenarios message_scenarios() {
  const auto all_details = listed<cfg_get_all_sms_details_list>;
  return {
      {"cfg_get_inbox_list", "", with_messages, listed<cfg_get_inbox_list>, kEndsEarly},
      {"cfg_get_outbox_list", "", with_messages, listed<cfg_get_outbox_list>, kEndsEarly},
      {"cfg_get_sentbox_list", "", with_messages, listed<cfg_get_sentbox_list>, kEndsEarly},
      {"cfg_get_draftbox_list", "", with_messages, listed<cfg_get_draftbox_list>, kEndsEarly},
      {"cfg_get_inbox_data", "", with_messages, got<cfg_get_inbox_data, SMS_DATA_T>, "-1"},
      {"cfg_get_outbox_data", "", with_messages, got<cfg_get_outbox_data, SMS_DATA_T>, "-1"},
      {"cfg_get_sentbox_data", "", with_messages, got<cfg_get_sentbox_data, SMS_DATA_T>, "-1"},
      {"cfg_get_draftbox_data", "", with_messages, got<cfg_get_draftbox_data, SMS_DATA_T>, "-1"},
      {"cfg_set_inbox_data", "", with_messages, message_set<cfg_set_inbox_data>, "-1"},
      {"cfg_set_outbox_data", "", with_messages, message_set<cfg_set_outbox_data>, "-1"},
      {"cfg_set_sentbox_data", "", with_messages, message_set<cfg_set_sentbox_data>, "-1"},
      {"cfg_set_draftbox_data", "", with_messages, message_set<cfg_set_draftbox_data>, "-1"},
      {"cfg_add_inbox_data", "", with_messages, message_added<cfg_add_inbox_data>, "-1"},
      {"cfg_add_outbox_data", "", with_messages, message_added<cfg_add_outbox_data>, "-1"},
      {"cfg_add_sentbox_data", "", with_messages, message_added<cfg_add_sentbox_data>, "-1"},
      {"cfg_add_draftbox_data", "", with_messages, message_added<cfg_add_draftbox_data>, "-1"},
      {"cfg_remove_inbox_data", "", with_messages, removed<cfg_remove_inbox_data>, "-1"},
      {"cfg_remove_outbox_data", "", with_messages, removed<cfg_remove_outbox_data>, "-1"},
      {"cfg_remove_sentbox_data", "", with_messages, removed<cfg_remove_sentbox_data>, "-1"},
      {"cfg_remove_draftbox_data", "", with_messages, removed<cfg_remove_draftbox_data>, "-1"},
      {"cfg_remove_inbox_all", "", with_messages, number<cfg_remove_inbox_all>, "-1"},
      {"cfg_remove_outbox_all", "", with_messages, number<cfg_remove_outbox_all>, "-1"},
      {"cfg_remove_sentbox_all", "", with_messages, number<cfg_remove_sentbox_all>, "-1"},
      {"cfg_remove_draftbox_all", "", with_messages, number<cfg_remove_draftbox_all>, "-1"},
      {"cfg_get_all_sms_details_list", "", with_messages, all_details, kEndsEarly},
      {"cfg_get_inbox_unread", "", with_messages, number<cfg_get_inbox_unread>, "-1"},
  };
}

// ---- Time zones and notifications

/// The configured name belongs to another zone.
void with_zones(Stage& stage) {
  stage.write("/config/System/TimeZone.xml", kZones);
  stage.host().settings().open(stage.on_disk("/config/settings.json"));
  stage.set_item(26, 64, "1");
  stage.set_item(26, 65, "London");
}

void with_notifications(Stage& stage) {
  stage.write("/config/Network/Rcpe/RcpeNotify.xml", kNotifications);
}

Result zones_released(Stage& stage) {
  TIMEZONE_DATA_T* zones = cfg_get_timezone_list();
  return result_of(stage.call(cfg_destory_timezone_list, zones));
}

Result daylight(Stage& stage) {
  DST_INFO_T info{};
  return result_of(stage.call(cfg_get_dst_info_by_timezone, "London", &info));
}

Result notifications_released(Stage& stage) {
  NOTIFICATION_T* list = cfg_get_notification_list();
  return result_of(stage.call(cfg_destory_notification_list, list));
}

Result notifications_saved(Stage& stage) {
  NOTIFICATION_T second{"Device.DeviceInfo.UpTime", 0, nullptr};
  NOTIFICATION_T first{"Device.Time.LocalTimeZone", 2, &second};
  return result_of(stage.call(cfg_save_notification_list, &first));
}

Scenarios zone_scenarios() {
  return {
      {"cfg_get_timezone_list", "", with_zones, listed<cfg_get_timezone_list>, kEndsEarly},
      {"cfg_destory_timezone_list", "", with_zones, zones_released, nullptr},
      {"cfg_get_dst_info_by_timezone", "", with_zones, daylight, "-1"},
      {"cfg_match_timezone_name", "", with_zones, number<cfg_match_timezone_name>, "-1"},
      {"cfg_get_notification_list", "", with_notifications, listed<cfg_get_notification_list>,
       kEndsEarly},
      {"cfg_save_notification_list", "", with_notifications, notifications_saved, "-1"},
      {"cfg_destory_notification_list", "", with_notifications, notifications_released, nullptr},
  };
}

}  // namespace

Scenarios list_scenarios() {
  Scenarios all;
  for (const Scenarios& some :
       {history_scenarios(), rule_scenarios(), message_scenarios(), zone_scenarios()}) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

}  // namespace memory_test
