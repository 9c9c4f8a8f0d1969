// The reference host: one per program, as the services of host.h are. Its pieces, how it binds the
// plug-in, and the order in which it starts it.
#pragma once

#include <cfgxml/binding.h>

#include <filesystem>

#include "adapter/adapter.h"
#include "adapter/callbacks.h"
#include "config/settings.h"
#include "lists/lists.h"
#include "saver/saver.h"

namespace host {

/// What the init slots gave: the result of each file's reader.
struct InitResults {
  int contacts;
  int blacklist;
  int history;
};

class Host {
 public:
  Host();

  /// Lets the plug-in fill the callback table.
  void bind(decltype(&cfgxml_cb_init) fill_table);

  /// The profile's folder, the same that the plug-in got through cfgxml_set_root. Reads the
  /// settings (throws SettingsError), and puts back a file whose import was cut short.
  void open_profile(const std::filesystem::path& root);

  /// Where a published path ("/config/...") is below the profile's folder.
  std::filesystem::path on_disk(const char* path) const;

  /// Reads the files into the host's blocks: contacts, then blacklist, then history.
  InitResults load();

  /// Deferred saving on: changes are collected and written by the saver's thread.
  void start_saving();
  /// Writes everything outstanding and switches deferred saving off. False when a file could not be
  /// written.
  bool stop_saving();

  /// Replaces the blacklist by a file's, through the plug-in's cfg_upload_blacklist; its result.
  /// Changes that were not yet written are written first, so that a file that is refused (-1)
  /// leaves them in the phone and in the old file.
  int upload_blacklist(decltype(&cfg_upload_blacklist) upload, const char* path);

  const Callbacks& callbacks() const { return callbacks_; }
  Lists& lists() { return lists_; }
  Settings& settings() { return settings_; }
  Adapter& adapter() { return adapter_; }
  Saver& saver() { return saver_; }

 private:
  int write_now(SaveCode code);

  std::filesystem::path root_;
  Callbacks callbacks_;
  Lists lists_;
  Settings settings_;
  Adapter adapter_;
  Saver saver_;
};

Host& the_host();

}  // namespace host
