#include "disk/disk_phone.h"

#include <cfgxml/dialrule.h>
#include <cfgxml/history.h>
#include <cfgxml/host.h>
#include <cfgxml/message.h>
#include <cfgxml/notify.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <utility>

#include "runtime/files.h"
#include "runtime/shell.h"

namespace disk_test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLists[] = {kDialNow, kDialReplace, kBlockOut, kMessages};

/// The files of a phone that is in use, small but none of them empty.
const std::pair<const char*, const char*> kProfile[] = {
    {kContacts,
     "<ContactData>\n<Group Id=\"1\" Name=\"Default\" Ring=\"Auto\" Description=\"\">"
     "<Contact Id=\"1\" DisplayName=\"Ann\" OfficeNumber=\"11\" Ring=\"bell.wav\"/></Group>\n"
     "<Group Id=\"2\" Name=\"Work\" Ring=\"bell.wav\" Description=\"d\">"
     "<Contact Id=\"2\" DisplayName=\"Bob\" OfficeNumber=\"22\" Photo=\"b.png\"/></Group>\n"
     "</ContactData>\n"},
    {kBlacklist,
     "<BlacklistData>\n<Blacklist Id=\"1\" DisplayName=\"Mal\" OfficeNumber=\"66\"/>"
     "<Blacklist Id=\"2\" DisplayName=\"Ned\" OfficeNumber=\"67\"/>\n</BlacklistData>\n"},
    {kHistory,
     "<History>\n<Call ID=\"1\" Type=\"1\" RemoteSipName=\"11\"/>"
     "<Call ID=\"2\" Type=\"2\" RemoteSipName=\"22\"/>\n</History>\n"},
    {kDialNow, "<Dial><DialNow><Data ID=\"1\" Rule=\"1xx\" Line=\"1\"/></DialNow></Dial>"},
    {kDialReplace,
     "<Dial><DialReplace><Data ID=\"1\" Prefix=\"0\" Replace=\"+49\" Line=\"1\"/></DialReplace>"
     "</Dial>"},
    {kBlockOut, "<Dial><BlockOut><Data ID=\"1\" Rule=\"0900\" Line=\"1\"/></BlockOut></Dial>"},
    {kMessages,
     "<Message><InboxData Total=\"2\" Unread=\"1\"><Inbox ID=\"1\" Content=\"one\" Status=\"1\"/>"
     "<Inbox ID=\"2\" Content=\"two\" Status=\"0\"/></InboxData></Message>"},
    {kNotifications, "<cwmp:notification><Pameter Notify=\"1\" Name=\"a\"/></cwmp:notification>"},
    {"/upload.xml",
     "<B>\n<Group Id=\"4\" Name=\"New\"><Contact Id=\"9\" DisplayName=\"Zoe\"/></Group>\n"
     "<Blacklist Id=\"5\" DisplayName=\"Pest\"/>\n"
     "<DialNow><Data ID=\"7\" Rule=\"7xx\"/></DialNow>\n"
     "<DialReplace><Data ID=\"8\" Prefix=\"8\" Replace=\"88\"/></DialReplace>\n</B>\n"},
};

/// What "cp -f" does: empties the target, and writes it piece by piece.
int copy_file(const std::string& from, const std::string& to) {
  std::ifstream source(from, std::ios::binary);
  if (!source) return 1;
  const std::string text{std::istreambuf_iterator<char>(source), {}};
  const int descriptor = ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (descriptor < 0) return 1;
  const std::size_t piece = text.size() / 3 + 1;
  ssize_t written = 0;
  for (std::size_t at = 0; at < text.size(); at += static_cast<std::size_t>(written)) {
    written = ::write(descriptor, text.data() + at, std::min(piece, text.size() - at));
    if (written < 0) break;
  }
  return ::close(descriptor) == 0 && written >= 0 ? 0 : 1;
}

/// The two commands of the plug-in, without a shell.
int run(const std::string& command) {
  if (command.rfind("rm -f ", 0) == 0) {
    const std::string path = command.substr(6);
    return ::unlink(path.c_str()) == 0 || errno == ENOENT ? 0 : 1;
  }
  std::istringstream words(command);
  std::string cp;
  std::string option;
  std::string from;
  std::string to;
  std::getline(words, cp, '"');
  std::getline(words, from, '"');
  std::getline(words, option, '"');
  std::getline(words, to, '"');
  return cp == "cp -f " ? copy_file(from, to) : 127;
}

/// Releases a list of the plug-in's after writing it down, node by node.
template <typename Node, typename Print>
void print_list(std::ostream& out, const char* title, Node* node, Print print) {
  out << title << ":";
  while (node != nullptr) {
    print(*node);
    rl_free(std::exchange(node, node->next));
  }
  out << "\n";
}

void print_rules(std::ostream& out) {
  print_list(out, "dial now", cfg_get_dialnow_list(),
             [&](const auto& rule) { out << ' ' << rule.ID << '=' << rule.Rule; });
  print_list(out, "dial replace", cfg_get_dialreplace_list(), [&](const auto& rule) {
    out << ' ' << rule.ID << '=' << rule.Prefix << '>' << rule.Replace;
  });
  print_list(out, "block out", cfg_get_blockout_list(),
             [&](const auto& rule) { out << ' ' << rule.ID << '=' << rule.Rule; });
}

void print_messages(std::ostream& out) {
  print_list(out, "messages", cfg_get_all_sms_details_list(), [&](const auto& node) {
    out << ' ' << node.data.type << '/' << node.data.id << '=' << node.data.content << '.'
        << node.data.status;
  });
  out << "unread: " << cfg_get_inbox_unread() << "\n";
}

