// The message store: one set of operations for its four boxes, each one pass over the file.
#include <cfgxml/host.h>
#include <cfgxml/message.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "message/box.h"
#include "support/chain.h"
#include "support/fields.h"
#include "support/lock.h"
#include "support/text.h"

namespace cfgxml::message {
namespace {

constexpr std::size_t kFullBox = 100;  // a box with more drops its oldest message for a new one
constexpr int kRead = 0;
constexpr int kUnread = 1;

/// In the order of a new message's attributes, behind its "ID".
constexpr Field<SMS_DATA_T> kFieldTable[] = {
    field<&SMS_DATA_T::from_display>("FromDisplay"),
    field<&SMS_DATA_T::from_user>("FromUser"),
    field<&SMS_DATA_T::server>("Server"),
    field<&SMS_DATA_T::port>("Port"),
    field<&SMS_DATA_T::to_display>("ToDisplay"),
    field<&SMS_DATA_T::to_user>("ToUser"),
    field<&SMS_DATA_T::content>("Content"),
    field<&SMS_DATA_T::status>("Status"),
    field<&SMS_DATA_T::date>("Date"),
    field<&SMS_DATA_T::time>("Time"),
};
constexpr Fields<SMS_DATA_T> kFields(kFieldTable);

/// The same in the order in which a change sets them, which shows where a message lacked some.
constexpr Field<SMS_DATA_T> kChangedFieldTable[] = {
    field<&SMS_DATA_T::from_display>("FromDisplay"),
    field<&SMS_DATA_T::from_user>("FromUser"),
    field<&SMS_DATA_T::to_display>("ToDisplay"),
    field<&SMS_DATA_T::to_user>("ToUser"),
    field<&SMS_DATA_T::server>("Server"),
    field<&SMS_DATA_T::content>("Content"),
    field<&SMS_DATA_T::date>("Date"),
    field<&SMS_DATA_T::time>("Time"),
    field<&SMS_DATA_T::port>("Port"),
    field<&SMS_DATA_T::status>("Status"),
};
constexpr Fields<SMS_DATA_T> kChangedFields(kChangedFieldTable);

static_assert(offsetof(SMS_DATA_T, from_user) == 16);
static_assert(offsetof(SMS_DATA_T, reserved) == 336);
static_assert(offsetof(SMS_DATA_T, content) == 464);
static_assert(offsetof(SMS_DATA_T, date) == 720);
static_assert(offsetof(SMS_DATA_T, time) == 736);
static_assert(sizeof(SMS_DATA_T) == 748);
static_assert(offsetof(SMS_DETAILS_T, next) == (sizeof(void*) == 8 ? 752 : 748));
static_assert(offsetof(SMS_SUMMARY_T, label) == 12);
static_assert(offsetof(SMS_SUMMARY_T, next) == 144);

// The counters of a box are unsigned. They end at 0 and at the largest number, whatever a file
// says.

constexpr std::uint32_t kMost = std::numeric_limits<std::uint32_t>::max();

std::uint32_t counter(const tinyxml2::XMLElement& box, const char* name) {
  const char* text = box.Attribute(name);
  const long long value = text != nullptr ? std::strtoll(text, nullptr, 10) : 0;
  return static_cast<std::uint32_t>(std::clamp<long long>(value, 0, kMost));
}

void count_up(tinyxml2::XMLElement& box, const char* name) {
  const std::uint32_t value = counter(box, name);
  box.SetAttribute(name, value < kMost ? value + 1 : kMost);
}

void count_down(tinyxml2::XMLElement& box, const char* name) {
  const std::uint32_t value = counter(box, name);
  box.SetAttribute(name, value > 0 ? value - 1 : 0);
}

/// An unread message was read or removed. A count that is 0, or missing, stays as it is.
void count_down_unread(const Box& box, tinyxml2::XMLElement& element) {
  if (box.counts_unread && counter(element, "Unread") > 0) count_down(element, "Unread");
}

int box_type(const tinyxml2::XMLElement& element) {
  for (const Box* box : kBoxes) {
    if (equal(element.Name(), box->place.list)) return box->type;
  }
  return -1;
}

void read_message(const tinyxml2::XMLElement& message, int type, SMS_DATA_T& record) {
  record.id = id_of(message);
  record.type = type;
  kFields.read(message, record);
}

/// "(display name)number", without a number's leading "#"; a draft's date.
void make_label(const Box& box, const tinyxml2::XMLElement& message, SMS_SUMMARY_T& node) {
  if (box.user == nullptr) {
    copy_text(node.label, message.Attribute("Date"));
    return;
  }
  const char* display = message.Attribute(box.display);
  const char* user = message.Attribute(box.user);
  const bool has_room =
      is_empty(display) || (append_text(node.label, "(") && append_text(node.label, display) &&
                            append_text(node.label, ")"));
  if (!has_room || is_empty(user)) return;
  const bool marked = user[0] == '#' && user[1] != '\0';
  append_text(node.label, marked ? user + 1 : user);
}

}  // namespace

SMS_SUMMARY_T* cfg_get_sms_list(const Box* box) {
  ListFile file(box->place);
  tinyxml2::XMLElement* messages = file.read();
  if (messages == nullptr) return nullptr;

  Chain<SMS_SUMMARY_T> chain;
  for (const tinyxml2::XMLElement& message : Children(messages, box->place.entry)) {
    SMS_SUMMARY_T* node = chain.push_front();
    if (node == nullptr) break;
    node->id = id_of(message);
    node->type = box->type;
    node->status = int_attribute(message, "Status");
    make_label(*box, message, *node);
  }
  return chain.release();
}

SMS_DETAILS_T* _cfg_get_all_sms_details_list() {
  XmlFile file(paths::kMessages);
  if (!file.exists() || !file.load() || file.root() == nullptr) return nullptr;

  Chain<SMS_DETAILS_T> chain;
  for (tinyxml2::XMLElement& box : Children(file.root())) {
    const int type = box_type(box);
    for (const tinyxml2::XMLElement& message : Children(&box)) {
      SMS_DETAILS_T* node = chain.push_front();
      if (node == nullptr) return chain.release();
      read_message(message, type, node->data);
    }
  }
  return chain.release();
}

int cfg_get_sms_data(const Box* box, int id, SMS_DATA_T* out) {
  if (out == nullptr) return -1;
  ListFile file(box->place);
  tinyxml2::XMLElement* messages = file.read();
  if (messages == nullptr) return -1;
  const tinyxml2::XMLElement* message = find_entry(messages, box->place.entry, id);
  if (message == nullptr) return -1;

  rl_memset(out, 0, sizeof *out);
  read_message(*message, box->type, *out);
  return 0;
}

int cfg_add_sms_data(const Box* box, const SMS_DATA_T* sms_data) {
  if (sms_data == nullptr) return -1;
  ListFile file(box->place);
  tinyxml2::XMLElement* messages = file.open(__func__);
  if (messages == nullptr) return -1;

  const std::uint32_t id = next_id(messages, box->place.entry);
  if (count_entries(messages, box->place.entry) > kFullBox) {
    messages->DeleteChild(messages->FirstChildElement());
  }
  tinyxml2::XMLElement* message = append_element(messages, __func__, box->place.entry);
  if (message == nullptr) return -1;
  message->SetAttribute("ID", id);
  kFields.write(*message, *sms_data);
  rl_log_debug("sms_data->date = %s", message->Attribute("Date"));
  rl_log_debug("sms_data->time = %s", message->Attribute("Time"));

  count_up(*messages, "Total");
  if (box->counts_unread && sms_data->status == kUnread) count_up(*messages, "Unread");
  return file.save(__func__);
}

int cfg_set_sms_data(const Box* box, int id, const SMS_DATA_T* sms_data) {
  if (sms_data == nullptr) return -1;
  ListFile file(box->place);
  tinyxml2::XMLElement* messages = file.open(__func__);
  if (messages == nullptr) return -1;
  tinyxml2::XMLElement* message = find_entry(messages, box->place.entry, id);
  if (message == nullptr) return -1;

  const int status = int_attribute(*message, "Status");
  kChangedFields.write(*message, *sms_data);
  rl_log_debug("status = %d, sms_data->status = %d", status, sms_data->status);
  if (status == kUnread && sms_data->status == kRead) count_down_unread(*box, *messages);
  return file.save(__func__);
}

int cfg_remove_sms_data(const Box* box, int id) {
  ListFile file(box->place);
  tinyxml2::XMLElement* messages = file.open(__func__);
  if (messages == nullptr) return -1;

  for (tinyxml2::XMLElement& message : Children(messages, box->place.entry)) {
    if (id_of(message) != id) continue;
    const int status = int_attribute(message, "Status");
    messages->DeleteChild(&message);
    count_down(*messages, "Total");
    if (status == kUnread) count_down_unread(*box, *messages);
  }
  return file.save(__func__);
}

int cfg_remove_sms_all(const Box* box) {
  ListFile file(box->place);
  tinyxml2::XMLElement* messages = file.open(__func__);
  if (messages == nullptr) return -1;

  for (tinyxml2::XMLElement& message : Children(messages, box->place.entry)) {
    messages->DeleteChild(&message);
  }
  messages->SetAttribute("Total", 0);
  if (box->counts_unread) messages->SetAttribute("Unread", 0);
  return file.save(__func__);
}

int _cfg_get_inbox_unread() {
  ListFile file(kInbox.place);
  const tinyxml2::XMLElement* inbox = file.read();
  return inbox != nullptr ? int_attribute(*inbox, "Unread") : -1;
}

}  // namespace cfgxml::message

