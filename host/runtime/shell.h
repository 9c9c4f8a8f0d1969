// Shell commands.
#pragma once

#include <functional>
#include <string>

namespace host {

/// Called with every command before it runs.
using CommandObserver = std::function<void(const std::string&)>;

/// Sets the observer, or removes it with nullptr; not safe beside running commands.
void observe_commands(CommandObserver observer);

/// Runs a command in the shell's place and gives its exit status.
using CommandRunner = std::function<int(const std::string&)>;

/// Sets the runner, or gives commands to the shell again with nullptr; not safe beside running
/// commands.
void run_commands_with(CommandRunner runner);

}  // namespace host
