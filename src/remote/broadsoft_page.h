// One page of a BroadSoft directory: what it is, where it stands in the directory, and its entries.
// Both kinds of list are read from pages here.
#pragma once

#include <cfgxml/broadsoft.h>

#include "support/chain.h"
#include "support/xml_file.h"

namespace cfgxml::remote {

/// The end of the 32-bit range stands for what lies beyond it.
std::int32_t saturated(std::int64_t number);

/// The index behind the page's last entry, as the server counts.
inline std::int64_t end_of_page(const BSFT_CONTACT_POS_T& position) {
  return std::int64_t{position.start} + position.count;
}

/// The document of one page.
class DirectoryPage {
 public:
  explicit DirectoryPage(const char* path) : file_(path) {}

  bool load() { return file_.load(); }

  /// The element whose children are the entries; nullptr, which is logged, for a document that is
  /// no directory.
  tinyxml2::XMLElement* entries();

  /// Takes the paging numbers over; those that the page lacks stay.
  void read_position(BSFT_CONTACT_POS_T& position);

 private:
  XmlFile file_;
};

bool is_entry(const tinyxml2::XMLElement& element);

/// Sets the position behind a page from which this many nodes were made.
void finish_position(BSFT_CONTACT_POS_T& position, int made);

/// Makes a node of every entry of a page, at most 500, fills it with fill(node, entry, index), and
/// appends the nodes to the list. The page ends early when memory is out, which fill tells by
/// false. Returns the number of nodes, or -1 for a document that is no directory.
template <typename Node, typename Fill>
int append_page(DirectoryPage& page, BSFT_CONTACT_POS_T& position, Node*& list, Fill fill) {
  tinyxml2::XMLElement* entries = page.entries();
  if (entries == nullptr) return -1;
  page.read_position(position);

  Chain<Node> chain(list, Allocator::kHost);
  list = nullptr;
  int made = 0;
  for (const tinyxml2::XMLElement& entry : Children(entries)) {
    if (!is_entry(entry)) continue;
    if (made == CFGXML_BROADSOFT_PAGE_CAPACITY) break;
    HostBlock<Node> node(new_block<Node>());
    if (node == nullptr) break;
    if (!fill(*node, entry, saturated(std::int64_t{position.start} + made))) break;
    chain.append(node.release());
    ++made;
  }
  list = chain.release();
  finish_position(position, made);
  return made;
}

}  // namespace cfgxml::remote
