// deskphone dialnow, dialreplace, blockout: list, show, add, set, remove, upload. One set of
// commands over three descriptions.
#include <cfgxml/dialrule.h>
#include <fmt/format.h>

#include <array>
#include <filesystem>
#include <memory>
#include <optional>

#include "commands.h"
#include "failure.h"
#include "node_list.h"
#include "text.h"
#include "tour.h"
#include "user_file.h"

namespace deskphone {
namespace {

enum Result { kUnknownId = 4, kTextUsed = 7, kListFull = 10 };

/// A text of a rule: "prefix" on the command line, in JSON, and as --prefix.
template <typename Rule>
struct TextField {
  const char* name;
  const char* title;
  char (Rule::*field)[64];
};

/// A list and how its family of commands presents it.
template <typename Rule>
struct Family {
  const char* name;
  const char* about;
  const char* path;
  std::vector<TextField<Rule>> texts;  // the first is the one that may be unique
  const char* new_rule;                // the examples' words
  const char* change;
  const char* upload;  // nullptr for a list without upload
};

const Family<DIAL_NOW_DATA_T> kDialNow = {"dialnow",
                                          "Numbers dialled as soon as they match",
                                          "/config/Phone/General/DialRule/DialNow.xml",
                                          {{"rule", "Rule", &DIAL_NOW_DATA_T::Rule}},
                                          "3xx --line 1",
                                          "--rule 30x",
                                          "samples/import/dialnow.xml"};
const Family<DIAL_REPLACE_DATA_T> kDialReplace = {
    "dialreplace",
    "Prefixes and what is dialled in their place",
    "/config/Phone/General/DialRule/DialReplace.xml",
    {{"prefix", "Prefix", &DIAL_REPLACE_DATA_T::Prefix},
     {"replace", "Replaced by", &DIAL_REPLACE_DATA_T::Replace}},
    "0049 0 --line 1",
    "--replace +49",
    "samples/import/dialreplace.xml"};
const Family<BLOCKOUT_DATA_T> kBlockOut = {"blockout",
                                           "Numbers that the phone does not dial",
                                           "/config/Phone/General/DialRule/BlockOut.xml",
                                           {{"rule", "Rule", &BLOCKOUT_DATA_T::Rule}},
                                           "0137.",
                                           "--rule 01379.",
                                           nullptr};

/// The plug-in's list; results other than 0 are Failures.
template <typename Rule>
class RuleList {
 public:
  RuleList(const Phone& phone, const Family<Rule>& family) : phone_(phone), family_(family) {}

  std::vector<Rule> rules() const { return take_list(call<Rule*()>("get", "_list")()); }

  Rule rule(int id) const {
    Rule rule;
    if (call<int(int, Rule*)>("get", "_data")(id, &rule) != 0) fail(kUnknownId, id, rule);
    return rule;
  }

  Rule add(const Rule& rule) const {
    check(call<int(const Rule*)>("add", "_data")(&rule), 0, rule);
    return rules().back();
  }

  void set(const Rule& rule) const {
    check(call<int(int, const Rule*)>("set", "_data")(rule.ID, &rule), rule.ID, rule);
  }

  void remove(int id) const { check(call<int(int)>("remove", "_data")(id), id, Rule{}); }

  /// False when the file was not accepted.
  bool upload(const char* file) const { return call<int(const char*)>("upload", "")(file) == 0; }

 private:
  template <typename Signature>
  Signature* call(const char* verb, const char* what) const {
    const std::string name = fmt::format("cfg_{}_{}{}", verb, family_.name, what);
    return Function<Signature>(phone_.plugin(), name.c_str());
  }

  void check(int result, int id, const Rule& rule) const {
    if (result != 0) fail(result, id, rule);
  }

