// The allocations of the plug-in, one by one: counted, refused and followed until they are freed.
//
// The program's own malloc, calloc, realloc, free, operator new and operator delete stand in front
// of the C and C++ libraries'. While a thread is watched they look who asks: the plug-in and the
// XML library are counted, also when they ask through another library (a string, a stream); the
// host, the tests and everything else are served as ever.
#pragma once

namespace memory_test {

/// What is refused.
enum class Refuse { kNothing, kOne, kAllFrom };

/// Watches the calling thread's allocations for its scope.
class Watch {
 public:
  /// The number of the allocation (from 1) at which refusing begins.
  explicit Watch(Refuse refuse = Refuse::kNothing, int number = 0);
  ~Watch();
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  int asked() const;
  int refused() const;
};

/// Blocks that the plug-in got while it was watched, and that nobody has freed since.
int blocks_in_use();

/// Shows the visitor every block in use, and follows them no longer.
void forget_blocks(void (*visit)(const void* block));

}  // namespace memory_test
