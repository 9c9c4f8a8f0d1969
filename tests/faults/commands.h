// The plug-in's two shell commands, carried out in the process. A program with this file has a
// system() that does so; host::run_commands_with() sets the same for the host's shell.
#pragma once

#include <string>

namespace phone_test {

/// What a shell gives for a command that it does not find.
constexpr int kNoCommand = 127;

/// The exit status of "rm -f PATH" or "cp -f \"PATH\" \"PATH\"", whose target is emptied and
/// written piece by piece; kNoCommand for any other.
int run_without_shell(const std::string& command);

}  // namespace phone_test
