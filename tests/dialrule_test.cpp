// The three lists of dial rules, through their files. Most facts hold for all three.
#include <cfgxml/dialrule.h>
#include <cfgxml/host.h>

#include <algorithm>
#include <cctype>
#include <random>
#include <thread>

#include "runtime/locks.h"
#include "runtime/logging.h"
#include "support/phone.h"

namespace {

struct Rule {
  int id;
  int line;
  std::string text;
  bool operator==(const Rule& other) const {
    return id == other.id && line == other.line && text == other.text;
  }
};
using Rules = std::vector<Rule>;

std::ostream& operator<<(std::ostream& out, const Rule& rule) {
  return out << rule.id << ":" << rule.text << "@" << rule.line;
}

/// A list under test. A text of nullptr stands for no record.
struct List {
  std::string name;
  std::string small_name;
  std::string key;
  std::string title;  // in messages; "" for the list that takes equal rules
  int lock;
  Rules (*rules)();
  int (*get)(int id, Rule* rule);
  int (*add)(const char* text, int line);
  int (*set)(int id, const char* text, int line);
  int (*remove)(int id);
  int (*upload)(const char* path);

  bool distinct() const { return !title.empty(); }
  std::string path() const { return "/config/Phone/General/DialRule/" + name + ".xml"; }
};

template <auto kText, auto kGetList, auto kGet, auto kAdd, auto kSet>
struct Calls {
  using Node = std::remove_pointer_t<decltype(kGetList())>;

