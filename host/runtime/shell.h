// Shell commands.
#pragma once

#include <functional>
#include <string>

namespace host {

/// Called with every command before it runs.
using CommandObserver = std::function<void(const std::string&)>;

/// Sets the observer, or removes it with nullptr; not safe beside running commands.
void observe_commands(CommandObserver observer);

}  // namespace host
