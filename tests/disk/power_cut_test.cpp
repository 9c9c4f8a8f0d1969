// The power may fail at any moment of a change: whatever the disk holds then, the phone finds what
// it had before the change or what it has after it.
#include <cfgxml/dialrule.h>
#include <cfgxml/host.h>
#include <cfgxml/message.h>
#include <cfgxml/notify.h>

#include <optional>

#include "disk/disk_phone.h"

namespace disk_test {
namespace {

class PowerCut : public DiskPhone {
 protected:
  /// Makes a change while the disk is watched. At every moment of it a cut leaves what was there
  /// before or what is there after it, and when it returns, the latter.
  void change(const std::string& what, const std::function<void()>& make) {
    if (HasFatalFailure()) return;
    SCOPED_TRACE(what);
    if (!disk_.has_value()) disk_.emplace(recorded_calls::watch(root()));
    ++figures().operations;
    const std::string before = found(files());
    make();
    const std::vector<recorded_calls::Event> events = recorded_calls::take_events();
    const std::string after = found(files());
    for (const recorded_calls::Event& event : events) {
      disk_->apply(event);
      for (const Files& state : disk_->after_a_cut()) {
        ++figures().cut_states;
        const std::string now = found(in_profile(state));
        if (now != before) {
          ASSERT_EQ(now, after) << "before it was\n" << before << "with\n" << describe(state);
        }
      }
    }
    for (const Files& state : disk_->after_a_cut()) {
      ASSERT_EQ(found(in_profile(state)), after) << "it has returned\n" << describe(state);
    }
  }

  void damage(const char* path) {
    write(path, kDamaged);
    disk_.reset();
  }

 private:
  const std::string& found(const Files& files) {
    const auto known = found_.find(files);
    return known != found_.end() ? known->second : found_[files] = found_with(files);
  }

  Files in_profile(const Files& files) const {
    Files result;
    for (const auto& [path, text] : files) result[path.substr(root().string().size())] = text;
    return result;
  }

  static std::string describe(const Files& files) {
    std::string text;
    for (const auto& [path, content] : files) text += path + ": " + content + "\n";
    return text;
  }

