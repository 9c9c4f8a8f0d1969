// How a command fails: one sentence that names the file or argument and says what to do.
#pragma once

#include <stdexcept>
#include <string>

namespace deskphone {

/// main prints it on standard error and ends with exit status 1.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a result of the phonebook is about.
struct Subject {
  const char* kind;    // "contact"
  const char* family;  // its commands: "contacts"
  int id = 0;          // 0 for a new record
  std::string name;
};

/// Throws the Failure that a result other than 0 stands for.
void expect_success(int result, const Subject& subject);

/// What was left out when a file was loaded with this result, as a sentence; "" when nothing was.
std::string loading_note(int result);

}  // namespace deskphone
