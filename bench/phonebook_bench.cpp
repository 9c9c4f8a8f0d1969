// Loading, listing and saving a full phonebook, beside what tinyxml2 and a sort alone need.
#include <benchmark/benchmark.h>
#include <cfgxml/binding.h>
#include <cfgxml/phonebook.h>
#include <tinyxml2.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "generated.h"
#include "host.h"
#include "scratch_folder.h"

namespace {

constexpr char kPath[] = "/config/Phone/Contact/Contact.xml";

/// The host with a full phonebook, which is also on disk.
class FullPhonebook {
 public:
  explicit FullPhonebook(Medium medium = Medium::kMemory) : folder_(medium) {
    host::the_host().callbacks();
    file_ = folder_.write(kPath, "<ContactData/>");
    CONTACT_DATA_LIST_T& list = contacts();
    std::memset(&list, 0, sizeof list);
    std::strcpy(list.Groups[0].Name, "Default");
    std::strcpy(list.Groups[0].Ring, "Auto");
    list.Groups[0].Id = 1;
    int id = 0;
    for (const generated::Person& person : generated::people(CFGXML_CONTACT_CAPACITY, 3)) {
      list.Contacts[id] = generated::contact(person, id + 1);
      ++id;
    }
    if (save_contact_xml(kPath, &list) != 0) std::abort();
  }
  ~FullPhonebook() { std::memset(&contacts(), 0, sizeof contacts()); }
  FullPhonebook(const FullPhonebook&) = delete;
  FullPhonebook& operator=(const FullPhonebook&) = delete;

  static CONTACT_DATA_LIST_T& contacts() { return host::the_host().lists().contacts(); }
  const char* file() const { return file_.c_str(); }

 private:
  ScratchFolder folder_;
  std::string file_;
};

void load_ours(benchmark::State& state) {
  const FullPhonebook phonebook;
  for ([[maybe_unused]] auto step : state) {
    if (get_contact_xml(kPath, &FullPhonebook::contacts()) != 0) state.SkipWithError("not loaded");
  }
}
BENCHMARK(load_ours)->Name("load 500 contacts:ours");

std::size_t touch(const tinyxml2::XMLElement* element) {
  std::size_t bytes = 0;
  for (; element != nullptr; element = element->NextSiblingElement()) {
    for (const tinyxml2::XMLAttribute* attribute = element->FirstAttribute(); attribute != nullptr;
         attribute = attribute->Next()) {
      bytes += std::strlen(attribute->Name()) + std::strlen(attribute->Value());
    }
    bytes += touch(element->FirstChildElement());
  }
  return bytes;
}

void load_plain(benchmark::State& state) {
  const FullPhonebook phonebook;
  for ([[maybe_unused]] auto step : state) {
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    document.LoadFile(phonebook.file());
    benchmark::DoNotOptimize(touch(document.RootElement()));
  }
}
BENCHMARK(load_plain)->Name("load 500 contacts:tinyxml2 alone");

void list_ours(benchmark::State& state) {
  const FullPhonebook phonebook;
  for ([[maybe_unused]] auto step : state) {
    cfg_destory_contact_summary(cfg_get_contact_summary(""));
  }
}
BENCHMARK(list_ours)->Name("list 500 contacts sorted:ours");

void list_plain(benchmark::State& state) {
  const FullPhonebook phonebook;
  for ([[maybe_unused]] auto step : state) {
    const CONTACT_DATA_T* contacts = FullPhonebook::contacts().Contacts;
    std::vector<CONTACT_DATA_T> copies(contacts, contacts + CFGXML_CONTACT_CAPACITY);
    std::stable_sort(copies.begin(), copies.end(),
                     [](const CONTACT_DATA_T& left, const CONTACT_DATA_T& right) {
                       return std::strcmp(left.DisplayName, right.DisplayName) < 0;
                     });
    benchmark::DoNotOptimize(copies.data());
  }
}
BENCHMARK(list_plain)->Name("list 500 contacts sorted:stable_sort of copies");

void save_ours(benchmark::State& state, Medium medium) {
  const FullPhonebook phonebook(medium);
  for ([[maybe_unused]] auto step : state) {
    if (save_contact_xml(kPath, &FullPhonebook::contacts()) != 0) state.SkipWithError("not saved");
  }
}
BENCHMARK_CAPTURE(save_ours, _, Medium::kMemory)->Name("save 500 contacts:ours")->UseRealTime();
BENCHMARK_CAPTURE(save_ours, _, Medium::kDisk)->Name("save 500, on disk:ours")->UseRealTime();

void refill(tinyxml2::XMLDocument& document) {
  document.RootElement()->DeleteChildren();
  tinyxml2::XMLElement* group = document.RootElement()->InsertNewChildElement("Group");
  group->SetAttribute("Id", 1);
  group->SetAttribute("Name", "Default");
  group->SetAttribute("Ring", "Auto");
  group->SetAttribute("Description", "");
  for (const CONTACT_DATA_T& contact : FullPhonebook::contacts().Contacts) {
    tinyxml2::XMLElement* element = group->InsertNewChildElement("Contact");
    element->SetAttribute("Id", contact.Id);
    element->SetAttribute("Line", contact.Line);
    element->SetAttribute("DisplayName", contact.DisplayName);
    element->SetAttribute("OfficeNumber", contact.OfficeNumber);
    element->SetAttribute("MobileNumber", contact.MobileNumber);
    element->SetAttribute("OtherNumber", contact.OtherNumber);
    element->SetAttribute("Ring", contact.Ring);
    element->SetAttribute("Photo", contact.Photo);
  }
}

void save_plain(benchmark::State& state, Medium medium) {
  const FullPhonebook phonebook(medium);
  for ([[maybe_unused]] auto step : state) {
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    document.LoadFile(phonebook.file());
    refill(document);
    document.SaveFile(phonebook.file());
  }
}
BENCHMARK_CAPTURE(save_plain, _, Medium::kMemory)
    ->Name("save 500 contacts:tinyxml2 alone")
    ->UseRealTime();
BENCHMARK_CAPTURE(save_plain, _, Medium::kDisk)
    ->Name("save 500, on disk:tinyxml2 alone")
    ->UseRealTime();

}  // namespace
