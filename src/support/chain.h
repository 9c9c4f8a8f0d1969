// The singly linked, zero-filled lists that the library hands to callers. Nodes come from the
// host's allocator and link through their last field, next.
#pragma once

#include <cfgxml/host.h>

#include <cstdlib>
#include <memory>

namespace cfgxml {

/// Where a chain's nodes come from; the host's rl_free releases both kinds.
enum class Allocator { kHost, kC };

/// A zero-filled block, or nullptr when memory is out.
template <typename Node>
Node* new_block(Allocator allocator = Allocator::kHost) {
  if (allocator == Allocator::kC) return static_cast<Node*>(std::calloc(1, sizeof(Node)));
  void* block = rl_malloc(sizeof(Node));
  if (block != nullptr) rl_memset(block, 0, sizeof(Node));
  return static_cast<Node*>(block);
}

struct FreeBlock {
  void operator()(void* block) const { rl_free(block); }
};
/// Owns a block of the host's allocator until it is handed out.
template <typename Type>
using HostBlock = std::unique_ptr<Type, FreeBlock>;

/// Frees every node of a chain.
template <typename Node>
void free_chain(Node* head) {
  while (head != nullptr) {
    Node* next = head->next;
    rl_free(head);
    head = next;
  }
}

/// Builds one chain and owns it until release().
template <typename Node>
class Chain {
 public:
  explicit Chain(Allocator allocator = Allocator::kHost) : allocator_(allocator) {}
  /// Goes on at the end of an existing chain, which it takes over.
  explicit Chain(Node* head, Allocator allocator) : allocator_(allocator), head_(head) {
    for (Node* node = head; node != nullptr; node = node->next) tail_ = node;
  }
  ~Chain() { free_chain(head_); }
  Chain(const Chain&) = delete;
  Chain& operator=(const Chain&) = delete;

  /// A new zero-filled last node, or nullptr when memory is out.
  Node* append() {
    Node* node = new_block<Node>(allocator_);
    if (node != nullptr) append(node);
    return node;
  }

  /// Takes over a node as the last one.
  void append(Node* node) {
    (tail_ != nullptr ? tail_->next : head_) = node;
    tail_ = node;
  }

  /// A new zero-filled first node, or nullptr when memory is out.
  Node* push_front() {
    Node* node = new_block<Node>(allocator_);
    if (node == nullptr) return nullptr;
    node->next = head_;
    if (head_ == nullptr) tail_ = node;
    head_ = node;
    return node;
  }

  Node* head() const { return head_; }

  /// Hands the chain to the caller.
  Node* release() {
    Node* head = head_;
    head_ = tail_ = nullptr;
    return head;
  }

 private:
  Allocator allocator_;
  Node* head_ = nullptr;
  Node* tail_ = nullptr;
};

/// Merges two sorted chains; of equal nodes the left one's come first.
template <typename Node, typename Less>
Node* merge_chains(Node* left, Node* right, Less less) {
  Node* head = nullptr;
  Node** end = &head;
  while (left != nullptr && right != nullptr) {
    Node*& first = less(*right, *left) ? right : left;
    *end = first;
    end = &first->next;
    first = first->next;
  }
  *end = left != nullptr ? left : right;
  return head;
}

/// Sorts a chain in O(n log n) without allocating; equal nodes keep their order.
template <typename Node, typename Less>
Node* sort_chain(Node* head, Less less) {
  constexpr int kRuns = 32;  // run k holds 2^k nodes, or none
  Node* runs[kRuns] = {};
  while (head != nullptr) {
    Node* run = head;
    head = head->next;
    run->next = nullptr;
    int k = 0;
    for (; k < kRuns - 1 && runs[k] != nullptr; ++k) {
      run = merge_chains(runs[k], run, less);
      runs[k] = nullptr;
    }
    runs[k] = merge_chains(runs[k], run, less);
  }
  Node* sorted = nullptr;
  for (Node* run : runs) sorted = merge_chains(run, sorted, less);
  return sorted;
}

}  // namespace cfgxml
