// Contact.xml, Blacklist.xml, community files and the uploads: good ones, odd ones and broken ones.
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <string>

#include "support/people.h"
#include "support/phone.h"

namespace {

using namespace phone_test;  // NOLINT(google-build-using-namespace): the records and their texts

const std::string kContacts = "/config/Phone/Contact/Contact.xml";
const std::string kBlacklist = "/config/Phone/Contact/Blacklist.xml";

std::string group_xml(const std::string& name, int id, const std::string& inside = "") {
  return "<Group Id=\"" + std::to_string(id) + "\" Name=\"" + name + "\">" + inside + "</Group>";
}

std::string contact_xml(int id, const std::string& name, const std::string& element = "Contact") {
  return "<" + element + " Id=\"" + std::to_string(id) + "\" DisplayName=\"" + name + "\"/>";
}

std::string entry_xml(int id, const std::string& name) {
  return contact_xml(id, name, "Blacklist");
}

std::string new_file(const std::string& group, const std::string& ring, const std::string& name) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ContactData>\n    <Group Id=\"1\" Name=\"" +
         group + "\" Ring=\"" + ring +
         "\" Description=\"\">\n        <Contact Id=\"1\" Line=\"0\" DisplayName=\"" + name +
         "\" OfficeNumber=\"\" MobileNumber=\"\" OtherNumber=\"\" Ring=\"\" Photo=\"\"/>\n    "
         "</Group>\n</ContactData>\n";
}

class PhonebookFilesTest : public Phone {
 protected:
  int load(const std::string& inside_root) {
    write(kContacts, "<Book>" + inside_root + "</Book>");
    return contact_init(&contacts());
  }
  int load_contact(const std::string& name) {
    return load(group_xml("Default", 1, contact_xml(1, name)));
  }
  int load_blacklist(const std::string& inside_root) {
    write(kBlacklist, "<Black>" + inside_root + "</Black>");
    return black_init(&blacklist());
  }
  bool holds(const std::string& path, const std::string& text) const {
    return read(path).find(text) != std::string::npos;
  }
};

TEST_F(PhonebookFilesTest, WhatIsWrittenIsReadBack) {
  write(kContacts,
        "<?XML version=\"1.0\" note=\"a & b\"?>\n<!DOCTYPE Book SYSTEM \"a&b\">\n"
        "<!-- a & b -->\n<Book>\n"
        "    <Group Id=\"3\" Name=\"Work\" Ring=\"Bell\" Description=\"at &lt;work&gt;\">\n"
        "        <Contact Id=\"4\" Line=\"2\" DisplayName=\"Zo\xC3\xAB &amp; Co\""
        " OfficeNumber=\"+1\" MobileNumber=\"2\" OtherNumber=\"3\" Ring=\"Auto\""
        " Photo=\"Default\"/>\n    </Group>\n"
        "    <Group Id=\"7\" Name=\"Default\" Ring=\"Auto\" Description=\"\"/>\n</Book>\n");
  const std::string before = read(kContacts);
  ASSERT_EQ(contact_init(&contacts()), 0);
  EXPECT_STREQ(contacts().Contacts[0].DisplayName, "Zo\xC3\xAB & Co");
  EXPECT_STREQ(contacts().Contacts[0].Group, "Work");
  EXPECT_EQ(contacts().Contacts[0].Line, 2);
  EXPECT_STREQ(contacts().Groups[0].Description, "at <work>");
  EXPECT_EQ(contact_delay_save(), 0);
  EXPECT_EQ(read(kContacts), before) << "the root keeps its name";
  EXPECT_TRUE(logged("Enter save_contact_xml"));
}

