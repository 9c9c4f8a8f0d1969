// The phone itself: a profile, the reference host and the plug-in, started in a phone's order.
#pragma once

#include <filesystem>
#include <memory>

#include "host.h"
#include "output.h"
#include "phonebook.h"
#include "plugin.h"
#include "profile.h"
#include "search.h"

namespace deskphone {

/// The options that every command has.
struct Options {
  std::filesystem::path root = "phone-data";
  bool json = false;
  int verbosity = 0;
};

class Phone {
 public:
  explicit Phone(const Options& options) : options_(options), output_(options.json) {}
  ~Phone();
  Phone(const Phone&) = delete;
  Phone& operator=(const Phone&) = delete;

  /// Opens the profile of the options, loads the plug-in, reads the phone's files and switches
  /// deferred saving on. Commands call it before anything else.
  void start();
  void start(const std::filesystem::path& root);

  /// Writes everything outstanding and lets the profile go. Throws Failure when a file could not be
  /// written. Does nothing when the phone was not started.
  void stop();

  /// Loads the remote books that the profile holds into the search.
  void load_remote_books() const;

  const Options& options() const { return options_; }
  const Output& output() const { return output_; }

  /// The following are there once the phone has started.
  const Plugin& plugin() const { return *plugin_; }
  const Phonebook& phonebook() const { return *phonebook_; }
  const Search& search() const { return *search_; }
  host::Host& host() const { return host::the_host(); }

 private:
  void load_plugin();
  void read_files();

  const Options& options_;
  Output output_;
  std::unique_ptr<Profile> profile_;
  std::unique_ptr<Plugin> plugin_;
  std::unique_ptr<Phonebook> phonebook_;
  std::unique_ptr<Search> search_;
};

}  // namespace deskphone
