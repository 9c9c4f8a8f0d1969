// libcfgxml.so, loaded at run time as a phone loads it.
#pragma once

#include <filesystem>

namespace deskphone {

class Plugin {
 public:
  /// Loads the library; throws Failure when it can't be loaded. It stays loaded to the end of the
  /// program, as on a phone: nothing in it is torn down.
  explicit Plugin(const std::filesystem::path& file);

  /// The address of an exported function; throws Failure when there is none of this name.
  void* symbol(const char* name) const;

  /// The library that this program uses: $DESKPHONE_PLUGIN, else the one it was built or installed
  /// with.
  static std::filesystem::path find();

 private:
  std::filesystem::path file_;
  void* library_;
};

/// An exported function under its own type:
///   const Function<decltype(cfg_add_contact_data)> add{plugin, "cfg_add_contact_data"};
///   add(&record);
template <typename Signature>
class Function {
 public:
  Function(const Plugin& plugin, const char* name)
      : call_(reinterpret_cast<Signature*>(plugin.symbol(name))) {}

  operator Signature*() const { return call_; }  // NOLINT(google-explicit-constructor): it is one

 private:
  Signature* call_;
};

}  // namespace deskphone
