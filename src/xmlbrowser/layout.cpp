// The layouts of the screen objects are an interface: every offset and size is checked here. They
// hold on 32-bit and 64-bit alike, since the records consist of int32 fields and byte arrays.
#include <cfgxml/xmlbrowser.h>

#include <cstddef>

static_assert(offsetof(XML_TEXT_MENU_BLOCK_T, LocalData) == 0);
static_assert(offsetof(XML_TEXT_MENU_BLOCK_T, IsSimplified) == 120);
static_assert(offsetof(XML_TEXT_MENU_BLOCK_T, DivPosPix) == 124);
static_assert(offsetof(XML_TEXT_MENU_BLOCK_T, CombineData) == 128);
static_assert(sizeof(XML_TEXT_MENU_BLOCK_T) == 192);

static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, type) == 0);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, password) == 80);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, editable) == 160);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, Reserved) == 240);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, DivPosPix) == 248);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, is_interger) == 252);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, min) == 332);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, max) == 412);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, step) == 492);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, emptyable) == 572);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, CombineData) == 652);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, SaveNext) == 716);
static_assert(offsetof(XML_INPUT_SCREEN_BLOCK_T, startodot) == 844);
static_assert(sizeof(XML_INPUT_SCREEN_BLOCK_T) == 924);

static_assert(offsetof(XML_BROWSER_HEADER_T, type) == 0);
static_assert(offsetof(XML_BROWSER_HEADER_T, defaultIndex) == 4);
static_assert(offsetof(XML_BROWSER_HEADER_T, style) == 8);
static_assert(offsetof(XML_BROWSER_HEADER_T, Beep) == 72);
static_assert(offsetof(XML_BROWSER_HEADER_T, wrapList) == 76);
static_assert(offsetof(XML_BROWSER_HEADER_T, Timeout) == 80);
static_assert(offsetof(XML_BROWSER_HEADER_T, LockIn) == 84);
static_assert(offsetof(XML_BROWSER_HEADER_T, LocalData) == 88);
static_assert(offsetof(XML_BROWSER_HEADER_T, RollMode) == 92);
static_assert(offsetof(XML_BROWSER_HEADER_T, Dial) == 96);
static_assert(offsetof(XML_BROWSER_HEADER_T, Dial1) == 100);
static_assert(offsetof(XML_BROWSER_HEADER_T, InputType) == 104);
static_assert(offsetof(XML_BROWSER_HEADER_T, Next) == 168);
static_assert(offsetof(XML_BROWSER_HEADER_T, Previous) == 296);
static_assert(offsetof(XML_BROWSER_HEADER_T, Selection) == 424);
static_assert(offsetof(XML_BROWSER_HEADER_T, Exit) == 936);
static_assert(offsetof(XML_BROWSER_HEADER_T, Reserved) == 1064);
static_assert(offsetof(XML_BROWSER_HEADER_T, block) == 1076);
static_assert(sizeof(XML_BROWSER_HEADER_T) == 2000);

static_assert(offsetof(XML_SOFTKEY_T, Label) == 0);
static_assert(offsetof(XML_SOFTKEY_T, URI) == 64);
static_assert(sizeof(XML_SOFTKEY_T) == 320);

static_assert(offsetof(XML_OPTION_T, text) == 0);
static_assert(offsetof(XML_OPTION_T, value) == 64);
static_assert(sizeof(XML_OPTION_T) == 76);

static_assert(offsetof(XML_TEXT_SCREEN_T, header) == 0);
static_assert(offsetof(XML_TEXT_SCREEN_T, Title) == 2000);
static_assert(offsetof(XML_TEXT_SCREEN_T, wrap) == 2064);
static_assert(offsetof(XML_TEXT_SCREEN_T, showlistcount) == 2068);
static_assert(offsetof(XML_TEXT_SCREEN_T, Text) == 2072);
static_assert(offsetof(XML_TEXT_SCREEN_T, SoftKeys) == 2328);
static_assert(sizeof(XML_TEXT_SCREEN_T) == 3608);

static_assert(offsetof(XML_MENU_ITEM_T, Prompt) == 0);
static_assert(offsetof(XML_MENU_ITEM_T, URI) == 64);
static_assert(offsetof(XML_MENU_ITEM_T, Dial) == 320);
static_assert(offsetof(XML_MENU_ITEM_T, Selection) == 384);
static_assert(offsetof(XML_MENU_ITEM_T, PromptDataID) == 448);
static_assert(offsetof(XML_MENU_ITEM_T, DataID) == 512);
static_assert(offsetof(XML_MENU_ITEM_T, Reserved) == 576);
static_assert(offsetof(XML_MENU_ITEM_T, Options) == 580);
static_assert(sizeof(XML_MENU_ITEM_T) == 2860);

