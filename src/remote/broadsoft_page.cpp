#include "remote/broadsoft_page.h"

#include <algorithm>
#include <limits>

#include "support/text.h"

namespace cfgxml::remote {
namespace {

/// The schemas whose documents are directories.
constexpr const char* kNamespaces[] = {"http://schema.broadsoft.com/xsi",
                                       "http://schema.broadsoft.com/xsi-actions"};

/// A kind of directory: its root element, and the root's child that holds the entries; the root
/// itself where that is nullptr, and where the child is missing.
struct Book {
  const char* root;
  const char* entries;
};
constexpr Book kBooks[] = {
    {"Personal", nullptr},    {"Group", "groupDirectory"},   {"Enterprise", "enterpriseDirectory"},
    {"GroupCommon", nullptr}, {"EnterpriseCommon", nullptr},
};

constexpr const char* kEntries[] = {"entry", "directoryDetails", "commonPhoneEntry"};

bool is_directory(const tinyxml2::XMLElement& root) {
  const char* schema = root.Attribute("xmlns");
  return schema != nullptr && std::any_of(std::begin(kNamespaces), std::end(kNamespaces),
                                          [&](const char* known) { return equal(schema, known); });
}

const Book* book_of(const tinyxml2::XMLElement* root) {
  if (root == nullptr || !is_directory(*root)) return nullptr;
  for (const Book& book : kBooks) {
    if (equal(root->Name(), book.root)) return &book;
  }
  return nullptr;
}

}  // namespace

std::int32_t saturated(std::int64_t number) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
}

tinyxml2::XMLElement* DirectoryPage::entries() {
  tinyxml2::XMLElement* root = file_.root();
  const Book* book = book_of(root);
  if (book == nullptr) {
    rl_log_err("load file <%s> fail! BSFT_BOOK_TYPE_INVALID", file_.path());
    return nullptr;
  }
  tinyxml2::XMLElement* child =
      book->entries != nullptr ? root->FirstChildElement(book->entries) : nullptr;
  return child != nullptr ? child : root;
}

void DirectoryPage::read_position(BSFT_CONTACT_POS_T& position) {
  for (const tinyxml2::XMLElement& element : Children(file_.root())) {
    const char* name = element.Name();
    if (equal(name, "startIndex")) {
      position.start = saturated(std::int64_t{rl_atoi(element.GetText())} - 1);
    } else if (equal(name, "numberOfRecords")) {
      position.count = rl_atoi(element.GetText());
    } else if (equal(name, "totalAvailableRecords")) {
      position.total = rl_atoi(element.GetText());
    }
  }
}

bool is_entry(const tinyxml2::XMLElement& element) {
  return std::any_of(std::begin(kEntries), std::end(kEntries),
                     [&](const char* name) { return equal(element.Name(), name); });
}

void finish_position(BSFT_CONTACT_POS_T& position, int made) {
  if (position.total == 0) {
    position.start = 0;
    position.count = made;
    position.total = made;
  }
  if (made == CFGXML_BROADSOFT_PAGE_CAPACITY) position.total = saturated(end_of_page(position));
}

}  // namespace cfgxml::remote
