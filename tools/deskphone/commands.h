// The commands of deskphone. A family of commands is one file with one function that adds it, named
// below; main.cpp calls each of them once.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "phone.h"

namespace deskphone {

void add_tour(CLI::App& app, Phone& phone);
void add_contacts_commands(CLI::App& app, Phone& phone);
void add_groups_commands(CLI::App& app, Phone& phone);
void add_blacklist_commands(CLI::App& app, Phone& phone);
void add_move_commands(CLI::App& app, Phone& phone);
void add_keys_command(CLI::App& app, Phone& phone);
void add_remote_commands(CLI::App& app, Phone& phone);
void add_directory_commands(CLI::App& app, Phone& phone);
void add_history_commands(CLI::App& app, Phone& phone);
void add_caller_commands(CLI::App& app, Phone& phone);
void add_dialrule_commands(CLI::App& app, Phone& phone);
void add_message_commands(CLI::App& app, Phone& phone);
void add_timezone_commands(CLI::App& app, Phone& phone);
void add_notify_commands(CLI::App& app, Phone& phone);
void add_screen_command(CLI::App& app, Phone& phone);

/// The commands of the family contacts that read and write files: import, export, check, community.
void add_contact_file_commands(CLI::App& family, Phone& phone);

/// A family: a command that only holds others.
CLI::App& add_family(CLI::App& app, const char* name, const char* description);

/// A command with its examples, one a line.
CLI::App& add_command(CLI::App& parent, const char* name, const char* description,
                      const char* examples);

/// Sets what a command does; the phone is started before and stopped after it.
void on_run(CLI::App& command, Phone& phone, std::function<void()> action);

}  // namespace deskphone