using namespace cfgxml::message;  // NOLINT(google-build-using-namespace): the boundary
using cfgxml::Lock;
using cfgxml::under_lock;

SMS_SUMMARY_T* cfg_get_inbox_list() {
  return under_lock<SMS_SUMMARY_T*>(Lock::kMessages, nullptr, cfg_get_sms_list, &kInbox);
}
SMS_SUMMARY_T* cfg_get_outbox_list() {
  return under_lock<SMS_SUMMARY_T*>(Lock::kMessages, nullptr, cfg_get_sms_list, &kOutbox);
}
SMS_SUMMARY_T* cfg_get_sentbox_list() {
  return under_lock<SMS_SUMMARY_T*>(Lock::kMessages, nullptr, cfg_get_sms_list, &kSentbox);
}
SMS_SUMMARY_T* cfg_get_draftbox_list() {
  return under_lock<SMS_SUMMARY_T*>(Lock::kMessages, nullptr, cfg_get_sms_list, &kDraftbox);
}

int cfg_get_inbox_data(int id, SMS_DATA_T* out) {
  return under_lock(Lock::kMessages, -1, cfg_get_sms_data, &kInbox, id, out);
}
int cfg_get_outbox_data(int id, SMS_DATA_T* out) {
  return under_lock(Lock::kMessages, -1, cfg_get_sms_data, &kOutbox, id, out);
}
int cfg_get_sentbox_data(int id, SMS_DATA_T* out) {
  return under_lock(Lock::kMessages, -1, cfg_get_sms_data, &kSentbox, id, out);
}
int cfg_get_draftbox_data(int id, SMS_DATA_T* out) {
  return under_lock(Lock::kMessages, -1, cfg_get_sms_data, &kDraftbox, id, out);
}

