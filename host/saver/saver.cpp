#include "saver/saver.h"

#include <cfgxml/host.h>

#include <algorithm>
#include <utility>

#include "host.h"

namespace host {
namespace {

constexpr SaveCode kCodes[] = {SaveCode::kHistory, SaveCode::kContacts, SaveCode::kBlacklist};

}  // namespace

void Saver::start(Milliseconds pause) {
  const std::lock_guard<std::mutex> control(control_);
  if (thread_.joinable()) return;
  {
    const std::lock_guard<std::mutex> hold(mutex_);
    stopping_ = false;
  }
  thread_ = std::thread([this, pause] { run(pause); });
}

bool Saver::stop() {
  const std::lock_guard<std::mutex> control(control_);
  {
    const std::lock_guard<std::mutex> hold(mutex_);
    stopping_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
  return write_outstanding();
}

int Saver::post(int code) {
  for (const SaveCode known : kCodes) {
    if (code != static_cast<int>(known)) continue;
    const std::lock_guard<std::mutex> hold(mutex_);
    note(known);
    if (observer_) observer_(code);
    changed_.notify_all();
    return 0;
  }
  rl_log_err("there is no file with the save code %d.", code);
  return -1;
}

bool Saver::write_if_outstanding(SaveCode code) {
  if (!take(code) || write_(code) == 0) return true;
  rl_log_err("the file with the save code %d can not be written.", static_cast<int>(code));
  const std::lock_guard<std::mutex> hold(mutex_);
  note(code);
  return false;
}

void Saver::forget() {
  const std::lock_guard<std::mutex> hold(mutex_);
  outstanding_.clear();
}

void Saver::observe(Observer observer) {
  const std::lock_guard<std::mutex> hold(mutex_);
  observer_ = std::move(observer);
}

void Saver::run(Milliseconds pause) {
  std::unique_lock<std::mutex> hold(mutex_);
  const auto stopping = [this] { return stopping_; };
  while (!stopping_) {
    changed_.wait(hold, [this] { return stopping_ || !outstanding_.empty(); });
    if (changed_.wait_for(hold, pause, stopping)) break;
    hold.unlock();
    const bool written = write_outstanding();
    hold.lock();
    if (!written) changed_.wait_for(hold, 10 * pause, stopping);
  }
}

bool Saver::write_outstanding() {
  bool written = true;
  for (const SaveCode code : newest_first()) written = write_if_outstanding(code) && written;
  return written;
}

std::vector<SaveCode> Saver::newest_first() {
  const std::lock_guard<std::mutex> hold(mutex_);
  return {outstanding_.rbegin(), outstanding_.rend()};
}

/// Makes the kind the newest one outstanding; with mutex_ held.
void Saver::note(SaveCode code) {
  outstanding_.erase(std::remove(outstanding_.begin(), outstanding_.end(), code),
                     outstanding_.end());
  outstanding_.push_back(code);
}

bool Saver::take(SaveCode code) {
  const std::lock_guard<std::mutex> hold(mutex_);
  const auto place = std::find(outstanding_.begin(), outstanding_.end(), code);
  if (place == outstanding_.end()) return false;
  outstanding_.erase(place);
  return true;
}

}  // namespace host

int cfg_add_save_msg(int code) { return host::the_host().saver().post(code); }
