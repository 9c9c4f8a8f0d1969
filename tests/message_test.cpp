// The message store: four boxes in one file.
#include <cfgxml/host.h>
#include <cfgxml/message.h>
#include <sys/stat.h>

#include <regex>

#include "support/list_functions.h"
#include "support/phone.h"
#include "support/records.h"

namespace {

using list_functions::Box;
using list_functions::kBoxes;
using phone_test::bytes_of;
using phone_test::take;

constexpr char kPath[] = "/config/Phone/Message/Message.xml";
const Box& kInbox = kBoxes[0];

/// With an id and a type that are not to be looked at.
SMS_DATA_T message(int status) {
  return {4711, status, 9,  5060,   "#1234",      "Ann & \"B\"", "2000",
          "Me", "pbx",  "", "text", "2024-05-01", "10:12"};
}

class Messages : public phone_test::Phone {
 protected:
  static int add(const Box& box, int status) {
    const SMS_DATA_T record = message(status);
    return box.add(&record);
  }
  static int set(const Box& box, int id, int status) {
    const SMS_DATA_T record = message(status);
    return box.set(id, &record);
  }
  /// The values of a box's attributes: "Total Unread".
  std::string counters(const Box& box) const {
    std::smatch found;
    const std::string text = read(kPath);
    std::regex_search(text, found, std::regex(std::string(box.element) + "([^/>]*)"));
    return std::regex_replace(found.str(1), std::regex("^ Total=|Unread=|\""), "");
  }
};

TEST_F(Messages, EveryFieldButTheTypeIsStored) {
  write(kPath, "<Store/>");
  for (const Box& box : kBoxes) ASSERT_EQ(add(box, 1), 0);
  EXPECT_TRUE(logged("sms_data->date = 2024-05-01"));
  EXPECT_TRUE(logged("sms_data->time = 10:12"));
  const std::string common = "FromDisplay=\"Ann &amp; &quot;B&quot;\" FromUser=\"#1234\" ";
  const std::string to = "ToDisplay=\"Me\" ToUser=\"2000\" ";
  const std::string time = "Date=\"2024-05-01\" Time=\"10:12\"";
  const std::string added = common + "Server=\"pbx\" Port=\"5060\" " + to +
                            "Content=\"text\" Status=\"1\" " + time + "/>";
  const std::string changed =
      common + to + "Server=\"pbx\" Content=\"text\" " + time + " Port=\"5060\" Status=\"1\"/>";
  for (const Box& box : kBoxes) {
    const std::string place = std::string(box.entry) + " ID=\"1\" ";
    EXPECT_NE(read(kPath).find(place + added), std::string::npos) << read(kPath);
    SMS_DATA_T record;
    rl_memset(&record, 'x', sizeof record);
    ASSERT_EQ(box.get(1, &record), 0);
    SMS_DATA_T expected = message(1);
    expected.id = 1;
    expected.type = type_of(box);
    EXPECT_EQ(bytes_of(&record), bytes_of(&expected)) << place;
  }
  write(kPath, "<M><InboxData><Inbox ID='1'/></InboxData></M>");
  EXPECT_EQ(set(kInbox, 1, 1), 0);
  EXPECT_NE(read(kPath).find(changed), std::string::npos)
      << "what a message lacks has an order of its own";
}

TEST_F(Messages, OperationsOnABoxThatIsMissing) {
  EXPECT_EQ(cfg_get_all_sms_details_list(), nullptr);
  EXPECT_EQ(cfg_get_inbox_unread(), -1);
  EXPECT_EQ(kInbox.remove_all(), -1);
  EXPECT_FALSE(exists(kPath));
  for (const char* file : {"", "<Message/>", "<Message><Inbox Unread=\"1\"/></Message>"}) {
    write(kPath, file);
    EXPECT_EQ(cfg_get_inbox_unread(), -1);
    EXPECT_EQ(cfg_get_all_sms_details_list(), nullptr);
    EXPECT_EQ(read(kPath), file);
  }
  write(kPath, "<Message/>");
  EXPECT_EQ(set(kInbox, 1, 0), -1);
  EXPECT_EQ(read(kPath), "<Message/>") << "a change of nothing is not saved";
  EXPECT_EQ(kInbox.remove(1), 0);
  EXPECT_EQ(kBoxes[3].remove_all(), 0);
  EXPECT_EQ(read(kPath),
            "<Message>\n    <InboxData/>\n    <DraftboxData Total=\"0\"/>\n</Message>\n");

  write(kPath, "<Message");
  forget_log();
  EXPECT_EQ(kInbox.remove_all(), 0);
  EXPECT_EQ(log().at(0).rfind("cfg_remove_sms_all:", 0), 0u);
  struct stat status {};
  ASSERT_EQ(::stat(on_disk(kPath).c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0600u) << "messages are private";
}

TEST_F(Messages, FullBoxDropsItsFirstChild) {
  std::string box = "<Note/><Inbox ID=\"900\"/>";
  for (int id = 1; id <= 100; ++id) box += "<Inbox ID=\"" + std::to_string(id) + "\"/>";
  write(kPath, "<M><InboxData Total=\"9\">" + box + "</InboxData></M>");
  add(kInbox, 0);
  EXPECT_EQ(take(kInbox.list()).size(), 102u) << "the first child was no message";
  add(kInbox, 0);
  const auto messages = take(kInbox.list());
  EXPECT_EQ(messages.back().id, 1);
  EXPECT_EQ(messages.front().id, 902) << "counted before the drop";
  EXPECT_EQ(counters(kInbox), "11") << "not lowered by the drop";
}

TEST_F(Messages, OnlyTheInboxCountsUnread) {
  enum Action { kAdd, kSet, kRemove, kRemoveAll };
  const struct {
    Action action;
    int id, status, total, unread;
  } steps[] = {
      {kAdd, 1, 1, 1, 1},    {kAdd, 2, 1, 2, 2},       {kAdd, 3, 0, 3, 2},    {kSet, 3, 1, 3, 2},
      {kSet, 3, 2, 3, 2},    {kSet, 3, 0, 3, 2},       {kSet, 2, 0, 3, 1},    {kSet, 2, 0, 3, 1},
      {kRemove, 2, 0, 2, 1}, {kRemove, 9, 0, 2, 1},    {kRemove, 1, 1, 1, 0}, {kSet, 3, 1, 1, 0},
      {kSet, 3, 0, 1, 0},    {kSet, 3, 1, 1, 0},       {kRemove, 3, 1, 0, 0}, {kAdd, 1, 1, 1, 1},
      {kAdd, 2, 1, 2, 2},    {kRemoveAll, 0, 0, 0, 0},
  };
  write(kPath, "<Message/>");
  for (const auto& [action, id, status, total, unread] : steps) {
    SCOPED_TRACE(testing::Message() << action << " of " << id << " with status " << status);
    for (const Box* box : {&kInbox, &kBoxes[1]}) {
      if (action == kAdd) add(*box, status);
      if (action == kSet) set(*box, id, status);
      if (action == kRemove) box->remove(id);
      if (action == kRemoveAll) box->remove_all();
    }
    EXPECT_EQ(counters(kInbox), std::to_string(total) + " " + std::to_string(unread));
    EXPECT_EQ(counters(kBoxes[1]), std::to_string(total));
    EXPECT_EQ(cfg_get_inbox_unread(), unread);
  }
  EXPECT_TRUE(logged("status = 1, sms_data->status = 0"));
}

TEST_F(Messages, CountersOfTheFileAreTakenWithinTheirRange) {
  const struct {
    const char *counters, *added, *removed;
  } cases[] = {{"", "1 1", "0"},
               {"Total=\"-7\" Unread=\"-7\"", "1 1", "0 -7"},
               {"Total=\"4294967295\" Unread=\"99999999999\"", "4294967295 4294967295",
                "4294967293 4294967293"},
               {"Total=\"1\" Unread=\"x\"", "2 1", "0 x"}};
  for (const auto& [given, added, removed] : cases) {
    const std::string file = std::string("<Message><InboxData ") + given +
                             "><Inbox ID=\"3\" Status=\"1\"/><Inbox ID=\"3\" Status=\"1\"/>"
                             "</InboxData></Message>";
    write(kPath, file);
    add(kInbox, 1);
    EXPECT_EQ(counters(kInbox), added) << given;
    write(kPath, file);
    kInbox.remove(3);
    EXPECT_EQ(counters(kInbox), removed) << given;
  }
}

TEST_F(Messages, LabelsNameTheOtherParty) {
  const std::string longest(140, 'x');
  const struct {
    std::string display, user, label;
  } cases[] = {{"Bob", "#1234", "(Bob)1234"},
               {"", "#", "#"},
               {"", "12", "12"},
               {"", "##", "#"},
               {"Bob", "", "(Bob)"},
               {longest, "1", "(" + longest.substr(0, 128)},
               {longest.substr(0, 127) + "\xC3\xA4", "1", "(" + longest.substr(0, 127)}};
  for (const auto& [display, user, label] : cases) {
    for (const Box& box : kBoxes) {
      const std::string other = type_of(box) == CFGXML_INBOX ? "From" : "To";
      write(kPath, std::string("<M><") + box.element + "><" + box.entry + " Date='today' " + other +
                       "Display='" + display + "' " + other + "User='" + user + "'/></" +
                       box.element + "></M>");
      const SMS_SUMMARY_T message = take(box.list()).at(0);
      EXPECT_EQ(message.label, type_of(box) == CFGXML_DRAFTBOX ? "today" : label) << box.entry;
      EXPECT_EQ(message.type, type_of(box));
    }
  }
}

TEST_F(Messages, AllDetailsComeFromTheLastBoxBackwards) {
  const std::string text(300, 'x');
  write(kPath, "<M><InboxData><Inbox ID=\"1\"/><Other ID=\"2\" Status=\"1\" Port=\"7\" Content=\"" +
                   text + "\" Date=\"" + text +
                   "\"/></InboxData><Spam><Any ID=\"5\"/></Spam>"
                   "<OutboxData><Outbox ID=\"1\"/></OutboxData></M>");
  const auto messages = take(cfg_get_all_sms_details_list());
  std::string seen;
  for (const SMS_DETAILS_T& node : messages) {
    seen += std::to_string(node.data.type) + ":" + std::to_string(node.data.id) + " ";
  }
  ASSERT_EQ(seen, "2:1 -1:5 1:2 1:1 ");
  EXPECT_EQ(messages[2].data.status, 1);
  EXPECT_EQ(messages[2].data.port, 7);
  EXPECT_EQ(messages[2].data.content, text.substr(0, 255));
  EXPECT_EQ(messages[2].data.date, text.substr(0, 15));
}

}  // namespace
