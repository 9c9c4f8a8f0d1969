// A directory of 500 entries: reading it into its screen object, beside tinyxml2 loading the same
// file and touching every element and attribute.
#include <benchmark/benchmark.h>
#include <cfgxml/xmlbrowser.h>
#include <malloc.h>
#include <tinyxml2.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr int kEntries = 500;

/// The blocks of one document go back to the allocator, which keeps them: returning them to the
/// kernel and fetching them again would be measured in place of the work, for either way.
void keep_memory() {
  constexpr int kMany = 64 << 20;
  mallopt(M_TRIM_THRESHOLD, kMany);
  mallopt(M_MMAP_THRESHOLD, kMany);
}

std::string directory_file() {
  keep_memory();
  const std::string path = (fs::temp_directory_path() / "xmlbrowser_bench_directory.xml").string();
  std::ofstream file(path);
  file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
          "<IPPhoneDirectory defaultIndex=\"3\" Timeout=\"60\" Next=\"http://pbx/d?page=2\">\n"
          "  <Title wrap=\"yes\">Company directory</Title>\n";
  for (int i = 0; i < kEntries; ++i) {
    file << "  <MenuItem>\n    <Prompt>Colleague number " << i << "</Prompt>\n    <Telephone>0497"
         << 100000 + i
         << "</Telephone>\n    <Presence>online</Presence>\n    <URI>http://pbx/p?id=" << i
         << "</URI>\n  </MenuItem>\n";
  }
  file << "  <SoftKey index=\"1\"><Label>Dial</Label><URI>SoftKey:Dial</URI></SoftKey>\n"
          "</IPPhoneDirectory>\n";
  return path;
}

const std::string& directory() {
  static const std::string path = directory_file();
  return path;
}

void parse_directory(benchmark::State& state) {
  const std::string& path = directory();
  for (auto _ : state) {
    if (cfg_parse_remote_xml(path.c_str()) != 0) state.SkipWithError("not parsed");
    benchmark::DoNotOptimize(cfg_get_xml_browser_directory_object()->EntryCount);
    cfg_destory_xml_browser_directory_object();
  }
}

/// The bytes of every name, text and attribute below an element.
std::size_t touch(const tinyxml2::XMLElement& element) {
  std::size_t bytes = std::char_traits<char>::length(element.Value());
  if (const char* text = element.GetText()) bytes += std::char_traits<char>::length(text);
  for (const auto* attribute = element.FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next()) {
    bytes += std::char_traits<char>::length(attribute->Name());
    bytes += std::char_traits<char>::length(attribute->Value());
  }
  for (const auto* child = element.FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement()) {
    bytes += touch(*child);
  }
  return bytes;
}

void touch_directory(benchmark::State& state) {
  const std::string& path = directory();
  for (auto _ : state) {
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    if (document.LoadFile(path.c_str()) != tinyxml2::XML_SUCCESS) state.SkipWithError("not loaded");
    benchmark::DoNotOptimize(touch(*document.RootElement()));
  }
}

}  // namespace

BENCHMARK(parse_directory)
    ->Name("screen: directory of 500 entries:ours")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(touch_directory)
    ->Name("screen: directory of 500 entries:tinyxml2, touching all")
    ->Unit(benchmark::kMicrosecond);
