// Importing a contact CSV file into a contact list.
#include <cfgxml/csv.h>
#include <cfgxml/host.h>

#include "csv/record.h"
#include "csv/rows.h"
#include "phonebook/name_index.h"
#include "phonebook/tables.h"
#include "search/index.h"
#include "support/lock.h"
#include "support/paths.h"

namespace cfgxml::csv {
namespace {

/// Fills an empty list from the rows of one file.
class ContactImport : public Rows {
 public:
  explicit ContactImport(CONTACT_DATA_LIST_T& list) : list_(list) {}

  bool start_row() override {
    over_full_ = count_ == CFGXML_CONTACT_CAPACITY;
    group_ = nullptr;
    dropped_ = false;
    return !over_full_;
  }

  bool take(Value value, const char* text) override {
    switch (value) {
      case Value::kName:
        store(contact(), value, text);
        return accept_name();
      case Value::kGroup:
        take_group(group_or_default(text));
        return true;
      case Value::kGroupRing:
        describe_group(&GROUP_DATA_T::Ring, ring_or_default(text));
        return true;
      case Value::kGroupDescription:
        describe_group(&GROUP_DATA_T::Description, text);
        return true;
      default:
        store(contact(), value, text);
        return true;
    }
  }

  void end_row() override {
    if (dropped_) {
      clear_contact();
      return;
    }
    contact().Id = count_ + 1;
    used_in_contacts_.add(contact());
    ++count_;
  }

  /// 19 for skipped names, else 17 or 16 for a full table, else 0.
  int result() const {
    if (name_refused_) return 19;
    if (over_full_) return 17;
    return group_refused_ ? 16 : 0;
  }

 private:
  using Groups = phonebook::GroupSlots;

  CONTACT_DATA_T& contact() { return list_.Contacts[count_]; }

  /// The index may still have the contact that stood in this slot before the import.
  void clear_contact() {
    const search::RecordWrites hold;
    contact() = {};
  }

  /// Drops a row whose name, as the record holds it, is in use.
  bool accept_name() {
    const char* name = contact().DisplayName;
    if (!used_in_blacklist_.contains(name) && !used_in_contacts_.contains(name)) return true;
    name_refused_ = true;
    clear_contact();
    return false;
  }

  void take_group(const char* name) {
    copy_text(contact().Group, name);
    group_ = phonebook::find_group(list_, contact().Group);
    if (group_ != nullptr) return;
    dropped_ = !add_group(contact().Group);
    group_refused_ = group_refused_ || dropped_;
    group_ = phonebook::find_group(list_, contact().Group);
  }

  /// Makes the row's group in the next free slot. While neither this import has made "Default" nor
  /// the host's list has it, the last slot is kept: the row that asks for it gets "Default" made
  /// there, and is dropped.
  bool add_group(const char* name) {
    const int id = Groups(list_.Groups).next_id();
    const bool keeps_last = id >= CFGXML_GROUP_CAPACITY && !default_made_ &&
                            is_name_in_group(phonebook::kDefaultGroup, phonebook::kNoId) == 0;
    if (id > CFGXML_GROUP_CAPACITY) return false;
    make_group(id, keeps_last ? phonebook::kDefaultGroup : name);
    return !keeps_last;
  }

  void make_group(int id, const char* name) {
    GROUP_DATA_T& group = list_.Groups[id - 1];
    group.Id = id;
    copy_text(group.Name, name);
    default_made_ = default_made_ || equal(name, phonebook::kDefaultGroup);
  }

  /// Sets a text of the row's group.
  void describe_group(char (GROUP_DATA_T::*field)[64], const char* text) {
    if (group_ != nullptr) copy_text(group_->*field, text);
  }

  CONTACT_DATA_LIST_T& list_;
  phonebook::NameIndex used_in_blacklist_ = phonebook::NameIndex::of_blacklist();
  phonebook::NameIndex used_in_contacts_ = phonebook::NameIndex::of_contacts();
  int count_ = 0;  // contacts imported; the row fills the slot behind them
  bool default_made_ = false;
  bool name_refused_ = false;
  bool group_refused_ = false;
  bool over_full_ = false;

  // The row being read. Its group is the one slot of that name, or nullptr while there is none.
  GROUP_DATA_T* group_ = nullptr;
  bool dropped_ = false;
};

int import_contacts(const char* path, CONTACT_DATA_LIST_T* list, const char* function) {
  if (path == nullptr || list == nullptr) {
    rl_log_err("Input param is NULL! file: %s, line: %d", kSourceFile, __LINE__);
    return -1;
  }
  const File file = open_to_read(paths::on_disk(path));  // without memory the list is as it was
  phonebook::GroupSlots(list->Groups).clear();
  phonebook::clear_contacts(*list);
  if (file == nullptr) return -1;
  ContactImport import(*list);
  read_rows(file.get(), function, import);
  return import.result();
}

}  // namespace
}  // namespace cfgxml::csv

int get_contact_csv(const char* path, CONTACT_DATA_LIST_T* list) {
  return cfgxml::guarded(-1, cfgxml::csv::import_contacts, path, list, __func__);
}
