#include "operations/operation.h"

#include <optional>

namespace operations {
namespace {

/// The book's index is there again when a change that left it behind is over.
class Reindexed {
 public:
  Reindexed(World& world, const Operation& operation) : world_(world), operation_(operation) {
    world_.fall_behind();
  }
  ~Reindexed() {
    if (operation_.has(kIndexStale)) {
      const bool indexed = CfgTrieReloadLocalBookInfo() == 0;
      world_.require(indexed || world_.blocks_missing(), "the contacts can not be indexed");
      world_.set_positions_kept(true);
    }
    world_.catch_up();
  }
  Reindexed(const Reindexed&) = delete;
  Reindexed& operator=(const Reindexed&) = delete;

 private:
  World& world_;
  const Operation& operation_;
};

std::vector<std::string> may_give(const Operation& operation, bool careless) {
  std::vector<std::string> results{operation.success, operation.unknown};
  if (careless) results.insert(results.end(), {operation.refused, operation.out_of_range});
  return results;
}

}  // namespace

std::string Operation::title() const {
  return *story == '\0' ? name : std::string(name) + "_" + story;
}

bool is_one_of(const std::string& texts, const std::string& text) {
  return ("|" + texts + "|").find("|" + text + "|") != std::string::npos;
}

Operations family(Lock lock, unsigned blocks, unsigned traits, Operations operations) {
  for (Operation& one : operations) one = one.under(lock).needs(blocks).is(traits);
  return operations;
}

Operations in_callers_lock(Operations operations) {
  for (Operation& one : operations) one = one.in_callers(one.lock);
  return operations;
}

Operations joined(const std::vector<Operations>& families) {
  Operations all;
  for (const Operations& one : families) all.insert(all.end(), one.begin(), one.end());
  return all;
}

const Operations& all() {
  static const Operations operations = joined(
      {binding_operations(), phonebook_operations(), phonebook_file_operations(),
       history_operations(), list_operations(), directory_operations(), document_operations()});
  return operations;
}

void make_with_care(const Operation& operation, World& world, Choices& choices) {
  std::optional<std::unique_lock<std::mutex>> books;
  if (operation.has(kOwnBooks)) books.emplace(world.books_mutex());
  std::optional<Reindexed> reindexed;
  if (operation.has(kIndexStale)) reindexed.emplace(world, operation);
  Result result;
  {
    const bool holds = operation.callers_lock || operation.has(kHoldLock);
    const HostLock hold(holds ? operation.lock : Lock::kNone);
    result = operation.call(world, choices);
  }
  choices.forget_texts();
  if (result.is_list) return;
  bool fine = *operation.others == '*' || is_one_of(operation.others, result.text) ||
              (world.blocks_missing() && result.text == operation.without_blocks);
  for (const std::string& one : may_give(operation, world.single_caller())) {
    fine = fine || result.text == one;
  }
  world.require(fine, operation.title() + " gave " + result.text);
}

}  // namespace operations
