#include "remote/book_file.h"

#include <cfgxml/host.h>

#include "phonebook/summaries.h"
#include "support/chain.h"
#include "support/text.h"
#include "support/xml_file.h"

namespace cfgxml::remote {
namespace {

using tinyxml2::XMLElement;

constexpr int kCapacity = 500;
constexpr char kContactEntry[] = "Contact";
constexpr char kDirectoryEntry[] = "DirectoryEntry";

/// The first of two attributes that is not empty.
const char* attribute_or(const XMLElement& element, const char* name, const char* other) {
  const char* value = element.Attribute(name);
  return is_empty(value) ? element.Attribute(other) : value;
}

/// Puts a number into the first of the three fields that is still empty; false when none is.
bool add_number(CONTACT_SUMMARY_T& record, const char* number) {
  for (auto* field : {&record.OfficeNumber, &record.MobileNumber, &record.OtherNumber}) {
    if (!is_empty(*field)) continue;
    copy_text(*field, number);
    return true;
  }
  return false;
}

/// Walks the entries of one document.
class BookReader {
 public:
  /// Root children named "Group" first: every child of the root holds entries. Otherwise the root
  /// itself does.
  CONTACT_SUMMARY_T* read(XMLElement& root) {
    const XMLElement* first = root.FirstChildElement();
    if (first != nullptr && equal(first->Name(), "Group")) {
      for (XMLElement& container : Children(&root)) {
        if (!read_container(container)) break;
      }
    } else {
      read_container(root);
    }
    if (out_of_memory_) return chain_.release();
    return sort_chain(chain_.release(), phonebook::name_less);
  }

 private:
  /// False when the walk is to end: the book is full, or memory is out.
  bool read_container(XMLElement& container) {
    for (const XMLElement& entry : Children(&container)) {
      const bool directory = equal(entry.Name(), kDirectoryEntry);
      if (!directory && !equal(entry.Name(), kContactEntry)) continue;
      if (count_ == kCapacity) return false;
      directory_seen_ = directory_seen_ || directory;
      const bool read = directory_seen_ ? read_directory_entry(entry) : read_contact(entry);
      if (!read) return false;
    }
    return true;
  }

  bool read_contact(const XMLElement& entry) {
    const char* name = attribute_or(entry, "Name", "DisplayName");
    if (is_empty(name)) return true;
    CONTACT_SUMMARY_T* record = append(name);
    if (record == nullptr) return false;
    record->Id = int_attribute(entry, "Id");
    record->Line = int_attribute(entry, "Line");
    copy_text(record->OfficeNumber, attribute_or(entry, "Office", "OfficeNumber"));
    copy_text(record->MobileNumber, attribute_or(entry, "Mobile", "MobileNumber"));
    copy_text(record->OtherNumber, attribute_or(entry, "Other", "OtherNumber"));
    return true;
  }

  bool read_directory_entry(const XMLElement& entry) {
    const XMLElement* name = entry.FirstChildElement();
    if (name == nullptr || !equal(name->Name(), "Name") || is_empty(name->GetText())) return true;
    CONTACT_SUMMARY_T* record = append(name->GetText());
    if (record == nullptr) return false;
    record->Id = count_;
    for (const XMLElement* number = name->NextSiblingElement("Telephone"); number != nullptr;
         number = number->NextSiblingElement("Telephone")) {
      if (!is_empty(number->GetText()) && !add_number(*record, number->GetText())) break;
    }
    return true;
  }

  CONTACT_SUMMARY_T* append(const char* name) {
    CONTACT_SUMMARY_T* record = chain_.append();
    if (record == nullptr) {
      out_of_memory_ = true;
      return nullptr;
    }
    ++count_;
    copy_text(record->DisplayName, name);
    return record;
  }

  Chain<CONTACT_SUMMARY_T> chain_;
  int count_ = 0;
  bool directory_seen_ = false;
  bool out_of_memory_ = false;
};

}  // namespace

CONTACT_SUMMARY_T* read_book(XMLElement& root) { return BookReader().read(root); }

}  // namespace cfgxml::remote
