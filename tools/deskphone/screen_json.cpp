#include "screen_json.h"

namespace deskphone {
namespace {

Row fields_of(const XML_BROWSER_HEADER_T& header) {
  return {{"type", header.type},           {"defaultIndex", header.defaultIndex},
          {"style", header.style},         {"Beep", header.Beep},
          {"wrapList", header.wrapList},   {"Timeout", header.Timeout},
          {"LockIn", header.LockIn},       {"LocalData", header.LocalData},
          {"RollMode", header.RollMode},   {"Dial", header.Dial},
          {"Dial1", header.Dial1},         {"InputType", header.InputType},
          {"Next", header.Next},           {"Previous", header.Previous},
          {"Selection", header.Selection}, {"Exit", header.Exit}};
}

Row fields_of(const XML_SOFTKEY_T (&keys)[CFGXML_SOFT_KEY_CAPACITY]) {
  Row rows = Row::array();
  for (const XML_SOFTKEY_T& key : keys) rows.push_back({{"Label", key.Label}, {"URI", key.URI}});
  return rows;
}

/// Up to the last option that holds something.
Row fields_of(const XML_OPTION_T (&options)[CFGXML_OPTION_CAPACITY]) {
  Row rows = Row::array();
  std::size_t used = 0;
  for (const XML_OPTION_T& option : options) {
    rows.push_back({{"text", option.text}, {"value", option.value}});
    if (option.text[0] != '\0' || option.value[0] != '\0') used = rows.size();
  }
  rows.erase(rows.begin() + static_cast<Row::difference_type>(used), rows.end());
  return rows;
}

Row fields_of(const XML_MENU_ITEM_T& item) {
  return {{"Prompt", item.Prompt},
          {"URI", item.URI},
          {"Dial", item.Dial},
          {"Selection", item.Selection},
          {"PromptDataID", item.PromptDataID},
          {"DataID", item.DataID},
          {"Options", fields_of(item.Options)}};
}

Row fields_of(const XML_DIRECTORY_ENTRY_T& entry) {
  return {{"Name", entry.Name},
          {"Telephone", entry.Telephone},
          {"Telephone1", entry.Telephone1},
          {"Presence", entry.Presence},
          {"URI", entry.URI},
          {"Selection", entry.Selection},
          {"PresenceState", entry.PresenceState}};
}

/// A field with its entries in the header's arrays.
Row fields_of(const XML_INPUT_FIELD_T& field, const XML_INPUT_SCREEN_BLOCK_T& block, int index) {
  return {{"Prompt", field.Prompt},
          {"Parameter", field.Parameter},
          {"Default", field.Default},
          {"URL", field.URL},
          {"DataID", field.DataID},
          {"type", block.type[index]},
          {"password", block.password[index]},
          {"editable", block.editable[index]},
          {"is_interger", block.is_interger[index]},
          {"min", block.min[index]},
          {"max", block.max[index]},
          {"step", block.step[index]},
          {"emptyable", block.emptyable[index]},
          {"startodot", block.startodot[index]},
          {"Options", fields_of(field.Options)}};
}

/// The header and the title, with which every screen begins.
template <typename Screen>
Row beginning_of(const Screen& screen) {
  Row fields = fields_of(screen.header);
  fields["Title"] = screen.Title;
  fields["wrap"] = screen.wrap;
  fields["showlistcount"] = screen.showlistcount;
  return fields;
}

}  // namespace

Row fields_of(const XML_TEXT_SCREEN_T& screen) {
  Row fields = beginning_of(screen);
  fields["Text"] = screen.Text;
  fields["SoftKeys"] = fields_of(screen.SoftKeys);
  return fields;
}

Row fields_of(const XML_TEXT_MENU_T& menu) {
  const XML_TEXT_MENU_BLOCK_T& block = menu.header.block.menu;
  Row fields = beginning_of(menu);
  fields["IsSimplified"] = block.IsSimplified;
  fields["DivPosPix"] = block.DivPosPix;
  fields["CombineData"] = block.CombineData;
  fields["ItemCount"] = menu.ItemCount;
  fields["Items"] = Row::array();
  for (int i = 0; i < menu.ItemCount; ++i) {
    Row item = fields_of(menu.Items[i]);
    item["LocalData"] = block.LocalData[i];
    fields["Items"].push_back(std::move(item));
  }
  fields["SoftKeys"] = fields_of(menu.SoftKeys);
  return fields;
}

Row fields_of(const XML_DIRECTORY_T& directory) {
  Row fields = beginning_of(directory);
  fields["EntryCount"] = directory.EntryCount;
  fields["Entries"] = Row::array();
  for (int i = 0; i < directory.EntryCount; ++i) {
    fields["Entries"].push_back(fields_of(directory.Entries[i]));
  }
  fields["SoftKeys"] = fields_of(directory.SoftKeys);
  return fields;
}

Row fields_of(const XML_INPUT_SCREEN_T& form) {
  const XML_INPUT_SCREEN_BLOCK_T& block = form.header.block.input;
  Row fields = beginning_of(form);
  fields["DivPosPix"] = block.DivPosPix;
  fields["CombineData"] = block.CombineData;
  fields["SaveNext"] = block.SaveNext;
  fields["FieldCount"] = form.FieldCount;
  fields["Fields"] = Row::array();
  for (int i = 0; i < form.FieldCount; ++i) {
    fields["Fields"].push_back(fields_of(form.Fields[i], block, i));
  }
  fields["SoftKeys"] = fields_of(form.SoftKeys);
  return fields;
}

Row fields_of(const XML_CONFIGURATION_T& configuration) {
  Row fields = fields_of(configuration.header);
  fields["Keys"] = Row::array();
  for (const XML_KEY_CONFIG_T& key : configuration.Keys) {
    fields["Keys"].push_back({{"Type", key.Type},
                              {"Label", key.Label},
                              {"Param1", key.Param1},
                              {"Param2", key.Param2},
                              {"Param3", key.Param3}});
  }
  return fields;
}

}  // namespace deskphone
