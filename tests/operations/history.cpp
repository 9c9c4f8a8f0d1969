// The call history.
#include <cfgxml/binding.h>
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

template <auto Function>
Result load(World& world, Choices& /*choices*/) {
  return number_of(world.call(Function, &world.history()));
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
  set->sync_id = choices.number(kCall, 1, 12);
  const auto before = std::make_unique<HISTORY_SUMMARY_SET_T>(*set);
  auto* argument = choices.argument(*set);
  world.call([&] { return cfg_summary_sync_out(argument), 0; });
  const int index = set->sync_index;
  world.require(index >= 0 && index < CFGXML_HISTORY_CAPACITY, "an entry of no set was named");
  const bool named = bytes_of(set->entries[index]) != bytes_of(before->entries[index]);
  return text_of(named ? "named" : "not named");
}

Result delete_type(World& world, Choices& choices) {
  return number_of(world.call(cfg_del_all_history, choices.number(0, 0, 4)));
}

}  // namespace

Operations history_operations() {
  // clang-format off
  return joined({
      family(Lock::kHistory, kHistory, 0, {
          Operation("cfg_get_history_summary", list_calls).lists(),
          Operation("cfg_destory_history_summary",
                    releasing<cfg_destory_history_summary, cfg_get_history_summary>),
          Operation("cfg_get_history_summary_set", fill_set),
          Operation("cfg_get_history_data", getting<cfg_get_history_data, kCall>)
              .after(with_known_caller).runs_out("-1").is(kNamed),
          OPERATION(adding, cfg_add_history).saves().often(10),
          Operation("cfg_mod_history", setting<cfg_mod_history, kCall>).absent("0").saves(),
          Operation("cfg_del_history", by_id<cfg_del_history, kCall>).unknown_gives("0").saves(),
          Operation("cfg_del_all_history", delete_type).saves().often(1),
      }),
      family(Lock::kHistory, 0, 0, {
          OPERATION(load, history_init).with_story("damaged").after(damaged).runs_out("-1")
              .is(kBlockLost).never_at_random(),
      }),
      in_callers_lock(family(Lock::kHistory, 0, 0, {
          OPERATION(with_table, get_history_xml).after(with_older_calls).runs_out("-1")
              .never_at_random(),
          OPERATION(with_table, save_history_xml).runs_out("-1").never_at_random(),
      })),
      family(Lock::kPhonebook, kContacts, kNamed, {
          Operation("cfg_summary_sync_out", name_in_set).after(with_known_caller).gives("named")
              .fails("not named").runs_out("not named"),
      }),
  });
  // clang-format on
}

}  // namespace operations
