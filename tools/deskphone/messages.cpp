// deskphone messages: list, show, add, set, remove, clear, all, unread.
#include <cfgxml/message.h>
#include <fmt/format.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>

#include "commands.h"
#include "failure.h"
#include "node_list.h"
#include "text.h"
#include "tour.h"

namespace deskphone {
namespace {

constexpr char kFile[] = "/config/Phone/Message/Message.xml";
constexpr int kRead = 0;
constexpr int kUnread = 1;
constexpr const char* kBoxes[] = {"inbox", "outbox", "sentbox", "draftbox"};  // from type 1

std::string box_of(int type) { return type >= 1 && type <= 4 ? kBoxes[type - 1] : ""; }

/// A box of the plug-in's store; results other than 0 are Failures.
class Box {
 public:
  Box(const Phone& phone, std::string name) : phone_(phone), name_(std::move(name)) {}

  std::vector<SMS_SUMMARY_T> list() const {
    return take_list(call<SMS_SUMMARY_T*()>("get", "list")());
  }
  SMS_DATA_T message(int id) const {
    SMS_DATA_T message;
    check(call<int(int, SMS_DATA_T*)>("get", "data")(id, &message), id);
    return message;
  }
  /// The message with its new id.
  SMS_DATA_T add(const SMS_DATA_T& message) const {
    check(call<int(const SMS_DATA_T*)>("add", "data")(&message), 0);
    return this->message(list().front().id);
  }
  void set(const SMS_DATA_T& message) const {
    check(call<int(int, const SMS_DATA_T*)>("set", "data")(message.id, &message), message.id);
  }
  void remove(int id) const { check(call<int(int)>("remove", "data")(id), id); }
  void clear() const { check(call<int()>("remove", "all")(), 0); }

 private:
  template <typename Signature>
  Signature* call(const char* verb, const char* what) const {
    const std::string name = fmt::format("cfg_{}_{}_{}", verb, name_, what);
    return Function<Signature>(phone_.plugin(), name.c_str());
  }

  /// An id of 0 stands for none.
  void check(int result, int id) const {
    if (result == 0) return;
    const std::filesystem::path file = phone_.host().on_disk(kFile);
    if (!std::filesystem::exists(file)) {
      throw Failure(
          fmt::format("There is no file {}, and the phone does not create it. Copy it "
                      "from the samples, or write <Message/> into it.",
                      file.string()));
    }
    if (id != 0) {
      throw Failure(
          fmt::format("There is no message with the id {0} in the {1}. The ids are in "
                      "'deskphone messages list {1}'.",
                      id, name_));
    }
    throw Failure(fmt::format("{} can not be written. Check its permissions and the free space.",
                              file.string()));
  }

  const Phone& phone_;
  std::string name_;
};

Row row_of(const SMS_DATA_T& message) {
  return {{"box", box_of(message.type)}, {"id", message.id},
          {"status", message.status},    {"from_name", message.from_display},
          {"from", message.from_user},   {"to_name", message.to_display},
          {"to", message.to_user},       {"server", message.server},
          {"port", message.port},        {"date", message.date},
          {"time", message.time},        {"text", message.content}};
}

/// What the command line gives of a message; what it leaves out stays as it is.
struct Fields {
  std::optional<std::string> from, from_name, to, to_name, server, text, date, time;
  std::optional<int> port, status;

