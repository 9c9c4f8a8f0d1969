// A message for a store whose four boxes hold 101 each.
#include <benchmark/benchmark.h>
#include <cfgxml/host.h>
#include <cfgxml/message.h>

#include "scratch_folder.h"

namespace {

SMS_DATA_T new_message() {
  SMS_DATA_T message{};
  message.status = 1;
  message.port = 5060;
  rl_strcpy_s(message.from_display, sizeof message.from_display, "Anna Berg");
  rl_strcpy_s(message.from_user, sizeof message.from_user, "2034");
  rl_strcpy_s(message.to_user, sizeof message.to_user, "2001");
  rl_strcpy_s(message.server, sizeof message.server, "pbx.example.com");
  rl_strcpy_s(message.content, sizeof message.content,
              "The meeting moves to three o'clock; bring the offer & the drawings, please.");
  rl_strcpy_s(message.date, sizeof message.date, "2024-05-01");
  rl_strcpy_s(message.time, sizeof message.time, "10:12:00");
  return message;
}

/// Fills the store in the folder, and gives its file.
std::string fill_store(const ScratchFolder& folder) {
  const std::string file = folder.write("/config/Phone/Message/Message.xml", "<Message/>");
  const SMS_DATA_T message = new_message();
  for (int i = 0; i < CFGXML_MESSAGE_CAPACITY; ++i) {
    cfg_add_inbox_data(&message);
    cfg_add_outbox_data(&message);
    cfg_add_sentbox_data(&message);
    cfg_add_draftbox_data(&message);
  }
  return file;
}

void add_ours(benchmark::State& state, Medium medium) {
  const ScratchFolder folder(medium);
  fill_store(folder);
  const SMS_DATA_T message = new_message();
  for ([[maybe_unused]] auto step : state) {
    if (cfg_add_inbox_data(&message) != 0) state.SkipWithError("the message was not added");
  }
}

void add_plain(benchmark::State& state, Medium medium, void (*change)(const std::string&)) {
  const ScratchFolder folder(medium);
  const std::string file = fill_store(folder);
  for ([[maybe_unused]] auto step : state) change(file);
}

BENCHMARK_CAPTURE(add_ours, _, Medium::kMemory)
    ->Name("add a message, 4 boxes of 101:ours")
    ->UseRealTime();
BENCHMARK_CAPTURE(add_plain, _, Medium::kMemory, load_and_save)
    ->Name("add a message, 4 boxes of 101:load and save")
    ->UseRealTime();
BENCHMARK_CAPTURE(add_ours, _, Medium::kDisk)->Name("add a message, on disk:ours")->UseRealTime();
BENCHMARK_CAPTURE(add_plain, _, Medium::kDisk, load_and_save)
    ->Name("add a message, on disk:load and save")
    ->UseRealTime();
BENCHMARK_CAPTURE(add_plain, _, Medium::kDisk, load_and_replace)
    ->Name("add a message, on disk:the same, synced")
    ->UseRealTime();

}  // namespace
