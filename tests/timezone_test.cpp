// The table of time zones.
#include <cfgxml/host.h>
#include <cfgxml/timezone.h>

#include "runtime/locks.h"
#include "runtime/logging.h"
#include "support/phone.h"

namespace {

constexpr char kPath[] = "/config/System/TimeZone.xml";
constexpr char kTable[] =
    "<Zones>"
    "<A Id=\"4\" TimeZone=\"+1\" Name=\"Paris\" Type=\"1\" Start=\"3/31\" End=\"10/27\" "
    "Offset=\"60\"/>"
    "<B Id=\"5\" TimeZone=\"+1\" Name=\"Berlin\" Type=\"\"/>"
    "<B Id=\"6\" TimeZone=\"+2\" Name=\"Cairo\"/>"
    "<B Id=\"7\" TimeZone=\"+2\" Name=\"Cairo\" Type=\"1\"/>"
    "<B Id=\"x\" Name=\"Oslo\" Type=\"2\" Start=\"s\"/>"
    "</Zones>";

using TimeZones = phone_test::Phone;

TEST_F(TimeZones, ListFollowsTheFile) {
  write(kPath, kTable);
  TIMEZONE_DATA_T* list = cfg_get_timezone_list();
  std::string seen;
  for (const TIMEZONE_DATA_T* zone = list; zone != nullptr; zone = zone->next) {
    seen += std::to_string(zone->Id) + zone->TimeZone + zone->Name + " ";
  }
  EXPECT_EQ(seen, "4+1Paris 5+1Berlin 6+2Cairo 7+2Cairo 0Oslo ");
  EXPECT_EQ(cfg_destory_timezone_list(list), 0);
  EXPECT_EQ(cfg_destory_timezone_list(nullptr), -1);
  EXPECT_TRUE(logged("cfg_destory_timezone_list failed: timezone_header is NULL."));
}

TEST_F(TimeZones, DaylightSavingBelongsToTheFirstZoneOfTheName) {
  const std::string cut(63, 'z');
  write(kPath,
        std::string(kTable).replace(0, 7, "<Zones><C Type=\"3\" Name=\"" + cut + "tail\"/>"));
  DST_INFO_T info{9, "s", "e", "o"};
  for (const char* name : {"Rome", "paris", "Berlin", "Cairo"}) {
    EXPECT_EQ(cfg_get_dst_info_by_timezone(name, &info), -1) << name;
  }
  EXPECT_EQ(log(),
            std::vector<std::string>(2, "cfg_get_dst_info_by_timezone failed, has no type node."));
  EXPECT_STREQ(info.Start, "s") << "a failed lookup leaves the record";
  ASSERT_EQ(cfg_get_dst_info_by_timezone("Paris", &info), 0);
  EXPECT_EQ(info.Type, 1);
  EXPECT_EQ(std::string(info.Start) + info.End + info.Offset, "3/3110/2760");
  ASSERT_EQ(cfg_get_dst_info_by_timezone("Oslo", &info), 0);
  EXPECT_EQ(std::string(info.Start) + info.End + info.Offset, "s") << "absent texts are empty";
  EXPECT_EQ(cfg_get_dst_info_by_timezone(cut.c_str(), &info), 0) << "as the list hands it out";
  EXPECT_EQ(cfg_get_dst_info_by_timezone((cut + "tail").c_str(), &info), 0);
  EXPECT_EQ(cfg_get_dst_info_by_timezone(nullptr, &info), -1);
  EXPECT_EQ(cfg_get_dst_info_by_timezone("Paris", nullptr), -1);
  EXPECT_TRUE(logged("cfg_get_dst_info_by_timezone failed: input is NULL."));
}

TEST_F(TimeZones, MatchKeepsANameOfTheZoneAndReplacesAnother) {
  write(kPath, kTable);
  struct Case {
    const char *zone, *name, *result;
  };
  for (const Case& c :
       {Case{"+1", "Berlin", "Berlin"}, Case{"+1", "Rome", "Paris"}, Case{"+1", "Cairo", "Paris"},
        Case{"+9", "Tokyo", ""}, Case{"", "Rome", "Oslo"}}) {
    set_item(26, 64, c.zone);
    set_item(26, 65, c.name);
    EXPECT_EQ(cfg_match_timezone_name(), 0);
    EXPECT_EQ(item(26, 65), c.result) << c.zone << c.name;
  }
}

TEST_F(TimeZones, UnusableTableChangesNothing) {
  set_item(26, 65, "Rome");
  DST_INFO_T info{};
  for (const char* table : {"-", "", "<Zones", "<!-- -->", "<Zones/>"}) {
    if (table[0] != '-') write(kPath, table);
    forget_log();
    EXPECT_EQ(cfg_get_timezone_list(), nullptr) << table;
    EXPECT_EQ(cfg_get_dst_info_by_timezone("Rome", &info), -1) << table;
    EXPECT_EQ(cfg_match_timezone_name(), -1) << table;
    EXPECT_TRUE(logged("cfg_match_timezone_name null pointer"));
  }
  write(kPath, "broken");
  forget_log();
  bool locked = false;
  cfg_get_timezone_list();
  cfg_get_dst_info_by_timezone("Rome", &info);
  EXPECT_EQ(log(), (std::vector<std::string>{std::string("load file <") + kPath + "> fail!\n",
                                             std::string("load file <") + kPath + "> failed!"}));
  host::observe_log(
      [&](host::LogLevel, const std::string& text) { locked = host::locks::held_by_me(45082); });
  cfg_get_timezone_list();
  EXPECT_TRUE(locked);
  EXPECT_EQ(item(26, 65), "Rome");
}

}  // namespace
