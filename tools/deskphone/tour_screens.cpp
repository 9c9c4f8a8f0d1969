#include "tour_screens.h"

#include <fmt/format.h>

#include "profile.h"
#include "screens.h"
#include "tour.h"

namespace deskphone {
namespace {

constexpr char kMenu[] = "Services.xml";
constexpr std::size_t kLeastEntries = 3;  // those with fixed element names
constexpr int kTagNames = 46;
constexpr int kRootPrefix = 0;

void install_factory_documents(const Phone& phone) {
  namespace fs = std::filesystem;
  const fs::path folder = phone.host().on_disk("/app/factory/Static/XMLBrowser/");
  if (fs::exists(folder / kMenu)) return;
  fs::create_directories(folder);
  fs::copy(samples() / "profile/app/factory/Static/XMLBrowser", folder,
           fs::copy_options::recursive | fs::copy_options::skip_existing);
}

}  // namespace

void tour_screens(Phone& phone) {
  install_factory_documents(phone);
  const Screen menu = open_factory_screen(phone, kMenu);
  fmt::print("{}", menu.drawing);
  expect_on_tour(!menu.fields["Items"].empty(), "The menu has items");

  // The sample has the default prefix, whatever the profile's settings say.
  phone.host().settings().set(kTagNames, kRootPrefix, "IPPhone");
  const std::string file = (samples() / "screens" / "directory.xml").string();
  const Screen directory = open_screen(phone, file, file);
  fmt::print("{}", directory.drawing);
  expect_on_tour(directory.fields["Entries"].size() >= kLeastEntries,
                 "The directory has its entries");
}

}  // namespace deskphone
