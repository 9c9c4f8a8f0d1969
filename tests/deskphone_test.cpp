// deskphone, run as a program over a scratch profile.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "runtime/files.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

struct Outcome {
  int status;
  std::string out;
  std::string error;
};

class Deskphone : public ::testing::Test {
 protected:
  Deskphone() {
    std::string name = (fs::temp_directory_path() / "deskphone-test-XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
  }
  ~Deskphone() override {
    std::error_code error;
    fs::remove_all(folder_, error);
  }

  fs::path root() const { return folder_ / "phone"; }
  std::string path(const char* name) const { return (folder_ / name).string(); }
  void write(const std::string& file, const std::string& text) const {
    ASSERT_TRUE(host::files::replace(file, text));
  }

  /// Runs "deskphone --root ROOT ARGUMENTS" through the shell.
  Outcome run(const std::string& arguments) const {
    const std::string error = path("stderr");
    const std::string command = std::string("exec ") + CFGXML_DESKPHONE + " --root " +
                                root().string() + " " + arguments + " 2>" + error;
    FILE* pipe = ::popen(command.c_str(), "r");
    std::string out;
    char part[4096];
    while (const std::size_t count = std::fread(part, 1, sizeof part, pipe))
      out.append(part, count);
    const int status = ::pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out,
            host::files::read(error).value_or("")};
  }

  json listed(const std::string& arguments) const {
    const Outcome outcome = run("--json " + arguments);
    EXPECT_EQ(outcome.status, 0) << arguments << outcome.error;
    EXPECT_EQ(outcome.error, "") << arguments;
    return json::parse(outcome.out, nullptr, false);
  }

  void expect_refused(const std::string& arguments, const std::string& reason) const {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_NE(outcome.error.find(reason), std::string::npos) << arguments << "\n" << outcome.error;
  }

  /// Every file of the profile and what it holds.
  std::map<std::string, std::string> files() const {
    std::map<std::string, std::string> all;
    for (const auto& entry : fs::recursive_directory_iterator(root())) {
      if (entry.is_regular_file()) all[entry.path()] = *host::files::read(entry.path());
    }
    return all;
  }

 private:
  fs::path folder_;
};

TEST_F(Deskphone, FillsItsFolderOnFirstUseAndListsItAsJson) {
  EXPECT_EQ(listed("contacts list").size(), 120U);
  EXPECT_EQ(listed("groups list").size(), 6U);
  EXPECT_EQ(listed("blacklist list").size(), 10U);
  EXPECT_EQ(listed("contacts list --group Sales")[0]["group"], "Sales");
  EXPECT_EQ(listed("contacts search Reception")[0]["office"], "100");
}

TEST_F(Deskphone, ChangesAreThereInTheNextProcess) {
  const json added = listed("contacts add 'Zoë Baumann' --office 120 --group Support");
  const std::string id = added["id"].dump();
  EXPECT_EQ(listed("contacts show " + id)["name"], "Zoë Baumann");
  EXPECT_EQ(listed("contacts change " + id + " --mobile '0171 3920071'")["mobile"], "0171 3920071");

  const json entry = listed("move to-blacklist " + id);
  EXPECT_EQ(listed("blacklist search Baumann").size(), 1U);
  const json back = listed("move to-contacts " + entry["id"].dump());
  EXPECT_EQ(back["mobile"], "0171 3920071");
  EXPECT_EQ(back["group"], "Default");
  EXPECT_EQ(listed("keys 017103920071")[0]["id"], back["id"]) << "the key 0 stands for a blank too";

  listed("groups change 3 --name Verkauf");
  EXPECT_EQ(listed("contacts list --group Verkauf").size(), 22U) << "renaming keeps the contacts";
  listed("contacts delete --group Verkauf");
  EXPECT_EQ(listed("contacts list").size(), 99U);
}

