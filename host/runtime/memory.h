// The plug-in's memory: a way to let it run out.
#pragma once

#include <cstddef>
#include <functional>

namespace host {

/// Asked before every block that the plug-in takes; false refuses it, as when memory is out.
using MemoryGate = std::function<bool(std::size_t size)>;

/// Sets the gate, or removes it with nullptr; not safe beside running calls.
void guard_memory(MemoryGate gate);

}  // namespace host
