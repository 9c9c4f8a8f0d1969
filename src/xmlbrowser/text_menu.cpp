// Text menus: items with a prompt, what choosing them does, and their options.
#include "xmlbrowser/attributes.h"
#include "xmlbrowser/bodies.h"
#include "xmlbrowser/elements.h"

namespace cfgxml::xmlbrowser {
namespace {

using Block = XML_TEXT_MENU_BLOCK_T;
using Menu = ScreenTarget<XML_TEXT_MENU_T>;

constexpr AttributeRule<Block> kRootAttributes[] = {
    {"IsSimplified", number_to<&Block::IsSimplified, if_yes>},
    {"DivPosPix", number_to<&Block::DivPosPix, decimal>},
    {"CombineData", text_to<&Block::CombineData>},
};

struct Item : RecordTarget<XML_MENU_ITEM_T> {
  bool last_slot;
  int copies = 1;
  int options = 0;
};

/// A data id that speaks of "All" makes two items of one, if there is a slot for the second.
void prompt(Item& item, const XMLElement& element) {
  XML_MENU_ITEM_T& record = *item.record;
  const char* text = element.GetText();
  if (!is_empty(text)) copy_text(record.Prompt, text);
  if (const char* id = element.Attribute("DataID")) copy_text(record.PromptDataID, id);
  if (contains(record.PromptDataID, kAll)) item.copies = item.last_slot ? 1 : 2;
}

void option(Item& item, const XMLElement& element) {
  if (item.options >= CFGXML_OPTION_CAPACITY) return;
  read_option(element, item.record->Options[item.options++]);
}

constexpr ElementRule<Item> kItemElements[] = {
    {"Prompt", Tag::kPrompt, prompt},
    {"URI", Tag::kUri, element_text_to<&XML_MENU_ITEM_T::URI>},
    {"Dial", Tag::kNone, element_text_to<&XML_MENU_ITEM_T::Dial>},
    {"Selection", Tag::kNone, element_text_to<&XML_MENU_ITEM_T::Selection>},
    {"DataID", Tag::kNone, element_text_to<&XML_MENU_ITEM_T::DataID>},
    {"Option", Tag::kNone, option},
};

/// "yes" speaks for every copy, anything else for the first.
void set_local_data(const XMLElement& element, Block& block, int index, int copies) {
  const char* value = element.Attribute("LocalData");
  if (value == nullptr) return;
  const int32_t flag = if_yes(value);
  const int end = flag != 0 ? index + copies : index + 1;
  for (int i = index; i < end; ++i) block.LocalData[i] = flag;
}

/// Puts the number of each copy, 01 and 02, in place of "All" in its data ids.
void number_copies(XML_MENU_ITEM_T* first, int copies) {
  static constexpr const char* kNumbers[] = {"01", "02"};
  if (copies == 2) first[1] = first[0];
  for (int i = 0; i < copies; ++i) {
    number_all(first[i].DataID, kNumbers[i]);
    number_all(first[i].PromptDataID, kNumbers[i]);
  }
}

/// Without a prompt the item does not count, and the next one takes its slot, cleared.
void menu_item(Menu& menu, const XMLElement& element) {
  int32_t& count = menu.screen.ItemCount;
  if (count == CFGXML_MENU_ITEM_CAPACITY) return;
  Item item{{&menu.screen.Items[count]}, count == CFGXML_MENU_ITEM_CAPACITY - 1};
  read_children(element, kItemElements, menu.names, item);
  if (is_empty(item.record->Prompt)) {
    *item.record = {};
    return;
  }

  set_local_data(element, menu.screen.header.block.menu, count, item.copies);
  number_copies(item.record, item.copies);
  count += item.copies;
}

constexpr ElementRule<Menu> kElements[] = {
    {"Title", Tag::kNone, title<EmptyTitle::kPassedOver>},
    {"MenuItem", Tag::kMenuItem, menu_item},
    {"SoftKey", Tag::kNone, soft_key},
};

}  // namespace

void read_body(const XMLElement& root, TagNames& names, XML_TEXT_MENU_T& menu) {
  read_attributes(root, kRootAttributes, menu.header.block.menu);
  names.read({Tag::kMenuItem, Tag::kPrompt, Tag::kUri});
  Menu target{menu, names};
  read_children(root, kElements, names, target);
}

}  // namespace cfgxml::xmlbrowser
