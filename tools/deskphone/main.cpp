// deskphone: the phone on the command line.
#include <fmt/format.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <exception>
#include <system_error>

#include "commands.h"
#include "failure.h"
#include "shutdown.h"

namespace deskphone {
namespace {

constexpr int kFailed = 1;

/// The families, in the order of --help. A new one is a file of its own (see contacts.cpp), its
/// function declared in commands.h, and a line here.
constexpr void (*kFamilies[])(Command, Phone&) = {
    add_tour,
    add_contacts_commands,
    add_groups_commands,
    add_blacklist_commands,
    add_move_commands,
    add_keys_command,
    add_remote_commands,
    add_directory_commands,
    add_history_commands,
    add_caller_commands,
    add_dialrule_commands,
    add_message_commands,
    add_timezone_commands,
    add_notify_commands,
    add_screen_command,
};

constexpr char kFooter[] =
    "The phone's files are kept in the --root folder, which is filled with samples on first use.\n"
    "The exit status is 0 on success, 1 when a command failed, 2 when it was not understood.\n"
    "Examples:\n"
    "  deskphone tour\n"
    "  deskphone contacts list --group Sales\n"
    "  deskphone keys 2662\n"
    "  deskphone --root /tmp/my-phone --json blacklist list";

void add_options(Command app, Options& options) {
  app.add_option("--root", options.root, "The folder with the phone's files").show_default();
  app.add_flag("--json", options.json, "Print lists and records as JSON");
  app.add_flag("-v", options.verbosity,
               "Show the plug-in's log on standard error: problems (-v), everything (-vv)");
}

int run(int argc, char** argv) {
  hold_signals();
  Options options;
  Phone phone(options);
  CommandLine line(
      "A desk phone on the command line: phonebook, blacklist, keypad search, call history.",
      kFooter);
  add_options(line.root(), options);
  for (const auto add_family : kFamilies) add_family(line.root(), phone);
  if (const std::optional<int> status = line.run(argc, argv)) return *status;
  if (std::fflush(stdout) != 0) {
    throw std::system_error(errno, std::generic_category(), "The output can not be written");
  }
  return 0;
}

/// A reader that has seen enough ("| head") is no news.
void report(const std::system_error& error) {
  if (error.code() != std::errc::broken_pipe) remark(error.what());
}

}  // namespace
}  // namespace deskphone

int main(int argc, char** argv) {
  std::setlocale(LC_CTYPE, "C.UTF-8");
  try {
    return deskphone::run(argc, argv);
  } catch (const std::system_error& error) {
    deskphone::report(error);
  } catch (const std::exception& failure) {
    std::fflush(stdout);
    deskphone::remark(failure.what());
  }
  return deskphone::kFailed;
}