TEST_F(PhonebookFilesTest, ALoadTakesWhatTheLimitsAndNamesAllow) {
  ASSERT_EQ(load_blacklist(entry_xml(1, "Bad")), 0);
  std::string groups, full, too_many;
  for (int i = 1; i <= 6; ++i) groups += group_xml("g" + std::to_string(i), i);
  for (int i = 1; i <= 501; ++i) {
    if (i <= 500) full += (i == 1 ? "" : " ") + std::to_string(i) + ":c" + std::to_string(i);
    too_many += contact_xml(i, "c" + std::to_string(i));
  }
  const std::string long_name(10000, 'n');
  const std::string odd =
      contact_xml(1, "outside") + group_xml("", 1, contact_xml(1, "a")) +
      group_xml("negative", -1, contact_xml(1, "b")) +
      group_xml("Work", 2,
                contact_xml(0, "c") + contact_xml(1, "d", "Other") + contact_xml(5, "") +
                    contact_xml(6, "") + contact_xml(7, "\xFF\xC3") + contact_xml(8, long_name));
  const struct {
    std::string inside;
    int result;
    std::string groups, people;
  } kCases[] = {
      {group_xml("Work", 3) + group_xml("Home", 7), 0, "3:Work 7:Home 8:Default", ""},
      {groups, 16, "1:g1 2:g2 3:g3 4:g4 5:g5 6:Default", ""},
      {group_xml("Default", 1) + groups, 16, "1:Default 1:g1 2:g2 3:g3 4:g4 5:g5", ""},
      {group_xml("Default", 1, too_many), 17, "1:Default", full},
      {"", 0, "1:Default", ""},
      {group_xml("W", 1, contact_xml(1, "Ann") + contact_xml(2, "Ann")), 19, "1:W 2:Default",
       "1:Ann"},
      {group_xml("A", 1) + group_xml("A", 2, contact_xml(1, "Ann")), 19, "1:A 2:Default", ""},
      {group_xml("A", 1, contact_xml(1, "Bad")), 19, "1:A 2:Default", ""},
      {odd, 0, "2:Work 3:Default", "5:(Empty) 6:(Empty) 7:\xFF\xC3 8:" + long_name.substr(0, 63)},
  };
  for (const auto& [inside, result, in_groups, people] : kCases) {
    EXPECT_EQ(load(inside), result) << inside;
    EXPECT_EQ(shown(contacts().Groups), in_groups) << inside;
    EXPECT_EQ(shown(contacts().Contacts), people) << inside;
  }
  EXPECT_STREQ(contacts().Groups[1].Ring, "Auto");
  EXPECT_EQ(contact_delay_save(), 0);
  EXPECT_EQ(load_blacklist(entry_xml(1, "(Empty)") + entry_xml(2, "(Empty)")), 0);
  EXPECT_EQ(contact_init(&contacts()), 0) << "no name is no duplicate when it comes back";
  EXPECT_EQ(contacts().Contacts[3].Id, 8);
}

TEST_F(PhonebookFilesTest, TextsAreCutBetweenTheirCharacters) {
  struct Case {
    std::string tail, kept;  // after 60 letters, in a field for 63 bytes
  };
  for (const Case& c : {
           Case{"ab\xC3\xA4", "ab"}, Case{"a\xC3\xA4z", "a\xC3\xA4"}, Case{"\xF0\x9F\x93\x9E", ""},
           Case{"\xE2\x82\xAC\xE2\x82\xAC", "\xE2\x82\xAC"},
           Case{"ab\xC3\xA4\xFF", "ab\xC3"},      // not UTF-8: at the byte, as are
           Case{"ab\xED\xA0\x80", "ab\xED"},      // half of a pair,
           Case{"ab\xE0\x9F\xBF", "ab\xE0"},      // what has a shorter form,
           Case{"ab\xF4\x90\x80\x80", "ab\xF4"},  // what is past the last character,
           Case{"ab\xC3\xA4\xC3", "ab\xC3"},      // and a character that does not end
       }) {
    const std::string letters(60, 'n');
    const std::string name = letters + c.tail;
    EXPECT_EQ(load(group_xml("Default", 1, contact_xml(1, name) + contact_xml(2, name))), 19);
    EXPECT_EQ(contacts().Contacts[0].DisplayName, letters + c.kept);
  }
}

