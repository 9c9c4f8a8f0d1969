// The fixture of the disk tests: the phone that the operations work on, whose shell commands run
// through the recorded calls.
#pragma once

#include <string>

#include "faults/commands.h"
#include "faults/disk/recorded_calls.h"
#include "operations/world.h"
#include "runtime/shell.h"
#include "support/phone.h"

namespace disk_test {

inline bool same(const operations::State& left, const operations::State& right) {
  return left.blocks == right.blocks && left.files == right.files;
}

class DiskPhone : public phone_test::Phone {
 protected:
  void SetUp() override {
    Phone::SetUp();
    ::host::run_commands_with(phone_test::run_without_shell);
    start();
  }
  void TearDown() override {
    recorded_calls::stop();
    ::host::run_commands_with(nullptr);
    world_.clear();
    Phone::TearDown();
  }

  /// The state that every operation and every story starts from.
  void start() {
    recorded_calls::stop();
    world_.start();
    forget_log();
  }

  operations::World world_{root(), operations::Callers::kOne};
};

}  // namespace disk_test
