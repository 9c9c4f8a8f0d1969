// The reference host: locks, saver, settings, adapter.
#include <cfgxml/host.h>

#include <future>
#include <thread>

#include "runtime/locks.h"
#include "support/phone.h"

namespace {

constexpr int kLock = 45081;

using HostTest = phone_test::Phone;

TEST(HostLocks, AreRecursiveAndBelongToTheThreadThatTookThem) {
  const int faults = host::locks::faulty_releases();
  rl_sem_lock(kLock);
  rl_sem_lock(kLock);
  std::thread([&] { EXPECT_NE(rl_sem_unlock(kLock), 0); }).join();
  EXPECT_EQ(host::locks::faulty_releases(), faults + 1);

  rl_sem_unlock(kLock);
  EXPECT_TRUE(host::locks::held_by_me(kLock)) << "released once, taken twice";
  std::promise<void> taken;
  std::thread other([&] {
    rl_sem_lock(kLock);
    taken.set_value();
    rl_sem_unlock(kLock);
  });
  std::future<void> waits = taken.get_future();
  EXPECT_EQ(waits.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  rl_sem_unlock(kLock);
  waits.wait();
  other.join();
  EXPECT_EQ(host::locks::held(), 0);
}

}  // namespace
