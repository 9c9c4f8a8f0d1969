// What all lists whose entries have ids have in common.
#include "support/lists.h"

#include <cfgxml/history.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "support/invariants.h"
#include "support/phone.h"

namespace {

using phone_test::Entries;
using phone_test::Entry;
using phone_test::List;

class Lists : public phone_test::Phone, public testing::WithParamInterface<List> {
 protected:
  const List& list() const { return GetParam(); }
  std::string text() const { return read(list().path); }
  void write_text(const std::string& text) const { write(list().path, text); }
  void write_entries(const phone_test::Rows& rows) const { write_text(list().file_of(rows)); }
};
class FileLists : public Lists {};

std::string name_of(const testing::TestParamInfo<List>& info) { return info.param.name; }
INSTANTIATE_TEST_SUITE_P(Of, Lists, testing::ValuesIn(phone_test::kLists), name_of);
INSTANTIATE_TEST_SUITE_P(Of, FileLists,
                         testing::ValuesIn(phone_test::kLists.begin(),
                                           phone_test::kLists.begin() + phone_test::kFileLists),
                         name_of);

TEST_P(Lists, RandomChangesFollowTheModel) {
  constexpr unsigned kSeed = 20240501;
  std::mt19937 random(kSeed);
  const auto below = [&](int limit) { return static_cast<int>(random() % limit); };
  Entries model;
  phone_test::Rows rows;
  for (int id = 1; id <= 60; ++id) {
    const std::string text = "r" + std::to_string(id);
    model.push_back({id, 0, text});
    rows.emplace_back(std::to_string(id), text);
    if (list().path.empty()) list().add(model.back());
  }
  if (!list().path.empty()) write_entries(rows);
  for (int step = 0; step < 90; ++step) {
    const std::string where = "seed " + std::to_string(kSeed) + ", step " + std::to_string(step);
    int largest = 0;
    for (const Entry& entry : model) largest = std::max(largest, entry.id);
    const Entry change = {1 + below(largest + 2), below(3),
                          "<" + std::to_string(below(300)) + "\""};
    const auto find = [&] {
      return std::find_if(model.begin(), model.end(),
                          [&](const Entry& entry) { return entry.id == change.id; });
    };
    const auto found = find();
    const bool known = found != model.end();
    const int action = below(10);
    const bool adds = action < 7;
    const bool taken = std::any_of(model.begin(), model.end(), [&](const Entry& entry) {
      return list().distinct && entry.text == change.text && (adds || entry.id != change.id);
    });
    if (action == 9) {
      ASSERT_EQ(list().remove(change.id), 0) << where;
      if (known) model.erase(found);
    } else if (taken) {
      ASSERT_EQ(adds ? list().add(change) : list().set(change.id, change), 7) << where;
    } else if (adds) {
      ASSERT_EQ(list().add(change), 0) << where;
      model.push_back({largest + 1, change.value, change.text});
      if (model.size() > list().capacity) model.erase(model.begin());
    } else {
      ASSERT_EQ(list().set(change.id, change), known ? 0 : list().unknown) << where;
      if (known)
        *found = {change.id, change.value, list().path.empty() ? found->text : change.text};
    }
    ASSERT_EQ(list().entries(), model) << where;
    ASSERT_EQ(phone_test::broken_history(history()), "") << where;
    const auto kept = find();
    Entry entry = {};
    ASSERT_EQ(list().get(change.id, &entry), kept != model.end() ? 0 : -1) << where;
    if (kept != model.end()) ASSERT_EQ(entry, *kept) << where;
  }
  if (list().capacity != SIZE_MAX) EXPECT_EQ(model.size(), list().capacity) << "was reached";
  HISTORY_DATA_LIST reloaded{};
  ASSERT_EQ(history_init(&reloaded), 0);
  EXPECT_EQ(std::memcmp(&reloaded, &history(), sizeof reloaded), 0);
}

TEST_P(FileLists, MissingFileFailsEveryCallAndIsNotCreated) {
  Entry entry = {};
  EXPECT_EQ(list().entries(), Entries());
  EXPECT_EQ(list().get(1, &entry), -1);
  EXPECT_EQ(list().add(entry), -1);
  EXPECT_EQ(list().set(1, entry), -1);
  EXPECT_EQ(list().remove(1), -1);
  EXPECT_FALSE(exists(list().path));
  EXPECT_TRUE(log().empty());
}

TEST_P(FileLists, FileWithoutTheListIsReadAsEmptyAndMendedByAChange) {
  for (const std::string file : {"", "no xml", "<Any><", "<!-- no root -->", "<Other/>"}) {
    write_text(file);
    Entry entry = {};
    EXPECT_EQ(list().entries(), Entries()) << file;
    EXPECT_EQ(list().get(1, &entry), -1) << file;
    EXPECT_EQ(text(), file);
    EXPECT_EQ(list().add({0, 1, "5"}), 0) << file;
    EXPECT_EQ(list().entries(), (Entries{{1, 1, "5"}})) << file;
  }
  EXPECT_TRUE(
      logged(list().worker_for("add") + ":<" + list().path + "> no " + list().title + ", create!"));
  EXPECT_EQ(text().rfind("<Other>\n    <" + list().element, 0), 0u) << "a root there is stays";
  write_text("<Any><");
  forget_log();
  EXPECT_EQ(list().remove(1), 0);
  const std::string place = list().worker_for("remove") + ":<" + list().path + "> no ";
  EXPECT_EQ(log(), (std::vector<std::string>{list().worker_for("remove") + ":load file <" +
                                                 list().path + "> failed, create a new file!",
                                             place + "root node, create!",
                                             place + list().title + ", create!"}));
  EXPECT_EQ(text(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<" + list().root + ">\n    <" +
                        list().element + "/>\n</" + list().root + ">\n");
  EXPECT_EQ(read(list().path + ".corrupt"), "<Any><");

  std::filesystem::remove(on_disk(list().path));
  std::filesystem::create_directory(on_disk(list().path));
  for (const std::string verb : {"add", "remove"}) {
    EXPECT_EQ(verb == "add" ? list().add({}) : list().remove(1), -1) << "a folder is in its place";
    EXPECT_TRUE(logged(list().worker_for(verb) + " doc.SaveFile failed."));
  }
}

TEST_P(FileLists, NewIdIsTheLargestUnsignedOnePlusOne) {
  write_entries({{"5", "a"}, {"2", "b"}});
  list().add({0, 0, "c"});
  EXPECT_EQ(list().entries().back().id, 6);
  write_entries({{"7", "a"}, {"-5", "b"}});
  list().add({0, 0, "c"});
  EXPECT_NE(text().find("ID=\"4294967292\""), std::string::npos);
  write_entries({{"4294967295", "a"}});
  list().add({0, 0, "b"});
  list().add({0, 0, "c"});
  EXPECT_EQ(list().entries(), (Entries{{-1, 0, "a"}, {0, 0, "b"}, {1, 0, "c"}})) << "free ones";
}

TEST_P(FileLists, RepeatedAndUnknownIds) {
  write_entries({{"4", "a"}, {"2", "b"}, {"4", "c"}, {"0", ""}});
  Entry entry = {};
  EXPECT_EQ(list().get(4, &entry), 0);
  EXPECT_EQ(entry, (Entry{4, 0, "a"})) << "the first";
  EXPECT_EQ(list().set(4, {0, 9, "new"}), 0);
  const Entry set = {4, 9, "new"};
  EXPECT_EQ(list().entries(), list().distinct
                                  ? (Entries{{4, 0, "a"}, {2, 0, "b"}, set, {0, 0, ""}})
                                  : (Entries{set, {2, 0, "b"}, {4, 0, "c"}, {0, 0, ""}}));

  const std::string before = text();
  entry = {0, 77, "untouched"};
  EXPECT_EQ(list().get(8, &entry), -1);
  EXPECT_EQ(entry, (Entry{4711, 77, "untouched"}));
  EXPECT_EQ(list().set(8, {0, 0, "other"}), list().unknown);
  EXPECT_EQ(text(), before);
  EXPECT_EQ(list().remove(8), 0);
  EXPECT_EQ(text(), before);
  EXPECT_EQ(list().remove(4), 0);
  EXPECT_EQ(list().entries(), (Entries{{2, 0, "b"}, {0, 0, ""}}));
}

}  // namespace
