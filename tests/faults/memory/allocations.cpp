#include "allocations.h"

#include <dlfcn.h>
#include <link.h>
#include <unwind.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

#include "runtime/memory.h"

namespace memory_test {
namespace {

// ---- Who asks -----------------------------------------------------------------------------------

/// The code of one loaded file.
struct Code {
  std::uintptr_t begin;
  std::uintptr_t end;
  bool watched;  // the plug-in's or the XML library's; else the program's
};

struct Codes {
  std::array<Code, 16> table;
  std::size_t count = 0;
};

int note_code(dl_phdr_info* file, std::size_t /*size*/, void* out) {
  auto& codes = *static_cast<Codes*>(out);
  const bool program = file->dlpi_name[0] == '\0' && codes.count == 0;  // the first one listed
  const bool watched = std::strstr(file->dlpi_name, "cfgxml.so") != nullptr ||
                       std::strstr(file->dlpi_name, "libtinyxml2") != nullptr;
  if (!program && !watched) return 0;
  for (int i = 0; i < file->dlpi_phnum && codes.count < codes.table.size(); ++i) {
    const auto& part = file->dlpi_phdr[i];
    if (part.p_type != PT_LOAD || (part.p_flags & PF_X) == 0) continue;
    const std::uintptr_t begin = file->dlpi_addr + part.p_vaddr;
    codes.table[codes.count++] = {begin, begin + part.p_memsz, watched};
  }
  return 0;
}

Codes codes;

const Code* code_at(std::uintptr_t address) {
  for (std::size_t i = 0; i != codes.count; ++i) {
    if (address >= codes.table[i].begin && address < codes.table[i].end) return &codes.table[i];
  }
  return nullptr;
}

/// The walk from the allocation outwards, to the first frame that tells who asked.
struct Walk {
  std::uintptr_t from;  // where the allocation returns to; the frames before are this file's
  bool begun = false;
  const Code* code = nullptr;
};

_Unwind_Reason_Code step(_Unwind_Context* frame, void* out) {
  auto& walk = *static_cast<Walk*>(out);
  const std::uintptr_t address = _Unwind_GetIP(frame);
  walk.begun =
      walk.begun || (address | 1) == (walk.from | 1);  // bit 0 may tell the instruction set
  if (walk.begun) walk.code = code_at(address);
  return walk.code != nullptr ? _URC_END_OF_STACK : _URC_NO_REASON;
}

bool asked_by_plugin(std::uintptr_t caller) {
  const Code* code = code_at(caller);
  if (code == nullptr) {  // a library that may work for either
    Walk walk{caller};
    _Unwind_Backtrace(step, &walk);
    code = walk.code;
  }
  return code != nullptr && code->watched;
}

// ---- What is refused ----------------------------------------------------------------------------

struct State {
  bool on = false;
  bool inside = false;       // an allocation is being served: what it needs itself is not counted
  bool host_served = false;  // the host serves the plug-in with its next allocation
  Refuse refuse = Refuse::kNothing;
  int number = 0;
  int asked = 0;
  int refused = 0;
};
thread_local State state;

/// Counts an allocation of the plug-in's; false when it is refused.
bool grant() {
  ++state.asked;
  const bool refused =
      state.refuse == Refuse::kAllFrom ? state.asked >= state.number : state.asked == state.number;
  if (state.refuse == Refuse::kNothing || !refused) return true;
  ++state.refused;
  return false;
}

enum class Answer { kServe, kServeAndFollow, kRefuse };

Answer answer(const void* caller) {
  if (!state.on || state.inside) return Answer::kServe;
  if (state.host_served) {
    state.host_served = false;
    return Answer::kServeAndFollow;
  }
  state.inside = true;
  const bool plugin = asked_by_plugin(reinterpret_cast<std::uintptr_t>(caller));
  state.inside = false;
  if (!plugin) return Answer::kServe;
  return grant() ? Answer::kServeAndFollow : Answer::kRefuse;
}

// ---- What is in use -----------------------------------------------------------------------------

/// The blocks of the plug-in, in an open table; one thread at a time is watched. What is lost must
/// not look as if it were reachable from here, so the bits of the addresses are turned.
class BlocksInUse {
 public:
  void add(const void* block) {
    if (block == nullptr) return;
    std::size_t place = place_of(block);
    while (table_[place] != kFree && table_[place] != kGone) place = next(place);
    table_[place] = turned(block);
    ++count_;
  }

  void remove(const void* block) {
    if (count_ == 0 || block == nullptr) return;
    for (std::size_t place = place_of(block); table_[place] != kFree; place = next(place)) {
      if (table_[place] != turned(block)) continue;
      table_[place] = kGone;
      if (--count_ == 0) table_.fill(kFree);
      return;
    }
  }

  int count() const { return count_; }

  void forget(void (*visit)(const void* block)) {
    for (const std::uintptr_t place : table_) {
      if (place != kFree && place != kGone) visit(reinterpret_cast<const void*>(~place));
    }
    table_.fill(kFree);
    count_ = 0;
  }

 private:
  static constexpr std::size_t kPlaces = 1 << 14;
  static constexpr std::uintptr_t kFree = 0;
  static constexpr std::uintptr_t kGone = 1;  // the turned address of no block

