// Contact CSV files: the check by the header, both imports, the export.
#include <cfgxml/csv.h>
#include <cfgxml/host.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/people.h"
#include "support/phone.h"

namespace {

using namespace phone_test;  // NOLINT(google-build-using-namespace): the records and their texts

const std::string kHeader =
    "FN,N,EMAIL,TEL_HOME,TEL_WORK,TEL_MOBILE,TEL_OTHER,TEL_FAX,TEL_CUSTOM,RING,COMPANY,TITLE,"
    "ADDR_MAIN,ADDR_OTHER,IMS,WEB,NOTES,BIRTHDAY,X-IRMC-LUID,GROUP,GROUP_RING,GROUP_DESCRIPTION,"
    "PHOTO,LINE,END\n";

enum Place {
  kFn = 0,
  kWork = 4,
  kMobile,
  kOther,
  kRing = 9,
  kGroup = 19,
  kGroupRing,
  kText,
  kPhoto
};

/// A row of 25 fields, the last one END.
std::string row(const std::map<int, std::string>& fields) {
  std::string line;
  for (int place = 0; place < 24; ++place) {
    const auto field = fields.find(place);
    line += (field != fields.end() ? field->second : "") + ",";
  }
  return line + "END\n";
}

std::string numbered_rows(int count) {
  std::string text;
  for (int i = 1; i <= count; ++i) text += row({{kFn, "N" + std::to_string(i)}});
  return text;
}

using Names = std::vector<std::string>;

/// Groups as "1:Default:Auto", with their rings.
template <typename Groups>
std::string rings(const Groups& groups) {
  std::string text;
  for (const auto& group : groups) text += shown(std::vector{group}) + ":" + group.Ring + " ";
  return text;
}

/// What a row gives besides the name.
std::string details(const CONTACT_DATA_T& contact) {
  std::string text = std::to_string(contact.Line);
  for (const char* field : {contact.OfficeNumber, contact.MobileNumber, contact.OtherNumber,
                            contact.Group, contact.Ring, contact.Photo}) {
    text += std::string(",") + field;
  }
  return text;
}

class CsvTest : public Phone {
 protected:
  int valid(const std::string& text) {
    write("/c.csv", text);
    return is_valid_contact_file_csv(on_disk("/c.csv").c_str());
  }

  int import(const std::string& rows, CONTACT_DATA_LIST_T& list) {
    write("/c.csv", kHeader + rows);
    return get_contact_csv(on_disk("/c.csv").c_str(), &list);
  }
  int import(const std::string& rows) { return import(rows, contacts()); }

  static std::string groups() { return rings(Used(contacts().Groups)); }

  /// A folder, and a pipe that nobody writes to.
  std::vector<std::string> no_files() const {
    ::mkfifo(on_disk("/pipe.csv").c_str(), 0600);
    return {on_disk("/tmp"), on_disk("/pipe.csv")};
  }

