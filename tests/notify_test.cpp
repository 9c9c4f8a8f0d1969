// The list of notification settings.
#include <cfgxml/host.h>
#include <cfgxml/notify.h>

#include "support/phone.h"

namespace {

constexpr char kPath[] = "/config/Network/Rcpe/RcpeNotify.xml";

class Notifications : public phone_test::Phone {
 protected:
  /// "name=setting " of every parameter, in order.
  static std::string list() {
    NOTIFICATION_T* head = cfg_get_notification_list();
    std::string text;
    for (const NOTIFICATION_T* node = head; node != nullptr; node = node->next) {
      text += std::string(node->Name) + "=" + std::to_string(node->Notify) + " ";
    }
    if (head != nullptr) EXPECT_EQ(cfg_destory_notification_list(head), 0);
    return text;
  }
};

NOTIFICATION_T parameter(const std::string& name, int setting, NOTIFICATION_T* next = nullptr) {
  NOTIFICATION_T node{};
  rl_strcpy_s(node.Name, sizeof node.Name, name.c_str());
  node.Notify = setting;
  node.next = next;
  return node;
}

TEST_F(Notifications, EveryChildOfTheRootIsAParameter) {
  write(kPath, "<Any><A Notify=\"1\" Name=\"x.y\"/><B/><C Name=\"" + std::string(200, 'n') +
                   "\" Notify=\"-2\"/></Any>");
  EXPECT_EQ(list(), "x.y=1 =0 " + std::string(127, 'n') + "=-2 ");
}

TEST_F(Notifications, SavedListReplacesTheChildrenOfAnExistingRoot) {
  NOTIFICATION_T last = parameter(std::string(255, 'n'), 2);
  NOTIFICATION_T first = parameter("a<b", 1, &last);
  write(kPath, "<Own version=\"1\"><Old/>text</Own>");
  ASSERT_EQ(cfg_save_notification_list(&first), 0);
  EXPECT_EQ(read(kPath),
            "<Own version=\"1\">\n    <Pameter Notify=\"1\" Name=\"a&lt;b\"/>\n"
            "    <Pameter Notify=\"2\" Name=\"" +
                std::string(255, 'n') + "\"/>\n</Own>\n");
  EXPECT_TRUE(commands().empty());
}

TEST_F(Notifications, MissingOrBrokenFileReadsAsEmptyAndIsCreated) {
  const NOTIFICATION_T one = parameter(std::string(127, 'n'), 2);
  std::filesystem::create_directories(on_disk("/config/Network/Rcpe"));
  for (const std::string file : {"-", "<broken", "", "<!-- -->"}) {
    if (file != "-") write(kPath, file);
    EXPECT_EQ(list(), "");
    ASSERT_EQ(cfg_save_notification_list(&one), 0);
    EXPECT_EQ(list(), std::string(127, 'n') + "=2 ");
    EXPECT_TRUE(
        logged(std::string("cfg_save_notification_list:<") + kPath + "> no root node, create!"));
    if (file != "<broken") continue;
    EXPECT_EQ(read(kPath),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<cwmp:notification>\n"
              "    <Pameter Notify=\"2\" Name=\"" +
                  std::string(127, 'n') + "\"/>\n</cwmp:notification>\n");
    EXPECT_EQ(read(std::string(kPath) + ".corrupt"), "<broken");
  }
  EXPECT_EQ(commands(), std::vector<std::string>(3, "rm -f " + on_disk(kPath)));
  EXPECT_TRUE(logged(std::string("load file <") + kPath + "> fail!\n"));
}

TEST_F(Notifications, NullIsRefusedAndAFailedSaveIsToldOf) {
  EXPECT_EQ(cfg_save_notification_list(nullptr), -1);
  EXPECT_EQ(cfg_destory_notification_list(nullptr), -1);
  EXPECT_EQ(log(),
            (std::vector<std::string>{"cfg_save_notification_list failed: list is NULL.",
                                      "cfg_destory_notification_list failed: list is NULL."}));
  const NOTIFICATION_T one = parameter("x", 1);
  EXPECT_EQ(cfg_save_notification_list(&one), -1) << "its folder does not exist";
  EXPECT_TRUE(logged("cfg_save_notification_list doc.SaveFile failed."));
}

}  // namespace