  static std::uintptr_t turned(const void* block) {
    return ~reinterpret_cast<std::uintptr_t>(block);
  }
  static std::size_t place_of(const void* block) {
    return (reinterpret_cast<std::uintptr_t>(block) >> 4) * 2654435761U % kPlaces;
  }
  static std::size_t next(std::size_t place) { return (place + 1) % kPlaces; }

  std::array<std::uintptr_t, kPlaces> table_ = {};
  int count_ = 0;
};

BlocksInUse in_use;

// ---- The libraries' own -------------------------------------------------------------------------

struct Library {
  void* (*malloc)(std::size_t);
  void* (*calloc)(std::size_t, std::size_t);
  void* (*realloc)(void*, std::size_t);
  void (*free)(void*);
  void* (*make)(std::size_t);
  void* (*make_array)(std::size_t);
  void (*destroy)(void*);
  void (*destroy_array)(void*);
};

/// What the search for the library's functions allocates itself.
class FirstBytes {
 public:
  void* take(std::size_t size) {
    const std::size_t place = used_;
    used_ += (size + 15) / 16 * 16;
    return used_ <= sizeof bytes_ ? bytes_ + place : nullptr;
  }
  bool holds(const void* block) const { return block >= bytes_ && block < bytes_ + sizeof bytes_; }

 private:
  alignas(16) char bytes_[4096] = {};
  std::size_t used_ = 0;
};
FirstBytes first_bytes;

template <typename Function>
void find(Function*& function, const char* name) {
  function = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

constexpr bool kWide = sizeof(std::size_t) == 8;

Library* library() {
  static Library found;
  static bool searching = false;
  static bool ready = false;
  if (ready) return &found;
  if (searching) return nullptr;
  searching = true;
  find(found.malloc, "malloc");
  find(found.calloc, "calloc");
  find(found.realloc, "realloc");
  find(found.free, "free");
  find(found.make, kWide ? "_Znwm" : "_Znwj");
  find(found.make_array, kWide ? "_Znam" : "_Znaj");
  find(found.destroy, "_ZdlPv");
  find(found.destroy_array, "_ZdaPv");
  ready = true;
  return &found;
}

/// Serves an allocation: what the library calls on its way is part of it.
template <typename Make, typename... Arguments>
void* serve(Answer given, Make make, Arguments... arguments) {
  const bool outer = state.inside;
  state.inside = true;
  void* block = make(arguments...);
  state.inside = outer;
  if (given == Answer::kServeAndFollow) in_use.add(block);
  return block;
}

}  // namespace

Watch::Watch(Refuse refuse, int number) {
  codes.count = 0;
  dl_iterate_phdr(note_code, &codes);
  host::guard_memory([](std::size_t /*size*/) {
    if (!state.on) return true;
    return state.host_served = grant();
  });
  state = {};
  state.refuse = refuse;
  state.number = number;
  state.on = true;
}

Watch::~Watch() {
  state = {};
  host::guard_memory(nullptr);
}

int Watch::asked() const { return state.asked; }
int Watch::refused() const { return state.refused; }

int blocks_in_use() { return in_use.count(); }
void forget_blocks(void (*visit)(const void* block)) { in_use.forget(visit); }

}  // namespace memory_test

using namespace memory_test;

extern "C" {

void* malloc(std::size_t size) {
  Library* own = library();
  if (own == nullptr) return first_bytes.take(size);
  const Answer given = answer(__builtin_return_address(0));
  if (given != Answer::kRefuse) return serve(given, own->malloc, size);
  errno = ENOMEM;
  return nullptr;
}

void* calloc(std::size_t count, std::size_t size) {
  Library* own = library();
  if (own == nullptr) return first_bytes.take(count * size);
  const Answer given = answer(__builtin_return_address(0));
  if (given != Answer::kRefuse) return serve(given, own->calloc, count, size);
  errno = ENOMEM;
  return nullptr;
}

void* realloc(void* block, std::size_t size) {
  const Answer given = answer(__builtin_return_address(0));
  if (given == Answer::kRefuse) {
    errno = ENOMEM;
    return nullptr;
  }
  void* moved = serve(Answer::kServe, library()->realloc, block, size);
  if (moved != nullptr || size == 0) in_use.remove(block);
  if (given == Answer::kServeAndFollow) in_use.add(moved);
  return moved;
}

void free(void* block) {
  if (first_bytes.holds(block)) return;
  in_use.remove(block);
  library()->free(block);
}

}  // extern "C"

void* operator new(std::size_t size) {
  const Answer given = answer(__builtin_return_address(0));
  if (given == Answer::kRefuse) throw std::bad_alloc();
  return serve(given, library()->make, size);
}

void* operator new[](std::size_t size) {
  const Answer given = answer(__builtin_return_address(0));
  if (given == Answer::kRefuse) throw std::bad_alloc();
  return serve(given, library()->make_array, size);
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  const Answer given = answer(__builtin_return_address(0));
  return given != Answer::kRefuse ? serve(given, library()->make, size) : nullptr;
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  const Answer given = answer(__builtin_return_address(0));
  return given != Answer::kRefuse ? serve(given, library()->make_array, size) : nullptr;
}

void operator delete(void* block) noexcept {
  in_use.remove(block);
  library()->destroy(block);
}

void operator delete[](void* block) noexcept {
  in_use.remove(block);
  library()->destroy_array(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t /*size*/) noexcept { operator delete[](block); }
