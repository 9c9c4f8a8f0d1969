#include "xmlbrowser/attributes.h"

namespace cfgxml::xmlbrowser {
namespace {

using Header = XML_BROWSER_HEADER_T;

constexpr AttributeRule<Header> kHeaderAttributes[] = {
    {"defaultIndex", number_to<&Header::defaultIndex, index_or_one>},
    {"style", text_to<&Header::style>},
    {"Beep", number_to<&Header::Beep, beep>},
    {"wrapList", number_to<&Header::wrapList, if_yes>},
    {"Timeout", number_to<&Header::Timeout, timeout>},
    {"LockIn", number_to<&Header::LockIn, unless_no_or_empty>},
    {"Next", text_to<&Header::Next>},
    {"Previous", text_to<&Header::Previous>},
    {"Selection", text_to<&Header::Selection>},
    {"Exit", text_to<&Header::Exit>},
    {"InputType", text_to<&Header::InputType>},
    {"LocalData", number_to<&Header::LocalData, if_yes>},
    {"RollMode", number_to<&Header::RollMode, if_yes>},
    {"Dial", number_to<&Header::Dial, if_telephone1>},
    {"Dial1", number_to<&Header::Dial1, unless_telephone>},
};

struct InputType {
  const char* name;
  std::int32_t code;
};

constexpr InputType kInputTypes[] = {
    {"edit", XML_INPUT_EDIT},         {"number", XML_INPUT_EDIT}, {"combox", XML_INPUT_COMBOX},
    {"ipaddr", XML_INPUT_IPADDR},     {"date", XML_INPUT_DATE},   {"time", XML_INPUT_TIME},
    {"progress", XML_INPUT_PROGRESS},
};

}  // namespace

bool is_keyword(const char* value, const char* keyword) {
  return value != nullptr && equal_ignoring_case(value, keyword);
}

std::int32_t decimal(const char* value) { return rl_atoi(value); }

std::int32_t if_yes(const char* value) { return is_keyword(value, "yes") ? 1 : 0; }

std::int32_t unless_no(const char* value) {
  return value != nullptr && !is_keyword(value, "no") ? 1 : 0;
}

std::int32_t unless_no_or_empty(const char* value) {
  return is_empty(value) ? 0 : unless_no(value);
}

std::int32_t if_telephone1(const char* value) { return is_keyword(value, "Telephone1") ? 1 : 0; }

std::int32_t unless_telephone(const char* value) {
  return value != nullptr && !is_keyword(value, "Telephone") ? 1 : 0;
}

std::int32_t index_or_one(const char* value) {
  if (value == nullptr) return 0;
  return is_empty(value) ? 1 : rl_atoi(value);
}

std::int32_t beep(const char* value) {
  return is_keyword(value, "yes") ? 1 : rl_atoi(value);  // "no" reads as 0
}

std::int32_t timeout(const char* value) { return is_empty(value) ? -1 : rl_atoi(value); }

std::int32_t input_type(const char* value) {
  if (value == nullptr) return XML_INPUT_EDIT;
  for (const InputType& type : kInputTypes) {
    if (equal(value, type.name)) return type.code;
  }
  return XML_INPUT_UNKNOWN;
}

void update_flag(const tinyxml2::XMLElement& element, const char* name, std::int32_t& flag) {
  if (const char* value = element.Attribute(name)) flag = if_yes(value);
}

void read_header(const tinyxml2::XMLElement& root, Header& header) {
  read_attributes(root, kHeaderAttributes, header);
}

}  // namespace cfgxml::xmlbrowser
