// Memory: the C library's. rl_free therefore also releases what the plug-in got from calloc.
#include "runtime/memory.h"

#include <cfgxml/host.h>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace host {
namespace {

MemoryGate memory_gate;

}  // namespace

void guard_memory(MemoryGate gate) { memory_gate = std::move(gate); }

}  // namespace host

void* rl_malloc(size_t size) {
  if (host::memory_gate && !host::memory_gate(size)) return nullptr;
  return std::malloc(size);
}

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
