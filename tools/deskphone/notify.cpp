// deskphone notify: list, set, clear.
#include <cfgxml/notify.h>
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "commands.h"
#include "failure.h"
#include "node_list.h"
#include "text.h"

namespace deskphone {
namespace {

constexpr char kFile[] = "/config/Network/Rcpe/RcpeNotify.xml";
constexpr std::size_t kNameRead = 128;  // a longer name is cut when it is read again

std::vector<NOTIFICATION_T> parameters(const Phone& phone) {
  const Function<decltype(cfg_get_notification_list)> get{phone.plugin(),
                                                          "cfg_get_notification_list"};
  return take_list(get());
}

void save(const Phone& phone, std::vector<NOTIFICATION_T>& list) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    list[i].next = i + 1 < list.size() ? &list[i + 1] : nullptr;
  }
  const Function<decltype(cfg_save_notification_list)> save{phone.plugin(),
                                                            "cfg_save_notification_list"};
  if (save(list.data()) != 0) {
    throw Failure(fmt::format("{} can not be written. Check its permissions and the free space.",
                              phone.host().on_disk(kFile).string()));
  }
}

Row row_of(const NOTIFICATION_T& parameter) {
  return {{"name", parameter.Name}, {"notify", parameter.Notify}};
}

void list_parameters(const Phone& phone) {
  std::vector<Row> rows;
  for (const NOTIFICATION_T& parameter : parameters(phone)) rows.push_back(row_of(parameter));
  phone.output().list(rows, {{"notify", "Notify"}, {"name", "Parameter"}}, "parameters");
}

void set_parameter(const Phone& phone, const std::string& name, int value) {
  check_text("The name", name, kNameRead);
  std::vector<NOTIFICATION_T> list = parameters(phone);
  auto parameter = std::find_if(list.begin(), list.end(),
                                [&name](const NOTIFICATION_T& node) { return name == node.Name; });
  if (parameter == list.end()) {
    parameter = list.emplace(list.end());
    set_text(parameter->Name, "The name", name);
  }
  parameter->Notify = value;
  save(phone, list);
  phone.output().done(fmt::format("{} has the setting {}.", name, value), row_of(*parameter));
}

/// The plug-in saves no empty list, but takes a missing file for one.
void clear_parameters(const Phone& phone) {
  const std::size_t count = parameters(phone).size();
  const std::filesystem::path file = phone.host().on_disk(kFile);
  std::error_code error;
  std::filesystem::remove(file, error);
  if (error)
    throw Failure(fmt::format("{} can not be removed: {}.", file.string(), error.message()));
  phone.output().done(fmt::format("Removed the settings of {} parameters.", count),
                      {{"removed", count}});
}

struct Setting {
  std::string name;
  int value = 0;
};

}  // namespace

void add_notify_commands(Command app, Phone& phone) {
  Command family =
      add_family(app, "notify", "The parameters whose changes the management server is told of");
  Command list = add_command(family, "list", "List the parameters and their settings",
                             "notify list\n--json notify list");
  on_run(list, phone, [&phone] { list_parameters(phone); });

  auto setting = std::make_shared<Setting>();
  Command set = add_command(family, "set", "Give a parameter a setting",
                            "notify set Device.DeviceInfo.UpTime 1");
  set.add_option("name", setting->name, "The parameter's name").required();
  set.add_option("value", setting->value, "0 off, 1 with the next report, 2 at once").required();
  on_run(set, phone, [&phone, setting] { set_parameter(phone, setting->name, setting->value); });

  Command clear = add_command(family, "clear", "Remove every setting", "notify clear");
  on_run(clear, phone, [&phone] { clear_parameters(phone); });
}

}  // namespace deskphone
