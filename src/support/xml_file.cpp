#include "support/xml_file.h"

#include <cfgxml/host.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iterator>
#include <new>
#include <string_view>
#include <type_traits>

#include "support/paths.h"
#include "support/regular_file.h"
#include "support/text.h"
#include "support/xml_input.h"

namespace cfgxml {
namespace {

/// The files that a block of the host's should hold but does not, because they could not be read.
/// Noting one takes no memory, which may be what was missing. Of two files whose hashes are the
/// same both count; that costs a copy in quarantine. There are three blocks.
class Unread {
 public:
  void note(const std::string& file, bool unread) {
    const Hold hold(mutex_);
    std::size_t* place = find(hash_of(file));
    if (unread && place == std::end(hashes_)) place = find(kNone);
    if (place != std::end(hashes_)) *place = unread ? hash_of(file) : kNone;
  }
  bool has(const std::string& file) {
    const Hold hold(mutex_);
    return find(hash_of(file)) != std::end(hashes_);
  }

 private:
  static constexpr std::size_t kNone = 0;

  static std::size_t hash_of(const std::string& file) { return std::hash<std::string>()(file) | 1; }
  std::size_t* find(std::size_t hash) REQUIRES(mutex_) {
    return std::find(std::begin(hashes_), std::end(hashes_), hash);
  }

