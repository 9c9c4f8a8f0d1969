// The table of time zones.
#include <cfgxml/host.h>
#include <cfgxml/timezone.h>

#include <cstring>

#include "support/phone.h"
#include "support/records.h"

namespace {

constexpr char kPath[] = "/config/System/TimeZone.xml";
const std::string kCut(63, 'z');
const std::string kTable = "<Zones><C Type='3' Name='" + kCut + R"(tail'/>
    <A Id='4' TimeZone='+1' Name='Paris' Type='1' Start='3/31' End='10/27' Offset='60'/>
    <B Id='5' TimeZone='+1' Name='Berlin' Type=''/> <B Id='6' TimeZone='+2' Name='Cairo'/>
    <B Id='7' TimeZone='+2' Name='Cairo' Type='1'/> <B Id='x' Name='Oslo' Type='2' Start='s'/>
</Zones>)";

using TimeZones = phone_test::Phone;
using Log = std::vector<std::string>;

TEST_F(TimeZones, ListFollowsTheFile) {
  write(kPath, kTable);
  EXPECT_EQ(cfg_destory_timezone_list(cfg_get_timezone_list()), 0);
  std::string seen;
  for (const auto& zone : phone_test::take(cfg_get_timezone_list())) {
    seen += std::to_string(zone.Id) + zone.TimeZone + zone.Name + " ";
  }
  EXPECT_EQ(seen, "0" + kCut + " 4+1Paris 5+1Berlin 6+2Cairo 7+2Cairo 0Oslo ");
}

TEST_F(TimeZones, DaylightSavingBelongsToTheFirstZoneOfTheName) {
  const DST_INFO_T kBefore = {9, "s", "e", "o"};
  write(kPath, kTable);
  const struct {
    std::string name;
    int result;
    DST_INFO_T info;
  } cases[] = {{"Paris", 0, {1, "3/31", "10/27", "60"}},
               {"Oslo", 0, {2, "s", "", ""}},
               {kCut, 0, {3, "", "", ""}},  // as the list hands it out
               {kCut + "tail", 0, {3, "", "", ""}},
               {"Rome", -1, kBefore},
               {"paris", -1, kBefore},
               {"Berlin", -1, kBefore},
               {"Cairo", -1, kBefore}};
  for (const auto& [name, result, expected] : cases) {
    DST_INFO_T info = kBefore;
    EXPECT_EQ(cfg_get_dst_info_by_timezone(name.c_str(), &info), result) << name;
    EXPECT_EQ(std::memcmp(&info, &expected, sizeof info), 0) << name;
  }
  EXPECT_EQ(log(), Log(2, "cfg_get_dst_info_by_timezone failed, has no type node."));
}

TEST_F(TimeZones, MatchKeepsANameOfTheZoneAndReplacesAnother) {
  write(kPath, kTable);
  const struct {
    const char *zone, *name, *result;
  } cases[] = {{"+1", "Berlin", "Berlin"}, {"+1", "Rome", "Paris"}, {"+1", "Cairo", "Paris"},
               {"+9", "Tokyo", ""},        {"", "Oslo", "Oslo"},    {"", "Rome", kCut.c_str()}};
  for (const auto& [zone, name, result] : cases) {
    set_item(26, 64, zone);
    set_item(26, 65, name);
    EXPECT_EQ(cfg_match_timezone_name(), 0);
    EXPECT_EQ(item(26, 65), result) << zone << name;
  }
  host().open_profile(root());
  EXPECT_EQ(item(26, 65), kCut) << "it was made permanent";
}

TEST_F(TimeZones, AnUnusableTableChangesNothing) {
  set_item(26, 65, "Rome");
  DST_INFO_T info{};
  const std::string file = "load file <" + std::string(kPath) + "> ";
  const std::string null = "cfg_match_timezone_name null pointer";
  const Log no_file = {file + "fail!\n", file + "failed!", file + "fail!\n", null};
  for (const char* table : {"-", "", "<Zones", "<!-- -->", "<Zones/>"}) {
    if (table[0] != '-') write(kPath, table);
    forget_log();
    EXPECT_EQ(cfg_get_timezone_list(), nullptr) << table;
    EXPECT_EQ(cfg_get_dst_info_by_timezone("Rome", &info), -1) << table;
    EXPECT_EQ(cfg_match_timezone_name(), -1) << table;
    EXPECT_EQ(log(), std::string(table).size() < 7 ? no_file : Log{null}) << table;
  }
  EXPECT_EQ(item(26, 65), "Rome");
}

}  // namespace
