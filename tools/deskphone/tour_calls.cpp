#include "tour_calls.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

#include "calls.h"
#include "text.h"
#include "tour.h"

namespace deskphone {
namespace {

constexpr std::size_t kListed = 4;

std::ptrdiff_t count_of(const std::vector<HISTORY_SUMMARY_T>& calls, int type) {
  return std::count_if(calls.begin(), calls.end(),
                       [type](const HISTORY_SUMMARY_T& call) { return call.Type == type; });
}

void print_latest(const std::vector<HISTORY_SUMMARY_T>& calls) {
  for (std::size_t i = 0; i < std::min(kListed, calls.size()); ++i) {
    const Row row = row_of(calls[i]);
    const auto cell = [&row](const char* field, std::size_t columns) {
      return fit(printable(row[field].get<std::string>()), columns);
    };
    fmt::print("    {}  {}  {}  {}  {}\n", cell("type", 8), cell("date", 10), cell("time", 8),
               cell("name", 22), printable(calls[i].RemoteSipName));
  }
}

/// A contact's number that calls on any line; the tour has added one. The lists cut longer ones.
std::string known_number(const Phone& phone) {
  constexpr std::size_t kLongest = sizeof CONTACT_SUMMARY_T::MobileNumber - 2;
  for (const CONTACT_SUMMARY_T& contact : phone.phonebook().contacts()) {
    const std::size_t length = std::strlen(contact.MobileNumber);
    if (contact.Line == 0 && length > 0 && length <= kLongest) return contact.MobileNumber;
  }
  return "";
}

}  // namespace

void tour_calls(Phone& phone) {
  const History history(phone.plugin());
  const std::string number = known_number(phone);
  const IncomingCall known = play_call(phone, 1, number, "", 0);
  fmt::print("  It rings: {}\n", printable(known.screen));
  expect_on_tour(!history.name_of(number, "", 1).empty(), "The caller's name is found");

  const IncomingCall stranger = play_call(phone, 2, "+44 20 7946 0999", "R. Okafor", 40);
  fmt::print("  It rings: {}\n", printable(stranger.screen));

  const std::vector<HISTORY_SUMMARY_T> calls = history.calls();
  fmt::print("  {} in the history, {} missed; the latest:\n", counted(calls.size(), "calls"),
             count_of(calls, kMissed));
  print_latest(calls);
  expect_on_tour(calls.size() >= 2 && calls[0].ID == stranger.record.ID &&
                     calls[1].RemoteDisplayName[0] != '\0',
                 "Both calls are listed, the latest first, the known caller by name");
}

}  // namespace deskphone