int cfg_set_inbox_data(int id, const SMS_DATA_T* sms_data) {
  return under_lock(Lock::kMessages, -1, cfg_set_sms_data, &kInbox, id, sms_data);
}
int cfg_set_outbox_data(int id, const SMS_DATA_T* sms_data) {
  return under_lock(Lock::kMessages, -1, cfg_set_sms_data, &kOutbox, id, sms_data);
}
int cfg_set_sentbox_data(int id, const SMS_DATA_T* sms_data) {
  return under_lock(Lock::kMessages, -1, cfg_set_sms_data, &kSentbox, id, sms_data);
}
int cfg_set_draftbox_data(int id, const SMS_DATA_T* sms_data) {
  return under_lock(Lock::kMessages, -1, cfg_set_sms_data, &kDraftbox, id, sms_data);
}

int cfg_add_inbox_data(const SMS_DATA_T* sms_data) {
  return under_lock(Lock::kMessages, -1, cfg_add_sms_data, &kInbox, sms_data);
}
int cfg_add_outbox_data(const SMS_DATA_T* sms_data) {
  return under_lock(Lock::kMessages, -1, cfg_add_sms_data, &kOutbox, sms_data);
}
int cfg_add_sentbox_data(const SMS_DATA_T* sms_data) {
  return under_lock(Lock::kMessages, -1, cfg_add_sms_data, &kSentbox, sms_data);
}
int cfg_add_draftbox_data(const SMS_DATA_T* sms_data) {
  return under_lock(Lock::kMessages, -1, cfg_add_sms_data, &kDraftbox, sms_data);
}

int cfg_remove_inbox_data(int id) {
  return under_lock(Lock::kMessages, -1, cfg_remove_sms_data, &kInbox, id);
}
int cfg_remove_outbox_data(int id) {
  return under_lock(Lock::kMessages, -1, cfg_remove_sms_data, &kOutbox, id);
}
int cfg_remove_sentbox_data(int id) {
  return under_lock(Lock::kMessages, -1, cfg_remove_sms_data, &kSentbox, id);
}
int cfg_remove_draftbox_data(int id) {
  return under_lock(Lock::kMessages, -1, cfg_remove_sms_data, &kDraftbox, id);
}

int cfg_remove_inbox_all() { return under_lock(Lock::kMessages, -1, cfg_remove_sms_all, &kInbox); }
int cfg_remove_outbox_all() {
  return under_lock(Lock::kMessages, -1, cfg_remove_sms_all, &kOutbox);
}
int cfg_remove_sentbox_all() {
  return under_lock(Lock::kMessages, -1, cfg_remove_sms_all, &kSentbox);
}
int cfg_remove_draftbox_all() {
  return under_lock(Lock::kMessages, -1, cfg_remove_sms_all, &kDraftbox);
}

SMS_DETAILS_T* cfg_get_all_sms_details_list() {
  return under_lock<SMS_DETAILS_T*>(Lock::kMessages, nullptr, _cfg_get_all_sms_details_list);
}

int cfg_get_inbox_unread() { return under_lock(Lock::kMessages, -1, _cfg_get_inbox_unread); }