TEST_F(PhonebookFilesTest, BrokenContactFileLeavesNothingAndIsKeptAsideAtTheNextSave) {
  ASSERT_EQ(load_contact("Ann"), 0);
  write(kContacts, "<Book><Group");
  EXPECT_EQ(contact_init(&contacts()), -1);
  EXPECT_TRUE(logged("load file </config/Phone/Contact/Contact.xml> failed!"));
  EXPECT_EQ(shown(contacts().Groups) + shown(contacts().Contacts), "");
  EXPECT_EQ(read(kContacts), "<Book><Group") << "reading changes no file";

  contacts().Contacts[0].Id = 1;
  EXPECT_EQ(contact_delay_save(), 0);
  EXPECT_TRUE(
      logged("save_contact_xml:load file </config/Phone/Contact/Contact.xml> failed, create "
             "a new file!"));
  EXPECT_EQ(read(kContacts + ".corrupt"), "<Book><Group");
  EXPECT_EQ(read(kContacts), new_file("Default", "Auto", "(Empty)"))
      << "contacts without a group are written under one that a reload finds";

  write(kContacts, "<!-- no root -->");
  EXPECT_EQ(contact_init(&contacts()), -1);
  EXPECT_TRUE(logged("file </config/Phone/Contact/Contact.xml> has no root element!"));
}

TEST_F(PhonebookFilesTest, BlacklistFileFollowsItsOwnRules) {
  EXPECT_EQ(load_blacklist(""), -1);
  EXPECT_EQ(load_blacklist(entry_xml(0, "x")), -1);
  ASSERT_EQ(load_contact("Ann"), 0);
  EXPECT_EQ(load_blacklist("<Blacklist Id=\"4\" Line=\"1\" DisplayName=\"Bad\" OfficeNumber=\"1\""
                           " Group=\"Work\" Ring=\"r\" Photo=\"p\"/>" +
                           entry_xml(5, "Ann") + entry_xml(6, "Bad")),
            19);
  EXPECT_EQ(shown(blacklist().Entries), "4:Bad");
  EXPECT_EQ(read(kBlacklist),
            "<Black>\n    <Blacklist Id=\"4\" Line=\"1\" DisplayName=\"Bad\" OfficeNumber=\"1\""
            " MobileNumber=\"\" OtherNumber=\"\" Group=\"\" Ring=\"r\" Photo=\"p\"/>\n</Black>\n")
      << "neither the skipped entries nor a group";

  std::string entries;
  for (int i = 1; i <= 101; ++i) entries += entry_xml(i, "b" + std::to_string(i));
  EXPECT_EQ(load_blacklist(entries), 18);
  write(kBlacklist, "<Black");
  EXPECT_EQ(black_init(&blacklist()), -1);
  EXPECT_TRUE(
      logged("get_blacklist_xml failed,  load file </config/Phone/Contact/Blacklist.xml> failed."));
  EXPECT_EQ(blacklist().Entries[99].Id, 100) << "cleared only once the file is open";
}

TEST_F(PhonebookFilesTest, SaveThatFailsKeepsTheOldFile) {
  ASSERT_EQ(load(group_xml("Work", 1)), 0);
  std::filesystem::remove_all(on_disk("/config/Phone/Contact"));
  EXPECT_EQ(contact_delay_save(), -1);
  EXPECT_TRUE(logged("save_contact_xml doc.SaveFile failed."));
  EXPECT_EQ(black_delay_save(), -1);
  EXPECT_TRUE(logged("save_blacklist_xml doc.SaveFile failed."));
  EXPECT_EQ(save_contact_xml(kContacts.c_str(), nullptr), -1);
  EXPECT_TRUE(logged("save_contact_xml: Bad parameters"));
}