  static Node node(const char* text, int line) {
    Node node{};
    node.ID = 4711;  // not to be looked at
    node.Line = line;
    rl_strcpy_s(node.*kText, 64, text);
    return node;
  }
  static Rules rules() {
    Rules rules;
    for (Node* node = kGetList(); node != nullptr;) {
      rules.push_back({node->ID, node->Line, node->*kText});
      Node* next = node->next;
      rl_free(node);
      node = next;
    }
    return rules;
  }
  static int get(int id, Rule* rule) {
    Node node = Calls::node("untouched", 77);
    node.next = &node;
    const int result = kGet(id, &node);
    *rule = {node.ID, node.Line, node.*kText};
    EXPECT_EQ(node.next, result == 0 ? nullptr : &node);
    return result;
  }
  static int add(const char* text, int line) {
    const Node item = node(text, line);
    return kAdd(text != nullptr ? &item : nullptr);
  }
  static int set(int id, const char* text, int line) {
    const Node item = node(text, line);
    return kSet(id, text != nullptr ? &item : nullptr);
  }
};

using DialNow = Calls<&DIAL_NOW_DATA_T::Rule, cfg_get_dialnow_list, cfg_get_dialnow_data,
                      cfg_add_dialnow_data, cfg_set_dialnow_data>;
using DialReplace =
    Calls<&DIAL_REPLACE_DATA_T::Prefix, cfg_get_dialreplace_list, cfg_get_dialreplace_data,
          cfg_add_dialreplace_data, cfg_set_dialreplace_data>;
using BlockOut = Calls<&BLOCKOUT_DATA_T::Rule, cfg_get_blockout_list, cfg_get_blockout_data,
                       cfg_add_blockout_data, cfg_set_blockout_data>;

template <typename Calls>
List list_of(const std::string& name, const char* key, const char* title, int lock,
             int (*remove)(int), int (*upload)(const char*)) {
  std::string small_name = name;
  for (char& letter : small_name) letter = static_cast<char>(std::tolower(letter));
  return {name,       small_name, key,        title,  lock,  Calls::rules,
          Calls::get, Calls::add, Calls::set, remove, upload};
}

const List kDialNow = list_of<DialNow>("DialNow", "Rule", "dial now", 45076,
                                       cfg_remove_dialnow_data, cfg_upload_dialnow);
const List kDialReplace = list_of<DialReplace>("DialReplace", "Prefix", "dial replace", 45077,
                                               cfg_remove_dialreplace_data, cfg_upload_dialreplace);
const List kBlockOut =
    list_of<BlockOut>("BlockOut", "Rule", "", 0, cfg_remove_blockout_data, nullptr);

class DialRules : public phone_test::Phone, public testing::WithParamInterface<const List*> {
 protected:
  const List& list() const { return *GetParam(); }
  std::string worker(const std::string& verb) const {
    return (list().distinct() ? "_cfg_" : "cfg_") + verb + "_" + list().small_name + "_data";
  }
  std::string data(const std::string& id, const std::string& text) const {
    return "<Data ID=\"" + id + "\" " + list().key + "=\"" + text + "\" Line=\"0\"/>";
  }
  void write_rules(const std::string& rules) const {
    write(list().path(), "<Dial><" + list().name + ">" + rules + "</" + list().name + "></Dial>");
  }
};
class NumberedRules : public DialRules {};
using ReplaceRules = phone_test::Phone;

std::string name_of(const testing::TestParamInfo<const List*>& info) { return info.param->name; }
INSTANTIATE_TEST_SUITE_P(Of, DialRules, testing::Values(&kDialNow, &kDialReplace, &kBlockOut),
                         name_of);
INSTANTIATE_TEST_SUITE_P(Of, NumberedRules, testing::Values(&kDialNow, &kDialReplace), name_of);

TEST_P(DialRules, FirstRuleCreatesItsListUnderTheRootThereIsAndItsOwnLock) {
  std::vector<bool> alone;
  host::observe_log([&](host::LogLevel, const std::string& message) {
    EXPECT_EQ(message,
              worker("add") + ":<" + list().path() + "> no " + list().name + " node, create!");
    alone.push_back(host::locks::held() == (list().lock != 0 ? 1 : 0) &&
                    (list().lock == 0 || host::locks::held_by_me(list().lock)));
  });
  write(list().path(), "<Rules version=\"2\"><Other/></Rules>");
  EXPECT_TRUE(list().rules().empty());
  ASSERT_EQ(list().add("9<&\"", 3), 0);
  EXPECT_EQ(alone, std::vector<bool>{true});
  EXPECT_EQ(read(list().path()), "<Rules version=\"2\">\n    <Other/>\n    <" + list().name +
                                     ">\n        <Data ID=\"1\" " + list().key +
                                     "=\"9&lt;&amp;&quot;\"" +
                                     (list().key == "Prefix" ? " Replace=\"\"" : "") +
                                     " Line=\"3\"/>\n    </" + list().name + ">\n</Rules>\n");
}

TEST_P(DialRules, MissingFileFailsEveryCallAndIsNotCreated) {
  Rule rule;
  EXPECT_TRUE(list().rules().empty());
  EXPECT_EQ(list().get(1, &rule), -1);
  EXPECT_EQ(list().add("1", 0), -1);
  EXPECT_EQ(list().set(1, "1", 0), -1);
  EXPECT_EQ(list().remove(1), -1);
  EXPECT_FALSE(exists(list().path()));
  EXPECT_TRUE(log().empty());
}

TEST_P(DialRules, FileWithoutAListIsReadAsEmptyAndMendedByAChange) {
  for (const std::string file : {"", "no xml", "<Dial><", "<!-- no root -->", "<Other/>"}) {
    write(list().path(), file);
    EXPECT_TRUE(list().rules().empty());
    EXPECT_EQ(read(list().path()), file);
    EXPECT_EQ(list().add("5", 1), 0) << file;
    EXPECT_EQ(list().rules(), (Rules{{1, 1, "5"}})) << file;
  }
  write(list().path(), "<Dial><");
  forget_log();
  EXPECT_EQ(list().remove(1), 0);
  const std::string place = ":<" + list().path() + "> no ";
  EXPECT_EQ(log(),
            (std::vector<std::string>{
                worker("remove") + ":load file <" + list().path() + "> failed, create a new file!",
                worker("remove") + place + "root node, create!",
                worker("remove") + place + list().name + " node, create!"}));
  EXPECT_EQ(read(list().path()), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Dial>\n    <" +
                                     list().name + "/>\n</Dial>\n");
  EXPECT_EQ(read(list().path() + ".corrupt"), "<Dial><");

  std::filesystem::remove(on_disk(list().path()));
  std::filesystem::create_directory(on_disk(list().path()));
  EXPECT_EQ(list().add("5", 1), -1) << "a folder stands in the file's place";
  EXPECT_TRUE(logged(worker("add") + " doc.SaveFile failed."));
}

TEST_P(DialRules, NewIdIsTheLargestUnsignedOnePlusOne) {
  write_rules(data("5", "a") + "<Other ID=\"90\"/>" + data("2", "b"));
  list().add("c", 0);
  EXPECT_EQ(list().rules().back().id, 6);
  write_rules(data("7", "a") + data("-5", "b"));
  list().add("c", 0);
  EXPECT_NE(read(list().path()).find("ID=\"4294967292\""), std::string::npos);
  write_rules(data("4294967295", "a"));
  list().add("b", 0);
  list().add("c", 0);
  EXPECT_EQ(list().rules(), (Rules{{-1, 0, "a"}, {0, 0, "b"}, {1, 0, "c"}})) << "the free ones";
}

TEST_P(DialRules, RepeatedAndUnknownIdsAndMissingRecords) {
  write_rules(data("4", "a") + data("2", "b") + data("4", "c") + "<Data/>");
  Rule rule;
  EXPECT_EQ(list().get(4, &rule), 0);
  EXPECT_EQ(rule, (Rule{4, 0, "a"})) << "the first";
  EXPECT_EQ(list().set(4, "new", 9), 0);
  EXPECT_EQ(list().rules(), list().distinct()
                                ? (Rules{{4, 0, "a"}, {2, 0, "b"}, {4, 9, "new"}, {0, 0, ""}})
                                : (Rules{{4, 9, "new"}, {2, 0, "b"}, {4, 0, "c"}, {0, 0, ""}}));

  const std::string before = read(list().path());
  EXPECT_EQ(list().get(8, &rule), -1);
  EXPECT_EQ(rule, (Rule{4711, 77, "untouched"}));
  EXPECT_EQ(list().set(8, "other", 0), list().distinct() ? 4 : -1);
  EXPECT_EQ(log(), list().distinct() ? std::vector<std::string>{worker("set") + " failed, " +
                                                                list().title + " is not exist."}
                                     : std::vector<std::string>{});
  EXPECT_EQ(list().add(nullptr, 0), -1);
  EXPECT_EQ(list().set(4, nullptr, 0), -1);
  EXPECT_EQ(list().remove(8), 0);
  EXPECT_EQ(read(list().path()), before);
  EXPECT_EQ(list().remove(4), 0);
  EXPECT_EQ(list().rules(), (Rules{{2, 0, "b"}, {0, 0, ""}}));
}

TEST_P(NumberedRules, TextsAreUniqueAsTheirFieldHoldsThem) {
  const std::string cut(62, 'x');
  write_rules(data("1", "a") + data("2", "b") + "<Data ID=\"3\"/>" + data("4", cut + "\xC3\xA4z"));
  const std::string before = read(list().path());
  EXPECT_EQ(list().add("a", 5), 7);
  EXPECT_EQ(list().add("", 5), 7) << "a rule without its text has an empty one";
  EXPECT_EQ(list().add(cut.c_str(), 5), 7);
  EXPECT_EQ(list().set(2, "a", 0), 7);
  EXPECT_EQ(list().set(99, "a", 0), 7) << "checked before the id";
  EXPECT_TRUE(logged(worker("add") + " failed, " + list().title + " already exist."));
  EXPECT_TRUE(logged(worker("set") + " failed, " + list().title + " already exist."));
  EXPECT_EQ(read(list().path()), before);
  EXPECT_EQ(list().set(2, "b", 8), 0) << "its own text";
  EXPECT_EQ(list().rules(), (Rules{{1, 0, "a"}, {2, 8, "b"}, {3, 0, ""}, {4, 0, cut}}));
}

TEST_P(DialRules, NumberedListsHold350RulesAndBlockOutAnyNumber) {
  std::string rules;
  for (int i = 1; i < 350; ++i) rules += data(std::to_string(i), "r" + std::to_string(i));
  write_rules(rules);
  EXPECT_EQ(list().rules().size(), 349u);
  EXPECT_TRUE(log().empty());
  EXPECT_EQ(list().add("last", 0), 0);
  EXPECT_EQ(list().rules().size(), 350u);
  EXPECT_EQ(list().add("r7", 0), list().distinct() ? 7 : 0) << "checked before the count";
  EXPECT_EQ(list().add("more", 0), list().distinct() ? 10 : 0);
  const std::string full = ", current count has reach max.";
  const std::vector<std::string> messages = {
      "get list exceed 350, _cfg_get_" + list().small_name + "_list" + full,
      worker("add") + " failed, " + list().title + " already exist.",
      worker("add") + " failed" + full};
  EXPECT_EQ(log(), list().distinct() ? messages : std::vector<std::string>{});
  write_rules(rules + data("350", "x") + data("351", "y"));
  EXPECT_EQ(list().rules().size(), list().distinct() ? 350u : 351u);
}

TEST_F(ReplaceRules, ReplacementsAreKeptAndChanged) {
  write(kDialReplace.path(),
        "<Dial><DialReplace><Data ID=\"1\" Prefix=\"00\" Replace=\"+\" Line=\"2\" Note=\"n\"/>"
        "</DialReplace></Dial>");
  DIAL_REPLACE_DATA_T rule;
  ASSERT_EQ(cfg_get_dialreplace_data(1, &rule), 0);
  EXPECT_STREQ(rule.Replace, "+");
  rl_strcpy_s(rule.Replace, sizeof rule.Replace, "011");
  ASSERT_EQ(cfg_set_dialreplace_data(1, &rule), 0);
  EXPECT_NE(read(kDialReplace.path())
                .find("<Data ID=\"1\" Prefix=\"00\" Replace=\"011\" Line=\"2\" Note=\"n\"/>"),
            std::string::npos);
}

TEST_P(NumberedRules, UploadReplacesTheListWithACheckedFile) {
  const std::string file = "<R><" + list().name + ">" + data("3", "same") + data("3", "same") +
                           "</" + list().name + "></R>";
  const auto padded = [&](std::size_t size) { return file + std::string(size - file.size(), ' '); };
  write_rules(data("1", "old"));
  write("/my rules.xml", padded(30720));
  const std::string source = on_disk("/my rules.xml");
  ASSERT_EQ(list().upload(source.c_str()), 0);
  EXPECT_EQ(commands(), (std::vector<std::string>{"cp -f \"" + source + "\" \"" +
                                                  on_disk(list().path()) + "\""}));
  EXPECT_EQ(list().rules(), (Rules{{3, 0, "same"}, {3, 0, "same"}}));

  const std::string bad = on_disk("/bad.xml");
  const std::vector<std::pair<std::string, std::string>> refusals = {
      {padded(30721), " failed: invalid file size."},
      {"", " failed: invalid file size."},
      {"<R>", ":load file <" + bad + "> failed."},
      {"<!-- -->", ":invalid file without root node."},
      {"<Dial><OtherList/></Dial>", ""}};
  for (const auto& [content, message] : refusals) {
    write("/bad.xml", content);
    forget_log();
    EXPECT_EQ(list().upload(bad.c_str()), -1);
    EXPECT_EQ(log().size(), message.empty() ? 1u : 2u);
    EXPECT_TRUE(message.empty() || logged("is_valid_" + list().small_name + "_file" + message));
    EXPECT_TRUE(logged("_cfg_upload_" + list().small_name + " failed: file is invalid."));
  }
  EXPECT_EQ(list().upload(""), -1);
  EXPECT_EQ(list().upload(nullptr), -1);
  EXPECT_TRUE(logged("is_valid_" + list().small_name + "_file failed: file_path is empty."));
  write("/a\";rm *.xml", file);
  EXPECT_EQ(list().upload(on_disk("/a\";rm *.xml").c_str()), -1) << "leaves its quotes";
  EXPECT_EQ(commands().size(), 1u);

  std::filesystem::remove_all(on_disk("/config/Phone/General"));
  EXPECT_EQ(list().upload(source.c_str()), 0) << "the command's own result is not looked at";
}

TEST_P(DialRules, ChangesFromTwoThreadsLoseNothing) {
  write_rules("");
  const auto add_ten = [&](int first) {
    for (int i = first; i < first + 10; ++i) list().add(std::to_string(i).c_str(), i);
  };
  std::thread other(add_ten, 100);
  add_ten(0);
  other.join();
  EXPECT_EQ(list().rules().size(), 20u);
  EXPECT_EQ(list().rules().back().id, 20);
}

TEST_P(DialRules, RandomChangesFollowTheModel) {
  write_rules("");
  std::mt19937 random(20240501);
  const auto pick = [&](int below) { return static_cast<int>(random() % below); };
  Rules model;
  for (int step = 0; step < 200; ++step) {
    const Rule change = {1 + pick(14), pick(6) - 1, "<" + std::to_string(pick(30)) + "&\""};
    const auto found = std::find_if(model.begin(), model.end(),
                                    [&](const Rule& rule) { return rule.id == change.id; });
    const auto taken_by_other_than = [&](int id) {
      return list().distinct() && std::any_of(model.begin(), model.end(), [&](const Rule& rule) {
               return rule.id != id && rule.text == change.text;
             });
    };
    const int action = pick(3);
    if (action == 0) {
      const bool taken = taken_by_other_than(0);
      ASSERT_EQ(list().add(change.text.c_str(), change.line), taken ? 7 : 0);
      int largest = 0;
      for (const Rule& rule : model) largest = std::max(largest, rule.id);
      if (!taken) model.push_back({largest + 1, change.line, change.text});
    } else if (action == 1) {
      const int known = found != model.end() ? 0 : list().distinct() ? 4 : -1;
      const int expected = taken_by_other_than(change.id) ? 7 : known;
      ASSERT_EQ(list().set(change.id, change.text.c_str(), change.line), expected);
      if (expected == 0) *found = change;
    } else {
      ASSERT_EQ(list().remove(change.id), 0);
      if (found != model.end()) model.erase(found);
    }
    ASSERT_EQ(list().rules(), model) << "step " << step;
  }
}

}  // namespace
