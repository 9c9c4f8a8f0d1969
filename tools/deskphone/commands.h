// The commands of deskphone. A family of commands is one file with one function that adds it, named
// below; main.cpp calls each of them once. Only commands.cpp knows the library that reads the
// command line: its templates take longer to compile than everything else here.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "phone.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace deskphone {

/// An option or an argument of a command; a handle, as Command is.
class Option {
 public:
  explicit Option(CLI::Option& option) : option_(&option) {}

  Option& required();
  Option& range(int least, int most);
  Option& at_least(int least);
  Option& one_of(const std::vector<std::string>& words);
  /// The value that the variable has now stands in the help.
  Option& show_default();

  /// True when it was given on the command line.
  bool given() const;

 private:
  CLI::Option* option_;
};

/// A command, or a family of commands: a handle to what lives as long as the command line. Options
/// are read into variables that have to live as long; "--name" is an option, "name" an argument.
class Command {
 public:
  explicit Command(CLI::App& app) : app_(&app) {}

  Option add_option(const std::string& name, int& value, const std::string& about);
  Option add_option(const std::string& name, std::string& value, const std::string& about);
  Option add_option(const std::string& name, std::filesystem::path& value,
                    const std::string& about);
  Option add_option(const std::string& name, std::optional<int>& value, const std::string& about);
  Option add_option(const std::string& name, std::optional<std::string>& value,
                    const std::string& about);
  Option add_option(const std::string& name, std::vector<int>& values, const std::string& about);
  Option add_option(const std::string& name, std::vector<std::filesystem::path>& values,
                    const std::string& about);
  void add_flag(const std::string& name, bool& value, const std::string& about);
  /// Counts how often the flag is given.
  void add_flag(const std::string& name, int& count, const std::string& about);

  /// Exactly one of its options has to be given.
  void require_one_option();
  /// What the command does.
  void on_run(std::function<void()> action);

 private:
  friend Command add_family(Command, const char*, const char*);
  friend Command add_command(Command, const char*, const char*, const char*);

  CLI::App* app_;
};

/// The whole command line: its options, its families and what it says of itself.
class CommandLine {
 public:
  CommandLine(const char* about, const char* footer);
  ~CommandLine();

  Command root() { return Command(*app_); }

  /// Runs the command that the arguments name. The exit status when that is all (0 for help, 2 when
  /// they are not understood, each printed), or nothing when a command has run.
  std::optional<int> run(int argc, char** argv);

 private:
  std::unique_ptr<CLI::App> app_;
};

void add_tour(Command app, Phone& phone);
void add_contacts_commands(Command app, Phone& phone);
void add_groups_commands(Command app, Phone& phone);
void add_blacklist_commands(Command app, Phone& phone);
void add_move_commands(Command app, Phone& phone);
void add_keys_command(Command app, Phone& phone);
void add_remote_commands(Command app, Phone& phone);
void add_directory_commands(Command app, Phone& phone);
void add_history_commands(Command app, Phone& phone);
void add_caller_commands(Command app, Phone& phone);
void add_dialrule_commands(Command app, Phone& phone);
void add_message_commands(Command app, Phone& phone);
void add_timezone_commands(Command app, Phone& phone);
void add_notify_commands(Command app, Phone& phone);
void add_screen_command(Command app, Phone& phone);

/// The commands of the family contacts that read and write files: import, export, check, community.
void add_contact_file_commands(Command family, Phone& phone);

/// A family: a command that only holds others.
Command add_family(Command parent, const char* name, const char* description);

/// A command with its examples, one a line.
Command add_command(Command parent, const char* name, const char* description,
                    const char* examples);

/// Sets what a command does; the phone is started before and stopped after it.
void on_run(Command command, Phone& phone, std::function<void()> action);

}  // namespace deskphone
