#include "support/lists.h"

#include <cfgxml/history.h>
#include <cfgxml/host.h>

#include <algorithm>
#include <cctype>
#include <regex>
#include <type_traits>

#include "support/list_functions.h"
#include "support/records.h"

namespace phone_test {
namespace {

using namespace list_functions;  // NOLINT(google-build-using-namespace): the file is about them

struct {
  HISTORY_SUMMARY_T* (*list)() = cfg_get_history_summary;
  int (*get)(int id, HISTORY_DATA_T* out) = cfg_get_history_data;
  int (*add)(HISTORY_DATA_T* call) = cfg_add_history;
  int (*set)(int id, const HISTORY_DATA_T* call) = cfg_mod_history;
  int (*remove)(int id) = cfg_del_history;
} const kHistory;

template <typename Rule>
Entry entry_of(const Rule& rule) {
  return {rule.ID, rule.Line, rule.Rule};
}
Entry entry_of(const DIAL_REPLACE_DATA_T& rule) { return {rule.ID, rule.Line, rule.Prefix}; }
Entry entry_of(const SMS_SUMMARY_T& message) { return {message.id, message.status, message.label}; }
Entry entry_of(const SMS_DATA_T& message) { return {message.id, message.status, message.date}; }
Entry entry_of(const HISTORY_SUMMARY_T& call) { return {call.ID, call.Status, call.RemoteSipName}; }
Entry entry_of(const HISTORY_DATA_T& call) { return {call.ID, call.Status, call.RemoteSipName}; }

/// With an id that is not to be looked at.
template <typename Record>
Record record_of(const Entry& entry) {
  Record record{};
  id_of(record) = 4711;
  const auto copy = [&](auto& field) { rl_strcpy_s(field, sizeof field, entry.text.c_str()); };
  if constexpr (std::is_same_v<Record, SMS_DATA_T>) {
    record.status = entry.value;
    copy(record.from_user), copy(record.to_user), copy(record.date);
  } else if constexpr (std::is_same_v<Record, HISTORY_DATA_T>) {
    record.Status = entry.value;
    copy(record.RemoteSipName);
  } else if constexpr (std::is_same_v<Record, DIAL_REPLACE_DATA_T>) {
    record.Line = entry.value;
    copy(record.Prefix);
  } else {
    record.Line = entry.value;
    copy(record.Rule);
  }
  return record;
}

template <typename Record, typename Functions>
List list_over(const Functions& functions, const std::string& name, bool newest_first) {
  List list;
  list.name = name;
  list.entries = [&functions, newest_first] {
    Entries entries;
    for (const auto& node : take(functions.list())) entries.push_back(entry_of(node));
    if (newest_first) std::reverse(entries.begin(), entries.end());
    return entries;
  };
  list.get = [&functions](int id, Entry* entry) {
    auto record = record_of<Record>(*entry);
    const int result = functions.get(id, &record);
    *entry = entry_of(record);
    return result;
  };
  list.add = [&functions](const Entry& entry) {
    auto record = record_of<Record>(entry);
    return functions.add(&record);
  };
  list.set = [&functions](int id, const Entry& entry) {
    const auto record = record_of<Record>(entry);
    return functions.set(id, &record);
  };
  list.remove = functions.remove;
  return list;
}

template <typename Rule>
List rule_list(const RuleList<Rule>& rules) {
  List list = list_over<Rule>(rules, rules.name, false);
  list.distinct = rules.distinct;
  list.unknown = rules.distinct ? 4 : -1;
  list.path = rules.path;
  list.root = "Dial";
  list.element = rules.name;
  list.title = list.name + " node";
  const std::string text = list.name == "DialReplace" ? "Prefix" : "Rule";
  list.row = "<Data ID=\"#\" " + text + "=\"*\" Line=\"0\"/>";
  list.worker = (rules.distinct ? "_cfg_*_" : "cfg_*_") + list.name + "_data";
  for (char& letter : list.worker) letter = static_cast<char>(std::tolower(letter));
  return list;
}

List box_list(const Box& box) {
  List list = list_over<SMS_DATA_T>(box, box.entry, true);
  list.capacity = 101;
  list.path = cfgxml::paths::kMessages;
  list.root = "Message";
  list.element = box.element;
  list.title = "boxdata_node";
  list.row = "<" + list.name + " ID=\"#\" FromUser=\"*\" ToUser=\"*\" Date=\"*\"/>";
  list.worker = "cfg_*_sms_data";
  return list;
}

List call_list() {
  List list = list_over<HISTORY_DATA_T>(kHistory, "History", true);
  list.unknown = 0;
  list.capacity = 100;
  return list;
}

}  // namespace

std::string List::worker_for(const std::string& verb) const {
  return std::string(worker).replace(worker.find('*'), 1, verb);
}

std::string List::file_of(const Rows& rows) const {
  std::string entries;
  for (const auto& [id, text] : rows) {
    entries +=
        std::regex_replace(std::regex_replace(row, std::regex("#"), id), std::regex("\\*"), text);
  }
  return "<Any><" + element + ">" + entries + "<Note ID=\"90\"/></" + element + "></Any>";
}

const std::vector<List> kLists = {
    rule_list(kDialNow), rule_list(kDialReplace), rule_list(kBlockOut), box_list(kBoxes[0]),
    box_list(kBoxes[1]), box_list(kBoxes[2]),     box_list(kBoxes[3]),  call_list()};

}  // namespace phone_test
