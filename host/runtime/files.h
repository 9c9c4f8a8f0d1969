// Files in one piece, for the host's own use.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace host::files {

/// The file's content, or nothing when it can't be read.
std::optional<std::string> read(const std::filesystem::path& file);

/// Replaces the file: written beside it, synced, and renamed over it, so that it is the old one or
/// the new one at any moment. Its folder is created. False leaves the old file as it was.
bool replace(const std::filesystem::path& file, const std::string& content);

/// Waits until the file's content is on the disk.
bool sync(const std::filesystem::path& file);

}  // namespace host::files
