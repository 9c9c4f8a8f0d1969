// Input screens: a form of up to 20 fields. The root element is the first field, and every
// InputField one more; children of the root that come after an InputField go on with that field.
#include <cstdio>
#include <limits>

#include "xmlbrowser/attributes.h"
#include "xmlbrowser/bodies.h"
#include "xmlbrowser/elements.h"

namespace cfgxml::xmlbrowser {
namespace {

using Block = XML_INPUT_SCREEN_BLOCK_T;

constexpr AttributeRule<Block> kRootAttributes[] = {
    {"CombineData", text_to<&Block::CombineData>},
    {"SaveNext", text_to<&Block::SaveNext>},
    {"DivPosPix", number_to<&Block::DivPosPix, decimal>},
};

/// The attributes of one field, an entry in each of the block's arrays.
struct FieldEntries {
  Block& block;
  int field;
};

template <auto Entries, std::int32_t (*Kind)(const char* value)>
void entry_to(FieldEntries& entries, const char* value) {
  (entries.block.*Entries)[entries.field] = Kind(value);
}

constexpr AttributeRule<FieldEntries> kFieldAttributes[] = {
    {"type", entry_to<&Block::type, input_type>},
    {"password", entry_to<&Block::password, unless_no>},
    {"editable", entry_to<&Block::editable, unless_no>},
    {"is_interger", entry_to<&Block::is_interger, if_yes>},
    {"min", entry_to<&Block::min, decimal>},
    {"max", entry_to<&Block::max, decimal>},
    {"step", entry_to<&Block::step, decimal>},
};

/// Not on the root element.
constexpr AttributeRule<FieldEntries> kInputFieldAttributes[] = {
    {"startodot", entry_to<&Block::startodot, unless_no>},
};

/// The form and the field that is being filled.
struct Form : RecordTarget<XML_INPUT_FIELD_T> {
  XML_INPUT_SCREEN_T& screen;
  int field = 0;
  int options = 0;    // of that field, so far
  bool full = false;  // a field more than there is room for was met

  Block& block() { return screen.header.block.input; }
};

void parameter(Form& form, const XMLElement& element) {
  copy_text(form.record->Parameter, element.GetText());
  update_flag(element, "emptyable", form.block().emptyable[form.field]);
}

/// Fills options with the numbers from min to max. A step down goes on as long as there is room and
/// the numbers are int32.
void generate_options(Form& form) {
  constexpr std::int64_t kLeast = std::numeric_limits<std::int32_t>::min();
  const std::int64_t max = form.block().max[form.field];
  const std::int64_t step = form.block().step[form.field];
  for (std::int64_t value = form.block().min[form.field];
       value <= max && value >= kLeast && form.options < CFGXML_OPTION_CAPACITY; value += step) {
    XML_OPTION_T& option = form.record->Options[form.options++];
    std::snprintf(option.value, sizeof option.value, "%d", static_cast<int>(value));
    copy_text(option.text, option.value);
  }
}

/// Makes two options of one that speaks of "All", if there is room for the second.
void double_option(Form& form) {
  const XML_OPTION_T original = form.record->Options[form.options];
  for (const char* number : {"1", "2"}) {
    if (form.options == CFGXML_OPTION_CAPACITY) return;
    XML_OPTION_T& option = form.record->Options[form.options++];
    option = original;
    copy_text(option.value, number);
    number_all(option.text, number);
  }
}

void option(Form& form, const XMLElement& element) {
  if (form.options == CFGXML_OPTION_CAPACITY) return;
  XML_OPTION_T& option = form.record->Options[form.options];
  read_option(element, option);
  if (form.block().is_interger[form.field] != 0 && form.block().step[form.field] != 0) {
    generate_options(form);
  } else if (contains(option.text, kAll)) {
    double_option(form);
  } else {
    ++form.options;
  }
}

constexpr ElementRule<Form> kFieldElements[] = {
    {"Prompt", Tag::kNone, element_text_to<&XML_INPUT_FIELD_T::Prompt>},
    {"Parameter", Tag::kNone, parameter},
    {"Default", Tag::kNone, element_text_to<&XML_INPUT_FIELD_T::Default>},
    {"URL", Tag::kNone, element_text_to<&XML_INPUT_FIELD_T::URL>},
    {"DataID", Tag::kNone, element_text_to<&XML_INPUT_FIELD_T::DataID>},
    {"Option", Tag::kNone, option},
};

void input_field(Form& form, const XMLElement& element) {
  if (form.field + 1 == CFGXML_INPUT_FIELD_CAPACITY) {
    form.full = true;
    return;
  }
  ++form.field;
  form.record = &form.screen.Fields[form.field];
  form.options = 0;
  FieldEntries entries{form.block(), form.field};
  read_attributes(element, kFieldAttributes, entries);
  read_attributes(element, kInputFieldAttributes, entries);
  read_children(element, kFieldElements, FixedNames(), form);
}

/// Beside the field elements, which go to the last field.
constexpr ElementRule<Form> kElements[] = {
    {"Title", Tag::kNone, title<EmptyTitle::kPassedOver>},
    {"InputField", Tag::kNone, input_field},
};

constexpr ElementRule<Form> kSoftKeys[] = {
    {"SoftKey", Tag::kNone, soft_key},
};

}  // namespace

void read_body(const XMLElement& root, TagNames& /*names*/, XML_INPUT_SCREEN_T& screen) {
  Form form{{&screen.Fields[0]}, screen};
  FieldEntries entries{form.block(), form.field};
  read_attributes(root, kRootAttributes, form.block());
  read_attributes(root, kFieldAttributes, entries);

  for (const XMLElement* child = root.FirstChildElement(); child != nullptr && !form.full;
       child = child->NextSiblingElement()) {
    if (!read_element(*child, kElements, FixedNames(), form)) {
      read_element(*child, kFieldElements, FixedNames(), form);
    }
  }
  screen.FieldCount = form.field + 1;
  // Soft keys count behind the fields that found no room, too.
  read_children(root, kSoftKeys, FixedNames(), form);
}

}  // namespace cfgxml::xmlbrowser
