// The plug-in's two shell commands, carried out in the process.
#pragma once

#include <string>

namespace phone_test {

/// What a shell gives for a command that it does not find.
constexpr int kNoCommand = 127;

/// The exit status of "rm -f PATH" or "cp -f \"PATH\" \"PATH\"", whose target is emptied and
/// written piece by piece; kNoCommand for any other.
int run_without_shell(const std::string& command);

}  // namespace phone_test
