// A directory page of 500 entries into a simple list, index and positions included, against loading
// the document and putting as many strings into the index.
#include <benchmark/benchmark.h>
#include <cfgxml/broadsoft.h>
#include <cfgxml/search.h>
#include <tinyxml2.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

/// One person of the directory, as the index gets it.
struct Person {
  int position = 0;
  char name[64] = {};
  char number[32] = {};
  char mobile[32] = {};
  char extension[32] = {};
};

std::vector<Person> people() {
  std::vector<Person> all(CFGXML_BROADSOFT_PAGE_CAPACITY);
  for (int i = 0; i < CFGXML_BROADSOFT_PAGE_CAPACITY; ++i) {
    Person& person = all[static_cast<std::size_t>(i)];
    std::snprintf(person.name, sizeof person.name, "First%d Last%03d", i % 40, i * 7 % 500);
    std::snprintf(person.number, sizeof person.number, "0207946%04d", i);
    std::snprintf(person.mobile, sizeof person.mobile, "07700900%03d", i);
    std::snprintf(person.extension, sizeof person.extension, "%d", 2000 + i);
  }
  return all;
}

/// The page that holds them, removed at exit.
class Page {
 public:
  Page() {
    std::FILE* file = ::fdopen(::mkstemp(path_.data()), "w");
    std::fputs(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<Group xmlns=\"http://schema.broadsoft.com/xsi\">\n<startIndex>1</startIndex>\n"
        "<numberOfRecords>500</numberOfRecords>\n"
        "<totalAvailableRecords>500</totalAvailableRecords>\n<groupDirectory>\n",
        file);
    for (const Person& person : people()) {
      const std::string name = person.name;
      const std::size_t blank = name.find(' ');
      std::fprintf(file,
                   "<directoryDetails>\n<userId>%s@example.net</userId>\n"
                   "<firstName>%s</firstName>\n<lastName>%s</lastName>\n"
                   "<groupId>example</groupId>\n<number>%s</number>\n<mobile>%s</mobile>\n"
                   "<extension>%s</extension>\n<department>Sales</department>\n"
                   "</directoryDetails>\n",
                   person.extension, name.substr(0, blank).c_str(), name.substr(blank + 1).c_str(),
                   person.number, person.mobile, person.extension);
    }
    std::fputs("</groupDirectory>\n</Group>\n", file);
    std::fclose(file);
  }
  ~Page() { ::unlink(path_.c_str()); }
  const char* path() const { return path_.c_str(); }

 private:
  std::string path_ = "/tmp/page-XXXXXX";
};

const Page& page() {
  static const Page file;
  return file;
}

void ours(benchmark::State& state) {
  for (auto _ : state) {
    BSFT_CONTACT_POS_T pos = {};
    cfg_append_broadsoft_simple_contact_summary(0, page().path(), &pos);
    state.PauseTiming();
    if (pos.state != CFGXML_BROADSOFT_COMPLETE || pos.total != CFGXML_BROADSOFT_PAGE_CAPACITY) {
      state.SkipWithError("the page was not read as a whole");
    }
    cfg_destory_broadsoft_simple_conatct_list(0);
    state.ResumeTiming();
  }
}
BENCHMARK(ours)->Name("directory page of 500 entries, indexed:ours");

void plain(benchmark::State& state) {
  std::vector<Person> all = people();
  const auto each_text = [&](int (*change)(const char*, const TRIE_INFO_T*)) {
    for (Person& person : all) {
      const TRIE_INFO_T info = {CFGXML_BOOK_BROADSOFT_FIRST, &person};
      for (const char* text : {person.name, person.number, person.mobile, person.extension}) {
        change(text, &info);
      }
    }
  };
  for (auto _ : state) {
    tinyxml2::XMLDocument document;
    benchmark::DoNotOptimize(document.LoadFile(page().path()));
    each_text(TrieIncreaseInfo);
    state.PauseTiming();
    each_text(TrieDecreaseInfo);
    state.ResumeTiming();
  }
}
BENCHMARK(plain)->Name("directory page of 500 entries, indexed:load and index inserts");

}  // namespace
