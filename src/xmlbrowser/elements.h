// Rules for elements: tables of (element, changeable name, what it fills), tested in their order,
// and the rules that several screens share: title, soft keys, options.
#pragma once

#include <cfgxml/xmlbrowser.h>
#include <tinyxml2.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "support/text.h"
#include "xmlbrowser/tag_names.h"

namespace cfgxml::xmlbrowser {

using tinyxml2::XMLElement;

/// A kind of element, and what one of them does to the target that is being filled.
template <typename Target>
struct ElementRule {
  const char* name;
  Tag tag;
  void (*apply)(Target& target, const XMLElement& element);
};

/// Applies the first rule whose name the element has; false when there is none.
template <typename Target, std::size_t Count, typename Names>
bool read_element(const XMLElement& element, const ElementRule<Target> (&rules)[Count],
                  const Names& names, Target& target) {
  const auto* rule =
      std::find_if(std::begin(rules), std::end(rules), [&](const ElementRule<Target>& each) {
        return names.match(element.Value(), each.name, each.tag);
      });
  if (rule == std::end(rules)) return false;
  rule->apply(target, element);
  return true;
}

/// Applies the rules to the children of an element in document order; the others are ignored.
template <typename Target, std::size_t Count, typename Names>
void read_children(const XMLElement& parent, const ElementRule<Target> (&rules)[Count],
                   const Names& names, Target& target) {
  for (const XMLElement* child = parent.FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement()) {
    read_element(*child, rules, names, target);
  }
}

/// A record that elements fill.
template <typename Record>
struct RecordTarget {
  Record* record;
};

/// A screen that elements fill, with the names that they go by.
template <typename Screen>
struct ScreenTarget {
  Screen& screen;
  const TagNames& names;
};

/// Copies the element's text into a field; an element without text makes it empty.
template <auto Field, typename Target>
void element_text_to(Target& target, const XMLElement& element) {
  copy_text(target.record->*Field, element.GetText());
}

/// Copies the element's text into a field unless it is empty.
template <auto Field, typename Target>
void nonempty_text_to(Target& target, const XMLElement& element) {
  const char* text = element.GetText();
  if (!is_empty(text)) copy_text(target.record->*Field, text);
}

/// The fields that a Title fills.
struct TitleFields {
  char (&title)[64];
  int32_t& wrap;
  int32_t& showlistcount;
};

/// What a Title without text does.
enum class EmptyTitle { kPassedOver, kLineBreak };

void read_title(const XMLElement& element, EmptyTitle empty, TitleFields fields);

template <EmptyTitle Empty, typename Target>
void title(Target& target, const XMLElement& element) {
  auto& screen = target.screen;
  read_title(element, Empty, {screen.Title, screen.wrap, screen.showlistcount});
}

/// Fills the soft key of the element's index, 1 to 4; without one, the first.
void read_soft_key(const XMLElement& element, XML_SOFTKEY_T (&keys)[CFGXML_SOFT_KEY_CAPACITY]);

template <typename Target>
void soft_key(Target& target, const XMLElement& element) {
  read_soft_key(element, target.screen.SoftKeys);
}

/// Fills an option's value, and its text when the element names one.
void read_option(const XMLElement& element, XML_OPTION_T& option);

/// The word in data ids and option texts that stands for a number of each.
inline constexpr char kAll[] = "All";

/// Puts a number of at most three digits in place of every "All" in a text.
void number_all(char (&field)[64], const char* number);

}  // namespace cfgxml::xmlbrowser
