#include "calls/files.h"

#include <functional>

namespace calls {
namespace {

std::string escaped(const std::string& text) {
  std::string result;
  for (const char byte : text) {
    switch (byte) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += byte;
    }
  }
  return result;
}

std::string attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + escaped(value) + "\"";
}

std::string child(const char* name, const std::string& text) {
  return std::string("<") + name + ">" + escaped(text) + "</" + name + ">";
}

/// The entries of a file, with their places from 1 on: a few, seldom more than any list takes.
std::string entries(Choices& choices, const std::function<std::string(int)>& entry) {
  int count = choices.number(0, 6);
  if (choices.odd()) count = choices.number(0, 620);
  std::string text;
  for (int place = 1; place <= count && text.size() < 200000; ++place) text += entry(place);
  return text;
}

/// Ids in a file are in the file's hands; these are unique and leave room behind them.
std::string numbers(Choices& choices) {
  return attribute("OfficeNumber", choices.phone_number()) +
         attribute("MobileNumber", choices.phone_number()) +
         attribute("OtherNumber", choices.phone_number());
}

/// Mostly one of its own, so that long files fill a list.
std::string name_of_entry(Choices& choices, const char* stem, int place) {
  return choices.number(0, 3) == 3 ? choices.name() : stem + std::to_string(place);
}

std::string contact_entry(Choices& choices, const char* element, int id) {
  return std::string("<") + element + attribute("Id", std::to_string(id)) +
         attribute("Line", std::to_string(choices.line())) +
         attribute("DisplayName", name_of_entry(choices, element, id)) + numbers(choices) +
         attribute("Ring", "Auto") + attribute("Photo", "Default") + "/>";
}

std::string remote_entry(Choices& choices, int place) {
  if (choices.number(0, 15) != 0) {
    return "<Contact" + attribute("Name", name_of_entry(choices, "Remote ", place)) +
           numbers(choices) + "/>";
  }
  return "<DirectoryEntry>" + child("Name", choices.name()) +
         child("Telephone", choices.phone_number()) + "</DirectoryEntry>";
}

std::string directory_entry(Choices& choices, int place) {
  return "<entry>" + child("firstName", name_of_entry(choices, "Listed ", place)) +
         child("lastName", choices.word()) + child("number", choices.phone_number()) +
         child("mobile", choices.phone_number()) + "</entry>";
}

}  // namespace

std::string contact_file(Choices& choices) {
  if (choices.odd()) return choices.odd_text();
  std::string text = "<ContactData>";
  int id = 0;
  const int groups = choices.number(1, 7);
  for (int group = 1; group <= groups; ++group) {
    const std::string name = group == 1 && !choices.odd() ? "Default" : choices.group();
    text += "<Group" + attribute("Id", std::to_string(group)) + attribute("Name", name) +
            attribute("Ring", "Auto") + ">";
    text += entries(choices, [&](int) { return contact_entry(choices, "Contact", ++id); });
    text += "</Group>";
  }
  return text + "</ContactData>";
}

std::string contact_csv_file(Choices& choices) {
  return "FN,N,EMAIL,TEL_HOME,TEL_WORK,TEL_MOBILE,TEL_OTHER,TEL_FAX,TEL_CUSTOM,RING,COMPANY,TITLE,"
         "ADDR_MAIN,ADDR_OTHER,IMS,WEB,NOTES,BIRTHDAY,X-IRMC-LUID,GROUP,GROUP_RING,"
         "GROUP_DESCRIPTION,PHOTO,LINE,END\n" +
         entries(choices, [&](int place) {
           const std::string name = name_of_entry(choices, "Row ", place);
           return name + "," + name + ",,," + choices.phone_number() + "," +
                  choices.phone_number() + ",,,,Auto,,,,,,,,,," + choices.group() +
                  ",Auto,,Default," + std::to_string(choices.line()) + ",END\n";
         });
}

std::string blacklist_file(Choices& choices) {
  if (choices.odd()) return choices.odd_text();
  return "<BlacklistData>" +
         entries(choices, [&](int id) { return contact_entry(choices, "Blacklist", id); }) +
         "</BlacklistData>";
}

std::string history_file(Choices& choices) {
  if (choices.odd()) return choices.odd_text();
  return "<History>" +
         entries(choices,
                 [&](int id) {
                   return "<Call" + attribute("ID", std::to_string(choices.odd() ? -id : id)) +
                          attribute("Type", std::to_string(choices.number(0, 3))) +
                          attribute("RemoteSipName", choices.phone_number()) +
                          attribute("Date", choices.name()) + "/>";
                 }) +
         "</History>";
}

std::string rule_file(Choices& choices, const char* list) {
  if (choices.odd()) return choices.odd_text();
  const std::string element = list;
  return "<Dial><" + element + ">" +
         entries(choices,
                 [&](int id) {
                   const std::string text = std::to_string(id);
                   return "<Data" + attribute("ID", text) + attribute("Rule", text) +
                          attribute("Prefix", text) + attribute("Replace", choices.phone_number()) +
                          "/>";
                 }) +
         "</" + element + "></Dial>";
}

std::string remote_book_file(Choices& choices) {
  if (choices.odd()) return choices.odd_text();
  return "<Book>" + entries(choices, [&](int place) { return remote_entry(choices, place); }) +
         "</Book>";
}

std::string directory_page_file(Choices& choices) {
  if (choices.odd()) return choices.odd_text();
  const auto count = [&] {
    return std::to_string(choices.odd() ? choices.odd_number() : choices.number(1, 20));
  };
  std::string page = "<Personal xmlns=\"http://schema.broadsoft.com/xsi\">";
  page += child("startIndex", count()) + child("numberOfRecords", count());
  if (choices.flag()) page += child("totalAvailableRecords", count());
  return page + entries(choices, [&](int place) { return directory_entry(choices, place); }) +
         "</Personal>";
}

}  // namespace calls
