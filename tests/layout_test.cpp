// The layout of every record of the interface. The table names each record's fields and their types
// in their order; the offsets and sizes that follow from it, for the pointers of the target, are
// compared with the compiler's, and so are the sizes that hosts were built with.
#include <cfgxml/cfgxml.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <vector>

namespace {

using Int = std::int32_t;
template <std::size_t Capacity>
using Text = char[Capacity];

struct Field {
  const char* name;
  bool has_type;  ///< the compiler's type is the published one
  std::size_t size, alignment, offset;
};

/// The first place at or after this offset that a field of this alignment may take.
std::size_t aligned(std::size_t offset, std::size_t alignment) {
  return (offset + alignment - 1) / alignment * alignment;
}

/// Sizes on a 32-bit and on a 64-bit target.
struct Sizes {
  std::size_t narrow, wide;
};

void expect_layout(std::size_t size, Sizes sizes, const std::vector<Field>& fields) {
  std::size_t end = 0, alignment = 1;
  for (const Field& field : fields) {
    const std::size_t offset = aligned(end, field.alignment);
    EXPECT_TRUE(field.has_type) << field.name;
    EXPECT_EQ(field.offset, offset) << field.name;
    end = offset + field.size;
    alignment = std::max(alignment, field.alignment);
  }
  EXPECT_EQ(size, aligned(end, alignment));
  EXPECT_EQ(size, sizeof(void*) == 4 ? sizes.narrow : sizes.wide);
}

// A field of the record R and its published type.
#define FIELD(field, ...)                                                           \
  Field {                                                                           \
#field, std::is_same_v < decltype(R::field), __VA_ARGS__>, sizeof(__VA_ARGS__), \
        alignof(__VA_ARGS__), offsetof(R, field)                                    \
  }

TEST(LayoutTest, Phonebook) {
  {
    using R = GROUP_DATA_T;
    expect_layout(sizeof(R), {196, 196},
                  {FIELD(Id, Int), FIELD(Name, Text<64>), FIELD(Ring, Text<64>),
                   FIELD(Description, Text<64>)});
  }
  {
    using R = CONTACT_DATA_T;
    expect_layout(
        sizeof(R), {460, 460},
        {FIELD(position, Int), FIELD(Id, Int), FIELD(Line, Int), FIELD(DisplayName, Text<64>),
         FIELD(OfficeNumber, Text<64>), FIELD(MobileNumber, Text<64>), FIELD(OtherNumber, Text<64>),
         FIELD(Group, Text<64>), FIELD(Ring, Text<64>), FIELD(Photo, Text<64>)});
  }
  {
    using R = CONTACT_DATA_LIST_T;
    expect_layout(sizeof(R), {231176, 231176},
                  {FIELD(Groups, GROUP_DATA_T[6]), FIELD(Contacts, CONTACT_DATA_T[500])});
  }
  {
    using R = BLACK_DATA_LIST_T;
    expect_layout(sizeof(R), {46000, 46000}, {FIELD(Entries, CONTACT_DATA_T[100])});
  }
  {
    using R = CONTACT_SUMMARY_T;
    expect_layout(
        sizeof(R), {368, 376},
        {FIELD(position, Int), FIELD(Id, Int), FIELD(Line, Int), FIELD(DisplayName, Text<64>),
         FIELD(OfficeNumber, Text<32>), FIELD(MobileNumber, Text<32>), FIELD(OtherNumber, Text<32>),
         FIELD(Group, Text<64>), FIELD(Ring, Text<64>), FIELD(Photo, Text<64>),
         FIELD(next, CONTACT_SUMMARY_T*)});
  }
  {
    using R = GROUP_SUMMARY_T;
    expect_layout(sizeof(R), {200, 208},
                  {FIELD(Id, Int), FIELD(Name, Text<64>), FIELD(Ring, Text<64>),
                   FIELD(Description, Text<64>), FIELD(next, GROUP_SUMMARY_T*)});
  }
  {
    using R = COMMUNITY_CONTACT_T;
    expect_layout(sizeof(R), {464, 472},
                  {FIELD(Contact, CONTACT_DATA_T), FIELD(next, COMMUNITY_CONTACT_T*)});
  }
  {
    using R = COMMUNITY_DATA_T;
    expect_layout(sizeof(R), {16, 32},
                  {FIELD(Reserved, void* [2]), FIELD(Groups, GROUP_SUMMARY_T*),
                   FIELD(Contacts, COMMUNITY_CONTACT_T*)});
  }
}

TEST(LayoutTest, CallbackTable) {
  EXPECT_EQ(sizeof(CFGXML_CALLBACK_T[CFGXML_SLOT_COUNT]), 30 * sizeof(void*));
}

TEST(LayoutTest, SearchAndCsv) {
  {
    using R = TRIE_INFO_T;
    expect_layout(sizeof(R), {8, 16}, {FIELD(book, Int), FIELD(record, void*)});
  }
  {
    using R = TRIE_ENTRY_T;
    expect_layout(sizeof(R), {12, 24}, {FIELD(info, TRIE_INFO_T), FIELD(next, TRIE_ENTRY_T*)});
  }
  {
    using R = TRIE_RESULT_T;
    expect_layout(sizeof(R), {24004, 48008},
                  {FIELD(records, void* [12][500]), FIELD(others, void*)});
  }
  {
    using R = CSV_CONTACT_LIST_T;
    expect_layout(sizeof(R), {136, 144},
                  {FIELD(index, Int), FIELD(name, Text<128>), FIELD(next, CSV_CONTACT_LIST_T*)});
  }
}

TEST(LayoutTest, BroadSoft) {
  {
    using R = BSFT_CONTACT_DATA_T;
    expect_layout(sizeof(R), {1196, 1200},
                  {FIELD(index, Int),
                   FIELD(flag, Int),
                   FIELD(LastName, Text<64>),
                   FIELD(FirstName, Text<64>),
                   FIELD(UserId, Text<64>),
                   FIELD(GroupId, Text<64>),
                   FIELD(Number, Text<64>),
                   FIELD(Extension, Text<64>),
                   FIELD(Mobile, Text<32>),
                   FIELD(YahooId, Text<64>),
                   FIELD(Pager, Text<64>),
                   FIELD(EmailAddress, Text<64>),
                   FIELD(Title, Text<64>),
                   FIELD(Location, Text<64>),
                   FIELD(AddressLine1, Text<64>),
                   FIELD(AddressLine2, Text<64>),
                   FIELD(City, Text<64>),
                   FIELD(State, Text<64>),
                   FIELD(Zip, Text<64>),
                   FIELD(Country, Text<64>),
                   FIELD(Department, Text<64>),
                   FIELD(next, BSFT_CONTACT_DATA_T*)});
  }
  {
    using R = BSFT_CONTACT_POS_T;
    expect_layout(sizeof(R), {16, 16},
                  {FIELD(start, Int), FIELD(count, Int), FIELD(total, Int), FIELD(state, Int)});
  }
}

TEST(LayoutTest, History) {
  {
    using R = HISTORY_DATA_T;
    expect_layout(sizeof(R), {396, 396},
                  {FIELD(ID, Int), FIELD(CallID, Int), FIELD(Type, Int), FIELD(Status, Int),
                   FIELD(Date, Text<16>), FIELD(Time, Text<12>), FIELD(Reserved, Text<12>),
                   FIELD(LocalSipName, Text<64>), FIELD(LocalSipServer, Text<64>),
                   FIELD(LocalSipPort, Int), FIELD(RemoteSipName, Text<64>),
                   FIELD(RemoteSipServer, Text<64>), FIELD(RemoteDisplayName, Text<64>),
                   FIELD(RemoteSipPort, Int), FIELD(CallDuration, Text<12>)});
  }
  {
    using R = HISTORY_DATA_LIST;
    expect_layout(sizeof(R), {39600, 39600}, {FIELD(Records, HISTORY_DATA_T[100])});
  }
  {
    using R = HISTORY_SUMMARY_T;
    expect_layout(
        sizeof(R), {372, 376},
        {FIELD(ID, Int), FIELD(Type, Int), FIELD(Status, Int), FIELD(Date, Text<16>),
         FIELD(Time, Text<12>), FIELD(LocalSipName, Text<64>), FIELD(LocalSipServer, Text<64>),
         FIELD(LocalSipPort, Int), FIELD(RemoteSipName, Text<64>), FIELD(RemoteSipServer, Text<64>),
         FIELD(RemoteDisplayName, Text<64>), FIELD(RemoteSipPort, Int),
         FIELD(next, HISTORY_SUMMARY_T*)});
  }
  {
    using R = HISTORY_SUMMARY_SET_T;
    expect_layout(sizeof(R), {37216, 37616},
                  {FIELD(Reserved, Int), FIELD(count, Int), FIELD(sync_id, Int),
                   FIELD(sync_index, Int), FIELD(entries, HISTORY_SUMMARY_T[100])});
  }
}

TEST(LayoutTest, DialRules) {
  {
    using R = DIAL_NOW_DATA_T;
    expect_layout(
        sizeof(R), {76, 80},
        {FIELD(ID, Int), FIELD(Line, Int), FIELD(Rule, Text<64>), FIELD(next, DIAL_NOW_DATA_T*)});
  }
  {
    using R = DIAL_REPLACE_DATA_T;
    expect_layout(sizeof(R), {140, 144},
                  {FIELD(ID, Int), FIELD(Line, Int), FIELD(Prefix, Text<64>),
                   FIELD(Replace, Text<64>), FIELD(next, DIAL_REPLACE_DATA_T*)});
  }
  {
    using R = BLOCKOUT_DATA_T;
    expect_layout(
        sizeof(R), {76, 80},
        {FIELD(ID, Int), FIELD(Line, Int), FIELD(Rule, Text<64>), FIELD(next, BLOCKOUT_DATA_T*)});
  }
}

TEST(LayoutTest, Messages) {
  {
    using R = SMS_DATA_T;
    expect_layout(
        sizeof(R), {748, 748},
        {FIELD(id, Int), FIELD(status, Int), FIELD(type, Int), FIELD(port, Int),
         FIELD(from_user, Text<64>), FIELD(from_display, Text<64>), FIELD(to_user, Text<64>),
         FIELD(to_display, Text<64>), FIELD(server, Text<64>), FIELD(reserved, Text<128>),
         FIELD(content, Text<256>), FIELD(date, Text<16>), FIELD(time, Text<12>)});
  }
  {
    using R = SMS_DETAILS_T;
    expect_layout(sizeof(R), {752, 760}, {FIELD(data, SMS_DATA_T), FIELD(next, SMS_DETAILS_T*)});
  }
  {
    using R = SMS_SUMMARY_T;
    expect_layout(sizeof(R), {148, 152},
                  {FIELD(id, Int), FIELD(status, Int), FIELD(type, Int), FIELD(label, Text<130>),
                   FIELD(next, SMS_SUMMARY_T*)});
  }
}

TEST(LayoutTest, TimeZonesAndNotifications) {
  {
    using R = TIMEZONE_DATA_T;
    expect_layout(sizeof(R), {136, 144},
                  {FIELD(Id, Int), FIELD(TimeZone, Text<64>), FIELD(Name, Text<64>),
                   FIELD(next, TIMEZONE_DATA_T*)});
  }
  {
    using R = DST_INFO_T;
    expect_layout(
        sizeof(R), {196, 196},
        {FIELD(Type, Int), FIELD(Start, Text<64>), FIELD(End, Text<64>), FIELD(Offset, Text<64>)});
  }
  {
    using R = NOTIFICATION_T;
    expect_layout(sizeof(R), {264, 272},
                  {FIELD(Name, Text<256>), FIELD(Notify, Int), FIELD(next, NOTIFICATION_T*)});
  }
}

// The objects of the XML browser hold no pointer: their layout is the same everywhere.

TEST(LayoutTest, BrowserHeader) {
  {
    using R = XML_TEXT_MENU_BLOCK_T;
    expect_layout(sizeof(R), {192, 192},
                  {FIELD(LocalData, Int[30]), FIELD(IsSimplified, Int), FIELD(DivPosPix, Int),
                   FIELD(CombineData, Text<64>)});
  }
  {
    using R = XML_INPUT_SCREEN_BLOCK_T;
    expect_layout(
        sizeof(R), {924, 924},
        {FIELD(type, Int[20]), FIELD(password, Int[20]), FIELD(editable, Int[20]),
         FIELD(Reserved, Int[2]), FIELD(DivPosPix, Int), FIELD(is_interger, Int[20]),
         FIELD(min, Int[20]), FIELD(max, Int[20]), FIELD(step, Int[20]), FIELD(emptyable, Int[20]),
         FIELD(CombineData, Text<64>), FIELD(SaveNext, Text<128>), FIELD(startodot, Int[20])});
  }
  {
    using R = XML_BROWSER_HEADER_T;
    EXPECT_EQ(sizeof(R::block), 924u) << "the larger of the two blocks";
    EXPECT_EQ(offsetof(R, block.menu), offsetof(R, block.input));
    expect_layout(
        sizeof(R), {2000, 2000},
        {FIELD(type, Int), FIELD(defaultIndex, Int), FIELD(style, Text<64>), FIELD(Beep, Int),
         FIELD(wrapList, Int), FIELD(Timeout, Int), FIELD(LockIn, Int), FIELD(LocalData, Int),
         FIELD(RollMode, Int), FIELD(Dial, Int), FIELD(Dial1, Int), FIELD(InputType, Text<64>),
         FIELD(Next, Text<128>), FIELD(Previous, Text<128>), FIELD(Selection, Text<512>),
         FIELD(Exit, Text<128>), FIELD(Reserved, Int[3]), FIELD(block, decltype(R::block))});
  }
}

TEST(LayoutTest, BrowserParts) {
  {
    using R = XML_SOFTKEY_T;
    expect_layout(sizeof(R), {320, 320}, {FIELD(Label, Text<64>), FIELD(URI, Text<256>)});
  }
  {
    using R = XML_OPTION_T;
    expect_layout(sizeof(R), {76, 76}, {FIELD(text, Text<64>), FIELD(value, Text<12>)});
  }
  {
    using R = XML_MENU_ITEM_T;
    expect_layout(
        sizeof(R), {2860, 2860},
        {FIELD(Prompt, Text<64>), FIELD(URI, Text<256>), FIELD(Dial, Text<64>),
         FIELD(Selection, Text<64>), FIELD(PromptDataID, Text<64>), FIELD(DataID, Text<64>),
         FIELD(Reserved, Int), FIELD(Options, XML_OPTION_T[30])});
  }
  {
    using R = XML_DIRECTORY_ENTRY_T;
    expect_layout(sizeof(R), {452, 452},
                  {FIELD(Name, Text<64>), FIELD(Telephone, Text<64>), FIELD(Telephone1, Text<64>),
                   FIELD(Presence, Text<64>), FIELD(URI, Text<128>), FIELD(Selection, Text<64>),
                   FIELD(PresenceState, Int)});
  }
  {
    using R = XML_INPUT_FIELD_T;
    expect_layout(
        sizeof(R), {2792, 2792},
        {FIELD(Prompt, Text<64>), FIELD(Parameter, Text<64>), FIELD(Default, Text<64>),
         FIELD(URL, Text<256>), FIELD(DataID, Text<64>), FIELD(Options, XML_OPTION_T[30])});
  }
  {
    using R = XML_KEY_CONFIG_T;
    expect_layout(sizeof(R), {396, 396},
                  {FIELD(Type, Text<12>), FIELD(Label, Text<64>), FIELD(Param1, Text<128>),
                   FIELD(Param2, Text<64>), FIELD(Param3, Text<64>), FIELD(Reserved, Text<64>)});
  }
}

TEST(LayoutTest, BrowserObjects) {
  {
    using R = XML_TEXT_SCREEN_T;
    expect_layout(
        sizeof(R), {3608, 3608},
        {FIELD(header, XML_BROWSER_HEADER_T), FIELD(Title, Text<64>), FIELD(wrap, Int),
         FIELD(showlistcount, Int), FIELD(Text, char[256]), FIELD(SoftKeys, XML_SOFTKEY_T[4])});
  }
  {
    using R = XML_TEXT_MENU_T;
    expect_layout(sizeof(R), {89156, 89156},
                  {FIELD(header, XML_BROWSER_HEADER_T), FIELD(Title, Text<64>), FIELD(wrap, Int),
                   FIELD(ItemCount, Int), FIELD(showlistcount, Int),
                   FIELD(Items, XML_MENU_ITEM_T[30]), FIELD(SoftKeys, XML_SOFTKEY_T[4])});
  }
  {
    using R = XML_DIRECTORY_T;
    expect_layout(sizeof(R), {229356, 229356},
                  {FIELD(header, XML_BROWSER_HEADER_T), FIELD(Title, Text<64>), FIELD(wrap, Int),
                   FIELD(EntryCount, Int), FIELD(showlistcount, Int),
                   FIELD(Entries, XML_DIRECTORY_ENTRY_T[500]), FIELD(SoftKeys, XML_SOFTKEY_T[4])});
  }
  {
    using R = XML_INPUT_SCREEN_T;
    expect_layout(sizeof(R), {59196, 59196},
                  {FIELD(header, XML_BROWSER_HEADER_T), FIELD(Title, Text<64>), FIELD(wrap, Int),
                   FIELD(FieldCount, Int), FIELD(showlistcount, Int),
                   FIELD(Fields, XML_INPUT_FIELD_T[20]), FIELD(SoftKeys, XML_SOFTKEY_T[4])});
  }
  {
    using R = XML_CONFIGURATION_T;
    expect_layout(sizeof(R), {3188, 3188},
                  {FIELD(header, XML_BROWSER_HEADER_T), FIELD(Keys, XML_KEY_CONFIG_T[3])});
  }
}

}  // namespace
