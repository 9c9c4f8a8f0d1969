// Folders for the benchmarks that save files: one in memory, where a save costs what the program
// does, and one on the disk, where it also waits for the disk.
#pragma once

#include <cfgxml/binding.h>
#include <fcntl.h>
#include <tinyxml2.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

enum class Medium { kMemory, kDisk };

/// A folder that is the library's storage root and is removed again.
class ScratchFolder {
 public:
  explicit ScratchFolder(Medium medium) {
    const char* parent = medium == Medium::kMemory ? "/dev/shm" : "/var/tmp";
    path_ = std::string(parent) + "/cfgxml-bench-XXXXXX";
    if (::mkdtemp(path_.data()) == nullptr) std::abort();
    cfgxml_set_root(path_.c_str());
  }
  ~ScratchFolder() {
    cfgxml_set_root(nullptr);
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  /// Writes a file below the folder, and gives its place.
  std::string write(const std::string& path, const std::string& text) const {
    const std::string file = path_ + path;
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    std::FILE* stream = std::fopen(file.c_str(), "w");
    if (stream == nullptr) std::abort();
    std::fputs(text.c_str(), stream);
    std::fclose(stream);
    return file;
  }

 private:
  std::string path_;
};

/// The plain way to change a file.
inline void load_and_save(const std::string& file) {
  tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
  document.LoadFile(file.c_str());
  document.SaveFile(file.c_str());
}

inline void sync(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY);
  ::fsync(descriptor);
  ::close(descriptor);
}

/// The same, but safe against a loss of power: beside the file, synced, and renamed over it.
inline void load_and_replace(const std::string& file) {
  tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
  document.LoadFile(file.c_str());
  const std::string beside = file + ".new";
  document.SaveFile(beside.c_str());
  sync(beside);
  std::rename(beside.c_str(), file.c_str());
  sync(std::filesystem::path(file).parent_path().string());
}
