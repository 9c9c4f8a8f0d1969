#include "calls/choices.h"

namespace calls {

/// One of a small number of texts, so that callers meet each other's records.
std::string Choices::pick(const char* stem, int count) {
  if (odd()) return odd_text();
  return stem + std::to_string(number(0, count - 1));
}

std::string Choices::name() {
  static constexpr const char* kStems[] = {"Anna ", "anna ", "Bo & ", "Ören <", "Z\""};
  return pick(kStems[number(0, 4)], 25);
}

std::string Choices::phone_number() {
  return number(0, 3) == 0 ? std::string() : pick(flag() ? "555" : "+49 30", 40);
}

std::string Choices::group() { return number(0, 3) == 0 ? "Default" : pick("Team ", 7); }

std::string Choices::word() { return pick(flag() ? "55" : "n", 3); }

std::string Choices::keys() {
  if (odd()) return odd_text();
  std::string keys;
  for (int length = number(0, 3); length != 0; --length) keys += "0123456789*"[number(0, 10)];
  return keys;
}

/// Texts are terminated, as the interface demands of every record.
CONTACT_DATA_T Choices::contact() {
  CONTACT_DATA_T record{};
  record.Id = id();
  record.Line = line();
  fill(record.DisplayName, name());
  fill(record.OfficeNumber, phone_number());
  fill(record.MobileNumber, phone_number());
  fill(record.OtherNumber, phone_number());
  fill(record.Group, group());
  fill(record.Ring, pick("Ring", 3));
  fill(record.Photo, pick("Photo", 3));
  return record;
}

HISTORY_DATA_T Choices::history() {
  HISTORY_DATA_T call{};
  call.CallID = id();
  call.Type = number(0, 4);
  call.Status = line();
  fill(call.Date, "2024-05-0" + std::to_string(number(1, 9)));
  fill(call.Time, "12:00:0" + std::to_string(number(0, 9)));
  fill(call.LocalSipName, pick("20", 3));
  fill(call.LocalSipServer, "pbx.example.com");
  call.LocalSipPort = 5060;
  fill(call.RemoteSipName, phone_number());
  fill(call.RemoteSipServer, pick("server", 3));
  fill(call.RemoteDisplayName, name());
  call.RemoteSipPort = line();
  fill(call.CallDuration, pick("00:0", 9));
  return call;
}

}  // namespace calls
