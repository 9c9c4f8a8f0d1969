// The phone of a fuzz target: the world of the operations over a folder of its own. Put TMPDIR in
// memory for speed, as fuzz/run does.
//
// No input starts a shell: the plug-in's two commands are carried out in the process, and any other
// command is a finding.
#pragma once

#include <string>

#include "operations/world.h"

/// Ends the run as a finding when something that must always hold does not.
void require(bool holds, const char* what);
/// The same for a check of the data's rules, which names the broken one.
void require_unbroken(const std::string& rule);
#define REQUIRE(holds) require(holds, #holds)

/// Started once, with a profile of the samples.
operations::World& phone();
