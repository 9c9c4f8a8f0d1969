// A rule removed from a list of 350.
#include <benchmark/benchmark.h>
#include <cfgxml/dialrule.h>

#include "scratch_folder.h"

namespace {

constexpr char kPath[] = "/config/Phone/General/DialRule/DialNow.xml";
constexpr int kRemoved = 175;

std::string full_list() {
  std::string rules;
  for (int id = 1; id <= CFGXML_DIALRULE_CAPACITY; ++id) {
    rules += "        <Data ID=\"" + std::to_string(id) + "\" Rule=\"0[1-9]" +
             std::to_string(1000 + id) + "xxxx\" Line=\"1\"/>\n";
  }
  return "<Dial>\n    <DialNow>\n" + rules + "    </DialNow>\n</Dial>\n";
}

template <typename Change>
void change_full_list(benchmark::State& state, Medium medium, Change change) {
  const ScratchFolder folder(medium);
  const std::string list = full_list();
  for ([[maybe_unused]] auto step : state) {
    state.PauseTiming();
    const std::string file = folder.write(kPath, list);
    state.ResumeTiming();
    change(file);
  }
}

void remove_ours(benchmark::State& state, Medium medium) {
  change_full_list(state, medium, [&](const std::string& /*file*/) {
    if (cfg_remove_dialnow_data(kRemoved) != 0) state.SkipWithError("the rule was not removed");
  });
}

void remove_plain(benchmark::State& state, Medium medium, void (*change)(const std::string&)) {
  change_full_list(state, medium, change);
}

BENCHMARK_CAPTURE(remove_ours, _, Medium::kMemory)
    ->Name("remove a rule of 350:ours")
    ->UseRealTime();
BENCHMARK_CAPTURE(remove_plain, _, Medium::kMemory, load_and_save)
    ->Name("remove a rule of 350:load and save")
    ->UseRealTime();
BENCHMARK_CAPTURE(remove_ours, _, Medium::kDisk)
    ->Name("remove a rule, on disk:ours")
    ->UseRealTime();
BENCHMARK_CAPTURE(remove_plain, _, Medium::kDisk, load_and_save)
    ->Name("remove a rule, on disk:load and save")
    ->UseRealTime();
BENCHMARK_CAPTURE(remove_plain, _, Medium::kDisk, load_and_replace)
    ->Name("remove a rule, on disk:the same, synced")
    ->UseRealTime();

}  // namespace
