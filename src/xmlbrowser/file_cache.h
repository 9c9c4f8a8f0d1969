// The factory documents in memory.
#pragma once

#include <cstddef>

namespace cfgxml::xmlbrowser {

/// One document. Its path is the published one; a longer one is cut, and then names no file.
struct XML_FILE_CACHE_T {
  char path[64];
  char* text;  ///< owned by the node; line ends are LF
  XML_FILE_CACHE_T* next;
};
static_assert(offsetof(XML_FILE_CACHE_T, text) == 64);
static_assert(offsetof(XML_FILE_CACHE_T, next) == 64 + sizeof(char*));

/// The first document with exactly this path, or nullptr.
const XML_FILE_CACHE_T* find_in_cache(const char* path);

}  // namespace cfgxml::xmlbrowser