  [[noreturn]] void fail(int result, int id, const Rule& rule) const {
    const std::filesystem::path file = phone_.host().on_disk(family_.path);
    if (!std::filesystem::exists(file)) {
      throw Failure(
          fmt::format("There is no file {0}, and the phone does not create it. Copy "
                      "it from the samples, or write <Dial/> into it.",
                      file.string()));
    }
    switch (result) {
      case kUnknownId:
        throw Failure(
            fmt::format("There is no rule with the id {}. The ids are in 'deskphone {} list'.", id,
                        family_.name));
      case kTextUsed:
        throw Failure(fmt::format("The list has the {} \"{}\" already. Choose another one.",
                                  family_.texts[0].name, rule.*family_.texts[0].field));
      case kListFull:
        throw Failure(fmt::format(
            "The list holds 350 rules, and no more. Remove one first: deskphone {} remove ID",
            family_.name));
      default:
        throw Failure(fmt::format(
            "{} can not be written. Check its permissions and the free space.", file.string()));
    }
  }

  const Phone& phone_;
  const Family<Rule>& family_;
};

template <typename Rule>
Row row_of(const Family<Rule>& family, const Rule& rule) {
  Row row = {{"id", rule.ID}};
  for (const TextField<Rule>& text : family.texts) row[text.name] = rule.*text.field;
  row["line"] = rule.Line;
  return row;
}

/// What the command line gives of a rule.
struct RuleFields {
  int id = 0;
  std::array<std::optional<std::string>, 2> texts;
  std::optional<int> line;

