// Documents of the XML browser, opened as the phone's user interface opens them.
#pragma once

#include <optional>
#include <string>

#include "output.h"
#include "phone.h"

namespace deskphone {

/// What a document shows, and its object field by field.
struct Screen {
  std::string drawing;
  Row fields;
};

/// Opens the document in a file; name is what the user calls it. Throws Failure that says what is
/// wrong with it.
Screen open_screen(const Phone& phone, const std::string& path, const std::string& name);

/// Opens a factory document, from the plug-in's cache of them, by its file name.
Screen open_factory_screen(const Phone& phone, const std::string& name);

}  // namespace deskphone
