// Rules for attributes: tables of (attribute, field, kind of value), and the kinds of value.
#pragma once

#include <cfgxml/xmlbrowser.h>
#include <tinyxml2.h>

#include <cstddef>
#include <cstdint>

#include "support/text.h"

namespace cfgxml::xmlbrowser {

/// An attribute, and what its value does to a record. The value is nullptr when it is absent.
template <typename Record>
struct AttributeRule {
  const char* name;
  void (*apply)(Record& record, const char* value);
};

template <typename Record, std::size_t Count>
void read_attributes(const tinyxml2::XMLElement& element,
                     const AttributeRule<Record> (&rules)[Count], Record& record) {
  for (const AttributeRule<Record>& rule : rules) rule.apply(record, element.Attribute(rule.name));
}

/// Copies the value into a text field.
template <auto Field, typename Record>
void text_to(Record& record, const char* value) {
  copy_text(record.*Field, value);
}

/// Sets a number field to what a kind of value makes of the value.
template <auto Field, std::int32_t (*Kind)(const char* value), typename Record>
void number_to(Record& record, const char* value) {
  record.*Field = Kind(value);
}

// Kinds of value: the number that a value stands for; nullptr stands for an absent attribute, which
// gives 0 unless the comment says otherwise. Keywords are compared ignoring case.

bool is_keyword(const char* value, const char* keyword);

std::int32_t decimal(const char* value);
std::int32_t if_yes(const char* value);              ///< 1 for "yes", else 0
std::int32_t unless_no(const char* value);           ///< 0 for "no", else 1
std::int32_t unless_no_or_empty(const char* value);  ///< 0 for "no" and "", else 1
std::int32_t if_telephone1(const char* value);       ///< 1 for "Telephone1", else 0
std::int32_t unless_telephone(const char* value);    ///< 0 for "Telephone", else 1
std::int32_t index_or_one(const char* value);        ///< 1 for "", else the number
std::int32_t beep(const char* value);                ///< 1 for "yes", 0 for "no", else the number
std::int32_t timeout(const char* value);             ///< -1 for "" and when absent, else the number
std::int32_t input_type(const char* value);          ///< XML_INPUT_..., compared with case

/// Sets a flag from an attribute ("yes" or not) when the element carries it.
void update_flag(const tinyxml2::XMLElement& element, const char* name, std::int32_t& flag);

/// Reads what the root element of any screen says into the header.
void read_header(const tinyxml2::XMLElement& root, XML_BROWSER_HEADER_T& header);

}  // namespace cfgxml::xmlbrowser
