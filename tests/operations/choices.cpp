#include "operations/choices.h"

namespace operations {

const char* Choices::keep(std::optional<std::string> text) {
  return text ? texts_.emplace_back(*std::move(text)).c_str() : nullptr;
}

/// Where it varies: now and then another text that some record has.
const char* Choices::text(const std::string& plain, Argument kind) {
  if (odd(kind)) return keep(odd_text());
  switch (varies() ? number(0, 0, 7) : 0) {
    case 1:
      return keep(name(""));
    case 2:
      return keep(phone_number(""));
    case 3:
    case 4:
      return keep(group(""));
    case 5:
      return keep(word(""));
    default:
      return keep(plain);
  }
}

const char* Choices::path(const std::string& file, Argument kind) {
  if (!odd(kind)) return keep(file);
  std::optional<std::string> text = odd_text();
  if (varies() && text && !text->empty()) text = "/nowhere/" + *text;  // so that none is written
  return keep(std::move(text));
}

/// One of a small number of texts, so that callers meet each other's records.
std::string Choices::one_of(const char* plain, const char* stem, int count) {
  if (odd(Argument::kContent)) return odd_text().value_or("");
  return varies() ? stem + std::to_string(number(0, 0, count - 1)) : plain;
}

std::string Choices::name(const char* plain) {
  static constexpr const char* kStems[] = {"Anna ", "anna ", "Bo & ", "Ören <", "Z\""};
  return one_of(plain, kStems[number(0, 0, 4)], 25);
}

std::string Choices::phone_number(const char* plain) {
  if (varies() && number(0, 0, 3) == 0) return "";
  return one_of(plain, flag() ? "555" : "+49 30", 40);
}

std::string Choices::group(const char* plain) {
  if (varies() && number(0, 0, 3) == 0) return "Default";
  return one_of(plain, "Team ", 7);
}

std::string Choices::word(const char* plain) { return one_of(plain, flag() ? "55" : "n", 3); }

void fill_record(CONTACT_DATA_T& record, Choices& choices) {
  record.Id = choices.id(2);
  record.Line = choices.line();
  fill(record.DisplayName, choices.name("Dora, who is not in the phonebook yet"));
  fill(record.OfficeNumber, choices.phone_number("100"));
  fill(record.MobileNumber, choices.phone_number("0171 3920039"));
  fill(record.OtherNumber, choices.phone_number(""));
  fill(record.Group, choices.group("Sales"));
  fill(record.Ring, choices.word("Auto"));
  fill(record.Photo, choices.word("Default"));
}

/// Ids from 2 on: a careful caller takes them from the summary, which leaves "Default" out.
void fill_record(GROUP_DATA_T& record, Choices& choices) {
  record.Id = choices.odd(Argument::kId) ? choices.odd_number() : choices.number(3, 2, 9);
  fill(record.Name, choices.group("Home"));
  fill(record.Ring, choices.word("Auto"));
  fill(record.Description, choices.name("\"Desk\" & lab"));
}

void fill_record(HISTORY_DATA_T& record, Choices& choices) {
  record.CallID = choices.number(7, 1, 400);
  record.Type = choices.number(1, 0, 4);
  record.Status = choices.line();
  fill(record.Date, "2024-05-0" + std::to_string(choices.number(3, 1, 9)));
  fill(record.Time, "12:00:0" + std::to_string(choices.number(0, 0, 9)));
  fill(record.LocalSipName, "212");
  fill(record.LocalSipServer, "pbx.example.com");
  record.LocalSipPort = 5060;
  fill(record.RemoteSipName, choices.phone_number("100"));
  fill(record.RemoteSipServer, choices.word("pbx.example.com"));
  fill(record.RemoteDisplayName, choices.name("?"));
  record.RemoteSipPort = choices.line();
  fill(record.CallDuration, "00:00:12");
}

void fill_record(DIAL_NOW_DATA_T& record, Choices& choices) {
  record.Line = choices.line();
  fill(record.Rule, choices.phone_number("5xxx"));
}

void fill_record(DIAL_REPLACE_DATA_T& record, Choices& choices) {
  record.Line = choices.line();
  fill(record.Prefix, choices.phone_number("8"));
  fill(record.Replace, choices.phone_number("+44"));
}

void fill_record(BLOCKOUT_DATA_T& record, Choices& choices) {
  record.Line = choices.line();
  fill(record.Rule, choices.phone_number("902"));
}

void fill_record(SMS_DATA_T& record, Choices& choices) {
  record.status = choices.number(1, 0, 1);
  record.port = choices.line();
  fill(record.from_user, choices.phone_number("103"));
  fill(record.from_display, choices.name(""));
  fill(record.to_user, choices.phone_number("212"));
  fill(record.to_display, choices.name("Front desk"));
  fill(record.content, choices.name("A \"new\" message & more"));
  fill(record.date, choices.word("2024-05-03"));
  fill(record.time, choices.word("12:00:00"));
}

void fill_record(NOTIFICATION_T& record, Choices& choices) {
  record.Notify = choices.line();
  fill(record.Name, choices.word("Device.Time.LocalTimeZone"));
}

}  // namespace operations
