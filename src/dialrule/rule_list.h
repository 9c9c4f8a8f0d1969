// The operations on a list of dial rules, over a description of the list. Every operation is one
// pass over the file: open, change, save. The caller holds the list's lock.
#pragma once

#include <cfgxml/dialrule.h>
#include <cfgxml/host.h>
#include <tinyxml2.h>

#include <cstddef>
#include <cstdint>

#include "support/chain.h"
#include "support/fields.h"
#include "support/list_file.h"
#include "support/text.h"

namespace cfgxml::dialrule {

/// Results, as documented for callers.
inline constexpr int kNoSuchRule = 4;
inline constexpr int kRuleExists = 7;
inline constexpr int kListFull = 10;

inline constexpr std::size_t kUnlimited = SIZE_MAX;

/// Which of several rules with one id a change meets.
enum class Target { kFirst, kLast };

/// One of the lists.
template <typename Rule>
struct RuleList {
  ListPlace place;
  Fields<Rule> fields;
  const char* key;  // the attribute that tells rules apart, and its field
  char (Rule::*key_field)[64];
  std::size_t capacity;
  bool distinct;           // no two rules have the same key
  const char* rule_title;  // what the messages of a distinct list call a rule
  Target target;           // of a set
  int no_such_rule;        // a set's result for an unknown id; kNoSuchRule is logged
};

template <typename Rule>
bool has_key(const RuleList<Rule>& list, const tinyxml2::XMLElement& rule, const Rule& item) {
  return holds(item.*list.key_field, rule.Attribute(list.key));
}

template <typename Rule>
Rule* get_rules(const RuleList<Rule>& list, const char* worker) {
  ListFile file(list.place);
  tinyxml2::XMLElement* rules = file.read();
  if (rules == nullptr) return nullptr;

  Chain<Rule> chain;
  std::size_t count = 0;
  for (const tinyxml2::XMLElement& rule : Children(rules, list.place.entry)) {
    Rule* node = chain.append();
    if (node == nullptr) break;
    node->ID = id_of(rule);
    list.fields.read(rule, *node);
    if (++count == list.capacity) {
      rl_log_err("get list exceed %d, %s, current count has reach max.",
                 static_cast<int>(list.capacity), worker);
      break;
    }
  }
  return chain.release();
}

template <typename Rule>
int get_rule(const RuleList<Rule>& list, int id, Rule* out) {
  if (out == nullptr) return -1;
  ListFile file(list.place);
  tinyxml2::XMLElement* rules = file.read();
  if (rules == nullptr) return -1;
  const tinyxml2::XMLElement* rule = find_entry(rules, list.place.entry, id);
  if (rule == nullptr) return -1;

  rl_memset(out, 0, sizeof *out);
  out->ID = id;
  list.fields.read(*rule, *out);
  return 0;
}

template <typename Rule>
int log_duplicate(const RuleList<Rule>& list, const char* worker) {
  rl_log_err("%s failed, %s already exist.", worker, list.rule_title);
  return kRuleExists;
}

template <typename Rule>
int add_rule(const RuleList<Rule>& list, const char* worker, const Rule* item) {
  if (item == nullptr) return -1;
  ListFile file(list.place);
  tinyxml2::XMLElement* rules = file.open(worker);
  if (rules == nullptr) return -1;

  std::size_t count = 0;
  for (const tinyxml2::XMLElement& rule : Children(rules, list.place.entry)) {
    if (list.distinct && has_key(list, rule, *item)) return log_duplicate(list, worker);
    ++count;
  }
  if (count >= list.capacity) {
    rl_log_err("%s failed, current count has reach max.", worker);
    return kListFull;
  }

  const std::uint32_t id = next_id(rules, list.place.entry);
  tinyxml2::XMLElement* rule = append_element(rules, worker, list.place.entry);
  if (rule == nullptr) return -1;
  rule->SetAttribute("ID", id);
  list.fields.write(*rule, *item);
  return file.save(worker);
}

template <typename Rule>
int set_rule(const RuleList<Rule>& list, const char* worker, int id, const Rule* item) {
  if (item == nullptr) return -1;
  ListFile file(list.place);
  tinyxml2::XMLElement* rules = file.open(worker);
  if (rules == nullptr) return -1;

  tinyxml2::XMLElement* target = nullptr;
  for (tinyxml2::XMLElement& rule : Children(rules, list.place.entry)) {
    if (id_of(rule) == id) {
      if (target == nullptr || list.target == Target::kLast) target = &rule;
    } else if (list.distinct && has_key(list, rule, *item)) {
      return log_duplicate(list, worker);
    }
  }
  if (target == nullptr) {
    if (list.no_such_rule == kNoSuchRule) {
      rl_log_err("%s failed, %s is not exist.", worker, list.rule_title);
    }
    return list.no_such_rule;
  }

  list.fields.write(*target, *item);
  return file.save(worker);
}

/// Removes every rule with the id.
int remove_rule(const ListPlace& place, const char* worker, int id);

/// Replaces a list's file with a checked one; the validator's name is for its messages.
int upload_rules(const ListPlace& place, const char* worker, const char* validator,
                 const char* file_path);

}  // namespace cfgxml::dialrule