TEST_F(Deskphone, RefusalsSayWhyAndWhatToDo) {
  expect_refused("contacts add Reception", "already used by another contact or blacklist entry");
  expect_refused("blacklist add Reception", "already used");
  expect_refused("groups add Seventh", "All 6 groups are in use");
  expect_refused("groups add ''", "can not be empty");
  expect_refused("contacts show 999", "no contact with the id 999");
  expect_refused("contacts delete 1 999", "999");
  EXPECT_EQ(listed("contacts list").size(), 120U) << "all are deleted or none";
  expect_refused("contacts add Bob --group Nowhere", "no group \"Nowhere\"");
  expect_refused("contacts add " + std::string(64, 'x'), "64 bytes long; the phone keeps 63");
  expect_refused("contacts add \"$(printf 'a\\033[2J')\"", "control character");
  expect_refused("keys '+49'", "can not be typed");
  expect_refused("remote list --book 4", "book 4 is not loaded");
  EXPECT_EQ(run("contacts show twelve").status, 2);
  EXPECT_EQ(run("remote load FILE --book 5").status, 2);
}

TEST_F(Deskphone, RefusedFilesLeaveEverythingAsItWas) {
  listed("contacts list");
  const auto before = files();
  write(path("text.xml"), "no phonebook");
  write(path("text.csv"), "a,b\n1,2\n");
  write(path("a`b.xml"), "<x/>");
  write(path("empty.xml"), "");
  for (const char* command : {"contacts import ", "contacts upload "}) {
    expect_refused(command + path("text.xml"), "text.xml is not a contact file");
    expect_refused(command + path("text.csv"), "text.csv is not a contact file");
    expect_refused(command + path("none.xml"), "no file");
    expect_refused(command + path("empty.xml"), "is empty");
    expect_refused(command + ("'" + path("a`b.xml") + "'"), "a backquote");
    expect_refused(command + root().string(), "is not a file");
  }
  expect_refused("blacklist upload " + path("text.xml"), "is not a blacklist file");
  write(path("no-ids.xml"), "<B><Blacklist DisplayName=\"X\"/></B>");
  expect_refused("blacklist upload " + path("no-ids.xml"), "the blacklist is as it was");
  expect_refused("remote load --book 0 " + path("text.xml"), "is not a phonebook");
  EXPECT_EQ(files(), before);
  const std::string settings = root() / "config/settings.json";
  const std::string broken = "{\n  \"26\": { 65: \"Berlin\" }\n}\n";
  write(settings, broken);
  expect_refused("timezones match", "settings.json, line 2, column 12: syntax error");
  EXPECT_EQ(host::files::read(settings), broken);
  fs::remove(settings);
  write(root() / "config/Phone/Contact/Contact.xml", "<Contact");
  EXPECT_NE(run("contacts list").error.find("Contact.xml can not be read"), std::string::npos);
}

TEST_F(Deskphone, ImportAddsAndUploadReplaces) {
  const std::string file = std::string(CFGXML_SAMPLES) + "/import/new-colleagues.xml";
  EXPECT_EQ(
      listed("contacts import " + file),
      (json{{"added", 3}, {"name_used", 1}, {"no_name", 0}, {"no_group", 0}, {"no_room", 0}}));
  EXPECT_EQ(listed("contacts search Nygård")[0]["group"], "Support");
  EXPECT_EQ(listed("contacts upload " + file), (json{{"contacts", 4}}));
  EXPECT_EQ(listed("contacts list").size(), 4U);
  EXPECT_EQ(listed("keys 1").size(), 4U) << "the index follows: all have an extension with 1";
}

TEST_F(Deskphone, RemoteBooksStayLoadedUntilTheyAreFreed) {
  const std::string samples = CFGXML_SAMPLES;
  EXPECT_EQ(listed("remote load " + samples + "/remote/company.xml --book 0")["records"], 250);
  EXPECT_EQ(listed("remote load " + samples + "/remote/town.xml --book 3")["records"], 230);
  EXPECT_EQ(listed("remote list")[3]["records"], 230);
  EXPECT_EQ(listed("remote search 'Bakery Birch Lane'")[0]["book"], 3);
  EXPECT_EQ(listed("remote search Bakery --book 0").size(), 0U);
  EXPECT_EQ(listed("keys 225").back()["book"], "remote 3");
  listed("remote free --book 3");
  expect_refused("remote list --book 3", "is not loaded");
}

