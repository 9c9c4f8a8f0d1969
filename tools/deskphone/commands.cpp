#include "commands.h"

#include <fmt/format.h>

#include <sstream>
#include <utility>

namespace deskphone {

CLI::App& add_family(CLI::App& app, const char* name, const char* description) {
  CLI::App& family = *app.add_subcommand(name, description);
  family.require_subcommand(1);
  family.footer(fmt::format("Each has examples: deskphone {} COMMAND --help", name));
  return family;
}

CLI::App& add_command(CLI::App& parent, const char* name, const char* description,
                      const char* examples) {
  CLI::App& command = *parent.add_subcommand(name, description);
  std::string footer = "Examples:";
  std::istringstream lines(examples);
  for (std::string line; std::getline(lines, line);) footer += "\n  deskphone " + line;
  command.footer(footer);
  return command;
}

void on_run(CLI::App& command, Phone& phone, std::function<void()> action) {
  command.callback([&phone, action = std::move(action)] {
    phone.start();
    action();
    phone.stop();
  });
}

}  // namespace deskphone