void print_notifications(std::ostream& out) {
  print_list(out, "notifications", cfg_get_notification_list(),
             [&](const auto& node) { out << ' ' << node.Name << '=' << node.Notify; });
}

bool holds_damaged_content(const fs::path& folder) {
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file() && ::host::files::read(entry.path()) == kDamaged) return true;
  }
  return false;
}

class PrintFigures : public ::testing::Environment {
 public:
  void TearDown() override {
    std::printf("disk: %d operations, %d states after a cut (%d of them different), %d faults\n",
                figures().operations, figures().cut_states, figures().loads, figures().faults);
  }
};
/// Thousands of profiles are written: into memory where that can be had.
[[maybe_unused]] const bool in_fast_folder =
    ::access("/dev/shm", W_OK) == 0 && ::setenv("TMPDIR", "/dev/shm", /*overwrite=*/0) == 0;

[[maybe_unused]] const auto* const print_figures =
    ::testing::AddGlobalTestEnvironment(new PrintFigures);

}  // namespace

Figures& figures() {
  static Figures sums;
  return sums;
}

CONTACT_DATA_T contact(const std::string& name, const std::string& group, int id) {
  CONTACT_DATA_T record{};
  record.Id = id;
  rl_strcpy_s(record.DisplayName, sizeof record.DisplayName, name.c_str());
  rl_strcpy_s(record.Group, sizeof record.Group, group.c_str());
  return record;
}

GROUP_DATA_T group(const std::string& name, int id) {
  GROUP_DATA_T record{};
  record.Id = id;
  rl_strcpy_s(record.Name, sizeof record.Name, name.c_str());
  return record;
}

void DiskPhone::SetUp() {
  Phone::SetUp();
  ::host::run_commands_with(run);
  scratch_ = root();
  scratch_ += "-scratch";
  start_anew();
}

void DiskPhone::TearDown() {
  recorded_calls::stop();
  ::host::run_commands_with(nullptr);
  std::error_code error;
  fs::remove_all(scratch_, error);
  Phone::TearDown();
}

void DiskPhone::fill_profile() const {
  fs::remove_all(root());
  for (const auto& [path, text] : kProfile) write(path, text);
}

void DiskPhone::start_anew() {
  fill_profile();
  host().lists().clear();
  host().saver().forget();
  host().load();
  CfgTrieReloadLocalBookInfo();
  // A header as the plug-in writes it, and two rows.
  ASSERT_EQ(host().callbacks().save_contact_csv(uploaded("upload.csv").c_str(), nullptr), 0);
  std::ofstream(uploaded("upload.csv"), std::ios::app)
      << "Zoe,Zoe,,,99,,,,,,,,,,,,,,,Default,,,,0,END\nYan,Yan,,,98,,,,,,,,,,,,,,,Default,,,,0,"
         "END\n";
  forget_log();
}

Files DiskPhone::files() const {
  Files result;
  for (const auto& entry : fs::recursive_directory_iterator(root())) {
    if (!entry.is_regular_file()) continue;
    result[entry.path().string().substr(root().string().size())] =
        ::host::files::read(entry.path()).value_or("unreadable");
  }
  return result;
}

std::string DiskPhone::in_memory() {
  std::ostringstream out;
  out << "groups:";
  for (const GROUP_DATA_T& one : contacts().Groups) {
    if (one.Id > 0) out << ' ' << one.Id << '=' << one.Name << '/' << one.Ring;
  }
  out << "\ncontacts:";
  for (const CONTACT_DATA_T& one : contacts().Contacts) {
    if (one.Id < 1) break;
    out << ' ' << one.Id << '=' << one.DisplayName << '/' << one.OfficeNumber << '@' << one.Group;
  }
  out << "\nblacklist:";
  for (const CONTACT_DATA_T& one : blacklist().Entries) {
    if (one.Id < 1) break;
    out << ' ' << one.Id << '=' << one.DisplayName << '/' << one.OfficeNumber;
  }
  out << "\nhistory:";
  for (const HISTORY_DATA_T& one : history().Records) {
    if (one.ID < 1) break;
    out << ' ' << one.ID << '=' << one.RemoteSipName << '.' << one.Status;
  }
  return out.str() + "\n";
}

std::string DiskPhone::found_in(const std::string& folder) {
  std::ostringstream out;
  for (const char* path : {kContacts, kHistory, kNotifications}) {
    fs::create_directories(fs::path(folder + path).parent_path());
  }
  cfgxml_set_root(folder.c_str());
  host().open_profile(folder);
  host().lists().clear();
  host().load();
  out << in_memory();
  print_rules(out);
  print_messages(out);
  print_notifications(out);
  for (const char* path : kLists) {
    out << (fs::exists(folder + path) ? "a file" : "no file") << " at " << path << "\n";
  }
  out << "damaged content: " << holds_damaged_content(folder) << "\n";
  cfgxml_set_root(root().c_str());
  host().open_profile(root());
  return out.str();
}

std::string DiskPhone::found_with(const Files& files) {
  ++figures().loads;
  fs::remove_all(scratch_);
  for (const auto& [path, text] : files) {
    const fs::path file = scratch_.string() + path;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
  }
  const auto old_contacts = std::make_unique<CONTACT_DATA_LIST_T>(contacts());
  const auto old_blacklist = std::make_unique<BLACK_DATA_LIST_T>(blacklist());
  const auto old_history = std::make_unique<HISTORY_DATA_LIST>(history());
  const std::string found = found_in(scratch_);
  contacts() = *old_contacts;
  blacklist() = *old_blacklist;
  history() = *old_history;
  return found;
}

}  // namespace disk_test

/// The plug-in's removals run through the C library; a test has no shell for them either.
extern "C" int system(const char* command) { return disk_test::run(command); }