static_assert(offsetof(XML_TEXT_MENU_T, header) == 0);
static_assert(offsetof(XML_TEXT_MENU_T, Title) == 2000);
static_assert(offsetof(XML_TEXT_MENU_T, wrap) == 2064);
static_assert(offsetof(XML_TEXT_MENU_T, ItemCount) == 2068);
static_assert(offsetof(XML_TEXT_MENU_T, showlistcount) == 2072);
static_assert(offsetof(XML_TEXT_MENU_T, Items) == 2076);
static_assert(offsetof(XML_TEXT_MENU_T, SoftKeys) == 87876);
static_assert(sizeof(XML_TEXT_MENU_T) == 89156);

static_assert(offsetof(XML_DIRECTORY_ENTRY_T, Name) == 0);
static_assert(offsetof(XML_DIRECTORY_ENTRY_T, Telephone) == 64);
static_assert(offsetof(XML_DIRECTORY_ENTRY_T, Telephone1) == 128);
static_assert(offsetof(XML_DIRECTORY_ENTRY_T, Presence) == 192);
static_assert(offsetof(XML_DIRECTORY_ENTRY_T, URI) == 256);
static_assert(offsetof(XML_DIRECTORY_ENTRY_T, Selection) == 384);
static_assert(offsetof(XML_DIRECTORY_ENTRY_T, PresenceState) == 448);
static_assert(sizeof(XML_DIRECTORY_ENTRY_T) == 452);

static_assert(offsetof(XML_DIRECTORY_T, header) == 0);
static_assert(offsetof(XML_DIRECTORY_T, Title) == 2000);
static_assert(offsetof(XML_DIRECTORY_T, wrap) == 2064);
static_assert(offsetof(XML_DIRECTORY_T, EntryCount) == 2068);
static_assert(offsetof(XML_DIRECTORY_T, showlistcount) == 2072);
static_assert(offsetof(XML_DIRECTORY_T, Entries) == 2076);
static_assert(offsetof(XML_DIRECTORY_T, SoftKeys) == 228076);
static_assert(sizeof(XML_DIRECTORY_T) == 229356);

static_assert(offsetof(XML_INPUT_FIELD_T, Prompt) == 0);
static_assert(offsetof(XML_INPUT_FIELD_T, Parameter) == 64);
static_assert(offsetof(XML_INPUT_FIELD_T, Default) == 128);
static_assert(offsetof(XML_INPUT_FIELD_T, URL) == 192);
static_assert(offsetof(XML_INPUT_FIELD_T, DataID) == 448);
static_assert(offsetof(XML_INPUT_FIELD_T, Options) == 512);
static_assert(sizeof(XML_INPUT_FIELD_T) == 2792);

static_assert(offsetof(XML_INPUT_SCREEN_T, header) == 0);
static_assert(offsetof(XML_INPUT_SCREEN_T, Title) == 2000);
static_assert(offsetof(XML_INPUT_SCREEN_T, wrap) == 2064);
static_assert(offsetof(XML_INPUT_SCREEN_T, FieldCount) == 2068);
static_assert(offsetof(XML_INPUT_SCREEN_T, showlistcount) == 2072);
static_assert(offsetof(XML_INPUT_SCREEN_T, Fields) == 2076);
static_assert(offsetof(XML_INPUT_SCREEN_T, SoftKeys) == 57916);
static_assert(sizeof(XML_INPUT_SCREEN_T) == 59196);

static_assert(offsetof(XML_KEY_CONFIG_T, Type) == 0);
static_assert(offsetof(XML_KEY_CONFIG_T, Label) == 12);
static_assert(offsetof(XML_KEY_CONFIG_T, Param1) == 76);
static_assert(offsetof(XML_KEY_CONFIG_T, Param2) == 204);
static_assert(offsetof(XML_KEY_CONFIG_T, Param3) == 268);
static_assert(offsetof(XML_KEY_CONFIG_T, Reserved) == 332);
static_assert(sizeof(XML_KEY_CONFIG_T) == 396);

static_assert(offsetof(XML_CONFIGURATION_T, header) == 0);
static_assert(offsetof(XML_CONFIGURATION_T, Keys) == 2000);
static_assert(sizeof(XML_CONFIGURATION_T) == 3188);