TEST_F(PhonebookFilesTest, SavedFilesAreReplacedInOnePiece) {
  ASSERT_EQ(load(group_xml("Work", 1)), 0);
  std::filesystem::permissions(on_disk(kContacts), std::filesystem::perms(0640));
  const std::filesystem::path folder = on_disk("/config/Phone/Contact");
  std::filesystem::create_hard_link(on_disk(kContacts), folder / "old");
  EXPECT_EQ(contact_delay_save(), 0);
  EXPECT_EQ(read("/config/Phone/Contact/old"), "<Book>" + group_xml("Work", 1) + "</Book>")
      << "the old bytes were not written over";
  EXPECT_EQ(std::filesystem::status(on_disk(kContacts)).permissions(),
            std::filesystem::perms(0640));
  std::filesystem::remove(folder / "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "nothing is left";
}

TEST_F(PhonebookFilesTest, AFileFromAWrongClockIsReadAndReplaced) {
  ASSERT_EQ(load_contact("Ann"), 0);
  write("/new.xml", read(kContacts));
  const timespec in_2040[] = {{2209032000, 0}, {2209032000, 0}};
  for (const std::string& file : {kContacts, std::string("/new.xml")}) {
    ASSERT_EQ(::utimensat(AT_FDCWD, on_disk(file).c_str(), in_2040, 0), 0);
  }
  EXPECT_EQ(contact_init(&contacts()), 0);
  EXPECT_EQ(cfg_upload_contact(on_disk("/new.xml").c_str()), 0);
  EXPECT_EQ(cfg_del_contact_data(1), 0);
  EXPECT_FALSE(holds(kContacts, "Ann"));
  EXPECT_FALSE(exists(kContacts + ".corrupt"));
}

TEST_F(PhonebookFilesTest, CommunityDataIsWrittenToItsPath) {
  COMMUNITY_CONTACT_T lost{};
  COMMUNITY_CONTACT_T ann{contact("Ann", "", "Work", 1), &lost};
  GROUP_SUMMARY_T work{};
  work.Id = 1;
  put(work.Name, "Work");
  COMMUNITY_DATA_T data{{nullptr, nullptr}, &work, &ann};
  EXPECT_EQ(save_community_xml(on_disk("/community.xml").c_str(), &data), 0);
  EXPECT_EQ(read("/community.xml"), new_file("Work", "", "Ann"));
  EXPECT_EQ(save_community_xml(nullptr, &data), -1);
  EXPECT_TRUE(logged("save_community_xml: Bad parameters"));
}

TEST_F(PhonebookFilesTest, AMoveWhoseSecondFileCannotBeWrittenStaysInTheFirst) {
  ASSERT_EQ(load_contact("Ann"), 0);
  std::filesystem::create_directories(on_disk(kBlacklist));
  EXPECT_EQ(cfg_mov_contact_data(1), 0);
  EXPECT_STREQ(blacklist().Entries[0].DisplayName, "Ann");
  EXPECT_TRUE(holds(kContacts, "Ann"));
  std::filesystem::remove(on_disk(kBlacklist));
  contact_save();
  EXPECT_FALSE(holds(kContacts, "Ann"));
}

TEST_F(PhonebookFilesTest, MovesSaveEachListAsItIsSwitched) {
  const struct {
    const char* what;
    int (*move)(int);
    bool from_contacts;
  } kMoves[] = {{"to the blacklist", cfg_mov_contact_data, true},
                {"to the contacts", cfg_mov_black_data, false}};
  for (const auto& [what, move, from_contacts] : kMoves) {
    for (const int switches : {0, 1, 2, 3}) {
      const int contacts_later = switches & 1;
      const int blacklist_later = switches >> 1;
      SCOPED_TRACE(std::string(what) + (contacts_later ? ", contacts later" : "") +
                   (blacklist_later ? ", blacklist later" : ""));
      host().lists().clear();
      load_contact(from_contacts ? "Ann" : "Cyd");
      load_blacklist(entry_xml(1, from_contacts ? "Oz" : "Ann"));
      contact_save_init(contacts_later);
      black_save_init(blacklist_later);
      EXPECT_EQ(move(1), 0);
      // What is saved later still holds what it held before.
      EXPECT_EQ(holds(kContacts, "Ann"), (contacts_later != 0) == from_contacts);
      EXPECT_EQ(holds(kBlacklist, "Ann"), (blacklist_later != 0) != from_contacts);
      EXPECT_TRUE(host().saver().stop());
      EXPECT_EQ(holds(kContacts, "Ann"), !from_contacts);
      EXPECT_EQ(holds(kBlacklist, "Ann"), from_contacts);
      EXPECT_EQ(contact_init(&contacts()), 0);
      EXPECT_EQ(holds(kContacts, "Ann"), !from_contacts) << "nothing is put back";
    }
  }
}

TEST_F(PhonebookFilesTest, WhatIsNoRegularFileIsNeitherCopiedNorReplaced) {
  write("/good.xml", "<B>" + group_xml("Work", 2) + "</B>");
  const std::string good = on_disk("/good.xml");
  const std::string pipe = on_disk("/pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  COMMUNITY_DATA_T data{};
  EXPECT_EQ(save_community_xml(pipe.c_str(), &data), -1);
  EXPECT_EQ(save_contact_xml(pipe.c_str(), &contacts()), -1);
  EXPECT_EQ(copy_contact_xml("/dev/null"), -1);
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
  std::filesystem::rename(pipe, on_disk(kContacts));
  EXPECT_EQ(copy_contact_xml(good.c_str()), -1);
  EXPECT_TRUE(std::filesystem::is_fifo(on_disk(kContacts)));
  EXPECT_TRUE(commands().empty());
}

TEST_F(PhonebookFilesTest, UploadsReplaceTheFileAndReload) {
  ASSERT_EQ(load_contact("Old"), 0);
  write("/new.xml", "<B>" + group_xml("Work", 2, contact_xml(1, "New")) + "</B>");
  EXPECT_EQ(cfg_upload_contact(on_disk("/new.xml").c_str()), 0);
  EXPECT_STREQ(contacts().Contacts[0].DisplayName, "New");

  write("/black.xml", "<B>" + entry_xml(1, "Bad") + "</B>");
  EXPECT_EQ(cfg_upload_blacklist(on_disk("/black.xml").c_str()), 0);
  EXPECT_STREQ(blacklist().Entries[0].DisplayName, "Bad");
  EXPECT_EQ(commands().back(),
            "cp -f \"" + on_disk("/black.xml") + "\" \"" + on_disk(kBlacklist) + "\"");

  write("/flat.xml", "<B>" + contact_xml(1, "x") + "</B>");
  EXPECT_EQ(is_valid_contact_file_xml(on_disk("/flat.xml").c_str()), 0);
  EXPECT_EQ(cfg_upload_contact(on_disk("/flat.xml").c_str()), -1);
  EXPECT_TRUE(logged("_cfg_upload_contact failed: file is invalid."));
  EXPECT_EQ(cfg_upload_blacklist(on_disk("/flat.xml").c_str()), -1);
  EXPECT_EQ(cfg_upload_blacklist(on_disk("/missing.xml").c_str()), -1);
  EXPECT_TRUE(logged("is_valid_blacklist_file failed: invalid file size."));
  EXPECT_EQ(cfg_upload_blacklist(""), -1);
  EXPECT_TRUE(logged("is_valid_blacklist_file failed: file_path is empty."));
  EXPECT_EQ(is_valid_contact_file_xml(on_disk("/").c_str()), 0) << "a folder";
  EXPECT_STREQ(contacts().Contacts[0].DisplayName, "New") << "refused files change nothing";
}

TEST_F(PhonebookFilesTest, PathsThatCouldLeaveTheirQuotesReachNoShell) {
  ASSERT_EQ(load_contact("Old"), 0);
  for (const char* name : {"/a\".xml", "/$HOME.xml", "/`id`.xml", "/a\nb.xml", "/a\\.xml"}) {
    write(name, "<B>" + entry_xml(1, "x") + group_xml("g", 1, "") + "</B>");
    const std::string path = on_disk(name);
    EXPECT_EQ(copy_contact_xml(path.c_str()), -1) << path;
    EXPECT_EQ(cfg_upload_contact(path.c_str()), -1) << path;
    EXPECT_EQ(cfg_upload_blacklist(path.c_str()), -1) << path;
  }
  const std::string too_long = on_disk("/") + std::string(200, 'x') + "/" + std::string(800, 'y');
  EXPECT_EQ(copy_contact_xml(too_long.c_str()), -1);
  EXPECT_STREQ(contacts().Contacts[0].DisplayName, "Old");
  write("/a.b$.csv", "FN\nNew,\n");
  EXPECT_EQ(cfg_upload_contact(on_disk("/a.b$.csv").c_str()), 0) << "goes through no shell";
  EXPECT_STREQ(contacts().Contacts[0].DisplayName, "New");
  EXPECT_TRUE(commands().empty());
}

}  // namespace
