// Binding, loading, saving.
#include <cfgxml/binding.h>
#include <cfgxml/message.h>

#include <filesystem>

#include "operations/shapes.h"
#include "support/paths.h"

namespace operations {
namespace {

namespace paths = cfgxml::paths;

/// Blocks that differ from their files, in fields that are not indexed.
void with_changes(World& world) {
  fill(world.contacts().Contacts[0].Photo, "new.png");
  fill(world.blacklist().Entries[0].OfficeNumber, "198");
  fill(world.history().Records[0].RemoteSipName, "197");
}

template <const auto& Path>
void damaged(World& world) {
  world.write(Path, kDamaged);
}

std::string far_folder(const World& world) {
  return world.on_disk("/tmp/" + std::string(200, 'd'));
}

void with_another_root(World& world) {
  const std::filesystem::path file = far_folder(world) + paths::kMessages;
  std::filesystem::create_directories(file.parent_path());
  std::filesystem::copy_file(world.on_disk(paths::kMessages), file);
}

/// Loads a block from its file. The history's reader fills a clear table, which is the host's to
/// clear; what a reader skipped is still in the file, which a careful caller has written again.
template <auto Function, typename Block, int (*Save)()>
Result loading(World& world, Choices& choices, Block& block) {
  if (choices.varies() && !world.blocks_missing() && std::is_same_v<Block, HISTORY_DATA_LIST>) {
    block = {};
  }
  const int result = world.call(Function, choices.argument(block));
  if (choices.varies() && result > 0) Save();
  return number_of(result);
}

Result load_contacts(World& world, Choices& choices) {
  return loading<contact_init, CONTACT_DATA_LIST_T, contact_save>(world, choices, world.contacts());
}
Result load_blacklist(World& world, Choices& choices) {
  return loading<black_init, BLACK_DATA_LIST_T, black_save>(world, choices, world.blacklist());
}
Result load_history(World& world, Choices& choices) {
  return loading<history_init, HISTORY_DATA_LIST, history_save>(world, choices, world.history());
}

template <auto Function>
Result switching(World& world, Choices& choices) {
  return number_of(world.call(Function, choices.number(0, 0, 15)));
}

template <auto Function>
Result handing_back(World& world, Choices& /*choices*/) {
  int word = 0;
  return number_of(world.call(Function, static_cast<void*>(&word)) == &word ? 0 : -1);
}

Result bind(World& world, Choices& /*choices*/) {
  CFGXML_CALLBACK_T table[CFGXML_SLOT_COUNT] = {};
  return number_of(world.call([&] { return cfgxml_cb_init(table), 0; }));
}

/// No file of the new root is found when the old one stays.
Result set_root(World& world, Choices& /*choices*/) {
  const std::string folder = far_folder(world);
  world.call([&] { return cfgxml_set_root(folder.c_str()), 0; });
  const std::string moved = world.read(paths::kMessages);
  std::filesystem::remove(world.on_disk(paths::kMessages));
  const int unread = cfg_get_inbox_unread();
  world.write(paths::kMessages, moved);
  cfgxml_set_root(world.root().c_str());
  return number_of(unread < 0 ? -1 : 0);
}

/// The host's look-ups, which get the words unchanged.
Result look_up_group(World& world, Choices& /*choices*/) {
  char group[] = "Sales";
  void* const none = nullptr;
  const void* found = world.call(find_group_id, static_cast<void*>(group), none, none, none);
  return number_of(static_cast<int>(reinterpret_cast<std::intptr_t>(found)));
}

Result look_up_ring(World& world, Choices& /*choices*/) {
  char number[] = "200";  // of a contact without a ring, in a group that has one
  char ring[64] = "";
  auto* const size = reinterpret_cast<void*>(sizeof ring);
  const void* found = world.call(find_contacts_ring_url, static_cast<void*>(number),
                                 static_cast<void*>(ring), size, static_cast<void*>(nullptr));
  return text_of(found == ring ? ring : "NULL");
}

}  // namespace

Operations binding_operations() {
  // clang-format off
  return joined({
      family(Lock::kNone, 0, 0, {
          Operation("cfgxml_cb_init", bind).never_at_random(),
          Operation("cfgxml_set_root", set_root).after(with_another_root).runs_out("-1")
              .is(kFreshProcess | kMemoryKept).never_at_random(),
          OPERATION(switching, contact_save_init).also("1"),
          OPERATION(switching, black_save_init).also("1"),
          OPERATION(switching, history_save_init).also("1"),
          OPERATION(handing_back, contact_deinit),
          OPERATION(handing_back, black_deinit),
          OPERATION(handing_back, history_deinit),
          OPERATION(calling, get_file_xml),
          OPERATION(calling, save_file_xml).gives("-1"),
      }),
      family(Lock::kPhonebook, 0, kNamed | kHoldLock, {
          Operation("contact_init", load_contacts).after(with_changes).also("16|17|19")
              .runs_out("-1").is(kIndexStale).often(1),
          Operation("black_init", load_blacklist).after(with_changes).needs(kContacts)
              .also("18|19").runs_out("-1").often(1),
          OPERATION(calling, contact_save).after(with_changes).needs(kContacts).lacks("0").saves(),
          OPERATION(calling, black_save).after(with_changes).needs(kBlacklist).lacks("0").saves(),
          OPERATION(calling, contact_delay_save).after(with_changes).needs(kContacts)
              .runs_out("-1"),
          OPERATION(calling, contact_delay_save).with_story("damaged")
              .after(damaged<paths::kContacts>).needs(kContacts).runs_out("-1").is(kBlockLost)
              .never_at_random(),
          OPERATION(calling, black_delay_save).after(with_changes).needs(kBlacklist)
              .runs_out("-1"),
          Operation("find_group_id", look_up_group).gives("3").needs(kContacts).lacks("0")
              .also("*"),
          Operation("find_contacts_ring_url", look_up_ring).gives("Ring2.wav").needs(kContacts)
              .lacks("NULL").also("*"),
      }),
      family(Lock::kHistory, 0, kHoldLock, {
          Operation("history_init", load_history).after(with_changes).runs_out("-1").often(1),
          OPERATION(calling, history_delay_save).after(with_changes).needs(kHistory)
              .runs_out("-1"),
      }),
      in_callers_lock(family(Lock::kHistory, kHistory, 0, {
          OPERATION(calling, history_save).after(with_changes).lacks("0").saves(),
      })),
  });
  // clang-format on
}

}  // namespace operations
