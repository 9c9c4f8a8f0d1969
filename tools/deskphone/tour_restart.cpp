#include "tour_restart.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include "failure.h"
#include "tour.h"

namespace deskphone {
namespace {

namespace fs = std::filesystem;

/// Starts this program again by the name it was started with, no signal held back, its standard
/// output going to a pipe.
pid_t start_again(std::vector<std::string> words, int output) {
  words.insert(words.begin(), program_invocation_name);
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);

  pid_t process = -1;
  const int error =
      posix_spawnp(&process, arguments[0], &actions, &attributes, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  return error == 0 ? process : -1;
}

std::string read_to_end(int descriptor) {
  std::string text;
  char part[4096];
  ssize_t count = 0;
  while ((count = ::read(descriptor, part, sizeof part)) > 0) {
    text.append(part, static_cast<std::size_t>(count));
  }
  return text;
}

/// What a new deskphone prints for these arguments.
std::string output_of(const std::vector<std::string>& words) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) throw Failure("There is no pipe to start the phone with.");
  const pid_t process = start_again(words, ends[1]);
  ::close(ends[1]);
  std::string output = read_to_end(ends[0]);
  ::close(ends[0]);
  int status = -1;
  if (process > 0) ::waitpid(process, &status, 0);
  expect_on_tour(status == 0, "The phone starts again");
  return output;
}

/// What "deskphone --json FAMILY list" prints.
std::string listing(const fs::path& root, const char* family) {
  return output_of({"--root", root.string(), "--json", family, "list"});
}

std::string as_listed(const Summaries& records) { return json_text(Row(rows_of(records))) + "\n"; }

}  // namespace

void tour_restart(Phone& phone) {
  const fs::path root = phone.host().on_disk("");
  const std::string contacts = as_listed(phone.phonebook().contacts());
  const std::string blacklist = as_listed(phone.phonebook().blacklist());
  const std::size_t count = phone.phonebook().contacts().size();

  phone.stop();
  fmt::print("  Process {} has saved what was outstanding and let the phone's files go.\n",
             ::getpid());
  std::fflush(stdout);
  expect_on_tour(listing(root, "contacts") == contacts, "Every contact is there after a restart");
  expect_on_tour(listing(root, "blacklist") == blacklist,
                 "Every blacklist entry is there after a restart");
  fmt::print("  A new process reads the same {} contacts and the same blacklist from them:\n",
             count);
  const auto found = nlohmann::json::parse(
      output_of({"--root", root.string(), "--json", "contacts", "search", "Tour Guest"}));
  for (const auto& contact : found) {
    fmt::print("    {} {}, {}\n", contact["id"].get<int>(), contact["name"].get<std::string>(),
               contact["mobile"].get<std::string>());
  }
}

}  // namespace deskphone
