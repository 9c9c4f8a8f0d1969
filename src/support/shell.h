// The two shell commands of the library. A path that could leave its quotes or start another word
// never reaches a shell: it is refused with an error in the log.
#pragma once

namespace cfgxml::shell {

/// The two further words that the host's rl_system_ex receives with a command.
struct HostWords {
  int first;
  int second;
};

/// Removes a file with "rm -f PATH" through the C library's shell. The command fits 256 bytes or is
/// refused, as is a path with a blank or any other sign of the shell's.
bool remove_file(const char* path);

/// The same command through the host's shell; its result, or -1 for a path that is refused.
int remove_file(const char* path, HostWords words);

/// True when copy_file would run its command. It is refused, with an error in the log, for a path
/// with a double quote, "$", a backquote, a backslash or a control character, and when it does not
/// fit 1024 bytes.
bool can_copy(const char* source, const char* destination);

/// Copies a file with cp -f, both paths in double quotes, through the host's shell; the shell's
/// result, or -1 when it is refused.
int copy_file(const char* source, const char* destination, HostWords words);

}  // namespace cfgxml::shell
