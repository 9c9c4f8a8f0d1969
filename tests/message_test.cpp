// The message store: four boxes in one file.
#include <cfgxml/host.h>
#include <cfgxml/message.h>
#include <sys/stat.h>
#include <tinyxml2.h>

#include <cstring>
#include <random>

#include "runtime/locks.h"
#include "runtime/logging.h"
#include "support/list_functions.h"
#include "support/phone.h"

namespace {

using list_functions::Box;
using list_functions::kBoxes;

constexpr char kPath[] = "/config/Phone/Message/Message.xml";

const Box& kInbox = kBoxes[0];

SMS_DATA_T message(int status, const char* content) {
  SMS_DATA_T record{};
  record.id = 4711;  // not to be looked at, nor the type
  record.status = status;
  record.type = 9;
  record.port = 5060;
  rl_strcpy_s(record.from_display, 64, "Ann & \"B\"");
  rl_strcpy_s(record.from_user, 64, "#1234");
  rl_strcpy_s(record.to_user, 64, "2000");
  rl_strcpy_s(record.server, 64, "pbx");
  rl_strcpy_s(record.content, 256, content);
  rl_strcpy_s(record.date, 16, "2024-05-01");
  rl_strcpy_s(record.time, 12, "10:12");
  return record;
}

/// The ids of a box's list, in its order.
std::vector<int> ids(const Box& box) {
  std::vector<int> ids;
  for (SMS_SUMMARY_T* node = box.list(); node != nullptr;) {
    ids.push_back(node->id);
    SMS_SUMMARY_T* next = node->next;
    rl_free(node);
    node = next;
  }
  return ids;
}

class Messages : public phone_test::Phone {
 protected:
  static int add(const Box& box, int status) {
    const SMS_DATA_T record = message(status, "text");
    return box.add(&record);
  }
  static int set(const Box& box, int id, int status) {
    const SMS_DATA_T record = message(status, "text");
    return box.set(id, &record);
  }
  /// An attribute of a box; "-" when it is absent.
  std::string counter(const Box& box, const char* name) const {
    tinyxml2::XMLDocument document;
    document.Parse(read(kPath).c_str());
    const char* value = document.RootElement()->FirstChildElement(box.element)->Attribute(name);
    return value != nullptr ? value : "-";
  }
};

TEST_F(Messages, FirstMessageCreatesItsBoxUnderTheMessageLock) {
  for (std::size_t type = 1; type <= 4; ++type) {
    const Box& box = kBoxes[type - 1];
    bool locked = false;
    write(kPath, "<Store/>");
    host::observe_log([&](host::LogLevel, const std::string& text) {
      if (text == std::string("cfg_add_sms_data:<") + kPath + "> no boxdata_node, create!") {
        locked = host::locks::held_by_me(45067) && host::locks::held() == 1;
      }
    });
    ASSERT_EQ(add(box, 1), 0);
    EXPECT_TRUE(locked);
    EXPECT_EQ(read(kPath),
              std::string("<Store>\n    <") + box.element + " Total=\"1\"" +
                  (type == CFGXML_INBOX ? " Unread=\"1\"" : "") + ">\n        <" + box.entry +
                  " ID=\"1\" FromDisplay=\"Ann &amp; &quot;B&quot;\" FromUser=\"#1234\""
                  " Server=\"pbx\" Port=\"5060\" ToDisplay=\"\" ToUser=\"2000\" Content=\"text\""
                  " Status=\"1\" Date=\"2024-05-01\" Time=\"10:12\"/>\n    </" +
                  box.element + ">\n</Store>\n");
    SMS_DATA_T record;
    rl_memset(&record, 'x', sizeof record);
    ASSERT_EQ(box.get(1, &record), 0);
    SMS_DATA_T expected = message(1, "text");
    expected.id = 1;
    expected.type = static_cast<int>(type);
    EXPECT_EQ(std::memcmp(&record, &expected, sizeof record), 0);
    EXPECT_EQ(ids(box), std::vector<int>{1});
    EXPECT_EQ(ids(kBoxes[type % 4]), std::vector<int>{}) << "another box";
  }
}

TEST_F(Messages, MissingFileFailsEveryCallAndIsNotCreated) {
  SMS_DATA_T record = message(1, "text");
  for (const Box& box : kBoxes) {
    EXPECT_EQ(box.list(), nullptr);
    EXPECT_EQ(box.get(1, &record), -1);
    EXPECT_EQ(box.set(1, &record), -1);
    EXPECT_EQ(box.add(&record), -1);
    EXPECT_EQ(box.remove(1), -1);
    EXPECT_EQ(box.remove_all(), -1);
  }
  EXPECT_EQ(cfg_get_all_sms_details_list(), nullptr);
  EXPECT_EQ(cfg_get_inbox_unread(), -1);
  EXPECT_FALSE(exists(kPath));
  EXPECT_TRUE(log().empty());
}

TEST_F(Messages, FileWithoutTheBoxIsReadAsEmptyAndMendedByAChange) {
  for (const char* file :
       {"", "<Message", "<!-- -->", "<Message/>", "<Message><Inbox/></Message>"}) {
    write(kPath, file);
    EXPECT_EQ(kInbox.list(), nullptr);
    EXPECT_EQ(cfg_get_inbox_unread(), -1);
    EXPECT_EQ(read(kPath), file);
    EXPECT_EQ(add(kInbox, 1), 0);
    EXPECT_EQ(cfg_get_inbox_unread(), 1);
  }
  write(kPath, "<Message/>");
  EXPECT_EQ(set(kInbox, 1, 0), -1);
  EXPECT_EQ(read(kPath), "<Message/>") << "a change of nothing is not saved";
  EXPECT_EQ(kInbox.remove(1), 0);
  EXPECT_EQ(kBoxes[3].remove_all(), 0);
  EXPECT_EQ(read(kPath),
            "<Message>\n    <InboxData/>\n    <DraftboxData Total=\"0\"/>\n</Message>\n");

  std::filesystem::remove(on_disk(kPath) + ".corrupt");
  write(kPath, "<Message");
  forget_log();
  EXPECT_EQ(kInbox.remove_all(), 0);
  EXPECT_TRUE(logged(std::string("cfg_remove_sms_all:load file <") + kPath +
                     "> failed, create a new file!"));
  EXPECT_TRUE(logged(std::string("cfg_remove_sms_all:<") + kPath + "> no root node, create!"));
  EXPECT_EQ(read(std::string(kPath) + ".corrupt"), "<Message");
  struct stat status {};
  ASSERT_EQ(::stat(on_disk(kPath).c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0600u) << "messages are private";
}

TEST_F(Messages, FullBoxDropsItsFirstChild) {
  std::string box;
  for (int id = 1; id <= 100; ++id) box += "<Inbox ID=\"" + std::to_string(id) + "\"/>";
  write(kPath, "<M><InboxData Total=\"9\"><Note/><Inbox ID=\"900\"/>" + box + "</InboxData></M>");
  add(kInbox, 0);
  EXPECT_EQ(ids(kInbox).size(), 102u) << "the first child was no message";
  add(kInbox, 0);
  EXPECT_EQ(ids(kInbox).back(), 1);
  EXPECT_EQ(ids(kInbox).front(), 902) << "counted before the drop";
  EXPECT_EQ(counter(kInbox, "Total"), "11") << "not lowered by the drop";
}

TEST_F(Messages, OnlyTheInboxCountsUnread) {
  write(kPath, "<Message/>");
  for (const Box* box : {&kInbox, &kBoxes[1]}) {
    add(*box, 1);
    add(*box, 1);
    set(*box, 2, 0);
    EXPECT_TRUE(logged("status = 1, sms_data->status = 0"));
  }
  EXPECT_EQ(counter(kInbox, "Unread"), "1");
  EXPECT_EQ(counter(kBoxes[1], "Unread"), "-");
  EXPECT_EQ(kInbox.remove_all(), 0);
  EXPECT_EQ(counter(kInbox, "Total") + counter(kInbox, "Unread"), "00");
  EXPECT_EQ(ids(kInbox).size() + ids(kBoxes[1]).size(), 2u);
}

TEST_F(Messages, AChangeSetsWhatAMessageLacksInItsOwnOrder) {
  write(kPath, "<M><InboxData><Inbox ID='1'/></InboxData></M>");
  EXPECT_EQ(set(kInbox, 1, 0), 0);
  const std::string file = read(kPath);
  std::size_t at = 0;
  for (const char* name : {"ID", "FromDisplay", "FromUser", "ToDisplay", "ToUser", "Server",
                           "Content", "Date", "Time", "Port", "Status"}) {
    at = file.find(" " + std::string(name) + "=", at);
    ASSERT_NE(at, std::string::npos) << name;
  }
}

TEST_F(Messages, CountersOfTheFileAreTakenWithinTheirRange) {
  struct Case {
    const char *counters, *added, *removed;
  };
  for (const Case& c : {Case{"", "1 1", "0 -"}, Case{"Total=\"-7\" Unread=\"-7\"", "1 1", "0 -7"},
                        Case{"Total=\"4294967295\" Unread=\"99999999999\"", "4294967295 4294967295",
                             "4294967293 4294967293"},
                        Case{"Total=\"1\" Unread=\"x\"", "2 1", "0 x"}}) {
    const auto counters = [&] {
      return counter(kInbox, "Total") + " " + counter(kInbox, "Unread");
    };
    const std::string file = std::string("<Message><InboxData ") + c.counters +
                             "><Inbox ID=\"3\" Status=\"1\"/><Inbox ID=\"3\" Status=\"1\"/>"
                             "</InboxData></Message>";
    write(kPath, file);
    add(kInbox, 1);
    EXPECT_EQ(counters(), c.added) << c.counters;
    write(kPath, file);
    kInbox.remove(3);
    EXPECT_EQ(counters(), c.removed) << c.counters;
  }
}

TEST_F(Messages, LabelsNameTheOtherParty) {
  const std::string longest(140, 'x');
  struct Case {
    std::string display, user, label;
  };
  const std::vector<Case> cases = {
      {"Bob", "#1234", "(Bob)1234"},
      {"", "#", "#"},
      {"", "12", "12"},
      {"", "##", "#"},
      {longest, "1", "(" + longest.substr(0, 128)},
      {longest.substr(0, 127) + "\xC3\xA4", "1", "(" + longest.substr(0, 127)},
      {"Bob", "", "(Bob)"}};
  for (const Case& c : cases) {
    const std::string from = "FromDisplay=\"" + c.display + "\" FromUser=\"" + c.user + "\"";
    const std::string to = "ToDisplay=\"" + c.display + "\" ToUser=\"" + c.user + "\"";
    write(kPath, "<M><InboxData><Inbox " + from +
                     " ToUser=\"no\"/></InboxData><OutboxData><Outbox " + to +
                     " FromUser=\"no\"/></OutboxData><SentboxData><Sentbox " + to +
                     "/></SentboxData><DraftboxData><Draftbox Date=\"" + c.user + "\" " + to +
                     "/></DraftboxData></M>");
    for (const Box& box : kBoxes) {
      SMS_SUMMARY_T* node = box.list();
      EXPECT_EQ(node->label, &box == &kBoxes[3] ? c.user : c.label);
      EXPECT_EQ(node->type, &box - kBoxes + 1);
      rl_free(node);
    }
  }
}

TEST_F(Messages, AllDetailsComeFromTheLastBoxBackwards) {
  const std::string text(300, 'x');
  write(kPath, "<M><InboxData><Inbox ID=\"1\"/><Other ID=\"2\" Status=\"1\" Port=\"7\" Content=\"" +
                   text + "\" Date=\"" + text +
                   "\"/></InboxData><Spam><Any ID=\"5\"/></Spam>"
                   "<OutboxData><Outbox ID=\"1\"/></OutboxData></M>");
  SMS_DETAILS_T* nodes[5] = {cfg_get_all_sms_details_list()};
  for (int i = 0; i < 4; ++i) {
    ASSERT_NE(nodes[i], nullptr);
    nodes[i + 1] = nodes[i]->next;
  }
  EXPECT_EQ(nodes[4], nullptr);
  const std::pair<int, int> expected[] = {{2, 1}, {-1, 5}, {1, 2}, {1, 1}};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(std::make_pair(nodes[i]->data.type, nodes[i]->data.id), expected[i]);
  }
  EXPECT_EQ(nodes[2]->data.status, 1);
  EXPECT_EQ(nodes[2]->data.port, 7);
  EXPECT_EQ(nodes[2]->data.content, text.substr(0, 255));
  EXPECT_EQ(nodes[2]->data.date, text.substr(0, 15));
  for (int i = 0; i < 4; ++i) rl_free(nodes[i]);
}

TEST_F(Messages, RandomChangesFollowTheModel) {
  write(kPath, "<Message/>");
  std::mt19937 random(20240502);
  const auto pick = [&](std::size_t below) { return static_cast<int>(random() % below); };
  std::vector<std::pair<int, int>> model;  // id and status, the oldest first
  int unread = 0;
  int total = 0;
  for (int step = 0; step < 350; ++step) {
    const int action = pick(10);
    const int status = pick(3);
    const auto found = model.begin() + (model.empty() ? 0 : pick(model.size()));
    const int id = found != model.end() ? found->first : 1;
    const bool was_unread = found != model.end() && found->second == 1;
    if (action < 6) {
      ASSERT_EQ(add(kInbox, status), 0);
      int largest = 0;
      for (const auto& entry : model) largest = std::max(largest, entry.first);
      if (model.size() > 100) model.erase(model.begin());
      model.emplace_back(largest + 1, status);
      unread += status == 1;
      ++total;
    } else if (action < 9) {
      ASSERT_EQ(set(kInbox, id, status), found != model.end() ? 0 : -1);
      if (found == model.end()) continue;
      unread -= was_unread && status == 0 && unread > 0;
      found->second = status;
    } else {
      ASSERT_EQ(kInbox.remove(id), 0);
      if (found == model.end()) continue;
      unread -= was_unread && unread > 0;
      --total;
      model.erase(found);
    }
    std::vector<int> newest_first;
    for (const auto& entry : model) newest_first.insert(newest_first.begin(), entry.first);
    ASSERT_EQ(ids(kInbox), newest_first) << "step " << step;
    ASSERT_EQ(cfg_get_inbox_unread(), unread) << "step " << step;
    ASSERT_EQ(counter(kInbox, "Total"), std::to_string(total)) << "step " << step;
  }
  EXPECT_EQ(model.size(), 101u) << "the bound was reached";
}

}  // namespace
