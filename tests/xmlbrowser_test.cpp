#include <cfgxml/xmlbrowser.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <regex>
#include <sstream>
#include <string>

#include "runtime/memory.h"
#include "support/phone.h"

namespace {

const std::string kFolder = "/app/factory/Static/XMLBrowser/";

std::string repeat(const std::string& part, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += part;
  return text;
}

std::string sample(const std::string& name) {
  std::ifstream file(std::string(CFGXML_SAMPLES) + "/screens/" + name);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

template <std::size_t Capacity>
void put(char (&field)[Capacity], const std::string& text) {
  ASSERT_LT(text.size(), Capacity);
  std::memcpy(field, text.c_str(), text.size());
}

/// Every byte of two objects; names the first one that differs.
template <typename Screen>
testing::AssertionResult same(const Screen& actual, const Screen& expected) {
  const auto* left = reinterpret_cast<const char*>(&actual);
  const auto* right = reinterpret_cast<const char*>(&expected);
  for (std::size_t i = 0; i < sizeof(Screen); ++i) {
    if (left[i] != right[i]) return testing::AssertionFailure() << "they differ at byte " << i;
  }
  return testing::AssertionSuccess();
}

/// A screen as a root without attributes or children leaves it.
template <typename Screen>
std::unique_ptr<Screen> new_screen(int type) {
  auto screen = std::make_unique<Screen>();
  screen->header.type = type;
  screen->header.Timeout = -1;
  return screen;
}

const std::pair<int (*)(), const char*> kReleases[] = {
    {cfg_destory_text_screen_object,
     "cfg_destory_text_screen_object failed: g_text_screen_object is NULL."},
    {cfg_destory_text_menu_object,
     "cfg_destory_text_menu_object failed: g_text_menu_object is NULL."},
    {cfg_destory_xml_browser_directory_object,
     "cfg_destory_xml_browser_directory_object failed: g_directory_object is NULL."},
    {cfg_destory_xml_browser_input_screen_object,
     "cfg_destory_xml_browser_input_screen_object failed: g_input_screen_object is NULL."},
    {cfg_destory_xml_browser_configuration_object,
     "cfg_destory_xml_browser_configuration_object failed: g_configuration_object is NULL."}};

class XmlBrowser : public phone_test::Phone {
 protected:
  void TearDown() override {
    release_all();
    cfg_free_local_xml_file_cache();
    Phone::TearDown();
  }

  static void release_all() {
    for (const auto& [release, message] : kReleases) release();
  }

  int parse(const std::string& text) {
    write("/screen.xml", text);
    return cfg_parse_remote_xml(on_disk("/screen.xml").c_str());
  }

  const XML_TEXT_SCREEN_T& text_screen(const std::string& attributes, const std::string& body) {
    return show("TextScreen", attributes, body, cfg_get_text_screen_object);
  }
  const XML_TEXT_MENU_T& text_menu(const std::string& body, const std::string& attributes = "") {
    return show("TextMenu", attributes, body, cfg_get_text_menu_object);
  }
  const XML_DIRECTORY_T& directory(const std::string& body) {
    return show("Directory", "", body, cfg_get_xml_browser_directory_object);
  }
  const XML_INPUT_SCREEN_T& input_screen(const std::string& body,
                                         const std::string& attributes = "") {
    return show("InputScreen", attributes, body, cfg_get_xml_browser_input_screen_object);
  }

 private:
  template <typename Screen>
  const Screen& show(const std::string& type, const std::string& attributes,
                     const std::string& body, Screen* (*object)()) {
    static const auto kNone = std::make_unique<Screen>();
    release_all();
    EXPECT_EQ(parse("<IPPhone" + type + " " + attributes + ">" + body + "</IPPhone" + type + ">"),
              0);
    EXPECT_NE(object(), nullptr);
    return object() != nullptr ? *object() : *kNone;
  }
};

TEST_F(XmlBrowser, EveryTypeHasASlotOfItsOwnUntilItIsReleased) {
  EXPECT_EQ(cfg_get_text_menu_object(), nullptr);
  ASSERT_EQ(parse(sample("text_menu.xml")), 0);
  ASSERT_EQ(parse(sample("directory.xml")), 0);
  EXPECT_EQ(cfg_get_remote_xml_type(), 3);
  EXPECT_EQ(cfg_get_text_menu_object()->header.type, 1);
  EXPECT_EQ(cfg_get_xml_browser_directory_object()->header.type, 3);

  EXPECT_EQ(cfg_destory_text_menu_object(), 0);
  EXPECT_EQ(cfg_get_text_menu_object(), nullptr);
  EXPECT_EQ(cfg_get_remote_xml_type(), 3);

  release_all();
  for (const auto& [release, message] : kReleases) {
    EXPECT_EQ(release(), -1) << message;
    EXPECT_EQ(log().back(), message);
  }
}

TEST_F(XmlBrowser, WhatIsNoDocumentLeavesTheObjectsAndNoType) {
  ASSERT_EQ(parse(sample("text_screen.xml")), 0);
  const XML_TEXT_SCREEN_T* shown = cfg_get_text_screen_object();

  EXPECT_EQ(cfg_parse_remote_xml(nullptr), -1);
  EXPECT_TRUE(logged("load file <NULL> fail!"));
  EXPECT_EQ(cfg_parse_remote_xml(on_disk("/missing.xml").c_str()), -1);
  EXPECT_TRUE(logged("load file <" + on_disk("/missing.xml") + "> fail!"));
  EXPECT_EQ(cfg_parse_remote_xml(on_disk("/config").c_str()), -1);
  for (const char* text :
       {"", "<IPPhoneTextScreen>", "<IPPhoneTextScreen><Title></IPPhoneTextScreen>", "\xff\xfe\x01",
        "<IPPhoneTextScreen style=x/>"}) {
    forget_log();
    EXPECT_EQ(parse(text), -1) << text;
    EXPECT_TRUE(logged("load file <" + on_disk("/screen.xml") + "> fail!")) << text;
    EXPECT_EQ(cfg_get_remote_xml_type(), 0) << text;
  }
  forget_log();
  EXPECT_EQ(parse("<?xml version=\"1.0\"?><!-- nothing -->"), -1);
  EXPECT_EQ(parse("<IPPhoneTextScreens/>"), 0);
  EXPECT_EQ(log(), std::vector<std::string>());
  EXPECT_EQ(cfg_get_remote_xml_type(), 0);

  int type = 0;
  host::guard_memory([&](std::size_t /*size*/) { return (type = cfg_get_remote_xml_type()) == 0; });
  EXPECT_EQ(parse("<IPPhoneTextScreen/>"), -1);
  host::guard_memory(nullptr);
  EXPECT_EQ(type, 2) << "the root names it, before there is an object";
  EXPECT_EQ(cfg_get_remote_xml_type(), 0);
  EXPECT_EQ(cfg_get_text_screen_object(), shown);
}

TEST_F(XmlBrowser, TheRootsAttributesFillTheHeader) {
  const XML_TEXT_SCREEN_T& screen = text_screen(
      "defaultIndex='7' style='s' Beep='2' wrapList='YES' Timeout='30' LockIn='yes' Next='n' "
      "Previous='p' Selection='" +
          std::string(600, 'x') +
          "' Exit='e' InputType='i' "
          "LocalData='yes' RollMode='yes' Dial='telephone1' Dial1='Telephone2'",
      "");
  const auto expected = new_screen<XML_TEXT_SCREEN_T>(2);
  expected->header = {2, 7, "s", 2, 1, 30, 1, 1, 1, 1, 1, "i", "n", "p", "", "e", {}, {}};
  put(expected->header.Selection, std::string(511, 'x'));
  EXPECT_TRUE(same(screen, *expected));
}

TEST_F(XmlBrowser, AbsentAndEmptyAttributesAndKeywordsHaveTheirNumbers) {
  using Numbers = std::vector<int>;  // index, beep, wrap, timeout, lock, dial, dial1
  const std::pair<const char*, Numbers> kCases[] = {
      {"", {0, 0, 0, -1, 0, 0, 0}},
      {"defaultIndex='' Beep='' wrapList='' Timeout='' LockIn='' Dial='' Dial1=''",
       {1, 0, 0, -1, 0, 0, 1}},
      {"defaultIndex='-3' Beep='YES' wrapList='1' Timeout='0' LockIn='No' Dial='Telephone' "
       "Dial1='telephone'",
       {-3, 1, 0, 0, 0, 0, 0}},
      {"Beep='NO' LockIn='on' Dial='x' Dial1='Telephone1'", {0, 0, 0, -1, 1, 0, 1}}};
  for (const auto& [attributes, numbers] : kCases) {
    const XML_BROWSER_HEADER_T& header = text_screen(attributes, "").header;
    EXPECT_EQ((Numbers{header.defaultIndex, header.Beep, header.wrapList, header.Timeout,
                       header.LockIn, header.Dial, header.Dial1}),
              numbers)
        << attributes;
  }
}

TEST_F(XmlBrowser, TitlesAreTrimmedAndCutAndThoseWithoutTextPassedOver) {
  const auto title = [this](const std::string& body) {
    return std::string(text_screen("", body).Title);
  };
  EXPECT_EQ(title("<TITLE>\t  Two words \r\n</TITLE>"), "Two words");
  EXPECT_EQ(title("<Title>\v kept</Title>"), "kept");
  EXPECT_EQ(title("<Title>" + std::string(100, 'a') + "</Title>"), std::string(63, 'a'));
  EXPECT_EQ(title("<Title>" + std::string(60, 'a') + "   b</Title>"), std::string(60, 'a'));
  EXPECT_EQ(title("<Title>" + std::string(62, 'a') + "\xC3\xA4</Title>"), std::string(62, 'a'));
  EXPECT_EQ(title("<Title>three</Title><Title>two</Title><Title><![CDATA[ \n]]></Title><Title/>"),
            "two");

  const XML_TEXT_SCREEN_T& screen = text_screen(
      "", "<Title wrap='yes'>t</Title><Title showlistcount='yes'> </Title><Title wrap='no'/>");
  EXPECT_EQ(screen.wrap, 1);
  EXPECT_EQ(screen.showlistcount, 0);

  const XML_DIRECTORY_T& empty = directory("<Title>t</Title><Title wrap='yes'/>");
  EXPECT_STREQ(empty.Title, "\r\n");
  EXPECT_EQ(empty.wrap, 1);
}

TEST_F(XmlBrowser, SoftKeysOverwriteWhatTheyCarryAndKeepToTheirFourSlots) {
  std::string body = "<Text>first</Text><Text/><text>" + std::string(300, 't') + "</text>";
  body += "<SoftKey><Label>one</Label><URI>lost</URI></SoftKey>";
  body += "<softkey index='1'><Label/><URI/></softkey>";
  body += "<SoftKey index='4'><LABEL>four</LABEL><uri>v</uri><Other>x</Other></SoftKey>";
  for (const char* index : {"0", "5", "", "-2147483648", "2147483647"}) {
    body += "<SoftKey index='" + std::string(index) + "'><Label>x</Label></SoftKey>";
  }
  const XML_TEXT_SCREEN_T& screen = text_screen("", body);
  const auto expected = new_screen<XML_TEXT_SCREEN_T>(2);
  put(expected->Text, std::string(255, 't'));
  expected->SoftKeys[0] = {"one", "\0ost"};
  expected->SoftKeys[3] = {"four", "v"};
  EXPECT_TRUE(same(screen, *expected));
}

TEST_F(XmlBrowser, AMenuItemThatSpeaksOfAllBecomesTwo) {
  const XML_TEXT_MENU_T& menu = text_menu(
      "<Title showlistcount='yes'>t</Title>"
      "<MenuItem LocalData='no'><Prompt>one</Prompt><URI>u</URI><Dial>d</Dial></MenuItem>"
      "<MenuItem LocalData='yes'><Prompt DataID='line.All'>two</Prompt><Selection>s</Selection>"
      "<DataID>All</DataID><Option text='t'>v</Option><Option>w</Option></MenuItem>"
      "<SoftKey index='4'><Label>l</Label></SoftKey>",
      "IsSimplified='yes' DivPosPix='120' CombineData='c'");
  const auto expected = new_screen<XML_TEXT_MENU_T>(1);
  expected->header.block.menu = {{0, 1, 1}, 1, 120, "c"};
  put(expected->Title, "t");
  expected->showlistcount = 1;
  expected->ItemCount = 3;
  expected->Items[0] = {"one", "u", "d", "", "", "", 0, {}};
  expected->Items[1] = {"two", "", "", "s", "line.01", "01", 0, {{"t", "v"}, {"", "w"}}};
  expected->Items[2] = {"two", "", "", "s", "line.02", "02", 0, {{"t", "v"}, {"", "w"}}};
  put(expected->SoftKeys[3].Label, "l");
  EXPECT_TRUE(same(menu, *expected));
}

TEST_F(XmlBrowser, AMenuHoldsThirtyItemsOfThirtyOptions) {
  const std::string item = "<MenuItem><Prompt>p</Prompt></MenuItem>";
  const std::string all = "<MenuItem LocalData='yes'><Prompt DataID='xAll'>p</Prompt></MenuItem>";
  const XML_TEXT_MENU_T& full = text_menu(repeat(item, 29) + all + item);
  EXPECT_EQ(full.ItemCount, 30);
  EXPECT_STREQ(full.Items[29].PromptDataID, "x01");
  EXPECT_EQ(full.header.block.menu.LocalData[29], 1);
  EXPECT_EQ(full.header.block.menu.IsSimplified, 0);
  EXPECT_STREQ(full.SoftKeys[0].Label, "");

  const XML_TEXT_MENU_T& pair = text_menu(repeat(item, 28) + all + item);
  EXPECT_EQ(pair.ItemCount, 30);
  EXPECT_STREQ(pair.Items[28].PromptDataID, "x01");
  EXPECT_STREQ(pair.Items[29].PromptDataID, "x02");

  const XML_TEXT_MENU_T& options = text_menu(
      "<MenuItem><Prompt>p</Prompt>" + repeat("<Option text='t'>123456789012</Option>", 31) +
      "</MenuItem><MenuItem><Prompt>q</Prompt><DataID>AllAll</DataID></MenuItem>");
  EXPECT_EQ(options.ItemCount, 2);
  EXPECT_STREQ(options.Items[0].Options[29].value, "12345678901");
  EXPECT_STREQ(options.Items[1].Prompt, "q");
  EXPECT_STREQ(options.Items[1].DataID, "0101");
}

TEST_F(XmlBrowser, AnItemWithoutAPromptDoesNotCountAndLeavesNothing) {
  const XML_TEXT_MENU_T& menu = text_menu(
      "<MenuItem LocalData='yes'><URI>lost</URI><Prompt DataID='All'/><Option>1</Option></MenuItem>"
      "<MenuItem LocalData='no'><Prompt>kept</Prompt></MenuItem>",
      "IsSimplified='yes'");
  const auto expected = new_screen<XML_TEXT_MENU_T>(1);
  expected->header.block.menu.IsSimplified = 1;
  expected->ItemCount = 1;
  put(expected->Items[0].Prompt, "kept");
  EXPECT_TRUE(same(menu, *expected));
}

TEST_F(XmlBrowser, ADirectoryListsNamesNumbersAndPresence) {
  const XML_DIRECTORY_T& shown = directory(
      "<DirectoryEntry><Name>Ann</Name><Telephone>1</Telephone><Telephone1>2</Telephone1>"
      "<Presence>Busy&amp;Ringing</Presence><URI>u</URI><Selection>s</Selection></DirectoryEntry>"
      "<MenuItem><Telephone>lost</Telephone><Presence>dnd</Presence><Name/></MenuItem>"
      "<menuitem><Prompt>Bob</Prompt><Presence>asleep</Presence></menuitem>");
  const auto expected = new_screen<XML_DIRECTORY_T>(3);
  expected->EntryCount = 2;
  expected->Entries[0] = {"Ann", "1", "2", "Busy&Ringing", "u", "s", 7};
  expected->Entries[1] = {"Bob", "", "", "asleep", "", "", 0};
  EXPECT_TRUE(same(shown, *expected));

  const char* const kTexts[] = {"",        "offline", "DND",         "online",   "Away",
                                "ringing", "busy",    "busyringing", "outgoing", "misscall"};
  for (int state = 0; state < 10; ++state) {
    const auto& entry = directory("<MenuItem><Name>n</Name><Presence>" +
                                  std::string(kTexts[state]) + "</Presence></MenuItem>")
                            .Entries[0];
    EXPECT_EQ(entry.PresenceState, state);
  }
}

TEST_F(XmlBrowser, ADirectoryHoldsFiveHundredEntries) {
  const XML_DIRECTORY_T& full =
      directory(repeat("<MenuItem><Name>n</Name></MenuItem>", 500) +
                "<MenuItem><Name>x</Name></MenuItem><SoftKey><Label>l</Label></SoftKey>");
  EXPECT_EQ(full.EntryCount, 500);
  EXPECT_STREQ(full.Entries[499].Name, "n");
  EXPECT_STREQ(full.SoftKeys[0].Label, "l");
}

TEST_F(XmlBrowser, ElementNamesComeFromTheConfigurationAndStandBesideTheFixedOnes) {
  const std::string menu =
      "<AcmeTextMenu><Line><Words>a</Words><Dial>b</Dial></Line>"
      "<MenuItem><Prompt>c</Prompt><URI>d</URI></MenuItem></AcmeTextMenu>";
  set_item(46, 0, "Acme");
  set_item(46, 1, "LINE");
  set_item(46, 3, "words");
  set_item(46, 4, "Dial");
  EXPECT_EQ(parse(sample("text_menu.xml")), 0);
  EXPECT_EQ(cfg_get_remote_xml_type(), 0);
  ASSERT_EQ(parse(menu), 0);
  ASSERT_EQ(cfg_get_remote_xml_type(), 1);
  const XML_TEXT_MENU_T& shown = *cfg_get_text_menu_object();
  EXPECT_EQ(shown.ItemCount, 2);
  EXPECT_STREQ(shown.Items[0].Prompt, "a");
  EXPECT_STREQ(shown.Items[0].URI, "b");
  EXPECT_STREQ(shown.Items[0].Dial, "");
  EXPECT_STREQ(shown.Items[1].URI, "d");

  set_item(46, 0, std::string(70, 'p'));
  EXPECT_EQ(parse("<" + std::string(63, 'P') + "/>"), 0);
  EXPECT_EQ(cfg_get_remote_xml_type(), 2);

  set_item(46, 0, "");
  set_item(46, 2, "Person");
  set_item(46, 5, "Who");
  set_item(46, 6, "Number");
  set_item(46, 7, "State");
  ASSERT_EQ(parse("<Directory><MenuItem><Who>x</Who></MenuItem><Person><Prompt>x</Prompt></Person>"
                  "<Person><Who>y</Who><Number>1</Number><State>dnd</State></Person>"
                  "<DirectoryEntry><Name>z</Name></DirectoryEntry></Directory>"),
            0);
  const XML_DIRECTORY_T& people = *cfg_get_xml_browser_directory_object();
  ASSERT_EQ(people.EntryCount, 2);
  EXPECT_STREQ(people.Entries[0].Name, "y");
  EXPECT_STREQ(people.Entries[0].Telephone, "1");
  EXPECT_EQ(people.Entries[0].PresenceState, 2);
}

TEST_F(XmlBrowser, TheRootOfAnInputScreenIsItsFirstField) {
  const XML_INPUT_SCREEN_T& screen = input_screen(
      "<Title>t</Title><Prompt>p0</Prompt><Parameter emptyable='yes'>a0</Parameter>"
      "<Option>-</Option>"
      "<InputField type='combox' editable='no' min='1' max='2' step='3' startodot='yes' "
      "CombineData='x'><Prompt>p1</Prompt><Title>x</Title><Option text='t'>v</Option>"
      "<InputField><Prompt>x</Prompt></InputField></InputField>"
      "<SoftKey><Label>l</Label></SoftKey>"
      "<Default>d1</Default><Option>w</Option><DataID>i1</DataID><URL>u1</URL>",
      "type='Edit' password='' is_interger='YES' startodot='yes' CombineData='c' SaveNext='s' "
      "DivPosPix='9'");
  const auto expected = new_screen<XML_INPUT_SCREEN_T>(4);
  expected->header.block.input = {{-1, 1}, {1},    {},  {},  9,   {1},   {0, 1},
                                  {0, 2},  {0, 3}, {1}, "c", "s", {0, 1}};
  put(expected->Title, "t");
  expected->FieldCount = 2;
  expected->Fields[0] = {"p0", "a0", "", "", "", {{"", "-"}}};
  expected->Fields[1] = {"p1", "", "d1", "u1", "i1", {{"t", "v"}, {"", "w"}}};
  put(expected->SoftKeys[0].Label, "l");
  EXPECT_TRUE(same(screen, *expected));
  EXPECT_EQ(input_screen("").FieldCount, 1);
}

TEST_F(XmlBrowser, AnInputScreenEndsAtTwentyFieldsButForItsSoftKeys) {
  const XML_INPUT_SCREEN_T& screen =
      input_screen("<Title>early</Title>" + repeat("<InputField type='time'/>", 25) +
                   "<Title>late</Title><Prompt>late</Prompt><SoftKey><Label>l</Label></SoftKey>");
  EXPECT_EQ(screen.FieldCount, 20);
  EXPECT_EQ(screen.header.block.input.type[19], 4);
  EXPECT_STREQ(screen.Title, "early");
  EXPECT_STREQ(screen.Fields[19].Prompt, "");
  EXPECT_STREQ(screen.SoftKeys[0].Label, "l");
}

TEST_F(XmlBrowser, OptionsAreTakenCountedOutOrDoubled) {
  struct Case {
    const char* attributes;
    std::string body;
    int count;
    const char *first_value, *last_value, *last_text;
  };
  const std::string option = "<Option text='t'>v</Option>";
  const std::string all = "<Option text='Line All'>v</Option>";
  for (const Case& c : {
           Case{"", repeat(option, 31), 30, "v", "v", "t"},
           Case{"is_interger='yes' min='1' max='5' step='2'", option, 3, "1", "5", "5"},
           Case{"is_interger='yes' min='1' max='1' step='9'", option + option, 2, "1", "1", "1"},
           Case{"is_interger='yes' min='5' max='1' step='2'", all + option, 1, "v", "v", "t"},
           Case{"is_interger='yes' max='9'", all, 2, "1", "2", "Line 2"},
           Case{"is_interger='no' max='9' step='1'", option + all, 3, "v", "2", "Line 2"},
           Case{"", repeat(option, 29) + all, 30, "v", "1", "Line 1"},
           Case{"is_interger='yes' min='-2147483648' max='2147483647' step='2147483647'", option, 3,
                "-2147483648", "2147483646", "2147483646"},
           Case{"is_interger='yes' max='2147483647' step='1'", option, 30, "0", "29", "29"},
           Case{"is_interger='yes' max='5' step='-1'", option, 30, "0", "-29", "-29"},
           Case{"is_interger='yes' step='-2147483648'", option, 2, "0", "-2147483648",
                "-2147483648"},
       }) {
    const XML_INPUT_SCREEN_T& screen = input_screen(c.body, c.attributes);
    const XML_INPUT_FIELD_T& field = screen.Fields[0];
    ASSERT_TRUE(c.count == 30 || field.Options[c.count].value[0] == '\0') << c.attributes;
    EXPECT_STREQ(field.Options[0].value, c.first_value) << c.attributes;
    EXPECT_STREQ(field.Options[c.count - 1].value, c.last_value) << c.attributes;
    EXPECT_STREQ(field.Options[c.count - 1].text, c.last_text) << c.attributes;
    EXPECT_STREQ(screen.Fields[1].Prompt, "") << c.attributes;  // what lies behind the options
  }
}

TEST_F(XmlBrowser, AConfigurationFillsThreeKeysByNumber) {
  const auto key = [](const std::string& name, const std::string& body) {
    return "<" + name + ">" + body + "</" + name.substr(0, name.find(' ')) + ">";
  };
  std::string text = key("DssKey any='1' index='3'",
                         "<Type>123456789012</Type><Label>l</Label><Param1>a</Param1>"
                         "<Param2>b</Param2><Param3>c</Param3><label>x</label>") +
                     key("LineKey n='1'", "<Label>second</Label>") +
                     key("DssKey n='2'", "<Label/><Type>t</Type>") +
                     key("LineKey n='2'", "<Param1>last</Param1>");
  for (const char* nothing :
       {"DssKey n='0'", "DssKey n='4'", "LineKey n='-1'", "LineKey n='3'", "DssKey", "ExtKey n='1'",
        "dsskey n='1'", "DssKey n='-2147483648'", "LineKey n='2147483647'"}) {
    text += key(nothing, "<Label>x</Label>");
  }
  ASSERT_EQ(parse("<IPPhoneConfiguration>" + text + "</IPPhoneConfiguration>"), 0);
  const auto expected = new_screen<XML_CONFIGURATION_T>(5);
  expected->Keys[0] = {"12345678901", "l", "a", "b", "c", ""};
  expected->Keys[1] = {"t", "\0econd", "", "", "", ""};
  put(expected->Keys[2].Param1, "last");
  EXPECT_TRUE(same(*cfg_get_xml_browser_configuration_object(), *expected));
}

TEST_F(XmlBrowser, TheCacheKeepsTheFactoryDocumentsWithTheDefaultNames) {
  EXPECT_EQ(cfg_load_local_xml_file_cache(), -1);
  EXPECT_TRUE(logged("Open file path </app/factory/Static/XMLBrowser/> fail!\n"));

  const std::string document = kFolder + "menu.xml";
  std::filesystem::create_directories(on_disk(kFolder + "folder"));
  int blocks = 0;
  host::guard_memory([&](std::size_t /*size*/) { return ++blocks < 0; });
  EXPECT_EQ(cfg_load_local_xml_file_cache(), 0);
  host::guard_memory(nullptr);
  EXPECT_EQ(blocks, 0) << "a folder takes no memory";
  write(document,
        "<IPPhoneTextMenu>" + repeat("\r\n", 20) +
            "<MenuItem><Prompt>a&#32;\r\n\rb\n\rc</Prompt>\r</MenuItem></IPPhoneTextMenu>\r");
  const std::pair<std::string, std::string> kFiles[] = {
      {".hidden.xml", sample("directory.xml")},
      {"empty.xml", ""},
      {"nul.xml", std::string("<IPPhoneDirectory/>\0<", 21)},
      {"broken.xml", "<IPPhoneTextMenu>"}};
  for (const auto& [name, text] : kFiles) write(kFolder + name, text);
  std::filesystem::create_symlink("nowhere", on_disk(kFolder + "dangling.xml"));
  EXPECT_EQ(cfg_load_local_xml_file_cache(), 0);  // read now: an empty cache is not a loaded one
  set_item(46, 0, "Acme");
  set_item(46, 3, "Acme");
  for (const char* name : {"menu.xml", "nul.xml", "broken.xml", ".hidden.xml"}) {
    std::filesystem::remove(on_disk(kFolder + name));
  }
  EXPECT_EQ(cfg_load_local_xml_file_cache(), 0);

  forget_log();
  EXPECT_EQ(cfg_parse_remote_xml(document.c_str()), 0);
  ASSERT_EQ(cfg_get_remote_xml_type(), 1);
  EXPECT_STREQ(cfg_get_text_menu_object()->Items[0].Prompt, "a \n\nb\n\nc");
  ASSERT_EQ(log().size(), 1U);
  EXPECT_NE(log()[0].find(" " + document + " " + document + " ===================cache file found"),
            std::string::npos);
  EXPECT_EQ(cfg_parse_remote_xml((kFolder + "nul.xml").c_str()), 0);
  EXPECT_EQ(cfg_get_remote_xml_type(), 3);

  forget_log();
  EXPECT_EQ(cfg_parse_remote_xml((kFolder + "empty.xml").c_str()), -1);
  EXPECT_EQ(cfg_parse_remote_xml((kFolder + "broken.xml").c_str()), -1);
  EXPECT_EQ(log().size(), 2U);  // found in the cache both times; nothing says that they failed
  EXPECT_EQ(cfg_parse_remote_xml((kFolder + ".hidden.xml").c_str()), -1);

  EXPECT_EQ(cfg_free_local_xml_file_cache(), 0);
  EXPECT_EQ(cfg_free_local_xml_file_cache(), 0);
  EXPECT_EQ(cfg_parse_remote_xml(document.c_str()), -1);
}

TEST_F(XmlBrowser, ALongNameIsNotFoundInTheCacheButLoads) {
  const std::string path = kFolder + std::string(40, 'n');
  write(path, "<IPPhoneTextScreen/>");
  ASSERT_EQ(cfg_load_local_xml_file_cache(), 0);
  EXPECT_EQ(cfg_parse_remote_xml(path.c_str()), 0);
  EXPECT_EQ(cfg_get_remote_xml_type(), 2);
  release_all();
  EXPECT_EQ(cfg_parse_remote_xml(path.substr(0, 63).c_str()), 0);
  std::filesystem::remove(on_disk(path));
  EXPECT_EQ(cfg_parse_remote_xml(path.c_str()), -1);
}

TEST_F(XmlBrowser, SubstitutionReplacesEveryOccurrenceWithinTheCapacity) {
  struct Case {
    const char *text, *old_text, *new_text, *result;
  };
  for (const Case& c : {
           Case{"lineAll", "All", "01", "line01"},
           Case{"AllAllAl", "All", "1", "11Al"},
           Case{"Alphabet", "All", "01", "Alphabet"},
           Case{"aaa", "aa", "b", "ba"},
           Case{"abc", "b", "12345678901234567890", "a12345678901234"},
           Case{"abc", "b", "1234567890123\xC3\xA4", "a1234567890123"},
           Case{"abc", "abc", "", ""},
           Case{"", "x", "yy", ""},
           Case{"A", "A", "BCD", "BCD"},
       }) {
    char text[16] = {};
    put(text, c.text);
    std::size_t scratch = 0;
    host::guard_memory([&](std::size_t size) { return (scratch = size) != 0; });
    EXPECT_EQ(xmlbrowser_str_replace(text, sizeof text, c.old_text, c.new_text), 0) << c.text;
    host::guard_memory(nullptr);
    EXPECT_STREQ(text, c.result);
    EXPECT_GT(scratch, std::strlen(c.result)) << c.text;
  }
  char text[16] = "kept";
  EXPECT_EQ(xmlbrowser_str_replace(text, 16, "", "x"), -1);
  EXPECT_EQ(xmlbrowser_str_replace(text, 0, "k", "x"), -1);
  EXPECT_STREQ(text, "kept");
}

TEST_F(XmlBrowser, HostileDocumentsAreCutOrRefused) {
  const std::string megabyte(1 << 20, 'm');
  EXPECT_STREQ(text_screen("Selection='" + megabyte + "'",
                           "<Title>" + megabyte + "</Title><Text>" + megabyte + "</Text>")
                   .Text,
               std::string(255, 'm').c_str());
  EXPECT_EQ(parse("<IPPhoneTextScreen>" + repeat("<a>", 10000) + repeat("</a>", 10000) +
                  "</IPPhoneTextScreen>"),
            -1);
  EXPECT_EQ(cfg_get_remote_xml_type(), 0);
}

/// Both cost the XML library time that grows with the square of their number.
TEST_F(XmlBrowser, ManyAttributesAndLooseReferencesAreRefused) {
  const auto with_attributes = [](int count) {
    std::string text = "<?x <a '?><IPPhoneTextScreen><!-- <a '-->";
    text += "<![CDATA[<b \" ]]><c a='>'>" + repeat("<d e='>'>x='</d>", 1200) + "</c><f";
    for (int i = 0; i < count; ++i) text += " a" + std::to_string(i) + "='\"'";
    return text + "/></IPPhoneTextScreen>";
  };
  EXPECT_EQ(parse(with_attributes(1000)), 0);
  release_all();
  EXPECT_EQ(parse(with_attributes(1001)), -1);
  EXPECT_EQ(parse(with_attributes(150000)), -1);

  const auto with_references = [](int loose) {
    const std::string harmless = repeat("&#65;&#x41;", 2000) + "<![CDATA[" + repeat("&# ", 2000) +
                                 "]]><!--" + repeat("&# ", 2000) + "-->";
    const std::string others = "<a b='" + repeat("&#x ", 1000) + "' c='" + repeat("&#", 1000) +
                               "'>" + repeat("&# ", 1000) + "</a>";
    return "<IPPhoneTextScreen><Text>" + harmless + repeat("&#x ", loose) + std::string(20, ' ') +
           "</Text>" + others + "</IPPhoneTextScreen>";
  };
  EXPECT_EQ(parse(with_references(1000)), 0);
  EXPECT_EQ(parse(with_references(1001)), -1);
}

/// What a text stands for: XML's five entities and closed references are replaced, line ends made
/// one, and every other "&" is left.
std::string decoded(const std::string& text) {
  static const std::regex kReplaced("\r\n|&(amp|lt|gt|quot|apos|#[0-9]+|#x[0-9a-fA-F]+);");
  static const std::map<std::string, char> kEntities = {{"", '\n'},  {"amp", '&'},  {"lt", '<'},
                                                        {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  std::string result;
  auto from = text.begin();
  for (std::sregex_iterator at(text.begin(), text.end(), kReplaced), end; at != end; ++at) {
    result.append(from, (*at)[0].first);
    from = (*at)[0].second;
    const std::string name = (*at)[1];
    const bool hex = name.substr(0, 2) == "#x";
    result += name[0] != '#'
                  ? kEntities.at(name)
                  : static_cast<char>(std::stoi(name.substr(hex ? 2 : 1), nullptr, hex ? 16 : 10));
  }
  return result.append(from, text.end());
}

TEST_F(XmlBrowser, AnAmpersandThatBeginsNoReferenceStaysOne) {
  EXPECT_STREQ(text_screen("Next='?a=1&amp;b=2&c=3'", "<Text>A &amp; B & C</Text>").Text,
               "A & B & C");
  EXPECT_STREQ(cfg_get_text_screen_object()->header.Next, "?a=1&b=2&c=3");
  EXPECT_STREQ(text_screen("", "<Text><![CDATA[&amp; & &#65; &]]> & </Text>").Text,
               "&amp; & &#65; &");
  EXPECT_STREQ(text_screen("", "<Text>&#;&#x;&#x41 &#65</Text>").Text, "&#;&#x;&#x41 &#65");

  const char* const kPieces[] = {"&", "&amp;", "&quot;", "&#65;", "&#x4a;", "&#x4A;", "&#",
                                 "x", "65;",   "lt;",    ";",     "b",      "\r\n"};
  std::mt19937 random(1);
  for (int round = 0; round < 100; ++round) {
    std::string text = "t";
    for (int i = 0; i < 18; ++i) text += kPieces[random() % std::size(kPieces)];
    const std::string before = random() % 2 == 0 ? "<!--&#-->" : "";
    const std::string after = random() % 2 == 0 ? "<![CDATA[&]]>" : "<!a &>";
    const XML_TEXT_SCREEN_T& screen = text_screen("Next='" + text + "' Selection=\"" + text + "\"",
                                                  "<Text>" + before + text + after + "</Text>");
    EXPECT_EQ(screen.Text, decoded(text)) << text;
    EXPECT_EQ(screen.header.Next, decoded(text)) << text;
    EXPECT_EQ(screen.header.Selection, decoded(text)) << text;
  }
}

}  // namespace
