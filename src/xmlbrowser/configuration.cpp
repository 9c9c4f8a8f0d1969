// Configurations: what up to three programmable keys do. Names are compared with case.
#include "xmlbrowser/attributes.h"
#include "xmlbrowser/bodies.h"
#include "xmlbrowser/elements.h"

namespace cfgxml::xmlbrowser {
namespace {

using Configuration = RecordTarget<XML_CONFIGURATION_T>;
using Key = RecordTarget<XML_KEY_CONFIG_T>;

constexpr ElementRule<Key> kKeyElements[] = {
    {"Type", Tag::kNone, element_text_to<&XML_KEY_CONFIG_T::Type>},
    {"Label", Tag::kNone, element_text_to<&XML_KEY_CONFIG_T::Label>},
    {"Param1", Tag::kNone, element_text_to<&XML_KEY_CONFIG_T::Param1>},
    {"Param2", Tag::kNone, element_text_to<&XML_KEY_CONFIG_T::Param2>},
    {"Param3", Tag::kNone, element_text_to<&XML_KEY_CONFIG_T::Param3>},
};

/// Fills the record that the element's first attribute, whatever its name, gives the number of,
/// counted from First; a number without a record is passed over.
template <int First>
void key(Configuration& configuration, const XMLElement& element) {
  const tinyxml2::XMLAttribute* number = element.FirstAttribute();
  if (number == nullptr) return;
  const std::int64_t index = std::int64_t{decimal(number->Value())} - First;
  if (index < 0 || index >= CFGXML_KEY_CAPACITY) return;
  Key target{&configuration.record->Keys[index]};
  read_children(element, kKeyElements, ExactNames(), target);
}

/// Keys of an expansion module have no record.
constexpr ElementRule<Configuration> kElements[] = {
    {"DssKey", Tag::kNone, key<1>},
    {"LineKey", Tag::kNone, key<0>},
};

}  // namespace

void read_body(const XMLElement& root, TagNames& /*names*/, XML_CONFIGURATION_T& screen) {
  Configuration target{&screen};
  read_children(root, kElements, ExactNames(), target);
}

}  // namespace cfgxml::xmlbrowser
