// How the names of elements are compared, and those that the host's configuration can change,
// section 46.
#pragma once

#include <initializer_list>

namespace cfgxml::xmlbrowser {

/// The changeable names, by their item in the configuration.
enum class Tag : int {
  kNone = -1,  ///< the element has its fixed name only
  kRootPrefix = 0,
  kMenuItem = 1,
  kEntry = 2,
  kPrompt = 3,
  kUri = 4,
  kName = 5,
  kTelephone = 6,
  kPresence = 7,
};

/// The names that one parse goes by. Every parse reads the ones that it uses afresh.
class TagNames {
 public:
  enum class Source { kConfiguration, kDefaults };

  explicit TagNames(Source source) : source_(source) {}

  /// Fetches names; one that was not read stands for no element.
  void read(std::initializer_list<Tag> tags);

  const char* name(Tag tag) const { return names_[static_cast<int>(tag)]; }

  /// True when an element's name is the fixed one or the tag's, ignoring case.
  bool match(const char* element, const char* fixed, Tag tag) const;

 private:
  static constexpr int kCount = 8;

  Source source_;
  char names_[kCount][64] = {};
};

/// Fixed names alone, ignoring case.
struct FixedNames {
  static bool match(const char* element, const char* fixed, Tag tag);
};

/// Fixed names alone, with case.
struct ExactNames {
  static bool match(const char* element, const char* fixed, Tag tag);
};

}  // namespace cfgxml::xmlbrowser
