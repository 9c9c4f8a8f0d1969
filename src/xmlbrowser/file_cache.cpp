#include "xmlbrowser/file_cache.h"

#include <cfgxml/host.h>
#include <cfgxml/xmlbrowser.h>

#include <cassert>
#include <cstddef>
#include <string>

#include "support/chain.h"
#include "support/lock.h"
#include "support/paths.h"
#include "support/regular_file.h"
#include "support/text.h"

namespace cfgxml::xmlbrowser {
namespace {

static_assert(offsetof(CFGXML_DIRECTORY_ENTRY_T, d_name) == (sizeof(long) == 8 ? 19 : 11));

XML_FILE_CACHE_T* g_local_xml_file_cache = nullptr;

struct FreeDocument {
  void operator()(XML_FILE_CACHE_T* document) const {
    if (document->text != nullptr) rl_free(document->text);
    rl_free(document);
  }
};
using Document = std::unique_ptr<XML_FILE_CACHE_T, FreeDocument>;

struct CloseFolder {
  void operator()(void* folder) const { rl_closedir(folder); }
};
using Folder = std::unique_ptr<void, CloseFolder>;

Folder open_folder() {
  Folder folder(rl_opendir(paths::on_disk(paths::kFactoryDocuments).c_str()));
  if (folder == nullptr) rl_log_debug("Open file path <%s> fail!\n", paths::kFactoryDocuments);
  return folder;
}

/// The name of the next file that is not hidden, or nullptr at the end.
const char* next_name(const Folder& folder) {
  while (const auto* entry = static_cast<CFGXML_DIRECTORY_ENTRY_T*>(rl_readdir(folder.get()))) {
    if (entry->d_name[0] != '.') return entry->d_name;
  }
  return nullptr;
}

/// Makes every CR LF and every lone CR an LF, in place; the text ends at its first NUL.
void normalise_line_ends(char* text, [[maybe_unused]] std::size_t size) {
  const char* read = text;
  char* write = text;
  while (*read != '\0') {
    assert(read < text + size && write <= read);
    if (*read == '\r') {
      *write++ = '\n';
      read += read[1] == '\n' ? 2 : 1;
    } else {
      *write++ = *read++;
    }
  }
  assert(write <= text + size);
  *write = '\0';
}

char* read_text(std::FILE* file, std::size_t size) {
  auto* text = static_cast<char*>(rl_malloc(size + 1));
  if (text == nullptr) return nullptr;
  rl_memset(text, 0, size + 1);
  text[std::fread(text, 1, size, file)] = '\0';
  normalise_line_ends(text, size);
  return text;
}

/// Why there is no document: the file is not one that can be read, or memory is out.
enum class Reading { kDone, kSkipped, kNoMemory };

Reading read_document(const char* name, Document& document) {
  const std::string path = std::string(paths::kFactoryDocuments) + name;
  const std::string file_name = paths::on_disk(path.c_str());
  const File file = open_to_read(file_name);
  const int size = file != nullptr ? rl_file_size(file_name.c_str()) : -1;
  if (size < 0) return Reading::kSkipped;

  document.reset(new_block<XML_FILE_CACHE_T>());
  if (document == nullptr) return Reading::kNoMemory;
  copy_text(document->path, path.c_str());
  document->text = read_text(file.get(), static_cast<std::size_t>(size));
  return document->text != nullptr ? Reading::kDone : Reading::kNoMemory;
}

int load() {
  if (g_local_xml_file_cache != nullptr) return 0;
  const Folder folder = open_folder();
  if (folder == nullptr) return -1;

  XML_FILE_CACHE_T** end = &g_local_xml_file_cache;
  while (const char* name = next_name(folder)) {
    Document document;
    const Reading reading = read_document(name, document);
    if (reading == Reading::kSkipped) continue;
    if (reading == Reading::kNoMemory) {
      rl_log_err("insane %s %d malloc", __FILE_NAME__, __LINE__);
      return -1;
    }
    *end = document.release();
    end = &(*end)->next;
  }
  return 0;
}

}  // namespace

const XML_FILE_CACHE_T* find_in_cache(const char* path) {
  const XML_FILE_CACHE_T* document = g_local_xml_file_cache;
  while (document != nullptr && !equal(document->path, path)) document = document->next;
  return document;
}

}  // namespace cfgxml::xmlbrowser

int cfg_load_local_xml_file_cache(void) { return cfgxml::guarded(-1, cfgxml::xmlbrowser::load); }

int cfg_free_local_xml_file_cache(void) {
  using cfgxml::xmlbrowser::g_local_xml_file_cache;
  while (g_local_xml_file_cache != nullptr) {
    const cfgxml::xmlbrowser::Document document(g_local_xml_file_cache);
    g_local_xml_file_cache = document->next;
  }
  return 0;
}