TEST_F(Deskphone, CallsAreShownAndListedWithTheirNames) {
  EXPECT_EQ(run("call 203").out, "Line 1 (212)  Elin Hägg  203\nAdded call 43 to the history.\n");
  EXPECT_EQ(run("call 0999 --line 2 --name Okafor --taken 75").status, 0);
  const json calls = listed("history list");
  ASSERT_EQ(calls.size(), 42u);
  EXPECT_EQ(calls[0]["type"], "received");
  EXPECT_EQ(calls[0]["name"], "Okafor");
  EXPECT_EQ(calls[1]["type"], "missed");
  EXPECT_EQ(calls[1]["name"], "Elin Hägg");
  EXPECT_EQ(listed("history show 44")["duration"], "00:01:15");
  EXPECT_EQ(listed("history status 43 seen")["status"], "seen");
  EXPECT_EQ(run("history delete 43").out, "Deleted 1 call.\n");
  expect_refused("history delete 44 43", "There is no call with the id 43.");
  EXPECT_EQ(listed("history list").size(), 41u);
}

TEST_F(Deskphone, KeysFromAPipeRedrawAfterEach) {
  listed("contacts list");
  const Outcome outcome = run("keys <<'END'\n23\x7f\nEND\n");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.out.find("Keys: _ "), std::string::npos);
  EXPECT_NE(outcome.out.find("Keys: 23_ "), std::string::npos);
  EXPECT_GT(outcome.out.rfind("Keys: 2_ "), outcome.out.find("Keys: 23_ "));
  EXPECT_EQ(outcome.out.find('\033'), std::string::npos);
}

TEST_F(Deskphone, TourShowsItAllAndLeavesTheProfile) {
  listed("contacts list");
  const auto before = files();
  for (int visit = 0; visit < 2; ++visit) {
    const Outcome outcome = run("tour");
    EXPECT_EQ(outcome.status, 0) << outcome.out;
    EXPECT_EQ(outcome.error, "");
    EXPECT_NE(outcome.out.find("Refused: The name \"Tour Guest\""), std::string::npos);
    EXPECT_NE(outcome.out.find("A new process reads the same 121 contacts"), std::string::npos);
  }
  EXPECT_EQ(files(), before);
}

TEST_F(Deskphone, EndsOnSigtermWhileItWaitsForKeys) {
  listed("contacts list");
  write(path("terminate.sh"),
        "mkfifo \"$2/keyboard\"\n"
        "\"$1\" --root \"$2/phone\" keys <\"$2/keyboard\" >\"$2/screen\" &\n"
        "exec 3>\"$2/keyboard\"\n"
        "until grep -q Keys \"$2/screen\"; do sleep 0.02; done\n"
        "kill -TERM $!\n"
        "wait $!\n");
  const std::string command = "timeout 20 sh " + path("terminate.sh") + " " + CFGXML_DESKPHONE +
                              " " + root().parent_path().string();
  const int status = std::system(command.c_str());
  EXPECT_EQ(WEXITSTATUS(status), 128 + SIGTERM);
}

