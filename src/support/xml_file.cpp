#include "support/xml_file.h"

#include <cfgxml/host.h>

#include <cstdlib>
#include <new>
#include <set>
#include <string_view>

#include "support/paths.h"
#include "support/regular_file.h"
#include "support/text.h"
#include "support/xml_limits.h"

namespace cfgxml {
namespace {

constexpr char kAside[] = ".corrupt";

/// The files that a block of the host's should hold but does not, because they could not be read.
class Unread {
 public:
  void note(const std::string& file, bool unread) {
    const std::lock_guard<std::mutex> hold(mutex_);
    if (unread) {
      files_.insert(file);
    } else {
      files_.erase(file);
    }
  }
  bool has(const std::string& file) {
    const std::lock_guard<std::mutex> hold(mutex_);
    return files_.count(file) != 0;
  }

 private:
  std::mutex mutex_;
  std::set<std::string> files_;  // guarded by mutex_
};

/// Never destroyed: a host may save as late as in its own destructors.
Unread& unread_files() {
  static Unread& files = *new Unread;
  return files;
}

}  // namespace

XmlFile::XmlFile(const char* path, Privacy privacy)
    : privacy_(privacy), document_(true, tinyxml2::PRESERVE_WHITESPACE) {
  open(path);
}

/// Without memory the file that did not load takes its place again.
XmlFile::~XmlFile() {
  try {
    aside_.keep_as(kAside);
  } catch (const std::bad_alloc&) {
    rl_log_err("out of memory.");
  }
}

void XmlFile::open(const char* path) {
  path_ = path;
  file_ = paths::on_disk(path);
  own_ = paths::is_data_file(path);
  restored_ = !own_ || durable::restore(file_);
  usable_ = restored_;
}

bool XmlFile::exists() const { return rl_access(file_.c_str(), 0) == 0; }

bool XmlFile::load() {
  std::string text;
  const Reading reading = restored_ ? read_file(file_, text) : Reading::kUnreadable;
  usable_ = reading != Reading::kUnreadable;
  return reading == Reading::kWhole && parse(text.c_str());
}

bool XmlFile::load_into_block() {
  const bool loaded = load();
  unread_files().note(file_, is_unreadable());
  return loaded;
}

bool XmlFile::parse(const char* text) {
  return within_limits(text) && document_.Parse(text) == tinyxml2::XML_SUCCESS;
}

/// A file that another thread was replacing when load() failed may be complete by now. One that is
/// still being replaced is left to that thread: this document is saved behind it.
template <typename Remove>
bool XmlFile::start_afresh_by(const char* worker, Remove remove) {
  const auto step = durable::hold();
  if (usable_ && load()) return true;
  if (usable_ && !durable::is_being_changed(file_)) {
    usable_ = aside_.move(file_);
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

bool XmlFile::start_afresh(const char* worker) {
  return start_afresh_by(worker, [](const char* file) { shell::remove_file(file); });
}

bool XmlFile::start_afresh(const char* worker, shell::HostWords words) {
  return start_afresh_by(worker, [words](const char* file) { shell::remove_file(file, words); });
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
  if (unread_files().has(file_) && !aside_.move(file_)) return false;
  const std::string_view content(text.CStr(), static_cast<std::size_t>(text.CStrSize()) - 1);
  const mode_t mode = privacy_ == Privacy::kPrivate ? 0600 : aside_.mode_or(0644);
  if (!durable::replace(file_, content, mode)) {
    aside_.put_back();
    return false;
  }
  if (!aside_.keep_as(kAside)) return false;
  unread_files().note(file_, false);
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
  const std::lock_guard<std::mutex> hold(mutex_);
  if (number < saved_) return 0;
  const int result = file.save(worker);
  if (result == 0) saved_ = number;
  return result;
}

}  // namespace cfgxml
