// deskphone history: list, show, add, status, delete, clear. deskphone who, deskphone call.
#include <fmt/format.h>

#include <memory>

#include "calls.h"
#include "commands.h"
#include "text.h"

namespace deskphone {
namespace {

constexpr int kLongestCall = 99 * 3600;

/// What the options say about a call; empty texts were not given.
struct CallOptions {
  std::string number;
  std::string name;
  int line = 1;
  std::string type = "dialled";
  std::string date;
  std::string time;
  int seconds = 0;
};

void list_calls(const Phone& phone, const std::string& type) {
  std::vector<Row> rows;
  for (const HISTORY_SUMMARY_T& call : History(phone.plugin()).calls()) {
    if (type.empty() || call.Type == value_of(kCallTypes, type)) rows.push_back(row_of(call));
  }
  phone.output().list(rows, kCallColumns, "calls");
}

void add_call(const Phone& phone, const CallOptions& options) {
  const History history(phone.plugin());
  HISTORY_DATA_T call = call_over(phone, options.line, options.number, options.name);
  call.Type = value_of(kCallTypes, options.type);
  call.Status = call.Type == kMissed ? kNew : kSeen;
  if (!options.date.empty()) set_text(call.Date, "--date", options.date);
  if (!options.time.empty()) set_text(call.Time, "--time", options.time);
  set_duration(call, options.seconds);
  history.add(call);
  phone.output().done(fmt::format("Added call {}: {} {}", call.ID, options.type, options.number),
                      row_of(history.call(call.ID)));
}

void set_status(const Phone& phone, int id, const std::string& status) {
  const History history(phone.plugin());
  history.call(id);
  history.set_status(id, value_of(kCallStatuses, status));
  phone.output().done(fmt::format("Call {} is {} now.", id, status), row_of(history.call(id)));
}

/// Reports how many calls there are fewer than before.
void report_deletion(const Phone& phone, const History& history, std::size_t before) {
  const std::size_t deleted = before - history.calls().size();
  phone.output().done(fmt::format("Deleted {}.", counted(deleted, "calls")),
                      {{"deleted", deleted}});
}

void delete_calls(const Phone& phone, const std::vector<int>& ids) {
  const History history(phone.plugin());
  const std::size_t before = history.calls().size();
  for (const int id : ids) history.call(id);  // all or none
  for (const int id : ids) history.remove(id);
  report_deletion(phone, history, before);
}

void clear_calls(const Phone& phone, const std::string& type) {
  const History history(phone.plugin());
  const std::size_t before = history.calls().size();
  history.remove_all(type.empty() ? kAllTypes : value_of(kCallTypes, type));
  report_deletion(phone, history, before);
}

void look_up(const Phone& phone, const std::string& number, int line) {
  const std::string name = History(phone.plugin()).name_of(number, "", line);
  phone.output().done(name.empty()
                          ? fmt::format("No contact or blacklist entry has the number {}.", number)
                          : printable(name),
                      {{"number", number}, {"line", line}, {"name", name}});
}

void take_call(const Phone& phone, const CallOptions& options) {
  const IncomingCall call =
      play_call(phone, options.line, options.number, options.name, options.seconds);
  phone.output().say(printable(call.screen));
  phone.output().done(fmt::format("Added call {} to the history.", call.record.ID),
                      row_of(History(phone.plugin()).call(call.record.ID)));
}

Option add_type_option(Command command, std::string& type, const char* description) {
  return command.add_option("--type", type, description).one_of(words_of(kCallTypes));
}

void add_caller_options(Command command, CallOptions& options) {
  command.add_option("number", options.number, "The remote party's number").required();
  command.add_option("--name", options.name, "The name that the remote party gives");
  command.add_option("--line", options.line, "The line of the call").range(1, 2).show_default();
}

void add_list_commands(Command family, Phone& phone) {
  auto type = std::make_shared<std::string>();
  Command list =
      add_command(family, "list", "List the calls, the newest first, with the phonebook's names",
                  "history list\n"
                  "history list --type missed\n"
                  "--json history list");
  add_type_option(list, *type, "Only the calls of this type");
  on_run(list, phone, [&phone, type] { list_calls(phone, *type); });

  auto id = std::make_shared<int>();
  Command show = add_command(family, "show", "Show all of one call", "history show 12");
  show.add_option("id", *id, "The call's id").required();
  on_run(show, phone,
         [&phone, id] { phone.output().record(row_of(History(phone.plugin()).call(*id))); });
}

void add_change_commands(Command family, Phone& phone) {
  auto options = std::make_shared<CallOptions>();
  Command add = add_command(family, "add", "Add a call; the oldest of 100 gives way",
                            "history add 203\n"
                            "history add \"030 23125910\" --type received --line 2 --seconds 75");
  add_caller_options(add, *options);
  add_type_option(add, options->type, "What it was").show_default();
  add.add_option("--date", options->date, "The date; today when not given");
  add.add_option("--time", options->time, "The time; now when not given");
  add.add_option("--seconds", options->seconds, "How long it took").range(0, kLongestCall);
  on_run(add, phone, [&phone, options] { add_call(phone, *options); });

  auto id = std::make_shared<int>();
  auto word = std::make_shared<std::string>();
  Command status =
      add_command(family, "status", "Mark a call as new or seen", "history status 12 seen");
  status.add_option("id", *id, "The call's id").required();
  status.add_option("status", *word, "What it is").required().one_of(words_of(kCallStatuses));
  on_run(status, phone, [&phone, id, word] { set_status(phone, *id, *word); });

  auto ids = std::make_shared<std::vector<int>>();
  Command remove = add_command(family, "delete", "Delete calls", "history delete 12 13");
  remove.add_option("id", *ids, "The calls' ids").required();
  on_run(remove, phone, [&phone, ids] { delete_calls(phone, *ids); });

  auto type = std::make_shared<std::string>();
  Command clear = add_command(family, "clear", "Delete every call",
                              "history clear\n"
                              "history clear --type missed");
  add_type_option(clear, *type, "Only the calls of this type");
  on_run(clear, phone, [&phone, type] { clear_calls(phone, *type); });
}

}  // namespace

void add_history_commands(Command app, Phone& phone) {
  Command family = add_family(app, "history", "The calls that were made, taken and missed");
  add_list_commands(family, phone);
  add_change_commands(family, phone);
}

void add_caller_commands(Command app, Phone& phone) {
  auto asked = std::make_shared<CallOptions>();
  asked->line = 0;
  Command who = add_command(app, "who", "Say whose number it is, as far as the phone knows",
                            "who 203\n"
                            "who \"030 23125110 ext. 334\" --line 2");
  who.add_option("number", asked->number, "The number, as it was stored").required();
  who.add_option("--line", asked->line, "The line that it calls; 0 for any").at_least(0);
  on_run(who, phone, [&phone, asked] { look_up(phone, asked->number, asked->line); });

  auto options = std::make_shared<CallOptions>();
  Command call =
      add_command(app, "call", "Play an incoming call: show its caller, add it to the history",
                  "call 203\n"
                  "call \"+33 1 99 00 95 87\" --line 2 --taken 75\n"
                  "call 0999 --name \"R. Okafor\"");
  add_caller_options(call, *options);
  call.add_option("--taken", options->seconds, "Take it for so many seconds; it is missed else")
      .range(1, kLongestCall);
  on_run(call, phone, [&phone, options] { take_call(phone, *options); });
}

}  // namespace deskphone
