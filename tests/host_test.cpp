// The reference host: locks, deferred saving, settings, contact files, look-ups.
#include <cfgxml/host.h>

#include <condition_variable>
#include <cstring>
#include <future>
#include <initializer_list>
#include <mutex>
#include <thread>

#include "runtime/locks.h"
#include "support/people.h"
#include "support/phone.h"

namespace {

using namespace phone_test;  // NOLINT(google-build-using-namespace): the records and their texts

using host::SaveCode;
using host::Saver;

constexpr int kLock = 45081;
constexpr char kContactFile[] = "/config/Phone/Contact/Contact.xml";
constexpr char kBlacklistFile[] = "/config/Phone/Contact/Blacklist.xml";
constexpr char kBackup[] = "/config/Phone/Contact/Contact.xml.before-change";

const std::string kAda = "<B><Blacklist Id=\"1\" DisplayName=\"Ada\"/></B>";

std::string contact_file(const std::string& contact) {
  return "<B><Group Id=\"1\" Name=\"W\">" + contact + "</Group></B>";
}

class HostTest : public Phone {
 protected:
  static void add(const char* name) { ASSERT_EQ(with(cfg_add_contact_data, contact(name)), 0); }
  bool holds(const char* path, const std::string& text) const {
    return read(path).find(text) != std::string::npos;
  }
};

TEST(HostLocks, AreRecursiveAndBelongToTheThreadThatTookThem) {
  const int faults = host::locks::faulty_releases();
  rl_sem_lock(kLock);
  rl_sem_lock(kLock);
  std::thread([&] { EXPECT_NE(rl_sem_unlock(kLock), 0); }).join();
  EXPECT_EQ(host::locks::faulty_releases(), faults + 1);

  rl_sem_unlock(kLock);
  EXPECT_TRUE(host::locks::held_by_me(kLock)) << "released once, taken twice";
  std::promise<void> taken;
  std::thread other([&] {
    rl_sem_lock(kLock);
    taken.set_value();
    rl_sem_unlock(kLock);
  });
  std::future<void> waits = taken.get_future();
  EXPECT_EQ(waits.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  rl_sem_unlock(kLock);
  waits.wait();
  other.join();
  EXPECT_EQ(host::locks::held(), 0);
}

TEST(HostLocks, CountALockTakenInsideAnotherThatMayNotBeAroundIt) {
  constexpr int kMessages = 45067;
  constexpr int kHistory = 45075;
  constexpr int kPhonebook = 45081;
  const auto take_nested = [](std::initializer_list<int> order) {
    const int before = host::locks::inversions();
    for (const int id : order) rl_sem_lock(id);
    for (const int id : order) rl_sem_unlock(id);
    return host::locks::inversions() - before;
  };
  const int nested = host::locks::nestings(kHistory, kPhonebook);
  EXPECT_EQ(take_nested({kHistory, kPhonebook}), 0);
  EXPECT_EQ(host::locks::nestings(kHistory, kPhonebook), nested + 1);
  EXPECT_EQ(take_nested({kHistory, kPhonebook, kHistory, kPhonebook}), 0) << "taken again";
#ifndef __SANITIZE_THREAD__  // which reports the inversion itself, as a deadlock that may come
  EXPECT_EQ(take_nested({kPhonebook, kHistory}), 1);
#endif
  EXPECT_EQ(take_nested({kMessages, kPhonebook}), 1);
  EXPECT_EQ(take_nested({kMessages, kHistory, kPhonebook}), 2) << "only history and phonebook nest";
  EXPECT_EQ(take_nested({kMessages}), 0) << "all were released";
}

TEST(HostText, BoundedCopiesCutAndTakeNothingForAnEmptyText) {
  char text[6] = "old";
  rl_strcpy_s(text, sizeof text, nullptr);
  EXPECT_STREQ(text, "");
  rl_strcpy_s(text, sizeof text, "abc");
  rl_strcat_s(text, sizeof text, "defg");
  EXPECT_STREQ(text, "abcde");
  EXPECT_EQ(rl_atoi(nullptr), 0);
  EXPECT_EQ(rl_atoi("99999999999"), 2147483647);
  char spaced[] = " \ta b\r\n";
  EXPECT_STREQ(rl_strtrim(spaced), "a b");
  char blank[] = "  ";
  EXPECT_STREQ(rl_strtrim(blank), "");
}

TEST(HostSaver, WritesEachPostedKindOnceAndTheRestAtTheStop) {
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<SaveCode> written;
  Saver saver([&](SaveCode code) {
    const std::lock_guard<std::mutex> hold(mutex);
    written.push_back(code);
    changed.notify_all();
    return 0;
  });
  for (int i = 0; i < 5; ++i) saver.post(3);
  saver.start(Saver::Milliseconds(20));
  {
    std::unique_lock<std::mutex> hold(mutex);
    changed.wait(hold, [&] { return !written.empty(); });
  }
  EXPECT_NE(saver.post(2), 0) << "no file has this code";
  EXPECT_TRUE(saver.stop());
  EXPECT_EQ(written, std::vector<SaveCode>{SaveCode::kContacts});

  saver.start(std::chrono::hours(1));
  for (const int code : {4, 3, 4}) saver.post(code);
  EXPECT_TRUE(saver.stop()) << "at once, not after the pause";
  EXPECT_EQ(written,
            (std::vector<SaveCode>{SaveCode::kContacts, SaveCode::kBlacklist, SaveCode::kContacts}))
      << "the list that gained a record before the one that lost it";
}

TEST(HostSaver, KeepsWhatItCouldNotWrite) {
  bool disk_full = true;
  int writes = 0;
  Saver saver([&](SaveCode) {
    ++writes;
    return disk_full ? -1 : 0;
  });
  saver.post(3);
  EXPECT_FALSE(saver.stop());
  disk_full = false;
  EXPECT_TRUE(saver.stop());
  EXPECT_TRUE(saver.stop());
  EXPECT_EQ(writes, 2);
}

TEST_F(HostTest, DeferredChangesReachTheirFilesWhenSavingStops) {
  host().start_saving();
  add("Ada");
  EXPECT_EQ(posted(), std::vector<int>{3});
  EXPECT_TRUE(host().stop_saving());
  EXPECT_TRUE(holds(kContactFile, "\"Ada\""));
  add("Bo");
  EXPECT_TRUE(holds(kContactFile, "\"Bo\"")) << "saved at once again";
}

TEST_F(HostTest, ANameInBothFilesStaysWithTheContacts) {
  write(kContactFile, contact_file("<Contact Id=\"1\" DisplayName=\"Ada\"/>"));
  write(kBlacklistFile, kAda);
  const host::InitResults results = host().load();
  EXPECT_EQ(results.contacts, 0);
  EXPECT_EQ(results.blacklist, 19);
  EXPECT_EQ(shown(contacts().Contacts), "1:Ada");
  EXPECT_EQ(shown(blacklist().Entries), "");
}

TEST_F(HostTest, SettingsAreSavedBySection) {
  cfg_set_string(26, 65, "Berlin");
  cfg_set_string(0, 18, "5062");
  EXPECT_EQ(cfg_save(26), 0);
  EXPECT_EQ(cfg_get_int(0, 18, 5060), 5062);

  host().open_profile(root());
  char zone[8];
  cfg_get_string(26, 65, zone, sizeof zone, "none");
  EXPECT_STREQ(zone, "Berlin");
  EXPECT_EQ(cfg_get_int(0, 18, 5060), 5060) << "its section was not saved";
  cfg_get_string(26, 66, zone, 4, "default");
  EXPECT_STREQ(zone, "def");
}

TEST_F(HostTest, BrokenSettingsAreRefusedWhereTheyBreakAndStay) {
  constexpr char kFile[] = "/config/settings.json";
  const std::pair<const char*, const char*> rows[] = {
      {"{ \"26\": ", "line 1, column 9: syntax error"},
      {"", "line 1, column 1: syntax error"},
      {"{\n  \"0\": { \"16\": \"203\" },\n  26: {}\n}", "line 3, column 4: syntax error"},
      {"\n [1]", "line 2, column 2: an object of sections"},
      {"{ \"26\" : \"Berlin\" }", "line 1, column 10: an object of items"},
      {"{ \"0\": {},\n\"26\": [ {} ] }", "line 2, column 7: an object of items"},
      {"{ \"26\": { \"65\":\n { \"a\": 1 } } }", "line 2, column 2: a text or a whole number"},
      {"{ \"26\": { \"64\": \"+1\", \"65\": true } }",
       "line 1, column 29: a text or a whole number"},
  };
  for (const auto& [text, reason] : rows) {
    write(kFile, text);
    try {
      host().open_profile(root());
      ADD_FAILURE() << text;
    } catch (const host::SettingsError& error) {
      EXPECT_NE(std::strstr(error.what(), reason), nullptr) << error.what();
    }
    cfg_set_string(26, 65, "Berlin");
    EXPECT_EQ(cfg_save(26), -1);
    EXPECT_EQ(read(kFile), text);
  }
  write(kFile, "{ \"0\": { \"16\": \"203\", \"18\": 5062 } }");
  host().open_profile(root());
  EXPECT_EQ(cfg_get_int(0, 18, 5060), 5062) << "a number is as good as its text";
}

TEST_F(HostTest, ImportThatFailsLeavesContactsAndFile) {
  add("Ada");
  host().start_saving();
  add("Bo");  // not in the file yet
  write("/bad.csv", "NAME,NUMBER\nX,1\n");
  write("/bad.xml", "<ContactData><Group Id=\"1\" Name=\"Work\">");
  for (const char* file : {"/bad.csv", "/bad.xml", "/missing.csv"}) {
    EXPECT_EQ(cfg_upload_contact(on_disk(file).c_str()), -1) << file;
  }
  // Files that go away between the check and the import.
  rl_sem_lock(kLock);
  EXPECT_NE(adapter_read_contact_file(on_disk("/missing.csv").c_str()), 0);
  EXPECT_NE(adapter_read_contact_file(on_disk("/missing.xml").c_str()), 0);
  rl_sem_unlock(kLock);

  EXPECT_EQ(shown(contacts().Contacts), "1:Ada 2:Bo");
  EXPECT_TRUE(holds(kContactFile, "\"Bo\"")) << "a reload after the import must find it";
  EXPECT_FALSE(exists(kBackup));
}

TEST_F(HostTest, BlacklistUploadThatFailsLeavesEntriesAndFile) {
  write(kBlacklistFile, kAda);
  host().load();
  host().start_saving();
  ASSERT_EQ(with(cfg_add_black_data, contact("Bo")), 0);  // not in the file yet
  write("/broken.xml", "<B><Blacklist");
  write("/no-ids.xml", "<B><Blacklist DisplayName=\"X\"/></B>");
  for (const char* file : {"/broken.xml", "/no-ids.xml"}) {
    EXPECT_EQ(host().upload_blacklist(cfg_upload_blacklist, on_disk(file).c_str()), -1) << file;
    EXPECT_EQ(shown(blacklist().Entries), "1:Ada 2:Bo") << file;
    EXPECT_TRUE(holds(kBlacklistFile, "\"Bo\"")) << file;
  }
}

TEST_F(HostTest, ImportThatWasCutShortIsUndoneAtTheNextStart) {
  add("Ada");
  write(kBackup, read(kContactFile));
  write(kContactFile, "<ContactData><Gro");
  host().open_profile(root());
  EXPECT_EQ(host().load().contacts, 0);
  EXPECT_EQ(shown(contacts().Contacts), "1:Ada");
}

TEST_F(HostTest, LookupsFindTheGroupAndTheRing) {
  write(kContactFile,
        "<B><Group Id=\"4\" Name=\"Work\" Ring=\"Bell\">"
        "<Contact Id=\"1\" DisplayName=\"A\" MobileNumber=\"17\" Ring=\"Auto\"/>"
        "<Contact Id=\"2\" DisplayName=\"B\" OfficeNumber=\"18\" Ring=\"Horn\"/></Group>"
        "<Group Id=\"5\" Name=\"Default\" Ring=\"Auto\">"
        "<Contact Id=\"3\" DisplayName=\"C\" OtherNumber=\"19\"/></Group></B>");
  host().load();
  char name[] = "Work";
  EXPECT_EQ(find_group_id(name, nullptr, nullptr, nullptr), reinterpret_cast<void*>(4));
  char ring[8];
  const auto ring_of = [&ring](std::string number) -> std::string {
    void* const room = reinterpret_cast<void*>(sizeof ring);
    return find_contacts_ring_url(number.data(), ring, room, nullptr) == ring ? ring : "nobody";
  };
  EXPECT_EQ(ring_of("17"), "Bell") << "the group's";
  EXPECT_EQ(ring_of("18"), "Horn") << "its own";
  EXPECT_EQ(ring_of("19"), "Auto");
  EXPECT_EQ(ring_of("20"), "nobody");
}

}  // namespace
