// An upload's last step: a checked file is copied over one of the library's own by the shell.
#pragma once

#include <optional>

#include "support/shell.h"

namespace cfgxml {

/// How a copy ended.
struct Copied {
  int result;     // the shell's
  bool replaced;  // the data file holds what the source holds
};

/// Copies a file over a data file with shell::copy_file. The command writes over the data file in
/// place, so what it held is kept beside it meanwhile: a cut, or a command that leaves anything but
/// the whole source, brings the old file back. One that cannot be read for a lasting reason becomes
/// "<file>.corrupt". A command that outlives the process is waited for by the next one that opens
/// the data file. Nothing, with an error in the log, when the command is refused or the old file
/// cannot be kept, and nothing is changed then; or when the new file cannot be synced, which brings
/// the old one back too.
std::optional<Copied> copy_over(const char* source, const char* data_file, shell::HostWords words);

/// True when copy_over would run its command: for paths that the shell may see, with nothing but
/// regular files at them. Else the reason is logged.
bool can_copy_over(const char* source, const char* data_file);

}  // namespace cfgxml