  static CONTACT_DATA_T& slot(int number) { return contacts().Contacts[number]; }
};

TEST_F(CsvTest, TheHeaderDecidesWhetherAFileIsOne) {
  const std::pair<std::string, int> cases[] = {
      {kHeader, 1},
      {kHeader.substr(0, kHeader.size() - 1) + "\r\n", 1},
      {"FN,N", 1},
      {"FN,,N\n", 1},
      {" FN , N \n\n", 1},
      {"FN,N\n" + std::string("a\0b", 3), 1},
      {"Name,N\n", 0},
      {"fn,N\n", 0},
      {"FN, ,N\n", 0},
      {"FN,EMAIL\n", 0},
      {kHeader.substr(0, kHeader.size() - 1) + ",MORE\n", 0},
      {",,,\n", 0},
      {"\nFN,N\n", 0},
      {"", 0},
  };
  for (const auto& [text, result] : cases) EXPECT_EQ(valid(text), result) << text;
  for (const std::string& path : no_files()) EXPECT_EQ(is_valid_contact_file_csv(path.c_str()), 0);

  EXPECT_EQ(is_valid_contact_file_csv(""), 0);
  EXPECT_TRUE(logged("is_valid_contact_file_csv failed: file_path is empty."));
  EXPECT_EQ(is_valid_contact_file_csv(on_disk("/none.csv").c_str()), 0);
  EXPECT_TRUE(logged("is_valid_contact_file_csv failed: invalid file size."));
}

TEST_F(CsvTest, AHeaderListGrowsAtItsEnd) {
  write("/c.csv", "B,,C\r\nrow\n");
  char first[] = "A";
  CSV_CONTACT_LIST_T* list = list_add_contact_section(nullptr, first);
  EXPECT_EQ(get_contact_csv_head(on_disk("/none.csv").c_str(), &list), -1);
  EXPECT_EQ(get_contact_csv_head(on_disk("/c.csv").c_str(), &list), 0);
  std::string names;
  for (const auto* column = list; column != nullptr; column = column->next) names += column->name;
  EXPECT_EQ(names, "ABC");
  EXPECT_EQ(list_loop_compare(list), 0);
  EXPECT_EQ(list_loop_compare(nullptr), 1);
  list_free(list);
}

TEST_F(CsvTest, ARowFillsTheFieldsOfItsColumns) {
  EXPECT_EQ(
      import(
          row({{kFn, "Alice"}, {kWork, "1001"}}) +
          " Bob ,b,e,h,1,2,3,f,c,Ring1.wav,,,,,,,,,, Work ,Bell.wav,The team,bob.png, 2 ,END,9\n"),
      0);
  EXPECT_EQ(shown(contacts().Contacts), "1:Alice 2:Bob");
  EXPECT_EQ(details(slot(0)), "0,1001,,,Default,,");
  EXPECT_EQ(details(slot(1)), "2,1,2,3,Work,Ring1.wav,bob.png");
  EXPECT_EQ(groups(), "1:Default:Auto 2:Work:Bell.wav ");
  EXPECT_STREQ(contacts().Groups[1].Description, "The team");
}

TEST_F(CsvTest, ARowEndsAtItsEndFieldOrLastComma) {
  EXPECT_EQ(import("Bob,,,,1002\nAnn,,,,END,7,\nEve, END ,,,3,\nEND,x,y\nno commas\n"), 0);
  EXPECT_EQ(shown(contacts().Contacts), "1:Bob 2:Ann 3:Eve 4: 5:");
  EXPECT_EQ(details(slot(0)), "0,,,,,,") << "the row ended before its group";
  EXPECT_EQ(details(slot(1)), "0,,,,,,");
  EXPECT_EQ(details(slot(2)), "0,3,,,,,");
  EXPECT_EQ(groups(), "");
}

TEST_F(CsvTest, LinesAreCutAtTheirEndsNulBytesAnd4095Characters) {
  const std::string long_row = "Long," + std::string(4090, 'x');
  EXPECT_EQ(import("Ann,\r\n\n\r\nB\rob,\n" + std::string("Cid,,,,5\0006,\n", 12) + long_row +
                   "Rest,,,,8,\nDan,,,,9,"),
            0);
  EXPECT_EQ(shown(contacts().Contacts), "1:Ann 2:B\rob 3:Cid 4:Long 5:Rest 6:Dan");
  EXPECT_STREQ(slot(2).OfficeNumber, "") << "the text ends at the NUL byte";
  EXPECT_STREQ(slot(4).OfficeNumber, "8");
  EXPECT_STREQ(slot(5).OfficeNumber, "9") << "the last line needs no line end";
  const Names messages = log();
  EXPECT_EQ(std::count_if(messages.begin(), messages.end(),
                          [](const std::string& message) {
                            return message.rfind("get_contact_csv, ", 0) == 0 &&
                                   message.find("  is a blank line") != std::string::npos;
                          }),
            2);
}

TEST_F(CsvTest, ANameInUseDropsItsRowBeforeItsGroup) {
  blacklist().Entries[0].Id = 1;
  put(blacklist().Entries[0].DisplayName, "Spam");
  const std::string long_name(70, 'L');
  EXPECT_EQ(import(row({{kFn, "Spam"}, {kWork, "1"}, {kGroup, "Lost"}}) + row({{kFn, "Ann"}}) +
                   row({{kFn, "Ann"}, {kGroup, "Lost"}}) + row({{kFn, "ann"}}) + row({{}}) +
                   row({{}}) + row({{kFn, long_name}}) + row({{kFn, long_name + "M"}}) +
                   row({{kFn, "(Empty)"}}) + row({{kFn, "(Empty)"}})),
            19);
  EXPECT_EQ(shown(contacts().Contacts),
            "1:Ann 2:ann 3: 4: 5:" + std::string(63, 'L') + " 6:(Empty) 7:(Empty)");
  EXPECT_STREQ(slot(0).OfficeNumber, "") << "nothing of the dropped row stays";
  EXPECT_EQ(groups(), "1:Default:Auto ");
}

TEST_F(CsvTest, NamesAreCheckedInTheHostsListsOnly) {
  slot(0).Id = 1;
  put(slot(0).DisplayName, "Ann");
  auto list = std::make_unique<CONTACT_DATA_LIST_T>();
  EXPECT_EQ(import(row({{kFn, "Ann"}}) + row({{kFn, "Bob"}}) + row({{kFn, "Bob"}}), *list), 19);
  EXPECT_EQ(shown(list->Contacts), "1:Bob 2:Bob");

  host().lists().give_contacts(false);
  host().lists().give_blacklist(false);
  EXPECT_EQ(import(row({{kFn, "Ann"}}), *list), 0);
  EXPECT_TRUE(logged("is_name_in_black failed: cfg_get_black_list return NULL."));
  EXPECT_TRUE(logged("is_name_in_contact failed: cfg_get_contact_list return NULL."));
}

TEST_F(CsvTest, TheSixthGroupLeavesItsPlaceToDefault) {
  std::string rows;
  for (int i = 1; i <= 7; ++i) {
    rows +=
        row({{kFn, "N" + std::to_string(i)}, {kGroup, "G" + std::to_string(i)}, {kGroupRing, "R"}});
  }
  EXPECT_EQ(
      import(rows + row({{kFn, "Ann"}}) + row({{kFn, "Bob"}, {kGroup, "G5"}, {kText, "Five"}})),
      16);
  EXPECT_EQ(shown(contacts().Contacts), "1:N1 2:N2 3:N3 4:N4 5:N5 6:Ann 7:Bob");
  EXPECT_EQ(groups(), "1:G1:R 2:G2:R 3:G3:R 4:G4:R 5:G5:Auto 6:Default:Auto ");
  EXPECT_STREQ(contacts().Groups[4].Description, "Five") << "later rows describe a group anew";

  // The row that would have been Default's first is dropped like any other.
  EXPECT_EQ(import(rows.substr(0, rows.find("N6,")) + row({{kFn, "Ann"}}) + row({{kFn, "Bob"}})),
            16);
  EXPECT_EQ(shown(contacts().Contacts), "1:N1 2:N2 3:N3 4:N4 5:N5 6:Bob");
  EXPECT_EQ(groups(), "1:G1:R 2:G2:R 3:G3:R 4:G4:R 5:G5:R 6:Default:Auto ");
}

TEST_F(CsvTest, AllSixGroupsAreFreeOnceDefaultIsKnown) {
  std::string rows;
  for (int i = 1; i <= 7; ++i)
    rows += row({{kFn, "N" + std::to_string(i)}, {kGroup, std::to_string(i)}});
  EXPECT_EQ(import(row({{kFn, "Ann"}}) + rows), 16);
  EXPECT_EQ(groups(), "1:Default:Auto 2:1:Auto 3:2:Auto 4:3:Auto 5:4:Auto 6:5:Auto ");

  // Into another list, while the host's has the group.
  auto list = std::make_unique<CONTACT_DATA_LIST_T>();
  std::fill_n(contacts().Contacts, 10, CONTACT_DATA_T{});
  EXPECT_EQ(import(rows, *list), 16);
  EXPECT_EQ(rings(Used(list->Groups)), "1:1:Auto 2:2:Auto 3:3:Auto 4:4:Auto 5:5:Auto 6:6:Auto ");
  EXPECT_EQ(Used(list->Contacts).size(), 6u);
}

TEST_F(CsvTest, The501stRowStopsTheImport) {
  EXPECT_EQ(import(numbered_rows(500) + "\n"), 0);
  EXPECT_EQ(import(numbered_rows(502)), 17);
  EXPECT_EQ(Used(contacts().Contacts).size(), 500u);
  EXPECT_EQ(import(row({{kFn, "N1"}}) + numbered_rows(501)), 19) << "a name in use comes first";
  std::string rows;
  for (int i = 1; i <= 6; ++i) rows += row({{kGroup, std::to_string(i)}});
  EXPECT_EQ(import(rows + numbered_rows(496)), 17) << "then the full table, then the groups";
}

TEST_F(CsvTest, AFileThatCannotBeReadLeavesAnEmptyList) {
  slot(0).Id = 1;
  EXPECT_EQ(get_contact_csv(nullptr, &contacts()), -1);
  EXPECT_EQ(get_contact_csv("/c.csv", nullptr), -1);
  EXPECT_EQ(log().back().rfind("Input param is NULL! file: adapter_handle_csv, line: ", 0), 0u);
  EXPECT_EQ(slot(0).Id, 1);
  EXPECT_EQ(get_contact_csv(on_disk("/none.csv").c_str(), &contacts()), -1);
  EXPECT_EQ(slot(0).Id, 0);
  for (const std::string& path : no_files()) {
    EXPECT_EQ(get_contact_csv(path.c_str(), &contacts()), -1);
    EXPECT_EQ(save_contact_csv(path.c_str(), nullptr), -1);
  }
}

/// Groups and contacts of community data, which is freed.
std::pair<std::string, std::string> take_all(COMMUNITY_DATA_T* data) {
  std::pair<std::string, std::string> texts(rings(take(data->Groups)), "");
  for (const COMMUNITY_CONTACT_T& node : take(data->Contacts)) {
    texts.second += shown(std::vector{node.Contact}) + "@" + node.Contact.Group + " ";
  }
  rl_free(data);
  return texts;
}

TEST_F(CsvTest, CommunityDataTakesEveryNameAndGroup) {
  const std::string path = on_disk("/c.csv");
  write("/c.csv", kHeader + row({{kFn, "Ann"}, {kGroup, "A"}, {kGroupRing, "one"}}) + "\n" +
                      row({{kFn, "Ann"}, {kGroup, "A"}, {kGroupRing, "two"}}) +
                      row({{kFn, "Bob"}}) + "Cid,\nDan" + std::string(19, ',') + "D,END\n");
  const auto [groups, people] = take_all(get_community_contact_csv(path.c_str()));
  EXPECT_EQ(groups, "1:A:one 2:Default:Auto 3:: 4:D: ") << "a group's first row describes it";
  EXPECT_EQ(people, "1:Ann@A 2:Ann@A 3:Bob@Default 4:Cid@ 5:Dan@D ");

  write("/c.csv", kHeader + numbered_rows(501));
  const std::string all = take_all(get_community_contact_csv(path.c_str())).second;
  EXPECT_EQ(all.substr(all.size() - 18), " 500:N500@Default ");
  EXPECT_EQ(take_all(get_community_contact_csv(on_disk("/tmp").c_str())).second, "");
  EXPECT_EQ(get_community_contact_csv(nullptr), nullptr);
}

TEST_F(CsvTest, AnExportHoldsEveryValueInItsColumn) {
  const std::string path = on_disk("/out.csv");
  ASSERT_EQ(import("Bob,,,,1,2,3,,,r,,,,,,,,,,Work,Bell,Team,p,4,END\n"), 0);
  CONTACT_SUMMARY_T* summary = cfg_get_contact_summary("");
  const auto expect_row = [&](const std::string& group) {
    EXPECT_EQ(save_contact_csv(path.c_str(), summary), 0);
    EXPECT_EQ(read("/out.csv"), kHeader + "Bob,Bob,,,1,2,3,,,r,,,,,,,,,," + group + ",p,4,END\n");
  };
  expect_row("Work,Bell,Team");
  put(summary->Group, "Gone");
  expect_row("Gone,,");
  put(summary->Group, "Work");
  host().lists().give_contacts(false);
  expect_row("Work,,");
  host().lists().give_contacts(true);
  cfg_destory_contact_summary(summary);

  EXPECT_EQ(save_contact_csv(path.c_str(), nullptr), 0);
  EXPECT_EQ(read("/out.csv"), kHeader);
  EXPECT_EQ(kHeader.size(), 194u);
  EXPECT_EQ(save_contact_csv(nullptr, nullptr), -1);
  EXPECT_TRUE(logged("save_contact_csv: Bad parameters"));
  EXPECT_EQ(save_contact_csv(on_disk("/no/folder.csv").c_str(), nullptr), -1);
}

TEST_F(CsvTest, AnExportWritesInPlaceWhatItCannotReplaceInOnePiece) {
  namespace fs = std::filesystem;
  const auto export_to = [](const std::string& path) {
    return save_contact_csv(path.c_str(), nullptr);
  };
  const std::string long_name = "/" + std::string(255, 'n');
  for (const char* path : {"/target", "/linked", "/folder/file"}) write(path, "old");
  fs::create_symlink("target", on_disk("/link"));
  fs::create_symlink("missing", on_disk("/dangling"));
  fs::create_hard_link(on_disk("/linked"), on_disk("/second"));
  const std::pair<std::string, std::string> kTargets[] = {{"/link", "/target"},
                                                          {"/dangling", "/missing"},
                                                          {"/second", "/linked"},
                                                          {long_name, long_name}};
  for (const auto& [path, holds] : kTargets) {
    EXPECT_EQ(export_to(on_disk(path)), 0) << path;
    EXPECT_EQ(read(holds), kHeader) << path;
  }
  EXPECT_TRUE(fs::is_symlink(on_disk("/link")));
  EXPECT_EQ(export_to("/dev/null"), 0);
  EXPECT_EQ(export_to("/dev/full"), -1);

  const std::string pipe = on_disk("/pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(export_to(pipe), -1) << "nobody reads it";
  const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_EQ(export_to(pipe), 0);
  std::string text(kHeader.size(), ' ');
  EXPECT_EQ(::read(reader, text.data(), text.size()), static_cast<ssize_t>(kHeader.size()));
  EXPECT_EQ(text, kHeader);
  ::close(reader);

  fs::permissions(root(), fs::perms(0711));
  fs::permissions(on_disk("/folder"), fs::perms(0555));
  fs::permissions(on_disk("/folder/file"), fs::perms(0666));
  const uid_t user = ::geteuid();
  if (user == 0) EXPECT_EQ(::seteuid(65534), 0) << "root may write into any folder";
  EXPECT_EQ(export_to(on_disk("/folder/file")), 0);
  EXPECT_EQ(export_to(on_disk("/folder/new")), -1);
  EXPECT_EQ(::seteuid(user), 0);
  EXPECT_EQ(read("/folder/file"), kHeader);
  fs::permissions(on_disk("/folder"), fs::perms(0755));
}

}  // namespace