  void put_into(SMS_DATA_T& message) const {
    if (from) set_text(message.from_user, "--from", *from);
    if (from_name) set_text(message.from_display, "--from-name", *from_name);
    if (to) set_text(message.to_user, "--to", *to);
    if (to_name) set_text(message.to_display, "--to-name", *to_name);
    if (server) set_text(message.server, "--server", *server);
    if (text) set_text(message.content, "The text", *text);
    if (date) set_text(message.date, "--date", *date);
    if (time) set_text(message.time, "--time", *time);
    if (port) message.port = *port;
    if (status) message.status = *status;
  }
};

void add_field_options(Command command, Fields& fields) {
  command.add_option("--from", fields.from, "The sender's number");
  command.add_option("--from-name", fields.from_name, "The sender's name");
  command.add_option("--to", fields.to, "The recipient's number");
  command.add_option("--to-name", fields.to_name, "The recipient's name");
  command.add_option("--server", fields.server, "The server");
  command.add_option("--port", fields.port, "The server's port");
  command.add_option("--date", fields.date, "The date, as text");
  command.add_option("--time", fields.time, "The time, as text");
  command.add_option("--status", fields.status, "In the inbox, 1 is unread and 0 is read");
}

SMS_DATA_T message_of_now() {
  SMS_DATA_T message{};
  message.port = 5060;
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  std::strftime(message.date, sizeof message.date, "%Y-%m-%d", &local);
  std::strftime(message.time, sizeof message.time, "%H:%M:%S", &local);
  return message;
}

void list_box(const Phone& phone, const std::string& box) {
  std::vector<Row> rows;
  for (const SMS_SUMMARY_T& message : Box(phone, box).list()) {
    rows.push_back({{"id", message.id}, {"status", message.status}, {"label", message.label}});
  }
  const char* label = box == "draftbox" ? "Date" : box == "inbox" ? "From" : "To";
  phone.output().list(rows, {{"id", "Id"}, {"status", "Status"}, {"label", label}}, "messages");
}

void list_all(const Phone& phone) {
  const Function<decltype(cfg_get_all_sms_details_list)> get_all{phone.plugin(),
                                                                 "cfg_get_all_sms_details_list"};
  std::vector<Row> rows;
  for (const SMS_DETAILS_T& node : take_list(get_all())) rows.push_back(row_of(node.data));
  phone.output().list(rows,
                      {{"box", "Box"},
                       {"id", "Id"},
                       {"from", "From"},
                       {"to", "To"},
                       {"date", "Date"},
                       {"text", "Text"}},
                      "messages");
}

/// The inbox's unread messages, or -1.
int count_unread(const Phone& phone) {
  const Function<decltype(cfg_get_inbox_unread)> count{phone.plugin(), "cfg_get_inbox_unread"};
  return count();
}

void show_unread(const Phone& phone) {
  const int unread = count_unread(phone);
  if (unread < 0) {
    throw Failure(
        fmt::format("The phone has no inbox. Look at {}.", phone.host().on_disk(kFile).string()));
  }
  phone.output().done(fmt::format("{} unread messages", unread), {{"unread", unread}});
}

void add_message(const Phone& phone, const std::string& box, const Fields& fields) {
  SMS_DATA_T message = message_of_now();
  fields.put_into(message);
  message = Box(phone, box).add(message);
  phone.output().done(fmt::format("Added message {} to the {}.", message.id, box), row_of(message));
}

void set_message(const Phone& phone, const std::string& name, int id, const Fields& fields) {
  const Box box(phone, name);
  SMS_DATA_T message = box.message(id);
  fields.put_into(message);
  box.set(message);
  phone.output().done(fmt::format("Changed message {} of the {}.", id, name), row_of(message));
}

void remove_message(const Phone& phone, const std::string& name, int id) {
  const Box box(phone, name);
  const SMS_DATA_T message = box.message(id);
  box.remove(id);
  phone.output().done(fmt::format("Removed message {} from the {}.", id, name), row_of(message));
}

void clear_box(const Phone& phone, const std::string& name) {
  const Box box(phone, name);
  const std::size_t count = box.list().size();
  box.clear();
  phone.output().done(fmt::format("Removed all {} messages of the {}.", count, name),
                      {{"removed", count}});
}

/// Where a command works, and on what.
struct Target {
  std::string box;
  int id = 0;
};

std::shared_ptr<Target> add_box(Command command) {
  auto target = std::make_shared<Target>();
  command.add_option("box", target->box, "inbox, outbox, sentbox or draftbox")
      .required()
      .one_of(std::vector<std::string>(std::begin(kBoxes), std::end(kBoxes)));
  return target;
}

std::shared_ptr<Target> add_message_of_box(Command command) {
  auto target = add_box(command);
  command.add_option("id", target->id, "The message's id").required();
  return target;
}

void add_list_commands(Command family, Phone& phone) {
  Command list =
      add_command(family, "list", "List a box, the newest message first", "messages list inbox");
  on_run(list, phone, [&phone, at = add_box(list)] { list_box(phone, at->box); });

  Command show = add_command(family, "show", "Show one message", "messages show inbox 6");
  on_run(show, phone, [&phone, at = add_message_of_box(show)] {
    phone.output().record(row_of(Box(phone, at->box).message(at->id)));
  });

  Command all = add_command(family, "all", "List every message of every box",
                            "messages all\n--json messages all");
  on_run(all, phone, [&phone] { list_all(phone); });

  Command unread =
      add_command(family, "unread", "Count the unread messages of the inbox", "messages unread");
  on_run(unread, phone, [&phone] { show_unread(phone); });
}

void add_change_commands(Command family, Phone& phone) {
  Command add = add_command(
      family, "add", "Add a message; a box settles at 101",
      "messages add inbox \"Lunch?\" --from 230 --from-name \"Jonas Schäfer\" --status 1\n"
      "messages add draftbox \"Call Anna\"");
  auto fields = std::make_shared<Fields>();
  auto at = add_box(add);
  add.add_option("text", fields->text, "The text").required();
  add_field_options(add, *fields);
  on_run(add, phone, [&phone, at, fields] { add_message(phone, at->box, *fields); });

  Command set = add_command(family, "set", "Change a message", "messages set inbox 6 --status 0");
  auto changes = std::make_shared<Fields>();
  add_field_options(set, *changes);
  set.add_option("--text", changes->text, "The text");
  on_run(set, phone, [&phone, changes, target = add_message_of_box(set)] {
    set_message(phone, target->box, target->id, *changes);
  });

  Command remove = add_command(family, "remove", "Remove a message", "messages remove inbox 6");
  on_run(remove, phone, [&phone, target = add_message_of_box(remove)] {
    remove_message(phone, target->box, target->id);
  });

  Command clear = add_command(family, "clear", "Empty a box", "messages clear sentbox");
  on_run(clear, phone, [&phone, target = add_box(clear)] { clear_box(phone, target->box); });
}

}  // namespace

void tour_messages(Phone& phone) {
  const Box inbox(phone, "inbox");
  for (const SMS_SUMMARY_T& listed : inbox.list()) {
    if (listed.status != kUnread) continue;
    const int unread = count_unread(phone);
    SMS_DATA_T message = inbox.message(listed.id);
    fmt::print("  {} unread messages, the newest from {}:\n    {}\n", unread,
               printable(listed.label), printable(message.content));
    message.status = kRead;
    inbox.set(message);
    fmt::print("  Read: {} are left\n", count_unread(phone));
    expect_on_tour(count_unread(phone) == std::max(unread - 1, 0), "One message less is unread");
    return;
  }
  fmt::print("  There is no unread message.\n");
}

void add_message_commands(Command app, Phone& phone) {
  Command family = add_family(app, "messages", "The text messages, in four boxes");
  add_list_commands(family, phone);
  add_change_commands(family, phone);
}

}  // namespace deskphone
