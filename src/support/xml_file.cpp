#include "support/xml_file.h"

#include <cfgxml/host.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "support/paths.h"
#include "support/regular_file.h"
#include "support/text.h"
#include "support/xml_limits.h"

namespace cfgxml {
namespace {

/// No file of a phone comes near; a sparse one from outside is not given the memory.
constexpr off_t kLargestFile = 256 << 20;

bool read_all(const File& file, std::string& text) {
  struct stat status {};
  if (file == nullptr || ::fstat(::fileno(file.get()), &status) != 0) return false;
  if (status.st_size > kLargestFile) return false;
  text.resize(static_cast<std::size_t>(status.st_size));
  text.resize(std::fread(text.data(), 1, text.size(), file.get()));
  return std::ferror(file.get()) == 0;
}

/// A new file beside the one to replace, removed again unless it is renamed over it.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& target) : name_(target + ".tmpXXXXXX") {
    const int descriptor = ::mkostemp(name_.data(), O_CLOEXEC);
    if (descriptor < 0) return;
    exists_ = true;
    stream_.reset(::fdopen(descriptor, "wb"));
    if (stream_ == nullptr) ::close(descriptor);
  }
  ~TemporaryFile() {
    if (exists_) ::unlink(name_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool write(const char* text, std::size_t size) {
    return stream_ != nullptr && std::fwrite(text, 1, size, stream_.get()) == size;
  }

  bool sync(mode_t mode) {
    const int descriptor = ::fileno(stream_.get());
    const bool synced = std::fflush(stream_.get()) == 0 && std::ferror(stream_.get()) == 0 &&
                        ::fchmod(descriptor, mode) == 0 && ::fsync(descriptor) == 0;
    const bool closed = std::fclose(stream_.release()) == 0;
    return synced && closed;
  }

  bool rename_over(const std::string& target) {
    if (::rename(name_.c_str(), target.c_str()) != 0) return false;
    exists_ = false;
    return true;
  }

 private:
  std::string name_;
  bool exists_ = false;
  File stream_;
};

/// The XML library takes text outside the root, but could not read again what it would write of it.
void drop_loose_text(tinyxml2::XMLDocument& document) {
  for (tinyxml2::XMLNode* node = document.FirstChild(); node != nullptr;) {
    tinyxml2::XMLNode* next = node->NextSibling();
    if (node->ToText() != nullptr) document.DeleteChild(node);
    node = next;
  }
}

std::string folder_of(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

bool sync_folder(const std::string& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return false;
  const bool synced = ::fsync(descriptor) == 0;
  ::close(descriptor);
  return synced;
}

}  // namespace

XmlFile::XmlFile(const char* path, Privacy privacy)
    : path_(path),
      file_(paths::on_disk(path)),
      privacy_(privacy),
      document_(true, tinyxml2::PRESERVE_WHITESPACE) {}

bool XmlFile::exists() const { return rl_access(file_.c_str(), 0) == 0; }

bool XmlFile::load() {
  std::string text;
  return read_all(open_to_read(file_), text) && parse(text.c_str());
}

bool XmlFile::parse(const char* text) {
  if (!within_limits(text) || document_.Parse(text) != tinyxml2::XML_SUCCESS) return false;
  drop_loose_text(document_);
  return true;
}

void XmlFile::keep_aside() {
  struct stat status {};
  if (::stat(file_.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return;
  const std::string aside = file_ + ".corrupt";
  if (::rename(file_.c_str(), aside.c_str()) != 0) {
    rl_log_err("%s failed: <%s> can not be kept as <%s>.", __func__, path_.c_str(), aside.c_str());
  }
}

void XmlFile::start_afresh() {
  keep_aside();
  shell::remove_file(file_.c_str());
  document_.Clear();
  document_.InsertEndChild(document_.NewDeclaration());
}

void XmlFile::start_afresh(shell::HostWords words) {
  keep_aside();
  shell::remove_file(file_.c_str(), words);
  document_.Clear();
  document_.InsertEndChild(document_.NewDeclaration());
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
  path_ = path;
  file_ = paths::on_disk(path);
}

bool XmlFile::replace_file() {
  struct stat old {};
  const bool replaces = ::stat(file_.c_str(), &old) == 0;
  const mode_t fresh = privacy_ == Privacy::kPrivate ? 0600 : 0644;
  const mode_t mode = replaces ? old.st_mode & 07777 : fresh;

  // In memory first: the printer writes a word at a time.
  tinyxml2::XMLPrinter text;
  document_.Print(&text);

  const std::string folder = folder_of(file_);  // nothing is allocated behind the rename
  TemporaryFile temporary(file_);
  return temporary.write(text.CStr(), static_cast<std::size_t>(text.CStrSize()) - 1) &&
         temporary.sync(mode) && temporary.rename_over(file_) && sync_folder(folder);
}

int XmlFile::save(const char* worker) {
  if (replace_file()) return 0;
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
