// One XML data file: loading, its root element, and saving in one piece.
#pragma once

#include <tinyxml2.h>

#include <atomic>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include "support/durable.h"
#include "support/mutex.h"
#include "support/shell.h"

namespace cfgxml {

/// A document between its file and its users. Paths are the published ones; the file itself is
/// found below the storage root. Entities are processed and white space is preserved.
class XmlFile {
 public:
  /// Who may read a file that the library creates: whom the umask lets, or its owner. A file that
  /// is replaced keeps its owner, group and mode, and a link at its path stays.
  enum class Privacy { kShared, kPrivate };

  /// Opening a data file of the library's first rolls back what a cut left of a change.
  explicit XmlFile(const char* path, Privacy privacy = Privacy::kShared);
  ~XmlFile();
  XmlFile(const XmlFile&) = delete;
  XmlFile& operator=(const XmlFile&) = delete;

  /// True when there is something at the path, as the host sees it.
  bool exists() const;

  /// Reads the file; false when it is missing, no regular file, not well-formed, or beyond the
  /// limits of xml_input.h, and when it cannot be read, which is_unreadable() tells apart.
  bool load();
  /// load() for one of the host's blocks. A file that cannot be read is remembered: the block never
  /// held what it holds, so the next save keeps it as "<file>.corrupt" and does not write over it.
  bool load_into_block();
  /// True when the last load() failed though the file may be a good one: the disk failed, rights
  /// are missing, or memory or descriptors were short.
  bool is_unreadable() const { return unreadable_; }
  /// Reads a text in place of the file; false when it is not well-formed or beyond the limits.
  bool parse(const char* text);

  /// Makes an empty document with an XML declaration in place of a file that did not load. The file
  /// is removed with "rm -f", and what it held is kept as "<file>.corrupt"; a save that fails
  /// rolls back. False, with "%s:load file <%s> failed." logged for the worker, when the file
  /// cannot be kept, or not be read for want of memory or descriptors, or when something else
  /// than a file stands at a caller's path or behind a link: it stays then.
  bool recreate(const char* worker);
  /// The same, removing the file through the host's shell.
  bool recreate(const char* worker, shell::HostWords words);

  /// The document's first element, or nullptr.
  tinyxml2::XMLElement* root() { return document_.RootElement(); }

  /// The root, created with this name when there is none, which is logged for the worker.
  tinyxml2::XMLElement* root_or_new(const char* worker, const char* name);

  /// The parent's first child of this name, appended to it when there is none, which is logged for
  /// the worker as "%s:<%s> no WHAT, create!".
  tinyxml2::XMLElement* child_or_new(tinyxml2::XMLElement* parent, const char* worker,
                                     const char* name, const char* what);

  /// Makes save() replace another file than the one that was loaded.
  void redirect(const char* path);

  /// Replaces the file with the document, indented, by durable::replace: the file is the old one or
  /// the new one at any moment. On failure the old file stays, "%s doc.SaveFile failed." is logged
  /// for the worker, and the result is -1; else 0, and the new file is on the disk. -1 is also the
  /// result when all that failed is the sync of the folder after the rename; another save settles
  /// that.
  int save(const char* worker);

  const char* path() const { return path_.c_str(); }

 private:
  void open(const char* path);
  template <typename Remove>
  bool recreate_by(const char* worker, Remove remove);
  bool replace_file();

  std::string path_;
  std::string file_;
  Privacy privacy_;
  bool own_ = false;  // a data file: whatever lies beside it is the library's
  bool restored_ = false;
  bool usable_ = false;  // false while nothing is known of what the file holds
  bool unreadable_ = false;
  durable::Before old_;
  tinyxml2::XMLDocument document_;
};

/// Checks a file before it is copied over one of the library's own: 0 bytes, more than max_size, no
/// XML, or a root without a child of this name are not acceptable. The reason is logged for the
/// worker, except for the last.
bool is_valid_upload(const char* path, const char* child, const char* worker,
                     int max_size = std::numeric_limits<int>::max());

/// The elements of this name below a parent, for range-based loops; nullptr stands for any name.
/// The next element is found before the current one is handed out, so the loop may delete it.
class Children {
 public:
  class Iterator {
   public:
    Iterator(tinyxml2::XMLElement* element, const char* name) : name_(name) { step_to(element); }
    tinyxml2::XMLElement& operator*() const { return *element_; }
    Iterator& operator++() {
      step_to(next_);
      return *this;
    }
    bool operator!=(const Iterator& other) const { return element_ != other.element_; }

   private:
    void step_to(tinyxml2::XMLElement* element) {
      element_ = element;
      next_ = element != nullptr ? element->NextSiblingElement(name_) : nullptr;
    }

    const char* name_;
    tinyxml2::XMLElement* element_ = nullptr;
    tinyxml2::XMLElement* next_ = nullptr;
  };

  explicit Children(tinyxml2::XMLElement* parent, const char* name = nullptr)
      : parent_(parent), name_(name) {}
  Iterator begin() const { return {parent_->FirstChildElement(name_), name_}; }
  Iterator end() const { return {nullptr, name_}; }

 private:
  tinyxml2::XMLElement* parent_;
  const char* name_;
};

/// The decimal value of an attribute; 0 when it is absent.
int int_attribute(const tinyxml2::XMLElement& element, const char* name);

/// Appends an element of this name to a parent; nullptr when that fails, which is logged for the
/// worker as "%s failed, LinkEndChild ret NULL.".
tinyxml2::XMLElement* append_element(tinyxml2::XMLElement* parent, const char* worker,
                                     const char* name);

/// Lets no older snapshot of a file overwrite a newer one when two threads save it at once. A
/// writer takes a number while it holds the lock of the data it copies, and saves under that number
/// when it has released it.
class SaveOrder {
 public:
  using Number = std::uint64_t;

  Number take() { return ++taken_; }

  /// Saves the document unless a newer snapshot is on disk already; the result of XmlFile::save.
  int save(Number number, XmlFile& file, const char* worker);

  /// Replaces the file in another way, which counts as the newest snapshot when it says true.
  template <typename Replace>
  void replace(Replace&& replace) {
    const Hold hold(mutex_);
    const Number number = take();
    if (std::forward<Replace>(replace)()) saved_ = number;
  }

  /// The number of the snapshot on disk.
  Number saved() {
    const Hold hold(mutex_);
    return saved_;
  }

 private:
  std::atomic<Number> taken_{0};
  Mutex mutex_;
  Number saved_ GUARDED_BY(mutex_) = 0;
};

}  // namespace cfgxml
