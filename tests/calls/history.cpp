// The call history.
#include <cfgxml/binding.h>

#include <cstring>
#include <memory>

#include "calls/files.h"
#include "calls/world.h"

namespace calls {
namespace {

void list_calls(World& world, Choices& /*choices*/) {
  HISTORY_SUMMARY_T* calls = cfg_get_history_summary();
  int count = 0;
  for (const HISTORY_SUMMARY_T* call = calls; call != nullptr; call = call->next) ++count;
  world.require(count <= CFGXML_HISTORY_CAPACITY, "more calls are listed than there can be");
  world.expect_result("cfg_destory_history_summary", cfg_destory_history_summary(calls),
                      {calls != nullptr ? 0 : -1});
}

void list_calls_into_set(World& world, Choices& choices) {
  const auto set = std::make_unique<HISTORY_SUMMARY_SET_T>();
  cfg_get_history_summary_set(set.get());
  world.require(set->count >= 0 && set->count <= CFGXML_HISTORY_CAPACITY,
                "a set has no such count");
  set->sync_id = choices.id();
  cfg_summary_sync_out(set.get());
  world.require(set->sync_index >= 0 && set->sync_index < CFGXML_HISTORY_CAPACITY,
                "the named entry is in no set");
}

void read_call(World& world, Choices& choices) {
  HISTORY_DATA_T call;
  const int result = cfg_get_history_data(choices.id(), choices.argument(call));
  world.expect_result("cfg_get_history_data", result, {0, -1});
}

void add_call(World& world, Choices& choices) {
  HISTORY_DATA_T call = choices.history();
  const int result = cfg_add_history(choices.argument(call));
  world.expect_result("cfg_add_history", result, {0, -1});
}

void change_call(World& world, Choices& choices) {
  const HISTORY_DATA_T call = choices.history();
  const int result = cfg_mod_history(choices.id(), choices.argument(call));
  world.expect_result("cfg_mod_history", result, {0, -1});
}

void delete_call(World& world, Choices& choices) {
  const int result =
      choices.number(0, 30) == 0
          ? cfg_del_all_history(choices.odd() ? choices.odd_number() : choices.number(0, 4))
          : cfg_del_history(choices.id());
  world.expect_result("cfg_del_history", result, {0, -1});
}

/// The reader fills a clear table, which is the host's to clear.
void load_calls(World& world, Choices& choices) {
  const HostLock hold(kHistoryLock);
  if (choices.odd()) world.write("/config/Phone/History/History.xml", history_file(choices));
  HISTORY_DATA_LIST* list = cfg_get_history_list();
  if (list != nullptr) std::memset(list, 0, sizeof *list);
  world.expect_result("history_init", history_init(list), {0});
}

}  // namespace

const std::vector<Call> kHistoryCalls = {
    {"list the calls", 4, list_calls}, {"list the calls into a set", 4, list_calls_into_set},
    {"read a call", 6, read_call},     {"add a call", 10, add_call},
    {"change a call", 4, change_call}, {"delete calls", 3, delete_call},
    {"load the calls", 1, load_calls},
};

}  // namespace calls
