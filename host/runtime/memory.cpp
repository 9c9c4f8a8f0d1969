// Memory: the C library's. rl_free therefore also releases what the plug-in got from calloc.
#include <cfgxml/host.h>

#include <cstdlib>
#include <cstring>

void* rl_malloc(size_t size) { return std::malloc(size); }
void rl_free(void* block) { std::free(block); }

void* rl_memset(void* destination, int byte, size_t size) {
  return std::memset(destination, byte, size);
}

void* rl_memcpy(void* destination, const void* source, size_t size) {
  return std::memcpy(destination, source, size);
}

void* rl_memmove(void* destination, const void* source, size_t size) {
  return std::memmove(destination, source, size);
}