TEST_F(Deskphone, ScreensAreDrawnListedOrRefusedWithTheLineOfTheFault) {
  const std::string samples = CFGXML_SAMPLES "/screens/";
  const Outcome drawn = run("screen " + samples + "directory.xml");
  EXPECT_NE(drawn.out.find("|     3. Chidi Amadi-Roux       2103           \u2298 DND  "),
            std::string::npos)
      << drawn.out;
  EXPECT_EQ(listed("screen " + samples + "input_screen.xml")["Fields"][4]["Options"][7]["value"],
            "120");
  EXPECT_EQ(listed("screen --cached Services.xml")["Items"][3]["DataID"], "account.02.label");

  write(path("broken.xml"), "<IPPhoneTextMenu>\n<Title>x</Titel>\n</IPPhoneTextMenu>");
  write(path("other.xml"), "<Note/>");
  expect_refused("screen " + path("broken.xml"), "broken.xml is not well-formed XML: line 2");
  expect_refused("screen " + path("other.xml"), "its root element is Note");
  expect_refused("screen " + path("none.xml"), "none.xml can not be read");
  expect_refused("screen --cached none.xml", "Emergency.xml, Forwarding.xml, Services.xml");
}

TEST_F(Deskphone, ACsvFileIsAddedRowByRowAndComesBackFromAnExport) {
  const std::string samples = std::string(CFGXML_SAMPLES) + "/import/";
  EXPECT_EQ(listed("contacts check " + samples + "customers.csv")["contacts"], 20);
  EXPECT_EQ(
      listed("contacts import " + samples + "customers.csv"),
      (json{{"added", 18}, {"name_used", 2}, {"no_name", 0}, {"no_group", 0}, {"no_room", 0}}));
  write(path("more.csv"), "FN\n,\nNew one,,,,,,,,,,,,,,,,,,,No room,,,,,END\n");
  EXPECT_EQ(
      listed("contacts import " + path("more.csv")),
      (json{{"added", 0}, {"name_used", 0}, {"no_name", 1}, {"no_group", 1}, {"no_room", 0}}));

  const Outcome out = run("contacts export " + path("out.csv"));
  EXPECT_EQ(out.out, "Exported 138 contacts to " + path("out.csv") + ".\n");
  EXPECT_NE(out.error.find("A comma stands in 27 rows"), std::string::npos) << out.error;
  EXPECT_EQ(listed("contacts upload " + path("out.csv")), (json{{"contacts", 138}}));
  EXPECT_EQ(listed("groups list").size(), 6u);

  const fs::path elsewhere = fs::current_path();
  fs::current_path(path(""));
  fs::create_symlink("out.xml", "link.xml");
  fs::create_symlink("/proc/self/fd/1", "output");
  for (const char* target : {"out.xml", "link.xml"}) {
    listed(std::string("contacts community out.csv ") + target);
    EXPECT_EQ(listed("contacts check out.xml")["contacts"], 138);
  }
  EXPECT_TRUE(fs::is_symlink("link.xml"));
  EXPECT_EQ(run("contacts community out.csv output").out, *host::files::read("out.xml"));
  fs::current_path(elsewhere);
  for (const char* command : {"contacts export ", "contacts community out.csv "}) {
    expect_refused(command + path("none/file"), "There is no folder " + path("none"));
  }
}

TEST_F(Deskphone, DirectoryPagesStayAndAreFoundFromTheKeypad) {
  const std::string pages = std::string(CFGXML_SAMPLES) + "/directory/";
  expect_refused("directory list", "Load it first");
  EXPECT_EQ(listed("directory load " + pages + "enterprise-?.xml"),
            (json{{"pages", 3}, {"entries", 21}, {"total", 21}}));
  expect_refused("directory load " + pages + "../import/new-colleagues.xml", "is no page");
  EXPECT_EQ(listed("directory list").size(), 21u);
  EXPECT_EQ(listed("directory search Fischer")[0], listed("directory show 3"));
  expect_refused("directory show 21", "no entry 21");

  EXPECT_NE(run("directory simple 5 " + pages + "group-1.xml").error.find("more pages remain"),
            std::string::npos);
  listed("directory simple 5 " + pages + "group-common-?.xml");
  const json hits = listed("keys 732");
  EXPECT_EQ(hits.back()["book"], "directory 5");
  EXPECT_EQ(hits.back()["name"], "Security & gate ");
}

}  // namespace
