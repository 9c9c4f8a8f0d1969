// The examples of docs/formats are what the library reads and, where it writes the file, byte for
// byte what it writes.
#include <cfgxml/cfgxml.h>
#include <cfgxml/host.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/phone.h"
#include "support/records.h"

namespace {

using phone_test::take;

class FormatsTest : public phone_test::Phone {
 protected:
  /// The examples of a page, in their order.
  static std::vector<std::string> examples(const std::string& page) {
    std::ifstream file(CFGXML_DOCS "/formats/" + page);
    std::vector<std::string> found;
    bool inside = false;
    for (std::string line; std::getline(file, line);) {
      if (line == "```xml" || line == "```csv") {
        inside = true;
        found.emplace_back();
      } else if (line == "```") {
        inside = false;
      } else if (inside) {
        found.back() += line + "\n";
      }
    }
    return found;
  }

  static std::string example(const std::string& page) { return examples(page).at(0); }
};

template <typename Node>
int length(const Node* chain) {
  int nodes = 0;
  for (; chain != nullptr; chain = chain->next) ++nodes;
  return nodes;
}

TEST_F(FormatsTest, FilesOfTheBlocksComeBackAsTheyWere) {
  const struct {
    std::string path, page;
    int (*load)();
    int (*save)();
  } kFiles[] = {{"/config/Phone/Contact/Contact.xml", "contacts.md",
                 [] { return contact_init(&contacts()); }, contact_delay_save},
                {"/config/Phone/Contact/Blacklist.xml", "blacklist.md",
                 [] { return black_init(&blacklist()); }, black_delay_save},
                {"/config/Phone/History/History.xml", "history.md",
                 [] { return history_init(&history()); }, history_delay_save}};
  for (const auto& [path, page, load, save] : kFiles) {
    write(path, example(page));
    EXPECT_EQ(load(), 0) << page;
    std::filesystem::remove(on_disk(path));
    EXPECT_EQ(save(), 0) << page;
    EXPECT_EQ(read(path), example(page));
  }
  EXPECT_EQ(contacts().Contacts[2].Id, 3);
  EXPECT_EQ(blacklist().Entries[1].Line, 2);
  EXPECT_EQ(history().Records[1].ID, 2);
}

TEST_F(FormatsTest, CsvFileComesBackAsItWas) {
  write("/phonebook.csv", example("contacts-csv.md"));
  EXPECT_EQ(is_valid_contact_file_csv(on_disk("/phonebook.csv").c_str()), 1);
  EXPECT_EQ(get_contact_csv(on_disk("/phonebook.csv").c_str(), &contacts()), 0);
  CONTACT_SUMMARY_T* all = cfg_get_contact_summary("");
  EXPECT_EQ(length(all), 2);
  EXPECT_EQ(save_contact_csv(on_disk("/again.csv").c_str(), all), 0);
  cfg_destory_contact_summary(all);
  EXPECT_EQ(read("/again.csv"), example("contacts-csv.md"));
}

TEST_F(FormatsTest, DirectoriesOfOthersAreRead) {
  const std::vector<std::string> books = examples("remote-book.md");
  write("/tmp/remote_contact.xml0", books.at(0));
  write("/tmp/remote_contact.xml1", books.at(1));
  EXPECT_EQ(length(cfg_get_remote_contact_summary("/tmp/remote_contact.xml0")), 3);
  EXPECT_EQ(length(cfg_get_remote_contact_summary("/tmp/remote_contact.xml1")), 1);
  cfg_destory_remote_conatct_list("/tmp/remote_contact.xml0");
  cfg_destory_remote_conatct_list("/tmp/remote_contact.xml1");

  write("/page.xml", example("broadsoft.md"));
  EXPECT_EQ(length(cfg_get_broadsoft_contact_summary(on_disk("/page.xml").c_str())), 2);
  cfg_destory_broadsoft_conatct_list();
}

TEST_F(FormatsTest, ListsInTheirFilesAreRead) {
  const std::vector<std::string> rules = examples("dial-rules.md");
  write("/config/Phone/General/DialRule/DialNow.xml", rules.at(0));
  write("/config/Phone/General/DialRule/DialReplace.xml", rules.at(1));
  write("/config/Phone/General/DialRule/BlockOut.xml", rules.at(2));
  EXPECT_EQ(take(cfg_get_dialnow_list()).size(), 2u);
  EXPECT_EQ(take(cfg_get_dialreplace_list()).size(), 1u);
  EXPECT_EQ(take(cfg_get_blockout_list()).size(), 1u);

  write("/config/Phone/Message/Message.xml", example("messages.md"));
  EXPECT_EQ(take(cfg_get_all_sms_details_list()).size(), 2u);
  EXPECT_EQ(cfg_get_inbox_unread(), 1);

  write("/config/System/TimeZone.xml", example("timezones.md"));
  TIMEZONE_DATA_T* zones = cfg_get_timezone_list();
  EXPECT_EQ(length(zones), 3);
  cfg_destory_timezone_list(zones);
  DST_INFO_T saving{};
  EXPECT_EQ(cfg_get_dst_info_by_timezone("Berlin", &saving), 0);
  EXPECT_EQ(cfg_get_dst_info_by_timezone("Tunis", &saving), -1);

  const std::string notify_file = "/config/Network/Rcpe/RcpeNotify.xml";
  write(notify_file, example("notifications.md"));
  NOTIFICATION_T* list = cfg_get_notification_list();
  EXPECT_EQ(length(list), 2);
  std::filesystem::remove(on_disk(notify_file));
  EXPECT_EQ(cfg_save_notification_list(list), 0);
  cfg_destory_notification_list(list);
  EXPECT_EQ(read(notify_file), example("notifications.md"));
}

TEST_F(FormatsTest, ScreensAreOfTheTypeThatTheyShow) {
  std::vector<int> types;
  for (const std::string& document : examples("screens.md")) {
    write("/screen.xml", document);
    EXPECT_EQ(cfg_parse_remote_xml(on_disk("/screen.xml").c_str()), 0);
    types.push_back(cfg_get_remote_xml_type());
  }
  EXPECT_EQ(types, (std::vector<int>{XML_TYPE_TEXT_SCREEN, XML_TYPE_TEXT_MENU, XML_TYPE_DIRECTORY,
                                     XML_TYPE_INPUT_SCREEN, XML_TYPE_CONFIGURATION}));
  cfg_destory_text_screen_object();
  cfg_destory_text_menu_object();
  cfg_destory_xml_browser_directory_object();
  cfg_destory_xml_browser_input_screen_object();
  cfg_destory_xml_browser_configuration_object();
}

}  // namespace