  bool empty() const { return !texts[0] && !texts[1] && !line; }
};

template <typename Rule>
void put(const Family<Rule>& family, const RuleFields& fields, Rule& rule) {
  for (std::size_t i = 0; i < family.texts.size(); ++i) {
    const TextField<Rule>& text = family.texts[i];
    if (fields.texts[i]) set_text(rule.*text.field, text.title, *fields.texts[i]);
  }
  if (fields.line) rule.Line = *fields.line;
}

template <typename Rule>
void list_rules(const Phone& phone, const Family<Rule>& family) {
  std::vector<Row> rows;
  for (const Rule& rule : RuleList<Rule>(phone, family).rules()) {
    rows.push_back(row_of(family, rule));
  }
  std::vector<Column> columns = {{"id", "Id"}};
  for (const TextField<Rule>& text : family.texts) columns.push_back({text.name, text.title});
  columns.push_back({"line", "Line"});
  phone.output().list(rows, columns, "rules");
}

template <typename Rule>
void add_rule(const Phone& phone, const Family<Rule>& family, const RuleFields& fields) {
  Rule rule{};
  put(family, fields, rule);
  rule = RuleList<Rule>(phone, family).add(rule);
  phone.output().done(fmt::format("Added rule {}: {}", rule.ID, rule.*family.texts[0].field),
                      row_of(family, rule));
}

template <typename Rule>
void set_rule(const Phone& phone, const Family<Rule>& family, const RuleFields& fields) {
  const RuleList<Rule> list(phone, family);
  Rule rule = list.rule(fields.id);
  if (fields.empty()) throw Failure("There is nothing to change. Give at least one option.");
  put(family, fields, rule);
  list.set(rule);
  phone.output().done(fmt::format("Changed rule {}: {}", rule.ID, rule.*family.texts[0].field),
                      row_of(family, rule));
}

template <typename Rule>
void remove_rule(const Phone& phone, const Family<Rule>& family, int id) {
  const RuleList<Rule> list(phone, family);
  const Rule rule = list.rule(id);
  list.remove(id);
  phone.output().done(fmt::format("Removed rule {}: {}", id, rule.*family.texts[0].field),
                      row_of(family, rule));
}

template <typename Rule>
void upload_rules(const Phone& phone, const Family<Rule>& family, const std::string& file) {
  const Upload upload(file);
  const RuleList<Rule> list(phone, family);
  if (!list.upload(upload.path())) {
    throw Failure(fmt::format(
        "{} is not accepted; the rules are as they were. It has to be well-formed XML of "
        "at most 30720 bytes with the list below its root, as in {}.",
        file, family.upload));
  }
  const std::size_t count = list.rules().size();
  phone.output().done(fmt::format("Uploaded {}: the list has {} rules now.", file, count),
                      {{"rules", count}});
}

template <typename Rule>
void add_list_commands(Command app, Phone& phone, const Family<Rule>& family) {
  Command list = add_command(app, "list", "List the rules",
                             fmt::format("{0} list\n--json {0} list", family.name).c_str());
  on_run(list, phone, [&] { list_rules(phone, family); });

  auto id = std::make_shared<int>();
  Command show =
      add_command(app, "show", "Show one rule", fmt::format("{} show 2", family.name).c_str());
  show.add_option("id", *id, "The rule's id").required();
  on_run(show, phone, [&phone, &family, id] {
    phone.output().record(row_of(family, RuleList<Rule>(phone, family).rule(*id)));
  });
}

template <typename Rule>
void add_change_commands(Command app, Phone& phone, const Family<Rule>& family) {
  auto fields = std::make_shared<RuleFields>();
  Command add = add_command(app, "add", "Add a rule at the end",
                            fmt::format("{} add {}", family.name, family.new_rule).c_str());
  auto changes = std::make_shared<RuleFields>();
  Command set = add_command(app, "set", "Change a rule",
                            fmt::format("{} set 2 {}", family.name, family.change).c_str());
  set.add_option("id", changes->id, "The rule's id").required();
  for (std::size_t i = 0; i < family.texts.size(); ++i) {
    const TextField<Rule>& text = family.texts[i];
    add.add_option(text.name, fields->texts[i], text.title).required();
    set.add_option(fmt::format("--{}", text.name), changes->texts[i], text.title);
  }
  add.add_option("--line", fields->line, "The line it is for; 0 when left out");
  set.add_option("--line", changes->line, "The line it is for");
  on_run(add, phone, [&phone, &family, fields] { add_rule(phone, family, *fields); });
  on_run(set, phone, [&phone, &family, changes] { set_rule(phone, family, *changes); });

  auto id = std::make_shared<int>();
  Command remove =
      add_command(app, "remove", "Remove a rule", fmt::format("{} remove 2", family.name).c_str());
  remove.add_option("id", *id, "The rule's id").required();
  on_run(remove, phone, [&phone, &family, id] { remove_rule(phone, family, *id); });
}

template <typename Rule>
void add_upload_command(Command app, Phone& phone, const Family<Rule>& family) {
  auto file = std::make_shared<std::string>();
  Command upload = add_command(app, "upload", "Replace the list by a file's",
                               fmt::format("{} upload {}", family.name, family.upload).c_str());
  upload.add_option("file", *file, "The file").required();
  on_run(upload, phone, [&phone, &family, file] { upload_rules(phone, family, *file); });
}

template <typename Rule>
void add_rule_family(Command app, Phone& phone, const Family<Rule>& family) {
  Command commands = add_family(app, family.name, family.about);
  add_list_commands(commands, phone, family);
  add_change_commands(commands, phone, family);
  if (family.upload != nullptr) add_upload_command(commands, phone, family);
}

}  // namespace

void tour_dialrules(Phone& phone) {
  const RuleList<DIAL_NOW_DATA_T> list(phone, kDialNow);
  DIAL_NOW_DATA_T rule{};
  if (list.rules().empty()) {
    fmt::print("  The phone has no DialNow list; copy one from the samples and come back.\n");
    return;
  }
  set_text(rule.Rule, "rule", "0800xxxxxxx");
  rule.Line = 1;
  for (const DIAL_NOW_DATA_T& old : list.rules()) {
    if (old.Rule == std::string(rule.Rule)) list.remove(old.ID);
  }
  const std::size_t before = list.rules().size();
  const DIAL_NOW_DATA_T added = list.add(rule);
  fmt::print("  {} rules, and a new one: rule {}, {} on line {}\n", before, added.ID, added.Rule,
             added.Line);
  expect_on_tour(list.rules().size() == before + 1, "The rule is listed");
  try {
    list.add(rule);
  } catch (const Failure& failure) {
    fmt::print("  Once more: refused. {}\n", failure.what());
    return;
  }
  expect_on_tour(false, "The same rule is refused");
}

void add_dialrule_commands(Command app, Phone& phone) {
  add_rule_family(app, phone, kDialNow);
  add_rule_family(app, phone, kDialReplace);
  add_rule_family(app, phone, kBlockOut);
}

}  // namespace deskphone
