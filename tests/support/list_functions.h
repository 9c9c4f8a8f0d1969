// The functions of the lists that live in files, one table per kind: what is tested of one list of
// rules, or of one box of messages, is tested of all.
#pragma once

#include <cfgxml/dialrule.h>
#include <cfgxml/message.h>

#include <cstddef>
#include <cstdint>

#include "support/paths.h"

namespace list_functions {

template <typename Rule>
struct RuleList {
  const char* name;  // of the element that holds the list
  const char* path;
  std::size_t capacity;
  bool distinct;  // no two rules have the same text
  char (Rule::*text)[64];
  Rule* (*list)();
  int (*get)(int id, Rule* out);
  int (*add)(const Rule* item);
  int (*set)(int id, const Rule* item);
  int (*remove)(int id);
  int (*upload)(const char* path);  // nullptr where there is none
};

inline constexpr RuleList<DIAL_NOW_DATA_T> kDialNow = {
    "DialNow",
    cfgxml::paths::kDialNow,
    CFGXML_DIALRULE_CAPACITY,
    true,
    &DIAL_NOW_DATA_T::Rule,
    cfg_get_dialnow_list,
    cfg_get_dialnow_data,
    cfg_add_dialnow_data,
    cfg_set_dialnow_data,
    cfg_remove_dialnow_data,
    cfg_upload_dialnow,
};
inline constexpr RuleList<DIAL_REPLACE_DATA_T> kDialReplace = {
    "DialReplace",
    cfgxml::paths::kDialReplace,
    CFGXML_DIALRULE_CAPACITY,
    true,
    &DIAL_REPLACE_DATA_T::Prefix,
    cfg_get_dialreplace_list,
    cfg_get_dialreplace_data,
    cfg_add_dialreplace_data,
    cfg_set_dialreplace_data,
    cfg_remove_dialreplace_data,
    cfg_upload_dialreplace,
};
inline constexpr RuleList<BLOCKOUT_DATA_T> kBlockOut = {
    "BlockOut",
    cfgxml::paths::kBlockOut,
    SIZE_MAX,
    false,
    &BLOCKOUT_DATA_T::Rule,
    cfg_get_blockout_list,
    cfg_get_blockout_data,
    cfg_add_blockout_data,
    cfg_set_blockout_data,
    cfg_remove_blockout_data,
    nullptr,
};

struct Box {
  const char* element;
  const char* entry;
  SMS_SUMMARY_T* (*list)();
  int (*get)(int id, SMS_DATA_T* out);
  int (*set)(int id, const SMS_DATA_T* message);
  int (*add)(const SMS_DATA_T* message);
  int (*remove)(int id);
  int (*remove_all)();
};

/// In the order of their types, from 1.
inline constexpr Box kBoxes[] = {
    {"InboxData", "Inbox", cfg_get_inbox_list, cfg_get_inbox_data, cfg_set_inbox_data,
     cfg_add_inbox_data, cfg_remove_inbox_data, cfg_remove_inbox_all},
    {"OutboxData", "Outbox", cfg_get_outbox_list, cfg_get_outbox_data, cfg_set_outbox_data,
     cfg_add_outbox_data, cfg_remove_outbox_data, cfg_remove_outbox_all},
    {"SentboxData", "Sentbox", cfg_get_sentbox_list, cfg_get_sentbox_data, cfg_set_sentbox_data,
     cfg_add_sentbox_data, cfg_remove_sentbox_data, cfg_remove_sentbox_all},
    {"DraftboxData", "Draftbox", cfg_get_draftbox_list, cfg_get_draftbox_data,
     cfg_set_draftbox_data, cfg_add_draftbox_data, cfg_remove_draftbox_data,
     cfg_remove_draftbox_all}};

/// The type that messages of a box carry.
inline int type_of(const Box& box) { return static_cast<int>(&box - kBoxes) + 1; }

}  // namespace list_functions
