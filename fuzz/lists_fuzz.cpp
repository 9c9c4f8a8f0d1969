// Any bytes as the file of one of the small lists, chosen by the first byte ('0' is the first of
// kKinds): read, then an entry is added, changed and removed, and the rest is read again unchanged.
#include <cfgxml/dialrule.h>
#include <cfgxml/message.h>
#include <cfgxml/notify.h>
#include <cfgxml/timezone.h>

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "phone.h"
#include "support/list_functions.h"

namespace {

using namespace list_functions;  // NOLINT(google-build-using-namespace): they are its subject

constexpr char kImport[] = "/tmp/import.xml";
constexpr int kUnusedId = -77;

const Phone& phone() {
  static const Phone phone;
  return phone;
}

template <typename Rule>
int id_of(const Rule& rule) {
  return rule.ID;
}
int id_of(const SMS_SUMMARY_T& message) { return message.id; }

// --- Dial rules ---

template <typename Rule>
Rule make_rule(const RuleList<Rule>& list, const char* text) {
  Rule rule{};
  rule.Line = 2;
  rl_strcpy_s(rule.*list.text, sizeof(rule.*list.text), text);
  return rule;
}

template <typename Rule>
Nodes<Rule> read_rules(const RuleList<Rule>& list) {
  Nodes<Rule> rules = take(list.list());
  require(rules.size() <= list.capacity, "a list is no longer than its capacity");
  for (const Rule& rule : rules) check_text(rule.*list.text);
  return rules;
}

template <typename Rule>
void use_rules(const RuleList<Rule>& list, const Nodes<Rule>& before) {
  const Rule item = make_rule(list, "0049*");
  const int result = list.add(&item);
  require(result == 0 || result == 7 || result == 10, "a result for a new rule");
  if (result == 0) {
    const Nodes<Rule> after = read_rules(list);
    require(after.size() == before.size() + 1, "a rule is added at the end");
    require(list.remove(after.back().ID) == 0, "a rule is removed");
    require(same_bytes(read_rules(list), before), "the others are as they were");
  }
  if (before.empty()) return;
  require(list.remove(before.front().ID) == 0, "the first rule is removed");
  for (const Rule& rule : read_rules(list)) {
    require(rule.ID != before.front().ID, "no rule with its id is left");
  }
}

template <typename Rule>
void upload_rules(const RuleList<Rule>& list, std::string_view content, const Nodes<Rule>& rules) {
  phone().write(kImport, content);
  const int result = list.upload(phone().on_disk(kImport).c_str());
  require(result == 0 || result == -1, "a result for an upload");
  require(result == -1 || same_bytes(read_rules(list), rules), "a file that is accepted is read");
}

/// Writes the list as it is, by the removal of an entry that is not there.
template <typename Node, typename Read>
Nodes<Node> rewrite(int (*remove)(int id), Read read, std::string_view input) {
  const Nodes<Node> given = read();
  require(remove(kUnusedId) == 0, "any file can be changed");
  const Nodes<Node> written = read();
  const bool used = std::any_of(given.begin(), given.end(),
                                [](const Node& node) { return id_of(node) == kUnusedId; });
  require(used || has_references(input) || same_bytes(written, given), "the same is read again");
  return written;
}

template <typename Rule, const RuleList<Rule>& list>
void fuzz_rules(std::string_view content) {
  phone().write(list.path, content);
  const Nodes<Rule> given = read_rules(list);
  use_rules(list, rewrite<Rule>(
                      list.remove, [] { return read_rules(list); }, content));
  if (list.upload != nullptr) upload_rules(list, content, given);
}

// --- Messages ---

Nodes<SMS_SUMMARY_T> read_box(const Box& box) {
  Nodes<SMS_SUMMARY_T> messages = take(box.list());
  for (const SMS_SUMMARY_T& message : messages) {
    check_text(message.label);
    require(message.type == type_of(box), "a message is of its box");
  }
  return messages;
}

void check_texts(const SMS_DATA_T& message) {
  for (const auto* field : {&message.from_user, &message.from_display, &message.to_user,
                            &message.to_display, &message.server}) {
    check_text(*field);
  }
  check_text(message.content);
  check_text(message.date);
  check_text(message.time);
}

std::size_t count_all_messages() {
  const Nodes<SMS_DETAILS_T> all = take(cfg_get_all_sms_details_list());
  for (const SMS_DETAILS_T& message : all) {
    check_texts(message.data);
    require(message.data.type == -1 || (message.data.type >= 1 && message.data.type <= 4),
            "a message is of a box, or of none");
  }
  return all.size();
}

void read_message(const Box& box, int id) {
  SMS_DATA_T message{};
  require(box.get(id, &message) == 0 && message.id == id, "the message is found");
  require(text_of(message.content) == "Back at four." && message.port == 5060, "as it was stored");
}

/// Adds an unread message, reads it, and removes it again.
void use_box(const Box& box, const Nodes<SMS_SUMMARY_T>& before) {
  constexpr std::size_t kFullBox = 100;
  SMS_DATA_T message{};
  message.status = 1;
  message.port = 5060;
  rl_strcpy_s(message.content, sizeof message.content, "Back at four.");
  require(box.add(&message) == 0, "a message is added");
  Nodes<SMS_SUMMARY_T> after = read_box(box);
  require(!after.empty(), "the message is listed");
  const int id = after.front().id;
  read_message(box, id);
  message.status = 0;
  require(box.set(id, &message) == 0, "a message is changed");
  require(box.remove(id) == 0, "a message is removed");
  if (before.size() <= kFullBox) {  // else the oldest made way
    require(same_bytes(read_box(box), before), "the others are as they were");
  }
}

template <int place>
void fuzz_messages(std::string_view content) {
  static constexpr const Box& box = kBoxes[place];
  constexpr int kCountable = 1000000;
  phone().write(cfgxml::paths::kMessages, content);
  const bool listed = !read_box(box).empty();
  require(!listed || count_all_messages() > 0, "the list of all holds those of the box");
  const Nodes<SMS_SUMMARY_T> written = rewrite<SMS_SUMMARY_T>(
      box.remove, [] { return read_box(box); }, content);
  const int unread = std::max(cfg_get_inbox_unread(), 0);
  use_box(box, written);
  count_all_messages();
  if (unread < kCountable) {
    require(std::max(cfg_get_inbox_unread(), 0) == unread,
            "a message that was read counts no more");
  }
  require(box.remove_all() == 0 && read_box(box).empty(), "a box is emptied");
  require(type_of(box) != CFGXML_INBOX || cfg_get_inbox_unread() == 0, "nothing is unread in it");
}

// --- Time zones ---

void check_texts(const DST_INFO_T& saving) {
  check_text(saving.Start);
  check_text(saving.End);
  check_text(saving.Offset);
}

/// Configures a name that none of the zone's has; its first name takes the place.
void repair_name(const Nodes<TIMEZONE_DATA_T>& zones, const TIMEZONE_DATA_T& zone) {
  const TIMEZONE_DATA_T* first = nullptr;
  for (const TIMEZONE_DATA_T& other : zones) {
    if (std::strcmp(other.TimeZone, zone.TimeZone) != 0) continue;
    if (std::strcmp(other.Name, "Nowhere at all") == 0) return;
    if (first == nullptr) first = &other;
  }
  cfg_set_string(26, 64, zone.TimeZone);
  cfg_set_string(26, 65, "Nowhere at all");
  require(cfg_match_timezone_name() == 0, "the name is brought into line");
  char name[64];
  cfg_get_string(26, 65, name, sizeof name, "");
  require(std::strcmp(first->Name, name) == 0, "the name is the zone's first");
}

void fuzz_zones(std::string_view content) {
  phone().write(cfgxml::paths::kTimezones, content);
  const Nodes<TIMEZONE_DATA_T> zones = take(cfg_get_timezone_list());
  for (const TIMEZONE_DATA_T& zone : zones) {
    check_text(zone.TimeZone);
    check_text(zone.Name);
  }
  if (zones.empty()) {
    require(cfg_match_timezone_name() == -1, "without zones there is no name");
    return;
  }
  for (const TIMEZONE_DATA_T* zone : {&zones.front(), &zones.back()}) {
    DST_INFO_T saving{};
    const int result = cfg_get_dst_info_by_timezone(zone->Name, &saving);
    require(result == 0 || (result == -1 && is_zero(saving)), "a zone has its rule or none");
    check_texts(saving);
    repair_name(zones, *zone);
  }
}

// --- Notifications ---

Nodes<NOTIFICATION_T> read_notifications() {
  const Nodes<NOTIFICATION_T> list = take(cfg_get_notification_list());
  for (const NOTIFICATION_T& notification : list) {
    require(std::memchr(notification.Name, '\0', 128) != nullptr, "a name is cut to what is read");
  }
  return list;
}

void save(Nodes<NOTIFICATION_T> list) {
  for (std::size_t i = 1; i < list.size(); ++i) list[i - 1].next = &list[i];
  require(cfg_save_notification_list(list.data()) == 0, "any file can be replaced");
}

/// The first save writes the list in the form of the file, where a carriage return is a line end.
void fuzz_notifications(std::string_view content) {
  phone().write(cfgxml::paths::kNotifications, content);
  Nodes<NOTIFICATION_T> list = read_notifications();
  list.push_back({"Device.Time.LocalTimeZone", 2, nullptr});
  save(list);
  const Nodes<NOTIFICATION_T> written = read_notifications();
  require(written.size() == list.size(), "no setting is lost");
  save(written);
  require(same_bytes(read_notifications(), written), "the same settings are read again");
}

constexpr void (*kKinds[])(std::string_view content) = {
    fuzz_rules<DIAL_NOW_DATA_T, kDialNow>,
    fuzz_rules<DIAL_REPLACE_DATA_T, kDialReplace>,
    fuzz_rules<BLOCKOUT_DATA_T, kBlockOut>,
    fuzz_messages<0>,
    fuzz_messages<1>,
    fuzz_messages<2>,
    fuzz_messages<3>,
    fuzz_zones,
    fuzz_notifications,
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto kind = static_cast<std::uint8_t>(data[0] - '0');
  kKinds[kind % std::size(kKinds)](text_of_input(data + 1, size - 1));
  return 0;
}
