// deskphone screen: a document of the XML browser as the phone would show it.
#include <fmt/format.h>

#include <memory>
#include <string>

#include "commands.h"
#include "failure.h"
#include "screens.h"

namespace deskphone {
namespace {

struct Arguments {
  std::string file;
  std::string cached;
};

Screen open(const Phone& phone, const Arguments& arguments) {
  if (arguments.file.empty() == arguments.cached.empty()) {
    throw Failure("Name one document: a FILE, or a factory document with --cached NAME.");
  }
  if (!arguments.cached.empty()) return open_factory_screen(phone, arguments.cached);
  return open_screen(phone, arguments.file, arguments.file);
}

}  // namespace

void add_screen_command(Command app, Phone& phone) {
  auto arguments = std::make_shared<Arguments>();
  Command command = add_command(
      app, "screen",
      "Show a document of the XML browser: a text screen, a menu, a directory, a form or key "
      "assignments. Section 46 of the settings names its elements.",
      "screen samples/screens/text_menu.xml\n"
      "screen --cached Services.xml\n"
      "--json screen samples/screens/input_screen.xml");
  command.add_option("file", arguments->file, "The document");
  command.add_option("--cached", arguments->cached, "A factory document, by its file name");
  on_run(command, phone, [&phone, arguments] {
    const Screen screen = open(phone, *arguments);
    if (phone.output().json()) {
      fmt::print("{}\n", json_text(screen.fields));
    } else {
      fmt::print("{}", screen.drawing);
    }
  });
}

}  // namespace deskphone
