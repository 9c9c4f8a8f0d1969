// What calls log when they fail for their arguments or for want of the host's lists.
#include <cfgxml/cfgxml.h>
#include <cfgxml/host.h>

#include <tuple>

#include "support/phone.h"

namespace {

/// A call, its text, and how the line goes on after the name of the function or of its worker.
using Case = std::tuple<void (*)(), std::string, std::string>;
#define CASE(call, message) Case([] { (void)(call); }, #call, message)

class Failures : public phone_test::Phone {
 protected:
  void expect_logged(const std::vector<Case>& cases) {
    for (const auto& [call, text, message] : cases) {
      forget_log();
      call();
      const std::string name = text.substr(0, text.find('('));
      ASSERT_EQ(log().size(), 1u) << text;
      EXPECT_TRUE(logged(name + message) || logged("_" + name + message))
          << text << ": " << log()[0];
    }
  }
};

HISTORY_DATA_T call;
CONTACT_DATA_T contact;
BSFT_CONTACT_DATA_T person;
BSFT_CONTACT_POS_T position;
DST_INFO_T saving;

TEST_F(Failures, OfBadArguments) {
  const std::string null_input = " failed: input is NULL.";
  expect_logged({
      CASE(cfg_add_history(nullptr), " failed: history_data is NULL."),
      CASE(cfg_mod_history(1, nullptr), " failed: history_data is NULL."),
      CASE(cfg_del_history(0), " failed: invalid id 0."),
      CASE(cfg_get_history_data(-2, &call), " failed: invalid id -2."),
      CASE(cfg_get_history_data(1, nullptr), " failed: history is NULL."),
      CASE(cfg_destory_history_summary(nullptr), " failed: history_header is NULL."),
      CASE(cfg_get_history_summary_set(nullptr), " failed: set is NULL."),
      CASE(cfg_summary_sync_out(nullptr), " failed: set is NULL."),
      CASE(cfg_get_remote_contact_summary(""), null_input),
      CASE(cfg_get_remote_contact_summary("x"), " failed: remote_id=-1"),
      CASE(cfg_destory_remote_conatct_list("x"), " failed: remote_id=-1"),
      CASE(cfg_get_remote_contact_data(1, nullptr), " failed, contact_data is NULL!"),
      CASE(cfg_get_remote_contact_data(1, &contact), " failed, g_remote_contact is NULL!"),
      CASE(cfg_search_remote_contact_info(nullptr), " failed, keywords is NULL!"),
      CASE(cfg_search_remote_contact_info(""), " failed, g_remote_contact is NULL!"),
      CASE(cfg_add_broadsoft_contact_summary_to_tail(""), null_input),
      CASE(cfg_get_broadsoft_contact_data(0, nullptr), " failed, contact_data is NULL!"),
      CASE(cfg_get_broadsoft_contact_data(0, &person), " failed, g_broadsoft_contact is NULL!"),
      CASE(cfg_search_broadsoft_contact_info(nullptr), " failed, keywords is NULL!"),
      CASE(cfg_search_broadsoft_contact_info(""), " failed, g_broadsoft_contact is NULL!"),
      CASE(cfg_destory_broadsoft_conatct_list(), " failed, g_broadsoft_contact is NULL!"),
      CASE(cfg_append_broadsoft_simple_contact_summary(6, "x", nullptr), null_input),
      CASE(cfg_append_broadsoft_simple_contact_summary(6, "", &position), null_input),
      CASE(cfg_append_broadsoft_simple_contact_summary(6, "x", &position),
           " failed: input groud_id is invalid."),
      CASE(cfg_append_broadsoft_simple_contact_summary(-1, "x", &position),
           " failed: input groud_id is invalid."),
      CASE(cfg_save_notification_list(nullptr), " failed: list is NULL."),
      CASE(cfg_destory_notification_list(nullptr), " failed: list is NULL."),
      CASE(cfg_destory_timezone_list(nullptr), " failed: timezone_header is NULL."),
      CASE(cfg_get_dst_info_by_timezone(nullptr, &saving), null_input),
      CASE(cfg_get_dst_info_by_timezone("Rome", nullptr), null_input),
  });
}

TEST_F(Failures, WithoutTheHostsLists) {
  host().lists().give_history(false);
  host().lists().give_blacklist(false);
  const std::string no_history = " failed: cfg_get_history_list return NULL.";
  expect_logged({
      CASE(cfg_add_history(&call), no_history),
      CASE(cfg_mod_history(1, &call), no_history),
      CASE(cfg_del_history(1), no_history),
      CASE(cfg_del_all_history(0), no_history),
      CASE(cfg_get_history_data(1, &call), no_history),
      CASE(cfg_get_history_summary(), no_history),
      CASE(cfg_get_contact_name("1", "", 0), " failed: cfg_get_black_list return NULL."),
  });
  host().lists().give_contacts(false);
  expect_logged(
      {CASE(cfg_get_contact_name("1", "", 0), " failed: cfg_get_contact_list return NULL.")});
  HISTORY_SUMMARY_SET_T set{};
  set.count = 7;
  cfg_get_history_summary_set(&set);
  EXPECT_EQ(log().back(), "cfg_get_history_summary_set" + no_history);
  EXPECT_EQ(set.count, 7);
}

}  // namespace
