#include "commands.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <limits>
#include <sstream>
#include <utility>

namespace deskphone {
namespace {

constexpr int kWrongUsage = 2;

}  // namespace

// ---- Options

Option& Option::required() {
  option_->required();
  return *this;
}

Option& Option::range(int least, int most) {
  option_->check(CLI::Range(least, most));
  return *this;
}

Option& Option::at_least(int least) { return range(least, std::numeric_limits<int>::max()); }

Option& Option::one_of(const std::vector<std::string>& words) {
  option_->check(CLI::IsMember(words));
  return *this;
}

Option& Option::show_default() {
  option_->capture_default_str();
  return *this;
}

bool Option::given() const { return option_->count() > 0; }

// ---- Commands

Option Command::add_option(const std::string& name, int& value, const std::string& about) {
  return Option(*app_->add_option(name, value, about));
}

Option Command::add_option(const std::string& name, std::string& value, const std::string& about) {
  return Option(*app_->add_option(name, value, about));
}

Option Command::add_option(const std::string& name, std::filesystem::path& value,
                           const std::string& about) {
  return Option(*app_->add_option(name, value, about));
}

Option Command::add_option(const std::string& name, std::optional<int>& value,
                           const std::string& about) {
  return Option(*app_->add_option(name, value, about));
}

Option Command::add_option(const std::string& name, std::optional<std::string>& value,
                           const std::string& about) {
  return Option(*app_->add_option(name, value, about));
}

Option Command::add_option(const std::string& name, std::vector<int>& values,
                           const std::string& about) {
  return Option(*app_->add_option(name, values, about));
}

Option Command::add_option(const std::string& name, std::vector<std::filesystem::path>& values,
                           const std::string& about) {
  return Option(*app_->add_option(name, values, about));
}

void Command::add_flag(const std::string& name, bool& value, const std::string& about) {
  app_->add_flag(name, value, about);
}

void Command::add_flag(const std::string& name, int& count, const std::string& about) {
  app_->add_flag(name, count, about);
}

void Command::require_one_option() { app_->require_option(1); }

void Command::on_run(std::function<void()> action) { app_->callback(std::move(action)); }

Command add_family(Command parent, const char* name, const char* description) {
  CLI::App& family = *parent.app_->add_subcommand(name, description);
  family.require_subcommand(1);
  family.footer(fmt::format("Each has examples: deskphone {} COMMAND --help", name));
  return Command(family);
}

Command add_command(Command parent, const char* name, const char* description,
                    const char* examples) {
  CLI::App& command = *parent.app_->add_subcommand(name, description);
  std::string footer = "Examples:";
  std::istringstream lines(examples);
  for (std::string line; std::getline(lines, line);) footer += "\n  deskphone " + line;
  command.footer(footer);
  return Command(command);
}

void on_run(Command command, Phone& phone, std::function<void()> action) {
  command.on_run([&phone, action = std::move(action)] {
    phone.start();
    action();
    phone.stop();
  });
}

// ---- The command line

CommandLine::CommandLine(const char* about, const char* footer)
    : app_(std::make_unique<CLI::App>(about, "deskphone")) {
  app_->require_subcommand(1);
  app_->fallthrough();  // for the subcommands: their parents' options may follow them
  app_->footer(footer);
}

CommandLine::~CommandLine() = default;

std::optional<int> CommandLine::run(int argc, char** argv) {
  try {
    app_->parse(argc, argv);
  } catch (const CLI::Success& help) {
    return app_->exit(help);
  } catch (const CLI::ParseError& error) {
    app_->exit(error);
    return kWrongUsage;
  }
  return std::nullopt;
}

}  // namespace deskphone
