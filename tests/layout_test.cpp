// The sizes of the interface's records, as hosts were built with. Where their fields stand is
// asserted beside the code that fills them, and kept in the dumps of tests/abi.
#include <cfgxml/cfgxml.h>
#include <gtest/gtest.h>

namespace {

#define SIZE(type, narrow, wide) \
  { #type, sizeof(type), narrow, wide }

TEST(LayoutTest, RecordsHaveTheirPublishedSizes) {
  const struct {
    const char* record;
    std::size_t size, narrow, wide;  // with pointers of 32 and of 64 bits
  } records[] = {SIZE(GROUP_DATA_T, 196, 196),
                 SIZE(CONTACT_DATA_T, 460, 460),
                 SIZE(CONTACT_DATA_LIST_T, 231176, 231176),
                 SIZE(BLACK_DATA_LIST_T, 46000, 46000),
                 SIZE(CONTACT_SUMMARY_T, 368, 376),
                 SIZE(GROUP_SUMMARY_T, 200, 208),
                 SIZE(COMMUNITY_CONTACT_T, 464, 472),
                 SIZE(COMMUNITY_DATA_T, 16, 32),
                 SIZE(CFGXML_CALLBACK_T[CFGXML_SLOT_COUNT], 120, 240),
                 SIZE(TRIE_INFO_T, 8, 16),
                 SIZE(TRIE_ENTRY_T, 12, 24),
                 SIZE(TRIE_RESULT_T, 24004, 48008),
                 SIZE(CSV_CONTACT_LIST_T, 136, 144),
                 SIZE(BSFT_CONTACT_DATA_T, 1196, 1200),
                 SIZE(BSFT_CONTACT_POS_T, 16, 16),
                 SIZE(HISTORY_DATA_T, 396, 396),
                 SIZE(HISTORY_DATA_LIST, 39600, 39600),
                 SIZE(HISTORY_SUMMARY_T, 372, 376),
                 SIZE(HISTORY_SUMMARY_SET_T, 37216, 37616),
                 SIZE(DIAL_NOW_DATA_T, 76, 80),
                 SIZE(DIAL_REPLACE_DATA_T, 140, 144),
                 SIZE(BLOCKOUT_DATA_T, 76, 80),
                 SIZE(SMS_DATA_T, 748, 748),
                 SIZE(SMS_DETAILS_T, 752, 760),
                 SIZE(SMS_SUMMARY_T, 148, 152),
                 SIZE(TIMEZONE_DATA_T, 136, 144),
                 SIZE(DST_INFO_T, 196, 196),
                 SIZE(NOTIFICATION_T, 264, 272),
                 SIZE(XML_TEXT_MENU_BLOCK_T, 192, 192),
                 SIZE(XML_INPUT_SCREEN_BLOCK_T, 924, 924),
                 SIZE(XML_BROWSER_HEADER_T, 2000, 2000),
                 SIZE(XML_SOFTKEY_T, 320, 320),
                 SIZE(XML_OPTION_T, 76, 76),
                 SIZE(XML_MENU_ITEM_T, 2860, 2860),
                 SIZE(XML_DIRECTORY_ENTRY_T, 452, 452),
                 SIZE(XML_INPUT_FIELD_T, 2792, 2792),
                 SIZE(XML_KEY_CONFIG_T, 396, 396),
                 SIZE(XML_TEXT_SCREEN_T, 3608, 3608),
                 SIZE(XML_TEXT_MENU_T, 89156, 89156),
                 SIZE(XML_DIRECTORY_T, 229356, 229356),
                 SIZE(XML_INPUT_SCREEN_T, 59196, 59196),
                 SIZE(XML_CONFIGURATION_T, 3188, 3188)};
  for (const auto& [record, size, narrow, wide] : records) {
    EXPECT_EQ(size, sizeof(void*) == 4 ? narrow : wide) << record;
  }
}

}  // namespace
