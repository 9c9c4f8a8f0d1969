// Records and the attributes that hold them, as tables: one table is both the reader and the writer
// of its record.
#pragma once

#include <cfgxml/host.h>
#include <tinyxml2.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "support/text.h"

namespace cfgxml {

inline void read_value(const char* value, std::int32_t& field) { field = rl_atoi(value); }

template <std::size_t Capacity>
void read_value(const char* value, char (&field)[Capacity]) {
  copy_text(field, value);
}

inline void write_value(tinyxml2::XMLElement& element, const char* attribute, std::int32_t field) {
  element.SetAttribute(attribute, field);
}

/// Ends within the field, also when a caller left its terminator out.
template <std::size_t Capacity>
void write_value(tinyxml2::XMLElement& element, const char* attribute,
                 const char (&field)[Capacity]) {
  char text[Capacity] = {};
  std::memcpy(text, field, cut_at({field, Capacity}, Capacity - 1));
  element.SetAttribute(attribute, text);
}

/// An attribute and the field of the record that it holds. Build it with field().
template <typename Record>
struct Field {
  const char* attribute;
  void (*read)(const char* value, Record& record);
  void (*write)(tinyxml2::XMLElement& element, const char* attribute, const Record& record);
};

template <typename Record, typename Type>
Record record_of(Type Record::*member);

/// The table row of a member: field<&Record::Member>("Attribute").
template <auto Member, typename Record = decltype(record_of(Member))>
constexpr Field<Record> field(const char* attribute) {
  return {attribute, [](const char* value, Record& record) { read_value(value, record.*Member); },
          [](tinyxml2::XMLElement& element, const char* name, const Record& record) {
            write_value(element, name, record.*Member);
          }};
}

/// A table of fields, in the order in which a new element gets its attributes.
template <typename Record>
class Fields {
 public:
  template <std::size_t Count>
  constexpr Fields(const Field<Record> (&table)[Count])  // NOLINT(google-explicit-constructor)
      : begin_(table), end_(table + Count) {}

  /// Fills the fields; an absent attribute gives 0 or an empty text.
  void read(const tinyxml2::XMLElement& element, Record& record) const {
    for (const Field<Record>* row = begin_; row != end_; ++row) {
      row->read(element.Attribute(row->attribute), record);
    }
  }

  /// Sets the attributes and leaves the element's others as they are.
  void write(tinyxml2::XMLElement& element, const Record& record) const {
    for (const Field<Record>* row = begin_; row != end_; ++row) {
      row->write(element, row->attribute, record);
    }
  }

 private:
  const Field<Record>* begin_;
  const Field<Record>* end_;
};

}  // namespace cfgxml