  Mutex mutex_;
  std::size_t hashes_[16] GUARDED_BY(mutex_) = {};
};
/// A host may save as late as in its own destructors.
static_assert(std::is_trivially_destructible_v<Unread>);
Unread unread_files;

/// The XML library takes text outside the root, but could not read again what it would write of it.
void drop_loose_text(tinyxml2::XMLDocument& document) {
  for (tinyxml2::XMLNode* node = document.FirstChild(); node != nullptr;) {
    tinyxml2::XMLNode* next = node->NextSibling();
    if (node->ToText() != nullptr) document.DeleteChild(node);
    node = next;
  }
}

}  // namespace

XmlFile::XmlFile(const char* path, Privacy privacy)
    : privacy_(privacy), document_(true, tinyxml2::PRESERVE_WHITESPACE) {
  open(path);
}

/// Recreating a file is rolled back when memory ran out on the way.
XmlFile::~XmlFile() {
  if (std::uncaught_exceptions() == 0) old_.quarantine();
}

void XmlFile::open(const char* path) {
  path_ = path;
  file_ = durable::target_of(paths::on_disk(path));
  own_ = paths::is_data_file(path);
  restored_ = !own_ || durable::restore(file_);
  usable_ = restored_;
}

bool XmlFile::exists() const { return rl_access(file_.c_str(), 0) == 0; }

bool XmlFile::load() {
  std::string text;
  const Reading reading = restored_ ? read_file(file_, text) : Reading::kShortage;
  usable_ = reading != Reading::kShortage;
  unreadable_ = !usable_ || reading == Reading::kUnreadable;
  return reading == Reading::kWhole && parse(text.c_str());
}

bool XmlFile::load_into_block() {
  try {
    const bool loaded = load();
    unread_files.note(file_, own_ && is_unreadable());
    return loaded;
  } catch (const std::bad_alloc&) {
    unread_files.note(file_, own_);
    throw;
  }
}

bool XmlFile::parse(const char* text) {
  std::string escaped;
  if (!prepare_xml(text, escaped)) return false;
  if (document_.Parse(escaped.empty() ? text : escaped.c_str()) != tinyxml2::XML_SUCCESS) {
    return false;
  }
  drop_loose_text(document_);
  return true;
}

/// A file that another thread was replacing when load() failed may be complete by now. One that is
/// still being replaced is left to that thread: this document is saved after it.
template <typename Remove>
bool XmlFile::recreate_by(const char* worker, Remove remove) {
  const Hold step(durable::steps);
  if (usable_ && load()) return true;
  const bool is_target = file_ != paths::on_disk(path_.c_str());
  // What a link or a caller's path leads to is not the library's to remove.
  if ((!own_ || is_target) && is_no_regular_file(file_)) usable_ = false;
  if (usable_ && !durable::Before::is_under_way(file_)) {
    usable_ = old_.move(file_);
    if (usable_) remove(file_.c_str());
  }
  if (!usable_) {
    rl_log_err("%s:load file <%s> failed.", worker, path_.c_str());
    return false;
  }
  document_.Clear();
  document_.InsertEndChild(document_.NewDeclaration());
  return true;
}

bool XmlFile::recreate(const char* worker) {
  return recreate_by(worker, [](const char* file) { shell::remove_file(file); });
}

bool XmlFile::recreate(const char* worker, shell::HostWords words) {
  return recreate_by(worker, [words](const char* file) { shell::remove_file(file, words); });
}

tinyxml2::XMLElement* XmlFile::root_or_new(const char* worker, const char* name) {
  if (tinyxml2::XMLElement* root = document_.RootElement()) return root;
  rl_log_warn("%s:<%s> no root node, create!", worker, path_.c_str());
  tinyxml2::XMLElement* root = document_.NewElement(name);
  document_.InsertEndChild(root);
  return root;
}

tinyxml2::XMLElement* XmlFile::child_or_new(tinyxml2::XMLElement* parent, const char* worker,
                                            const char* name, const char* what) {
  if (tinyxml2::XMLElement* child = parent->FirstChildElement(name)) return child;
  rl_log_warn("%s:<%s> no %s, create!", worker, path_.c_str(), what);
  tinyxml2::XMLElement* child = document_.NewElement(name);
  parent->InsertEndChild(child);
  return child;
}

void XmlFile::redirect(const char* path) {
  if (path_ != path) open(path);
}

bool XmlFile::replace_file() {
  // In memory first: the printer writes a word at a time.
  tinyxml2::XMLPrinter text;
  document_.Print(&text);

  if (own_) durable::sweep(file_);
  if (unread_files.has(file_) && !old_.move(file_)) return false;
  const std::string_view content(text.CStr(), static_cast<std::size_t>(text.CStrSize()) - 1);
  const mode_t mode = privacy_ == Privacy::kPrivate ? 0600 : 0666;
  if (!durable::replace(file_, content, mode, old_.access(mode))) {
    old_.roll_back();
    return false;
  }
  if (!old_.quarantine()) return false;
  unread_files.note(file_, false);
  return true;
}

int XmlFile::save(const char* worker) {
  if (usable_ && replace_file()) return 0;
  rl_log_err("%s doc.SaveFile failed.", worker);
  return -1;
}

bool is_valid_upload(const char* path, const char* child, const char* worker, int max_size) {
  if (is_empty(path)) {
    rl_log_err("%s failed: file_path is empty.", worker);
    return false;
  }
  const int size = rl_file_size(paths::on_disk(path).c_str());
  if (size < 1 || size > max_size) {
    rl_log_err("%s failed: invalid file size.", worker);
    return false;
  }
  XmlFile file(path);
  if (!file.load()) {
    rl_log_err("%s:load file <%s> failed.", worker, path);
    return false;
  }
  if (file.root() == nullptr) {
    rl_log_err("%s:invalid file without root node.", worker);
    return false;
  }
  return file.root()->FirstChildElement(child) != nullptr;
}

int int_attribute(const tinyxml2::XMLElement& element, const char* name) {
  return rl_atoi(element.Attribute(name));
}

tinyxml2::XMLElement* append_element(tinyxml2::XMLElement* parent, const char* worker,
                                     const char* name) {
  tinyxml2::XMLElement* element = parent->GetDocument()->NewElement(name);
  if (element == nullptr || parent->InsertEndChild(element) == nullptr) {
    rl_log_err("%s failed, LinkEndChild ret NULL.", worker);
    return nullptr;
  }
  return element;
}

int SaveOrder::save(Number number, XmlFile& file, const char* worker) {
  const Hold hold(mutex_);
  if (number < saved_) return 0;
  const int result = file.save(worker);
  if (result == 0) saved_ = number;
  return result;
}

}  // namespace cfgxml
