// The list of notification settings.
#include <cfgxml/host.h>
#include <cfgxml/notify.h>

#include "support/phone.h"
#include "support/records.h"

namespace {

constexpr char kPath[] = "/config/Network/Rcpe/RcpeNotify.xml";
const std::string kLongest(127, 'n');  // that is read

class Notifications : public phone_test::Phone {
 protected:
  /// "name=setting " of every parameter, in order.
  static std::string list() {
    std::string text;
    for (const auto& node : phone_test::take(cfg_get_notification_list())) {
      text += std::string(node.Name) + "=" + std::to_string(node.Notify) + " ";
    }
    return text;
  }
  static int save(const std::string& name, int setting, NOTIFICATION_T* next = nullptr) {
    NOTIFICATION_T node{"", setting, next};
    rl_strcpy_s(node.Name, sizeof node.Name, name.c_str());
    return cfg_save_notification_list(&node);
  }
};

TEST_F(Notifications, ASavedListReplacesTheChildrenOfAnExistingRoot) {
  write(kPath, "<Own version=\"1\"><A Notify=\"1\" Name=\"x.y\"/>text<B/><C Name=\"" + kLongest +
                   "more\" Notify=\"-2\"/></Own>");
  EXPECT_EQ(cfg_destory_notification_list(cfg_get_notification_list()), 0);
  EXPECT_EQ(list(), "x.y=1 =0 " + kLongest + "=-2 ") << "whatever the elements are called";
  NOTIFICATION_T last = {"last", 2, nullptr};
  ASSERT_EQ(save(kLongest + "more<", 1, &last), 0);
  EXPECT_EQ(read(kPath), "<Own version=\"1\">\n    <Pameter Notify=\"1\" Name=\"" + kLongest +
                             "more&lt;\"/>\n    <Pameter Notify=\"2\" Name=\"last\"/>\n</Own>\n");
  EXPECT_EQ(log(), std::vector<std::string>());
}

TEST_F(Notifications, AMissingOrBrokenFileReadsAsEmptyAndIsCreated) {
  const std::string no_file = "load file <" + std::string(kPath) + "> fail!\n";
  const std::string no_root =
      "cfg_save_notification_list:<" + std::string(kPath) + "> no root node, create!";
  std::filesystem::create_directories(on_disk("/config/Network/Rcpe"));
  for (const std::string file : {"-", "", "<!-- -->", "<broken"}) {
    if (file != "-") write(kPath, file);
    forget_log();
    EXPECT_EQ(list(), "") << file;
    EXPECT_EQ(logged(no_file), file != "<!-- -->") << file;
    ASSERT_EQ(save("one", 2), 0);
    EXPECT_TRUE(logged(no_root)) << file;
    EXPECT_EQ(list(), "one=2 ") << file;
  }
  EXPECT_EQ(read(kPath),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<cwmp:notification>\n"
            "    <Pameter Notify=\"2\" Name=\"one\"/>\n</cwmp:notification>\n");
  EXPECT_EQ(read(std::string(kPath) + ".corrupt"), "<broken");
  EXPECT_EQ(commands(), std::vector<std::string>(3, "rm -f " + on_disk(kPath)));
}

TEST_F(Notifications, AFailedSaveIsLogged) {
  EXPECT_EQ(save("x", 1), -1) << "its folder does not exist";
  EXPECT_EQ(log().back(), "cfg_save_notification_list doc.SaveFile failed.");
}

}  // namespace
