// The sizes of the interface's records, as hosts were built with. Where their fields stand is
// asserted beside the code that fills them, and kept in the dumps of tests/abi.
#include <cfgxml/cfgxml.h>
#include <gtest/gtest.h>

namespace {

#define RECORD(type, narrow, wide) \
  { #type, sizeof(type), narrow, wide }

TEST(LayoutTest, RecordsHaveTheirPublishedSizes) {
  const struct {
    const char* record;
    std::size_t size, narrow, wide;  // with pointers of 32 and of 64 bits
  } records[] = {
      RECORD(GROUP_DATA_T, 196, 196),
      RECORD(CONTACT_DATA_T, 460, 460),
      RECORD(CONTACT_DATA_LIST_T, 231176, 231176),
      RECORD(BLACK_DATA_LIST_T, 46000, 46000),
      RECORD(CONTACT_SUMMARY_T, 368, 376),
      RECORD(GROUP_SUMMARY_T, 200, 208),
      RECORD(COMMUNITY_CONTACT_T, 464, 472),
      RECORD(COMMUNITY_DATA_T, 16, 32),
      RECORD(CFGXML_CALLBACK_T[CFGXML_SLOT_COUNT], 120, 240),
      RECORD(TRIE_INFO_T, 8, 16),
      RECORD(TRIE_ENTRY_T, 12, 24),
      RECORD(TRIE_RESULT_T, 24004, 48008),
      RECORD(CSV_CONTACT_LIST_T, 136, 144),
      RECORD(BSFT_CONTACT_DATA_T, 1196, 1200),
      RECORD(BSFT_CONTACT_POS_T, 16, 16),
      RECORD(HISTORY_DATA_T, 396, 396),
      RECORD(HISTORY_DATA_LIST, 39600, 39600),
      RECORD(HISTORY_SUMMARY_T, 372, 376),
      RECORD(HISTORY_SUMMARY_SET_T, 37216, 37616),
      RECORD(DIAL_NOW_DATA_T, 76, 80),
      RECORD(DIAL_REPLACE_DATA_T, 140, 144),
      RECORD(BLOCKOUT_DATA_T, 76, 80),
      RECORD(SMS_DATA_T, 748, 748),
      RECORD(SMS_DETAILS_T, 752, 760),
      RECORD(SMS_SUMMARY_T, 148, 152),
      RECORD(TIMEZONE_DATA_T, 136, 144),
      RECORD(DST_INFO_T, 196, 196),
      RECORD(NOTIFICATION_T, 264, 272),
      RECORD(XML_TEXT_MENU_BLOCK_T, 192, 192),
      RECORD(XML_INPUT_SCREEN_BLOCK_T, 924, 924),
      RECORD(XML_BROWSER_HEADER_T, 2000, 2000),
      RECORD(XML_SOFTKEY_T, 320, 320),
      RECORD(XML_OPTION_T, 76, 76),
      RECORD(XML_MENU_ITEM_T, 2860, 2860),
      RECORD(XML_DIRECTORY_ENTRY_T, 452, 452),
      RECORD(XML_INPUT_FIELD_T, 2792, 2792),
      RECORD(XML_KEY_CONFIG_T, 396, 396),
      RECORD(XML_TEXT_SCREEN_T, 3608, 3608),
      RECORD(XML_TEXT_MENU_T, 89156, 89156),
      RECORD(XML_DIRECTORY_T, 229356, 229356),
      RECORD(XML_INPUT_SCREEN_T, 59196, 59196),
      RECORD(XML_CONFIGURATION_T, 3188, 3188),
  };
  for (const auto& [record, size, narrow, wide] : records) {
    EXPECT_EQ(size, sizeof(void*) == 4 ? narrow : wide) << record;
  }
}

}  // namespace