  std::optional<disk_states::Disk> disk_;
  std::map<Files, std::string> found_;
};

/// The phonebook's changes, one after the other.
struct PhonebookChange {
  const char* what;
  int (*make)();
};

const PhonebookChange kPhonebookChanges[] = {
    {"add a group",
     [] {
       GROUP_DATA_T one = group("Club");
       return cfg_add_group_data(&one);
     }},
    {"add a contact",
     [] {
       auto one = contact("Cyd", "Club");
       return cfg_add_contact_data(&one);
     }},
    {"add another",
     [] {
       auto one = contact("Dan", "Work");
       return cfg_add_contact_data(&one);
     }},
    {"change a contact",
     [] {
       auto one = contact("Cydney", "Work", 3);
       return cfg_mod_contact_data(&one);
     }},
    {"rename a group",
     [] {
       GROUP_DATA_T one = group("Team", 3);
       return cfg_mod_group_data(&one);
     }},
    {"move a contact", [] { return cfg_mov_contact_data(2); }},
    {"move an entry", [] { return cfg_mov_black_data(1); }},
    {"add an entry",
     [] {
       auto one = contact("Oz");
       return cfg_add_black_data(&one);
     }},
    {"change an entry",
     [] {
       auto one = contact("Ozzy", "Default", 2);
       return cfg_set_black_data(&one);
     }},
    {"remove an entry", [] { return cfg_remove_black_data(2); }},
    {"a ring tone goes", [] { return cfg_del_contact_ring_info("bell.wav"); }},
    {"a photo goes", [] { return cfg_del_contact_photo_info("b.png"); }},
    {"delete a contact", [] { return cfg_del_contact_data(4); }},
    {"delete a group", [] { return cfg_del_group_data(2); }},
    {"delete a group's contacts", [] { return cfg_del_contacts_by_group("Default"); }},
    {"delete all groups", [] { return cfg_del_all_group_data(); }},
    {"delete all contacts", [] { return cfg_del_all_contacts(); }},
    {"remove all entries", [] { return cfg_remove_black_all(); }},
};

HISTORY_DATA_T call(const char* number) {
  HISTORY_DATA_T record{};
  rl_strcpy_s(record.RemoteSipName, sizeof record.RemoteSipName, number);
  record.Type = 1;
  return record;
}

TEST_F(PowerCut, PhonebookChangesThatAreSavedAtOnce) {
  for (const PhonebookChange& one : kPhonebookChanges) {
    change(one.what, [&] { EXPECT_EQ(one.make(), 0) << one.what; });
  }
}

TEST_F(PowerCut, ChangesThatAreSavedLater) {
  contact_save_init(1);
  black_save_init(1);
  history_save_init(1);
  for (const PhonebookChange& one : kPhonebookChanges) {
    EXPECT_EQ(one.make(), 0) << one.what;
    change(one.what, [] { EXPECT_TRUE(host().saver().stop()); });
  }
  for (const char* number : {"77", "78"}) {
    GROUP_DATA_T team = group(number);
    EXPECT_EQ(cfg_add_group_data(&team), 0);
  }
  change("several together", [] { EXPECT_TRUE(host().saver().stop()); });
  HISTORY_DATA_T one = call("77");
  EXPECT_EQ(cfg_add_history(&one), 0);
  change("a call", [] { EXPECT_TRUE(host().saver().stop()); });
}

TEST_F(PowerCut, History) {
  change("add", [] {
    auto one = call("33");
    EXPECT_EQ(cfg_add_history(&one), 0);
  });
  change("change", [] {
    auto one = call("33");
    one.Status = 5;
    EXPECT_EQ(cfg_mod_history(3, &one), 0);
  });
  change("delete", [] { EXPECT_EQ(cfg_del_history(1), 0); });
  change("delete a type", [] { EXPECT_EQ(cfg_del_all_history(1), 0); });
}

TEST_F(PowerCut, DialRules) {
  const DIAL_NOW_DATA_T now{0, 1, "2xx", nullptr};
  const DIAL_REPLACE_DATA_T replace{0, 1, "00", "+", nullptr};
  const BLOCKOUT_DATA_T block{0, 1, "0190", nullptr};
  change("add now", [&] { EXPECT_EQ(cfg_add_dialnow_data(&now), 0); });
  change("set now", [&] { EXPECT_EQ(cfg_set_dialnow_data(2, &now), 0); });
  change("remove now", [&] { EXPECT_EQ(cfg_remove_dialnow_data(1), 0); });
  change("add replace", [&] { EXPECT_EQ(cfg_add_dialreplace_data(&replace), 0); });
  change("set replace", [&] { EXPECT_EQ(cfg_set_dialreplace_data(1, &replace), 7); });
  change("remove replace", [&] { EXPECT_EQ(cfg_remove_dialreplace_data(2), 0); });
  change("add block", [&] { EXPECT_EQ(cfg_add_blockout_data(&block), 0); });
  change("set block", [&] { EXPECT_EQ(cfg_set_blockout_data(1, &block), 0); });
  change("remove block", [&] { EXPECT_EQ(cfg_remove_blockout_data(2), 0); });
}

TEST_F(PowerCut, MessagesAndNotifications) {
  SMS_DATA_T sms{};
  sms.status = 1;
  rl_strcpy_s(sms.content, sizeof sms.content, "three");
  change("add", [&] { EXPECT_EQ(cfg_add_inbox_data(&sms), 0); });
  change("add a draft", [&] { EXPECT_EQ(cfg_add_draftbox_data(&sms), 0); });
  sms.status = 0;
  change("read", [&] { EXPECT_EQ(cfg_set_inbox_data(3, &sms), 0); });
  change("remove", [] { EXPECT_EQ(cfg_remove_inbox_data(1), 0); });
  change("remove all", [] { EXPECT_EQ(cfg_remove_inbox_all(), 0); });
  NOTIFICATION_T second{"b", 2, nullptr};
  NOTIFICATION_T first{"a", 0, &second};
  change("notifications", [&] { EXPECT_EQ(cfg_save_notification_list(&first), 0); });
}

TEST_F(PowerCut, Uploads) {
  const std::string xml = uploaded("upload.xml");
  const std::string csv = uploaded("upload.csv");
  change("contacts", [&] { EXPECT_EQ(cfg_upload_contact(xml.c_str()), 0); });
  change("a list of contacts", [&] { EXPECT_EQ(cfg_upload_contact(csv.c_str()), 0); });
  change("blacklist", [&] { EXPECT_EQ(cfg_upload_blacklist(xml.c_str()), 0); });
  change("now", [&] { EXPECT_EQ(cfg_upload_dialnow(xml.c_str()), 0); });
  change("replace", [&] { EXPECT_EQ(cfg_upload_dialreplace(xml.c_str()), 0); });
  EXPECT_EQ(commands().size(), 4u);
}

TEST_F(PowerCut, ADamagedFileIsKeptUntilANewOneIsThere) {
  for (const char* path : {kContacts, kBlacklist, kHistory, kDialNow, kMessages, kNotifications}) {
    damage(path);
  }
  change("add a contact", [] {
    auto one = contact("Cyd");
    EXPECT_EQ(cfg_add_contact_data(&one), 0);
  });
  change("add an entry", [] {
    auto one = contact("Oz");
    EXPECT_EQ(cfg_add_black_data(&one), 0);
  });
  change("add a call", [] {
    auto one = call("33");
    EXPECT_EQ(cfg_add_history(&one), 0);
  });
  const DIAL_NOW_DATA_T now{0, 1, "2xx", nullptr};
  change("add a rule", [&] { EXPECT_EQ(cfg_add_dialnow_data(&now), 0); });
  damage(kDialNow);
  change("set no rule", [&] { EXPECT_EQ(cfg_set_dialnow_data(9, &now), 4); });
  change("add a message", [] {
    SMS_DATA_T sms{};
    EXPECT_EQ(cfg_add_outbox_data(&sms), 0);
  });
  NOTIFICATION_T one{"a", 0, nullptr};
  change("notifications", [&] { EXPECT_EQ(cfg_save_notification_list(&one), 0); });
}

}  // namespace
}  // namespace disk_test
