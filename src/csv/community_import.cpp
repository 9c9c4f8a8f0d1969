// Reading a contact CSV file as community data, outside the phonebook.
#include <cfgxml/csv.h>
#include <cfgxml/host.h>

#include <string_view>
#include <unordered_set>

#include "csv/record.h"
#include "csv/rows.h"
#include "support/chain.h"
#include "support/lock.h"
#include "support/paths.h"
#include "support/text.h"

namespace cfgxml::csv {
namespace {

static_assert(offsetof(COMMUNITY_DATA_T, Groups) == 2 * sizeof(void*));
static_assert(offsetof(COMMUNITY_DATA_T, Contacts) == 3 * sizeof(void*));
static_assert(sizeof(COMMUNITY_DATA_T) == 4 * sizeof(void*));
static_assert(offsetof(COMMUNITY_CONTACT_T, next) >= sizeof(CONTACT_DATA_T));

/// Builds the two chains from the rows of one file. When memory runs out they end there.
class CommunityImport : public Rows {
 public:
  bool start_row() override {
    contact_ = {};
    group_ = {};
    return !out_of_memory_ && count_ < CFGXML_CONTACT_CAPACITY;
  }

  bool take(Value value, const char* text) override {
    switch (value) {
      case Value::kGroup:
        copy_text(contact_.Group, group_or_default(text));
        copy_text(group_.Name, contact_.Group);
        break;
      case Value::kGroupRing:
        copy_text(group_.Ring, ring_or_default(text));
        break;
      case Value::kGroupDescription:
        copy_text(group_.Description, text);
        break;
      default:
        store(contact_, value, text);
        break;
    }
    return true;
  }

  /// The group first: a contact without one would not be written.
  void end_row() override { out_of_memory_ = !append_group() || !append_contact(); }

  void hand_over(COMMUNITY_DATA_T& data) {
    data.Groups = groups_.release();
    data.Contacts = contacts_.release();
  }

 private:
  bool append_contact() {
    COMMUNITY_CONTACT_T* node = contacts_.append();
    if (node == nullptr) return false;
    contact_.Id = ++count_;
    node->Contact = contact_;
    return true;
  }

  /// The first row that names a group describes it.
  bool append_group() {
    if (group_names_.count(group_.Name) != 0) return true;
    GROUP_SUMMARY_T* node = groups_.append();
    if (node == nullptr) return false;
    *node = group_;
    node->Id = static_cast<int>(group_names_.size()) + 1;
    group_names_.insert(node->Name);  // may be the last thing for which there is memory
    return true;
  }

  Chain<GROUP_SUMMARY_T> groups_;
  Chain<COMMUNITY_CONTACT_T> contacts_;
  std::unordered_set<std::string_view> group_names_;  // where they stand in the chain
  int count_ = 0;
  bool out_of_memory_ = false;

  // The row being read.
  CONTACT_DATA_T contact_ = {};
  GROUP_SUMMARY_T group_ = {};
};

COMMUNITY_DATA_T* import_community(const char* path, const char* function) {
  if (path == nullptr) {
    rl_log_err("Input param is NULL! file: %s, line: %d", kSourceFile, __LINE__);
    return nullptr;
  }
  auto* data = new_block<COMMUNITY_DATA_T>();
  if (data == nullptr) return nullptr;
  CommunityImport import;
  guarded(-1, [&] {
    const File file = open_to_read(paths::on_disk(path));
    if (file != nullptr) read_rows(file.get(), function, import);
    return 0;
  });
  import.hand_over(*data);
  return data;
}

}  // namespace
}  // namespace cfgxml::csv

COMMUNITY_DATA_T* get_community_contact_csv(const char* path) {
  return cfgxml::csv::import_community(path, __func__);
}
