// Files to import, made of choices.
#pragma once

#include <string>

#include "calls/choices.h"

namespace calls {

std::string contact_file(Choices& choices);
std::string contact_csv_file(Choices& choices);
std::string blacklist_file(Choices& choices);
std::string history_file(Choices& choices);
/// list is "DialNow" or "DialReplace".
std::string rule_file(Choices& choices, const char* list);
std::string remote_book_file(Choices& choices);
std::string directory_page_file(Choices& choices);

}  // namespace calls
