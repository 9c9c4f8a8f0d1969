#include "directory.h"

#include <cfgxml/host.h>
#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "failure.h"
#include "runtime/files.h"
#include "user_file.h"

namespace deskphone {
namespace {

namespace fs = std::filesystem;

constexpr char kFull[] = "full";

std::string simple_name(int list) { return fmt::format("simple{}", list); }

/// The pages of a folder, in order; none when there is no folder.
Pages pages_in(const fs::path& folder) {
  Pages pages;
  if (!fs::exists(folder)) return pages;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    pages.push_back(entry.path());
  }
  std::sort(pages.begin(), pages.end());
  return pages;
}

/// Replaces a folder by copies of the pages, numbered in their order.
void keep(const Pages& pages, const fs::path& folder) {
  std::vector<std::string> contents;
  for (const fs::path& page : pages) {
    const std::optional<std::string> content = host::files::read(page);
    if (!content) throw Failure(fmt::format("{} can not be read.", page.string()));
    contents.push_back(*content);
  }
  fs::remove_all(folder);
  for (std::size_t i = 0; i < contents.size(); ++i) {
    const fs::path kept = folder / fmt::format("page{:04}.xml", i + 1);
    if (!host::files::replace(kept, contents[i])) {
      throw Failure(fmt::format("{} can not be written. Check the free space.", kept.string()));
    }
  }
}

[[noreturn]] void refuse(const fs::path& page) {
  throw Failure(
      fmt::format("{} is no page of a directory with entries: it needs to be well-formed XML with "
                  "the root Personal, Group, Enterprise, GroupCommon or EnterpriseCommon and the "
                  "server's namespace.",
                  page.string()));
}

template <typename Node>
std::size_t length_of(const Node* list) {
  std::size_t length = 0;
  for (; list != nullptr; list = list->next) ++length;
  return length;
}

}  // namespace

Directory::Directory(const Phone& phone)
    : phone_(phone),
      start_(phone.plugin(), "cfg_get_broadsoft_contact_summary"),
      add_(phone.plugin(), "cfg_add_broadsoft_contact_summary_to_tail"),
      get_position_(phone.plugin(), "cfg_get_broadsoft_conatct_pos"),
      get_entry_(phone.plugin(), "cfg_get_broadsoft_contact_data"),
      search_(phone.plugin(), "cfg_search_broadsoft_contact_info"),
      free_(phone.plugin(), "cfg_destory_broadsoft_conatct_list"),
      append_simple_(phone.plugin(), "cfg_append_broadsoft_simple_contact_summary"),
      free_simple_(phone.plugin(), "cfg_destory_broadsoft_simple_conatct_list") {}

fs::path Directory::folder_of(const std::string& name) const {
  return phone_.host().on_disk("/tmp/directory") / name;
}

BSFT_CONTACT_POS_T Directory::read(const Pages& pages) const {
  std::size_t length = 0;
  for (const fs::path& page : pages) {
    const auto* head = length == 0 ? start_(page.c_str()) : add_(page.c_str());
    const std::size_t longer = length_of(head);
    if (longer <= length) {
      free_();
      refuse(page);
    }
    length = longer;
  }
  BSFT_CONTACT_POS_T position = {};
  get_position_(&position);
  return position;
}

BSFT_CONTACT_POS_T Directory::read_simple(int list, const Pages& pages) const {
  BSFT_CONTACT_POS_T position = {};
  std::size_t length = 0;
  free_simple_(list);
  for (const fs::path& page : pages) {
    const std::size_t longer = length_of(append_simple_(list, page.c_str(), &position));
    if (longer <= length) {
      free_simple_(list);
      refuse(page);
    }
    length = longer;
  }
  return position;
}

BSFT_CONTACT_POS_T Directory::load(const Pages& pages) const {
  for (const fs::path& page : pages) check_file(page);
  const BSFT_CONTACT_POS_T position = read(pages);
  keep(pages, folder_of(kFull));
  return position;
}

BSFT_CONTACT_POS_T Directory::load_simple(int list, const Pages& pages) const {
  for (const fs::path& page : pages) check_file(page);
  const BSFT_CONTACT_POS_T position = read_simple(list, pages);
  keep(pages, folder_of(simple_name(list)));
  return position;
}

void Directory::read_kept() const {
  const Pages pages = pages_in(folder_of(kFull));
  if (pages.empty()) {
    throw Failure("The directory is not loaded. Load it first: deskphone directory load PAGE...");
  }
  read(pages);
}

Entries Directory::entries() const { return search(""); }

Entries Directory::search(const std::string& text) const {
  read_kept();
  BSFT_CONTACT_DATA_T* found = search_(text.c_str());
  Entries entries = copy_list(found);
  while (found != nullptr) rl_free(std::exchange(found, found->next));
  return entries;
}

BSFT_CONTACT_DATA_T Directory::entry(int index) const {
  read_kept();
  constexpr int kUntouched = 1;  // an entry of the list has 0 there
  BSFT_CONTACT_DATA_T entry = {};
  entry.index = index;
  entry.flag = kUntouched;
  if (get_entry_(index, &entry) != 0 || entry.flag == kUntouched) {
    throw Failure(
        fmt::format("The directory has no entry {}. The entries are in 'deskphone "
                    "directory list'.",
                    index));
  }
  return entry;
}

Summaries Directory::simple(int list) const {
  BSFT_CONTACT_POS_T position = {};
  const CONTACT_SUMMARY_T* head = nullptr;
  free_simple_(list);
  for (const fs::path& page : pages_in(folder_of(simple_name(list)))) {
    head = append_simple_(list, page.c_str(), &position);
  }
  if (head == nullptr) {
    throw Failure(
        fmt::format("The simple list {0} is not loaded. Load it first: deskphone "
                    "directory simple {0} PAGE...",
                    list));
  }
  return copy_list(head);
}

void Directory::load_all_simple() const {
  for (int list = 0; list < CFGXML_BROADSOFT_LIST_COUNT; ++list) {
    const Pages pages = pages_in(folder_of(simple_name(list)));
    if (!pages.empty()) read_simple(list, pages);
  }
}

Row row_of(const BSFT_CONTACT_DATA_T& entry) {
  return {{"index", entry.index},
          {"last_name", entry.LastName},
          {"first_name", entry.FirstName},
          {"user_id", entry.UserId},
          {"group_id", entry.GroupId},
          {"number", entry.Number},
          {"extension", entry.Extension},
          {"mobile", entry.Mobile},
          {"yahoo_id", entry.YahooId},
          {"pager", entry.Pager},
          {"email_address", entry.EmailAddress},
          {"title", entry.Title},
          {"location", entry.Location},
          {"address_line_1", entry.AddressLine1},
          {"address_line_2", entry.AddressLine2},
          {"city", entry.City},
          {"state", entry.State},
          {"zip", entry.Zip},
          {"country", entry.Country},
          {"department", entry.Department}};
}

}  // namespace deskphone
