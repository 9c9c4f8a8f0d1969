#include "generated.h"

#include <algorithm>
#include <cstdio>
#include <random>
#include <set>
#include <string_view>

namespace generated {
namespace {

using Random = std::minstd_rand;

constexpr const char* kFirstNames[] = {
    "Anna",   "Bernd",   "Carla",  "Dmitri",  "Elena", "Farid",   "Greta",   "Hassan",  "Ingrid",
    "Jan",    "Katrin",  "Liam",   "Marta",   "Noah",  "Olga",    "Pablo",   "Quentin", "Rosa",
    "Stefan", "Tomás",   "Ursula", "Viktor",  "Wanda", "Xenia",   "Yusuf",   "Zoë",     "Jörg",
    "Łukasz", "Mei",     "Haruto", "Aisha",   "Björn", "Chloé",   "Diego",   "Emma",    "Søren",
    "Maria",  "Michael", "Thomas", "Sabine",  "Peter", "Andrea",  "Claudia", "Daniel",  "Martin",
    "Monika", "Robert",  "Sandra", "Barbara", "David", "Johanna", "Paul",    "Laura",   "Simon",
};
constexpr const char* kLastNames[] = {
    "Abel",    "Bauer",      "Costa",    "Díaz",      "Eriksen", "Fischer",  "García",  "Hofmann",
    "Ivanova", "Jensen",     "Kowalski", "Lindqvist", "Müller",  "Nakamura", "O'Brien", "Petrov",
    "Quist",   "Rossi",      "Schmidt",  "Tanaka",    "Ueda",    "Varga",    "Weber",   "Ximénez",
    "Yılmaz",  "Zimmermann", "van Dijk", "de Vries",  "Krüger",  "Schäfer",  "Novák",   "Horvat",
    "Becker",  "Keller",     "Lehmann",  "Wagner",    "Schulz",  "Richter",  "Klein",   "Wolf",
    "Neumann", "Schwarz",    "Braun",    "Hartmann",  "Lange",   "Werner",   "Krause",  "Meier",
};
constexpr const char* kDepartments[] = {"Sales", "Support", "Lab", "Reception", "Warehouse", "Fax"};

/// Number formats of several countries; # stands for a digit.
constexpr const char* kOfficeFormats[] = {"+49 30 901820###", "+49 30 901820##", "030901820###",
                                          "0441632960###",    "+4121555####",    "2125550###",
                                          "+33 1 70 18 ## ##"};
constexpr const char* kMobileFormats[] = {"0171 #######",    "0160#######", "+49 151 ########",
                                          "+44 7700 900###", "07700900###", "+1 (917) 555-0###"};
constexpr const char* kOtherFormats[] = {"4###", "7##", "030 4405####", "+43 1 9######"};

template <std::size_t Size>
const char* any_of(const char* const (&choices)[Size], Random& random) {
  return choices[random() % Size];
}

bool chance(unsigned percent, Random& random) { return random() % 100 < percent; }

std::string name(Random& random) {
  if (chance(5, random)) {
    return std::string(any_of(kLastNames, random)) + " " + any_of(kDepartments, random);
  }
  const std::string first = any_of(kFirstNames, random);
  const std::string last = any_of(kLastNames, random);
  return chance(30, random) ? last + ", " + first : first + " " + last;
}

std::string number(std::string format, Random& random) {
  for (char& sign : format) {
    if (sign == '#') sign = static_cast<char>('0' + random() % 10);
  }
  return format;
}

char key_of(char character) {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz";
  constexpr std::string_view kKeys = "22233344455566677778889999";
  if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  if (character == ' ' || character == '+') return '0';
  const std::size_t letter = kLetters.find(character);
  return letter != std::string_view::npos ? kKeys[letter] : character;
}

bool is_key(char key) { return (key >= '0' && key <= '9') || key == '*'; }

/// The keys for the text up to what no key stands for.
std::string keys_of(const std::string& text, std::size_t length) {
  std::string keys;
  for (const char character : text.substr(0, length)) {
    const char key = key_of(character);
    if (!is_key(key)) break;
    keys += key;
  }
  return keys;
}

}  // namespace

std::vector<Person> people(std::size_t count, unsigned seed) {
  Random random(seed);
  std::vector<Person> people;
  std::set<std::string> taken;
  while (people.size() < count) {
    Person person{name(random), number(any_of(kOfficeFormats, random), random), "", ""};
    if (!taken.insert(person.name).second) {
      person.name += " " + std::to_string(people.size());
      taken.insert(person.name);
    }
    if (chance(85, random)) person.mobile = number(any_of(kMobileFormats, random), random);
    if (chance(55, random)) person.other = number(any_of(kOtherFormats, random), random);
    people.push_back(person);
  }
  return people;
}

CONTACT_DATA_T contact(const Person& person, int id) {
  CONTACT_DATA_T contact{};
  contact.Id = id;
  std::snprintf(contact.DisplayName, sizeof contact.DisplayName, "%s", person.name.c_str());
  std::snprintf(contact.OfficeNumber, sizeof contact.OfficeNumber, "%s", person.office.c_str());
  std::snprintf(contact.MobileNumber, sizeof contact.MobileNumber, "%s", person.mobile.c_str());
  std::snprintf(contact.OtherNumber, sizeof contact.OtherNumber, "%s", person.other.c_str());
  std::snprintf(contact.Group, sizeof contact.Group, "Default");
  std::snprintf(contact.Ring, sizeof contact.Ring, "Auto");
  std::snprintf(contact.Photo, sizeof contact.Photo, "Default");
  return contact;
}

std::vector<std::string> keys_for(const std::vector<Person>& people, std::size_t count,
                                  unsigned seed) {
  Random random(seed);
  std::vector<std::string> typed;
  while (typed.size() < count) {
    const Person& person = people[random() % people.size()];
    const std::string* texts[] = {&person.name, &person.office, &person.mobile, &person.other};
    const std::string keys = keys_of(*texts[random() % 4], 1 + random() % 8);
    if (!keys.empty()) typed.push_back(keys);
  }
  return typed;
}

}  // namespace generated
