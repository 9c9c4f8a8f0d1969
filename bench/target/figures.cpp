// What the library costs on the phone: a full profile, all twelve books of the search filled, and
// the things a user does, each between two marks for count_instructions. The host is the one of
// examples/services.c, so that little else is counted and resident. "prepare" writes the profile to
// an empty folder, "run" does the rest.
#include <cfgxml/cfgxml.h>
#include <cfgxml/host.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "generated.h"
#include "services.h"

namespace {

using generated::Person;

// The labels of the marks, as bench/target/run names them.
enum Label : std::size_t { kNothing, kLoad, kIndex, kRemote, kKey, kAdd, kAddAndSave, kSave };

constexpr int kMarkFile = 4095;

void mark(Label label) {
  if (write(kMarkFile, nullptr, label) >= 0) std::abort();  // no such file is open
}

/// Counts what one call costs.
template <typename Action>
void measure(Label label, const Action& action) {
  mark(kNothing);
  action();
  mark(label);
}

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

std::string remote_path(int book) { return "/tmp/remote_contact.xml" + std::to_string(book); }

void write_remote_book(const std::string& file, const std::vector<Person>& people) {
  std::ofstream out(file);
  out << "<Book>\n";
  for (const Person& person : people) {
    out << "<Contact Name=\"" << person.name << "\" Office=\"" << person.office << "\" Mobile=\""
        << person.mobile << "\" Other=\"" << person.other << "\"/>\n";
  }
  out << "</Book>\n";
}

/// One page with everyone.
void write_directory(const std::string& file, const std::vector<Person>& people) {
  std::ofstream out(file);
  out << "<Group xmlns=\"http://schema.broadsoft.com/xsi\"><startIndex>1</startIndex>"
      << "<numberOfRecords>" << people.size() << "</numberOfRecords><totalAvailableRecords>"
      << people.size() << "</totalAvailableRecords><groupDirectory>\n";
  for (const Person& person : people) {
    out << "<directoryDetails><firstName>" << person.name << "</firstName><number>" << person.office
        << "</number><mobile>" << person.mobile << "</mobile><extension>" << person.other
        << "</extension></directoryDetails>\n";
  }
  out << "</groupDirectory></Group>\n";
}

/// Six groups and 500 contacts, in the table and in the file.
void write_phonebook(const std::vector<Person>& people) {
  CONTACT_DATA_LIST_T& list = *cfg_get_contact_list();
  const char* const groups[] = {"Default", "Family", "Office", "Suppliers", "Customers", "Club"};
  for (int i = 0; i < CFGXML_GROUP_CAPACITY; ++i) {
    list.Groups[i].Id = i + 1;
    std::strcpy(list.Groups[i].Name, groups[i]);
    std::strcpy(list.Groups[i].Ring, "Auto");
  }
  for (std::size_t i = 0; i < people.size(); ++i) {
    list.Contacts[i] = generated::contact(people[i], static_cast<int>(i) + 1);
    std::strcpy(list.Contacts[i].Group, groups[i % CFGXML_GROUP_CAPACITY]);
  }
  require(contact_delay_save() == 0, "the phonebook is not written");
}

std::string directory_page(int list) { return "/directory" + std::to_string(list) + ".xml"; }

/// Writes the files of a full profile, and keys typed for 200 people of any book.
void prepare(const std::string& folder) {
  std::vector<Person> everyone = generated::people(CFGXML_CONTACT_CAPACITY, 1);
  const auto more = [&everyone](unsigned seed) {
    const auto people = generated::people(CFGXML_BOOK_RECORDS, seed);
    everyone.insert(everyone.end(), people.begin(), people.end());
    return people;
  };
  std::filesystem::create_directories(folder + "/config/Phone/Contact");
  std::filesystem::create_directories(folder + "/tmp");
  write_phonebook(everyone);
  unsigned seed = 10;
  for (int book = 0; book < CFGXML_REMOTE_BOOK_COUNT; ++book) {
    write_remote_book(folder + remote_path(book), more(seed++));
  }
  for (int list = 0; list < CFGXML_BROADSOFT_LIST_COUNT; ++list) {
    write_directory(folder + directory_page(list), more(seed++));
  }
  std::ofstream keys(folder + "/keys");
  for (const std::string& typed : generated::keys_for(everyone, 200, 3)) keys << typed << '\n';
}

/// Loads everything, as a phone does after its start.
void load(const std::string& folder) {
  measure(kLoad, [] { require(contact_init(cfg_get_contact_list()) == 0, "contacts"); });
  measure(kIndex, [] { CfgTrieReloadLocalBookInfo(); });
  for (int book = 0; book < CFGXML_REMOTE_BOOK_COUNT; ++book) {
    measure(kRemote, [&] {
      require(cfg_get_remote_contact_summary(remote_path(book).c_str()) != nullptr, "remote book");
      require(CfgTrieReloadRemoteBookInfo(book) == 0, "remote book in the search");
    });
  }
  for (int list = 0; list < CFGXML_BROADSOFT_LIST_COUNT; ++list) {
    BSFT_CONTACT_POS_T position{};
    const std::string page = folder + directory_page(list);
    cfg_append_broadsoft_simple_contact_summary(list, page.c_str(), &position);
    require(position.state == CFGXML_BROADSOFT_COMPLETE, "directory");
  }
}

/// A search after each key.
void type_keys(const std::string& folder) {
  std::ifstream lines(folder + "/keys");
  std::size_t found = 0;
  for (std::string keys; std::getline(lines, keys);) {
    for (std::size_t length = 1; length <= keys.size(); ++length) {
      const std::string typed = keys.substr(0, length);
      TRIE_RESULT_T* hits = nullptr;
      measure(kKey, [&] { found += CfgTrieSearchVague(typed.c_str(), &hits) > 0 ? 1 : 0; });
    }
  }
  require(found >= 200, "too little is found");
}

/// Adds the last 50 contacts once more, after they were deleted.
void add_contacts(Label label) {
  for (int id = CFGXML_CONTACT_CAPACITY; id > CFGXML_CONTACT_CAPACITY - 50; --id) {
    CONTACT_DATA_T& last = cfg_get_contact_list()->Contacts[CFGXML_CONTACT_CAPACITY - 1];
    CONTACT_DATA_T contact = last;
    require(cfg_del_contact_data(last.Id) == 0, "a contact is not deleted");
    measure(label, [&] { require(cfg_add_contact_data(&contact) == 0, "a contact is not added"); });
  }
}

/// Prints what is resident of the guest's mappings, which lie below 4 GB of qemu's.
void print_resident_memory() {
  std::ifstream maps("/proc/self/smaps");
  unsigned library = 0, others = 0, heap = 0;
  unsigned* kind = nullptr;
  for (std::string line; std::getline(maps, line);) {
    unsigned long long begin = 0, end = 0;
    unsigned resident = 0;
    if (std::sscanf(line.c_str(), "%llx-%llx ", &begin, &end) == 2) {
      const bool guests = end <= 0x100000000ULL;
      const bool files = line.find('/') != std::string::npos;
      const bool ours = line.find("/libcfgxml.so") != std::string::npos;
      kind = !guests ? nullptr : ours ? &library : files ? &others : &heap;
    } else if (kind != nullptr && std::sscanf(line.c_str(), "Rss: %u kB", &resident) == 1) {
      *kind += resident;
    }
  }
  require(library > 0, "the guest's memory is not where it was looked for");
  std::printf("resident, kB: libcfgxml.so %u, program and other libraries %u, data %u\n", library,
              others, heap);
}

unsigned heap_in_use() {
  const struct mallinfo2 heap = mallinfo2();
  return static_cast<unsigned>((heap.uordblks + heap.hblkhd) / 1024);
}

void run(const std::string& folder) {
  const unsigned before = heap_in_use();
  load(folder);
  std::printf("heap in use, kB: %u more than before the load\n", heap_in_use() - before);
  print_resident_memory();
  type_keys(folder);
  contact_save_init(1);
  add_contacts(kAdd);
  contact_save_init(0);
  add_contacts(kAddAndSave);
  measure(kSave, [] { contact_delay_save(); });
}

}  // namespace

int main(int argc, char** argv) {
  require(argc == 3, "usage: target_figures prepare|run FOLDER");
  cfgxml_set_root(argv[2]);
  cfgxml_cb_init(slots);
  std::strcmp(argv[1], "prepare") == 0 ? prepare(argv[2]) : run(argv[2]);
}
