#include "faults/disk/disk_states.h"

#include <utility>

namespace disk_states {
namespace {

using recorded_calls::Effect;
using recorded_calls::Event;

std::string folder_of(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

/// The content with a change, of which only the first bytes may count.
std::string changed(std::string content, const Event& event, std::size_t bytes) {
  if (event.effect == Effect::kEmptied) return {};
  if (content.size() < event.offset + bytes) content.resize(event.offset + bytes);
  return content.replace(event.offset, bytes, event.data, 0, bytes);
}

/// Lengths at which a write may be cut: its ends, their neighbours, the middle and some more.
std::set<std::size_t> cuts_of(std::size_t size) {
  std::set<std::size_t> cuts = {0, size};
  if (size > 1) cuts.insert({1, size / 2, size - 1});
  for (std::size_t part = 1; part < 8; ++part) cuts.insert(size * part / 8);
  return cuts;
}

}  // namespace

Disk::Disk(const std::vector<recorded_calls::Known>& known) {
  for (const recorded_calls::Known& file : known) {
    names_[file.path] = file.file;
    contents_[file.file].synced = file.content;
  }
}

void Disk::name(const std::string& path, Naming naming) {
  pending_[folder_of(path)].push_back(std::move(naming));
}

void Disk::apply(const Event& event) {
  switch (event.effect) {
    case Effect::kCreated:
      contents_[event.file] = {};
      return name(event.path, {{event.path, event.file}});
    case Effect::kRenamed:
      return name(event.path, {{event.path, 0}, {event.to, event.file}});
    case Effect::kRemoved:
      return name(event.path, {{event.path, 0}});
    case Effect::kEmptied:
    case Effect::kWritten:
      return contents_[event.file].unsynced.push_back(event);
    case Effect::kFileSynced: {
      Content& content = contents_[event.file];
      for (const Event& change : std::exchange(content.unsynced, {})) {
        content.synced = changed(std::move(content.synced), change, change.data.size());
      }
      return;
    }
    case Effect::kFolderSynced: {
      const std::string folder = event.path.back() == '/' ? event.path : event.path + '/';
      for (const Naming& naming : std::exchange(pending_[folder], {})) {
        for (const auto& [path, file] : naming) names_[path] = file;
      }
      return;
    }
  }
}

std::vector<std::map<std::string, int>> Disk::names_after_a_cut() const {
  std::vector<std::map<std::string, int>> states = {names_};
  for (const auto& [folder, namings] : pending_) {
    for (const Naming& naming : namings) {
      std::vector<std::map<std::string, int>> with = states;
      for (std::map<std::string, int>& state : with) {
        for (const auto& [path, file] : naming) state[path] = file;
      }
      states.insert(states.end(), with.begin(), with.end());
    }
  }
  return states;
}

std::set<std::string> Disk::contents_after_a_cut(const Content& content) {
  std::set<std::string> states = {content.synced};
  std::string text = content.synced;
  for (const Event& change : content.unsynced) {
    for (const std::size_t bytes : cuts_of(change.data.size())) {
      states.insert(changed(text, change, bytes));
    }
    text = changed(std::move(text), change, change.data.size());
  }
  return states;
}

std::set<Files> Disk::after_a_cut() const {
  std::set<Files> result;
  for (const std::map<std::string, int>& names : names_after_a_cut()) {
    std::set<Files> states = {{}};
    for (const auto& [path, file] : names) {
      if (file == 0) continue;
      std::set<Files> more;
      for (const std::string& text : contents_after_a_cut(contents_.at(file))) {
        for (Files state : states) {
          state[path] = text;
          more.insert(std::move(state));
        }
      }
      states = std::move(more);
    }
    result.merge(states);
  }
  return result;
}

}  // namespace disk_states
