// A layer between the program and the system: the calls that touch files below one folder are
// recorded in order, and one of them can be made to fail. The library finds these functions before
// the system's, since the test program defines and exports them. What the C library does inside its
// buffered files is not seen; the plug-in changes no file that way. One thread at a time is
// watched.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace recorded_calls {

/// What a call did to the disk, if it did anything.
enum class Effect { kCreated, kEmptied, kWritten, kRenamed, kRemoved, kFileSynced, kFolderSynced };

/// Files are numbered as they appear; names may change, numbers stay.
struct Event {
  Effect effect;
  int file = 0;  // for all but a folder's sync
  std::string path =
      {};               // the name that was created, renamed or removed; the folder that was synced
  std::string to = {};  // the new name
  std::size_t offset = 0;
  std::string data = {};  // what was written
};

/// A file below the folder when the watching began.
struct Known {
  std::string path;
  int file;
  std::string content;
};

/// The calls that can fail, by what can be wrong with them.
enum class Kind { kOpen, kCreate, kRead, kWrite, kSync, kRename, kRemove, kMode, kClose, kLook };

/// Begins a record of what happens below the folder, and gives what is there.
std::vector<Known> watch(const std::string& folder);
void stop();

/// Hands out what happened since the last time.
std::vector<Event> take_events();

/// The calls since watch(), whether they changed anything or not.
const std::vector<Kind>& calls();

/// Makes the call of this number, counted from 0 as of watch(), fail once with the error.
void fail(std::size_t call, int error);
/// Lets the write of this number get half of its bytes through; the next call fails if there is an
/// error.
void cut_short(std::size_t call, int error);
/// Makes every call of this kind on the file fail, also when it has got another name.
void fail_always(Kind kind, const std::string& path, int error);
/// True when the call to fail was reached.
bool failed();

/// Calls this once, before the next temporary file is made.
void before_temporary_file(std::function<void()> call);

}  // namespace recorded_calls
