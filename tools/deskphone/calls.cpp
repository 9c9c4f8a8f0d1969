#include "calls.h"

#include <cfgxml/host.h>
#include <fmt/chrono.h>
#include <fmt/format.h>

#include <ctime>
#include <memory>

#include "failure.h"
#include "text.h"

namespace deskphone {
namespace {

/// The configuration items of an account; line 1 is section 0.
constexpr int kUserName = 4;
constexpr int kServer = 16;
constexpr int kServerPort = 18;
constexpr int kDefaultPort = 5060;

void expect(int result, const char* what) {
  if (result == 0) return;
  throw Failure(fmt::format("The phone can not {} (result {}). Run it again with -v to see why.",
                            what, result));
}

std::string word_of(const std::vector<Code>& codes, int value) {
  for (const Code& code : codes) {
    if (code.value == value) return code.word;
  }
  return std::to_string(value);
}

/// The fields that records and summaries share.
template <typename Call>
Row common_row(const Call& call) {
  return {{"id", call.ID},
          {"type", word_of(kCallTypes, call.Type)},
          {"status", word_of(kCallStatuses, call.Status)},
          {"date", call.Date},
          {"time", call.Time},
          {"number", call.RemoteSipName},
          {"name", call.RemoteDisplayName},
          {"server", fmt::format("{}:{}", call.RemoteSipServer, call.RemoteSipPort)},
          {"account", call.LocalSipName},
          {"registrar", fmt::format("{}:{}", call.LocalSipServer, call.LocalSipPort)}};
}

}  // namespace

const std::vector<Code> kCallTypes = {{1, "dialled"}, {kReceived, "received"}, {kMissed, "missed"}};
const std::vector<Code> kCallStatuses = {{kNew, "new"}, {kSeen, "seen"}};

const std::vector<Column> kCallColumns = {
    {"id", "ID"},     {"type", "TYPE"}, {"status", "STATUS"}, {"date", "DATE"},
    {"time", "TIME"}, {"name", "NAME"}, {"number", "NUMBER"}, {"account", "ACCOUNT"}};

std::vector<std::string> words_of(const std::vector<Code>& codes) {
  std::vector<std::string> words;
  words.reserve(codes.size());
  for (const Code& code : codes) words.emplace_back(code.word);
  return words;
}

int value_of(const std::vector<Code>& codes, const std::string& word) {
  for (const Code& code : codes) {
    if (code.word == word) return code.value;
  }
  throw Failure(fmt::format("\"{}\" is not one of {}.", word, fmt::join(words_of(codes), ", ")));
}

History::History(const Plugin& plugin)
    : get_calls_(plugin, "cfg_get_history_summary"),
      free_calls_(plugin, "cfg_destory_history_summary"),
      get_call_(plugin, "cfg_get_history_data"),
      add_call_(plugin, "cfg_add_history"),
      change_call_(plugin, "cfg_mod_history"),
      delete_call_(plugin, "cfg_del_history"),
      delete_calls_(plugin, "cfg_del_all_history"),
      get_name_(plugin, "cfg_get_contact_name") {}

std::vector<HISTORY_SUMMARY_T> History::calls() const {
  HISTORY_SUMMARY_T* head = get_calls_();
  std::vector<HISTORY_SUMMARY_T> calls = copy_list(head);
  if (head != nullptr) free_calls_(head);
  return calls;
}

HISTORY_DATA_T History::call(int id) const {
  HISTORY_DATA_T call{};
  if (get_call_(id, &call) != 0) {
    throw Failure(
        fmt::format("There is no call with the id {}. The ids are in "
                    "'deskphone history list'.",
                    id));
  }
  return call;
}

void History::add(HISTORY_DATA_T& call) const { expect(add_call_(&call), "add the call"); }

void History::set_status(int id, int status) const {
  HISTORY_DATA_T change{};
  change.Status = status;
  expect(change_call_(id, &change), "change the call");
}

void History::remove(int id) const { expect(delete_call_(id), "delete the call"); }

void History::remove_all(int type) const { expect(delete_calls_(type), "delete the calls"); }

std::string History::name_of(const std::string& number, const std::string& shown, int line) const {
  const std::unique_ptr<char[]> name(get_name_(number.c_str(), shown.c_str(), line));
  return name != nullptr ? name.get() : "";
}

HISTORY_DATA_T call_over(const Phone& phone, int line, const std::string& number,
                         const std::string& name) {
  const auto& settings = phone.host().settings();
  const std::string server = settings.get(line - 1, kServer).value_or("");
  HISTORY_DATA_T call{};
  set_text(call.LocalSipName, "The account's user name",
           settings.get(line - 1, kUserName).value_or(""));
  set_text(call.LocalSipServer, "The account's server", server);
  set_text(call.RemoteSipServer, "The account's server", server);
  set_text(call.RemoteSipName, "The number", number);
  set_text(call.RemoteDisplayName, "--name", name);
  call.LocalSipPort = call.RemoteSipPort = cfg_get_int(line - 1, kServerPort, kDefaultPort);
  const std::tm now = fmt::localtime(std::time(nullptr));
  set_text(call.Date, "The date", fmt::format("{:%Y-%m-%d}", now));
  set_text(call.Time, "The time", fmt::format("{:%H:%M:%S}", now));
  return call;
}

void set_duration(HISTORY_DATA_T& call, int seconds) {
  set_text(call.CallDuration, "The duration",
           fmt::format("{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60));
}

IncomingCall play_call(const Phone& phone, int line, const std::string& number,
                       const std::string& name, int seconds) {
  if (number.empty()) throw Failure("The number is empty. Give the one that calls.");
  const History history(phone.plugin());
  IncomingCall call{"", call_over(phone, line, number, name)};
  call.record.Type = seconds > 0 ? kReceived : kMissed;
  call.record.Status = seconds > 0 ? kSeen : kNew;
  set_duration(call.record, seconds);
  history.add(call.record);

  const std::string stored = history.name_of(number, name, line);
  const std::string& shown = stored.empty() ? name : stored;
  call.screen = fmt::format("Line {} ({})  {}", line, call.record.LocalSipName,
                            shown.empty() ? number : fmt::format("{}  {}", shown, number));
  return call;
}

Row row_of(const HISTORY_DATA_T& call) {
  Row row = common_row(call);
  row["duration"] = call.CallDuration;
  row["call"] = call.CallID;
  return row;
}

Row row_of(const HISTORY_SUMMARY_T& call) { return common_row(call); }

}  // namespace deskphone
