// The call history.
#include <cfgxml/history.h>
#include <cfgxml/phonebook.h>

#include <cstring>
#include <memory>

#include "operations/shapes.h"
#include "support/paths.h"

namespace operations {
namespace {

/// The sample's second call, to a number of the phonebook once it is prepared so.
constexpr int kCall = 4;

void with_known_caller(World& world) {
  fill(world.history().Records[1].RemoteSipName, world.contacts().Contacts[0].OfficeNumber);
}

void with_older_calls(World& world) {
  world.history() = {};
  world.history().Records[0].ID = 9;
}

void damaged(World& world) { world.write(cfgxml::paths::kHistory, kDamaged); }

template <auto Function>
Result with_table(World& world, Choices& choices) {
  return number_of(world.call(Function, "", choices.argument(world.history())));
}

/// The calls alone: who called may not be found in a phonebook that ends early.
Result list_calls(World& world, Choices& /*choices*/) {
  Result result = list_of({});
  HISTORY_SUMMARY_T* calls = world.call(cfg_get_history_summary);
  for (const HISTORY_SUMMARY_T* call = calls; call != nullptr; call = call->next) {
    HISTORY_SUMMARY_T nameless = *call;
    std::memset(nameless.RemoteDisplayName, 0, sizeof nameless.RemoteDisplayName);
    result.nodes.push_back(bytes_of(nameless));
  }
  world.require(result.nodes.size() <= CFGXML_HISTORY_CAPACITY, "more calls than there can be");
  if (calls != nullptr) cfg_destory_history_summary(calls);
  return result;
}

/// The function gives no result; the count tells that it filled the set.
Result fill_set(World& world, Choices& choices) {
  const auto set = std::make_unique<HISTORY_SUMMARY_SET_T>(untouched<HISTORY_SUMMARY_SET_T>());
  auto* argument = choices.argument(*set);
  Result result = with_record(
      *set, [&] { return world.call([&] { return cfg_get_history_summary_set(argument), 0; }); });
  result.text = result.record != result.given && set->count >= 0 ? "0" : "-1";
  return result;
}

/// The call that the set names keeps its stored name, or gets the phonebook's.
Result name_in_set(World& world, Choices& choices) {
  const auto set = std::make_unique<HISTORY_SUMMARY_SET_T>();
  cfg_get_history_summary_set(set.get());
  set->sync_id = choices.id(kCall);
  auto* argument = choices.argument(*set);
  Result result = with_record(
      *set, [&] { return world.call([&] { return cfg_summary_sync_out(argument), 0; }); });
  world.require(set->sync_index >= 0 && set->sync_index < CFGXML_HISTORY_CAPACITY,
                "the named entry is in no set");
  result.text = result.record != result.given ? "0" : "-1";
  return result;
}

Result delete_type(World& world, Choices& choices) {
  return number_of(world.call(cfg_del_all_history, choices.number(0, 0, 4)));
}

}  // namespace

Operations history_operations() {
  // clang-format off
  Operations all = {
      Operation("cfg_get_history_summary", list_calls).runs_out(kEndsEarly).often(4),
      Operation("cfg_destory_history_summary",
                releasing<cfg_destory_history_summary, cfg_get_history_summary>),
      Operation("cfg_get_history_summary_set", fill_set).often(4),
      Operation("cfg_get_history_data", getting<cfg_get_history_data, kCall>)
          .after(with_known_caller).runs_out("-1").is(kNamed).often(6),
      OPERATION(adding, cfg_add_history).runs_out("-1").is(kSaveDropped).often(10),
      Operation("cfg_mod_history", setting<cfg_mod_history, kCall>).out_of_range_gives("0")
          .unknown_gives("0").runs_out("-1").is(kSaveDropped).often(4),
      Operation("cfg_del_history", by_id<cfg_del_history, kCall>).unknown_gives("0")
          .runs_out("-1").is(kSaveDropped).often(3),
      Operation("cfg_del_all_history", delete_type).runs_out("-1").is(kSaveDropped).often(1),
  };
  for (Operation& one : all) one = one.under(Lock::kHistory).needs(kHistory);
  for (const Operation& one : {
      Operation("cfg_summary_sync_out", name_in_set).after(with_known_caller)
          .under(Lock::kPhonebook).needs(kContacts).out_of_range_gives("0").unknown_gives("0")
          .runs_out("-1|0"),
      OPERATION(with_table, get_history_xml).after(with_older_calls).in_callers(Lock::kHistory)
          .runs_out("-1").never_at_random(),
      OPERATION(with_table, get_history_xml).with_story("damaged").after(damaged)
          .in_callers(Lock::kHistory).runs_out("-1").is(kBlockLost).never_at_random(),
      OPERATION(with_table, save_history_xml).in_callers(Lock::kHistory).runs_out("-1")
          .never_at_random(),
      OPERATION(with_table, save_history_xml).with_story("damaged").after(damaged)
          .in_callers(Lock::kHistory).runs_out("-1").is(kBlockLost).never_at_random(),
  }) all.push_back(one);
  // clang-format on
  return all;
}

}  // namespace operations
