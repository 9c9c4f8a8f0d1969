// The lists that the plug-in hands out, as vectors.
#pragma once

#include <cfgxml/host.h>

#include <vector>

namespace deskphone {

/// The nodes of a list in order, freed one by one; their next is not to be followed.
template <typename Node>
std::vector<Node> take_list(Node* head) {
  std::vector<Node> nodes;
  while (head != nullptr) {
    nodes.push_back(*head);
    Node* next = head->next;
    rl_free(head);
    head = next;
  }
  return nodes;
}

}  // namespace deskphone
