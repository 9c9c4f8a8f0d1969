#include "calls/world.h"

#include <cfgxml/remote.h>

#include <algorithm>
#include <fstream>
#include <utility>

namespace calls {
namespace {

/// The least that each file of a new phone holds.
constexpr std::pair<const char*, const char*> kNewFiles[] = {
    {"/config/Phone/Contact/Contact.xml",
     "<ContactData><Group Id=\"1\" Name=\"Default\" Ring=\"Auto\" "
     "Description=\"\"/></ContactData>"},
    {"/config/Phone/Contact/Blacklist.xml", "<BlacklistData/>"},
    {"/config/Phone/History/History.xml", "<History/>"},
    {"/config/Phone/Message/Message.xml", "<Message/>"},
    {"/config/Phone/General/DialRule/DialNow.xml", "<Dial/>"},
    {"/config/Phone/General/DialRule/DialReplace.xml", "<Dial/>"},
    {"/config/Phone/General/DialRule/BlockOut.xml", "<Dial/>"},
    {"/config/System/TimeZone.xml",
     "<TimeZoneData><Zone Id=\"1\" TimeZone=\"0\" Name=\"Zone\" Type=\"1\" Start=\"1\" End=\"2\"/>"
     "</TimeZoneData>"},
};

}  // namespace

std::string World::write(const std::string& path, const std::string& text) const {
  const std::string file = on_disk(path);
  std::ofstream(file, std::ios::binary | std::ios::trunc) << text;
  return file;
}

void World::write_profile() const {
  for (const char* folder :
       {"/config/Phone/Contact", "/config/Phone/History", "/config/Phone/Message",
        "/config/Phone/General/DialRule", "/config/Network/Rcpe", "/config/System", "/tmp"}) {
    std::filesystem::create_directories(on_disk(folder));
  }
  for (const auto& [path, text] : kNewFiles) write(path, text);
}

void World::free_books() {
  for (int remote = 0; remote != CFGXML_REMOTE_BOOK_COUNT; ++remote) {
    CfgTrieRemoveRemoteBookInfo(remote);
    cfg_destory_remote_conatct_list(("/tmp/remote_contact.xml" + std::to_string(remote)).c_str());
  }
  for (int list = 0; list != CFGXML_BROADSOFT_LIST_COUNT; ++list) {
    cfg_destory_broadsoft_simple_conatct_list(list);
  }
  cfg_destory_broadsoft_conatct_list();
  for (Book& book : books_) {
    book.head = nullptr;
    book.indexed = false;
    book.position = {};
  }
}

void World::require(bool holds, const std::string& fault) {
  if (holds) return;
  const std::lock_guard<std::mutex> hold(mutex_);
  if (fault_.empty()) fault_ = fault;
}

void World::expect_result(const char* call, int result, std::initializer_list<int> results) {
  if (lists_missing_ && result == -1) return;
  if (std::find(results.begin(), results.end(), result) != results.end()) return;
  require(false, std::string(call) + " gave " + std::to_string(result));
}

std::string World::fault() const {
  const std::lock_guard<std::mutex> hold(mutex_);
  return fault_;
}

std::vector<Call> all_calls() {
  std::vector<Call> all;
  for (const auto* calls :
       {&kPhonebookCalls, &kSearchCalls, &kRemoteCalls, &kHistoryCalls, &kListCalls}) {
    all.insert(all.end(), calls->begin(), calls->end());
  }
  return all;
}

}  // namespace calls
