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

/// Lets commands run elsewhere than in the shell, or there again with nullptr; for tests. Not safe
/// beside running commands.
void run_commands_with(CommandRunner runner);

}  // namespace host
