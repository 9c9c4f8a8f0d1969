// The three lists of dial rules: where they differ from each other, and uploads.
#include <cfgxml/dialrule.h>
#include <cfgxml/host.h>

#include <thread>

#include "support/lists.h"
#include "support/phone.h"
#include "support/records.h"

namespace {

using phone_test::Entries;
using phone_test::List;
using phone_test::Rows;
using Log = std::vector<std::string>;

/// A list whose rules are distinct and numbered, and which can be uploaded.
struct Distinct {
  const char *name, *lower_name, *rule;
  std::size_t place;
  int (*upload)(const char* path);
};
const Distinct kDistinct[] = {
    {"DialNow", "dialnow", "dial now", 0, cfg_upload_dialnow},
    {"DialReplace", "dialreplace", "dial replace", 1, cfg_upload_dialreplace}};

class DistinctRules : public phone_test::Phone, public testing::WithParamInterface<Distinct> {
 protected:
  const List& list() const { return phone_test::kLists[GetParam().place]; }
  std::string failed(const std::string& verb, const std::string& why) const {
    return list().worker_for(verb) + " failed, " + why;
  }
  std::string rule() const { return GetParam().rule; }
};
using DialRules = phone_test::Phone;

INSTANTIATE_TEST_SUITE_P(Of, DistinctRules, testing::ValuesIn(kDistinct),
                         [](const auto& info) { return info.param.name; });

TEST_P(DistinctRules, TextsAreUniqueAsTheirFieldHoldsThem) {
  const std::string cut(62, 'x');
  write(list().path, list().file_of({{"1", "a"}, {"2", "b"}, {"3", ""}, {"4", cut + "\xC3\xA4z"}}));
  const std::string before = read(list().path);
  for (const std::string& text : {std::string("a"), std::string(), cut}) {
    EXPECT_EQ(list().add({0, 5, text}), 7) << text;
  }
  EXPECT_EQ(list().set(2, {0, 0, "a"}), 7);
  EXPECT_EQ(list().set(99, {0, 0, "a"}), 7) << "checked before the id";
  EXPECT_EQ(list().set(99, {0, 0, "c"}), 4);
  const std::string exists = rule() + " already exist.";
  EXPECT_EQ(log(), (Log{failed("add", exists), failed("add", exists), failed("add", exists),
                        failed("set", exists), failed("set", exists),
                        failed("set", rule() + " is not exist.")}));
  EXPECT_EQ(read(list().path), before);
  EXPECT_EQ(list().set(2, {0, 8, "b"}), 0) << "its own text";
  EXPECT_EQ(list().entries(), (Entries{{1, 0, "a"}, {2, 8, "b"}, {3, 0, ""}, {4, 0, cut}}));
}

Rows rows(int count) {
  Rows rows;
  for (int i = 1; i <= count; ++i) rows.emplace_back(std::to_string(i), "r" + std::to_string(i));
  return rows;
}

TEST_P(DistinctRules, AListHolds350Rules) {
  write(list().path, list().file_of(rows(349)));
  EXPECT_EQ(list().entries().size(), 349u);
  EXPECT_EQ(list().add({0, 0, "last"}), 0);
  EXPECT_EQ(log(), Log());
  EXPECT_EQ(list().entries().size(), 350u);
  EXPECT_EQ(list().add({0, 0, "r7"}), 7) << "checked before the count";
  EXPECT_EQ(list().add({0, 0, "more"}), 10);
  const std::string full = "current count has reach max.";
  EXPECT_EQ(log(), (Log{std::string("get list exceed 350, _cfg_get_") + GetParam().lower_name +
                            "_list, " + full,
                        failed("add", rule() + " already exist."), failed("add", full)}));
  write(list().path, list().file_of(rows(351)));
  EXPECT_EQ(list().entries().size(), 350u);
}

TEST_F(DialRules, BlockOutHoldsAnyNumberAndEqualRules) {
  const List& list = phone_test::kLists[2];
  write(list.path, list.file_of(rows(351)));
  EXPECT_EQ(list.add({0, 0, "r7"}), 0);
  EXPECT_EQ(list.entries().size(), 352u);
  EXPECT_EQ(list.set(999, {0, 0, "r7"}), -1);
  EXPECT_EQ(log(), Log());
}

TEST_F(DialRules, BlockOutChangesOfTwoThreadsLoseNothing) {
  const List& list = phone_test::kLists[2];
  write(list.path, list.file_of(rows(60)));
  std::thread other([&] {
    for (int id = 1; id <= 30; ++id) {
      list.set(id, {0, 7, "changed"});
      list.remove(id + 30);
    }
  });
  for (int i = 0; i < 60; ++i) list.add({0, 7, "changed"});
  other.join();
  const Entries entries = list.entries();
  EXPECT_EQ(entries.size(), 90u);
  for (const auto& entry : entries) EXPECT_EQ(entry.value, 7) << entry;
}

TEST_F(DialRules, AReplacementIsKeptAndChanged) {
  const std::string& path = phone_test::kLists[1].path;
  write(path, "<Dial><DialReplace><Data ID=\"1\" Note=\"n\"/></DialReplace></Dial>");
  const DIAL_REPLACE_DATA_T rule = {4711, 2, "00", "+", nullptr};
  ASSERT_EQ(cfg_set_dialreplace_data(1, &rule), 0);
  EXPECT_NE(read(path).find("<Data ID=\"1\" Note=\"n\" Prefix=\"00\" Replace=\"+\" Line=\"2\"/>"),
            std::string::npos);
  DIAL_REPLACE_DATA_T kept;
  rl_memset(&kept, 'x', sizeof kept);
  const DIAL_REPLACE_DATA_T expected = {1, 2, "00", "+", nullptr};
  ASSERT_EQ(cfg_get_dialreplace_data(1, &kept), 0);
  EXPECT_EQ(phone_test::bytes_of(&kept), phone_test::bytes_of(&expected));
}

TEST_P(DistinctRules, UploadReplacesTheListWithACheckedFile) {
  const std::string file = list().file_of({{"3", "same"}, {"3", "same"}});
  const auto padded = [&](std::size_t size) { return file + std::string(size - file.size(), ' '); };
  const auto upload = [&](const std::string& path) { return GetParam().upload(path.c_str()); };
  write(list().path, list().file_of({{"1", "old"}}));
  const std::string source = on_disk("/my rules.xml");
  const std::string bad = on_disk("/bad.xml");
  const struct {
    std::string content, message;
  } refusals[] = {{padded(30721), " failed: invalid file size."},
                  {"", " failed: invalid file size."},
                  {"<R>", ":load file <" + bad + "> failed."},
                  {"<!-- -->", ":invalid file without root node."},
                  {"<Dial><OtherList/></Dial>", ""}};
  const std::string name = GetParam().lower_name;
  Log messages;
  for (const auto& [content, message] : refusals) {
    write("/bad.xml", content);
    EXPECT_EQ(upload(bad), -1) << content.size() << content.substr(0, 40);
    if (!message.empty()) messages.push_back("is_valid_" + name + "_file" + message);
    messages.push_back("_cfg_upload_" + name + " failed: file is invalid.");
  }
  EXPECT_EQ(upload(""), -1);
  messages.push_back("is_valid_" + name + "_file failed: file_path is empty.");
  messages.push_back("_cfg_upload_" + name + " failed: file is invalid.");
  EXPECT_EQ(log(), messages);
  write("/a\";rm *.xml", file);
  EXPECT_EQ(upload(on_disk("/a\";rm *.xml")), -1) << "leaves its quotes";
  EXPECT_EQ(list().entries(), (Entries{{1, 0, "old"}}));

  write("/my rules.xml", padded(30720));
  ASSERT_EQ(upload(source), 0);
  EXPECT_EQ(commands(), Log{"cp -f \"" + source + "\" \"" + on_disk(list().path) + "\""});
  EXPECT_EQ(list().entries(), (Entries{{3, 0, "same"}, {3, 0, "same"}}));
  std::filesystem::remove_all(on_disk("/config/Phone/General"));
  EXPECT_EQ(upload(source), 0) << "the command's own result is not looked at";
}

}  // namespace
