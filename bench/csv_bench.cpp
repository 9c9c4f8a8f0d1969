// Importing a full contact CSV file, against splitting its lines and copying the fields.
#include <benchmark/benchmark.h>
#include <cfgxml/csv.h>
#include <cfgxml/host.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

constexpr int kFields = 25;

/// A file of 500 contacts in five groups, removed at exit.
class ContactFile {
 public:
  ContactFile() {
    std::FILE* file = ::fdopen(::mkstemp(path_.data()), "w");
    std::fputs(
        "FN,N,EMAIL,TEL_HOME,TEL_WORK,TEL_MOBILE,TEL_OTHER,TEL_FAX,TEL_CUSTOM,RING,COMPANY,TITLE,"
        "ADDR_MAIN,ADDR_OTHER,IMS,WEB,NOTES,BIRTHDAY,X-IRMC-LUID,GROUP,GROUP_RING,"
        "GROUP_DESCRIPTION,PHOTO,LINE,END\n",
        file);
    for (int i = 0; i < CFGXML_CONTACT_CAPACITY; ++i) {
      std::fprintf(file,
                   "Colleague %03d,Colleague %03d,c%d@example.net,,%d,07700900%03d,%d,,,Ring%d.wav,"
                   "Example,,1 High Street,,,,,,,Team %d,Ring%d.wav,The team,photo%d.png,%d,END\n",
                   i, i, i, 2000 + i, i, 30000 + i, i % 5, i % 5, i % 5, i % 7, i % 3);
    }
    std::fclose(file);
  }
  ~ContactFile() { ::unlink(path_.c_str()); }
  const char* path() const { return path_.c_str(); }

 private:
  std::string path_ = "/tmp/contacts-XXXXXX";
};

const ContactFile& contact_file() {
  static const ContactFile file;
  return file;
}

// --- The plain way: no trimming, no groups, no name checks.

template <std::size_t Capacity>
void copy(char (&field)[Capacity], const char* text) {
  std::strncpy(field, text, Capacity - 1);
}

void copy_fields(CONTACT_DATA_T& contact, char* (&fields)[kFields]) {
  copy(contact.DisplayName, fields[0]);
  copy(contact.OfficeNumber, fields[4]);
  copy(contact.MobileNumber, fields[5]);
  copy(contact.OtherNumber, fields[6]);
  copy(contact.Ring, fields[9]);
  copy(contact.Group, fields[19]);
  copy(contact.Photo, fields[22]);
  contact.Line = std::atoi(fields[23]);
}

int plain_import(const char* path, CONTACT_DATA_LIST_T& list) {
  std::memset(&list, 0, sizeof list);
  std::FILE* file = std::fopen(path, "r");
  char line[4096];
  if (std::fgets(line, sizeof line, file) == nullptr) return -1;
  int count = 0;
  while (count < CFGXML_CONTACT_CAPACITY && std::fgets(line, sizeof line, file) != nullptr) {
    char* fields[kFields] = {line};
    int found = 1;
    for (char* at = line; *at != '\0'; ++at) {
      if (*at != ',' || found == kFields) continue;
      *at = '\0';
      fields[found++] = at + 1;
    }
    if (found != kFields) continue;
    CONTACT_DATA_T& contact = list.Contacts[count++];
    copy_fields(contact, fields);
    contact.Id = count;
  }
  std::fclose(file);
  return count;
}

void ours(benchmark::State& state) {
  for (auto _ : state) {
    if (get_contact_csv(contact_file().path(), cfg_get_contact_list()) != 0) {
      state.SkipWithError("the file was not read as a whole");
    }
  }
}
BENCHMARK(ours)->Name("import of 500 CSV rows:ours");

void plain(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(plain_import(contact_file().path(), *cfg_get_contact_list()));
  }
}
BENCHMARK(plain)->Name("import of 500 CSV rows:split and copy");

}  // namespace
