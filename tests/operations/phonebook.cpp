// Contacts, groups and the blacklist.
#include <cfgxml/binding.h>
#include <cfgxml/phonebook.h>

#include "operations/shapes.h"

namespace operations {
namespace {

/// The sample's second contact in the group "Management".
constexpr int kContact = 14;
constexpr int kLastContact = 22;

/// Nothing can move to the blacklist; nothing is written when it was tried.
void with_full_blacklist(World& world) {
  contact_save_init(1);
  for (int i = 0; i != CFGXML_BLACKLIST_CAPACITY; ++i) {
    CONTACT_DATA_T& entry = world.blacklist().Entries[i];
    entry.Id = i + 1;
    fill(entry.DisplayName, "Spam " + std::to_string(i));
  }
}

void with_photo(World& world) {
  fill(world.contacts().Contacts[2].Photo, "photo13.png");
  contact_delay_save();
}

/// The last entry, as it is when its move was undone.
void with_moved_entry(World& world) { fill(world.blacklist().Entries[3].Group, "Default"); }

/// A contact that the next write gives a group.
void with_loose_contact(World& world) { fill(world.contacts().Contacts[1].Group, "Nowhere"); }

/// As the screens do it: reads the record, changes a text or two, and writes it back.
Result change_contact(World& world, Choices& choices) {
  CONTACT_DATA_T record{};
  fill_record(record, choices);
  CONTACT_DATA_T stored;
  if (record.Id >= 1 && cfg_get_contact_data(record.Id, &stored) == 0) {
    record.position = stored.position;
    if (choices.flag()) std::memcpy(record.DisplayName, stored.DisplayName, 4 * 64);
  }
  if (choices.odd(Argument::kContent)) {
    record.position = choices.odd_number();
    world.set_positions_kept(false);
  }
  CONTACT_DATA_T* argument = choices.argument(record);
  return with_record(record, [&] { return world.call(cfg_mod_contact_data, argument); });
}

template <auto Function>
Result name_check(World& world, Choices& choices) {
  const char* name = choices.text("Nobody");
  return number_of(world.call(Function, name, choices.number(-1, -1, 12)));
}

/// Lists what belongs to a group, or matches a text.
template <auto Function>
Result finding(World& world, Choices& choices) {
  return list_taken(world.call(Function, choices.text("1", Argument::kWords)));
}

Result list_group(World& world, Choices& choices) {
  return list_taken(
      world.call(cfg_get_contact_summary, choices.text("Management", Argument::kWord)));
}

CONTACT_SUMMARY_T* all_contacts() { return cfg_get_contact_summary(""); }

/// Another ring: the contacts of a group that is renamed change when they are written.
Result change_group(World& world, Choices& choices) {
  GROUP_DATA_T record{};
  fill_record(record, choices);
  if (record.Id == 3) fill(record.Name, "Sales");
  GROUP_DATA_T* argument = choices.argument(record);
  return with_record(record, [&] { return world.call(cfg_mod_group_data, argument); });
}

/// The group by its number or, where it has none, by its name.
template <bool ByName>
Result get_group(World& world, Choices& choices) {
  GROUP_DATA_T record{};
  if (ByName) {
    fill(record.Name, choices.odd(Argument::kId) ? "Nobody's" : "Management");
  } else {
    fill_record(record, choices);
    if (record.Id < 1) fill(record.Name, "");
  }
  GROUP_DATA_T* argument = choices.argument(record);
  return with_record(record, [&] { return world.call(cfg_get_group_data, argument); });
}

template <auto Function>
Result with_media(World& world, Choices& choices) {
  const char* plain = Function == cfg_del_contact_ring_info ? "Ring2.wav" : "photo13.png";
  const char* name = choices.text(plain, Argument::kWord);
  if (choices.varies() && name != nullptr && *name == '\0') name = plain;  // free slots have ""
  return number_of(world.call(Function, name));
}

Result delete_of_group(World& world, Choices& choices) {
  return number_of(world.call(cfg_del_contacts_by_group, choices.text("Management")));
}

}  // namespace

Operations phonebook_operations() {
  // clang-format off
  return joined({
      family(Lock::kPhonebook, kContacts, 0, {
          Operation("cfg_get_contact_summary", list_group).lists(),
          OPERATION(finding, cfg_search_contact_summary).lists(),
          Operation("cfg_get_contact_data", getting<cfg_get_contact_data, kContact>),
          OPERATION(adding, cfg_add_contact_data).also("7|17").saves()
              .indexes_in(CFGXML_BOOK_LOCAL).often(32),
          Operation("cfg_mod_contact_data", change_contact).absent("4").also("7").saves()
              .indexes_in(CFGXML_BOOK_LOCAL).is(kHoldLock).often(12),
          Operation("cfg_del_contact_data", by_id<cfg_del_contact_data, kContact>)
              .unknown_gives("0").saves(),
          OPERATION(calling, cfg_del_all_contacts).saves().is(kIndexStale).often(1),
          Operation("cfg_del_contacts_by_group", delete_of_group).saves().is(kIndexStale).often(1),
          OPERATION(with_media, cfg_del_contact_ring_info).saves(),
          OPERATION(with_media, cfg_del_contact_photo_info).after(with_photo).saves(),
          OPERATION(listing, cfg_get_group_summary).lists(),
          Operation("cfg_get_group_data", get_group<false>).is(kQuiet),
          Operation("cfg_get_group_data", get_group<true>).with_story("by_name").is(kQuiet),
          OPERATION(adding, cfg_add_group_data).also("7|14|16").saves(),
          Operation("cfg_mod_group_data", change_group).unknown_gives("4").also("-1|7|16").saves(),
          OPERATION(by_id, cfg_del_group_data).unknown_gives("0").also("-1").saves(),
          OPERATION(calling, cfg_del_all_group_data).saves().often(1),
          Operation("cfg_mov_contact_data", by_id<cfg_mov_contact_data, kContact>)
              .also("7|18").saves().is(kNamed).often(4),
      }),
      family(Lock::kPhonebook, kBlacklist, 0, {
          OPERATION(listing, cfg_get_black_summary).lists(),
          OPERATION(finding, cfg_search_black_info).lists(),
          OPERATION(getting, cfg_get_black_data),
          OPERATION(adding, cfg_add_black_data).also("7|18").saves().often(8),
          OPERATION(with_one, cfg_set_black_data).absent("4").also("7").saves().often(6),
          OPERATION(by_id, cfg_remove_black_data).unknown_gives("0").saves(),
          OPERATION(calling, cfg_remove_black_all).saves().often(1),
          Operation("cfg_mov_black_data", by_id<cfg_mov_black_data, 4>).after(with_moved_entry).also("7|17").saves().indexes_in(CFGXML_BOOK_LOCAL)
              .is(kNamed).often(4),
      }),
      in_callers_lock(family(Lock::kPhonebook, 0, kQuiet, {
          OPERATION(name_check, is_name_in_contact).needs(kContacts).fails("0").also("1"),
          OPERATION(name_check, is_name_in_group).needs(kContacts).fails("0").also("1"),
          OPERATION(name_check, is_name_in_black).needs(kBlacklist).fails("0").also("1"),
          OPERATION(calling, contact_data_sync).after(with_loose_contact).needs(kContacts),
          Operation("mov_contact_data", by_id<mov_contact_data, kContact>).needs(kContacts)
              .also("7|18").saves().is(kNamed),
          Operation("mov_contact_data", by_id<mov_contact_data, kLastContact>).with_story("undone")
              .after(with_full_blacklist).gives("18").needs(kContacts).runs_out("-1")
              .indexes_in(CFGXML_BOOK_LOCAL).is(kIndexInPart | kNamed).never_at_random(),
          Operation("mov_black_data", by_id<mov_black_data, 4>).after(with_moved_entry)
              .needs(kBlacklist).also("7|17").saves().indexes_in(CFGXML_BOOK_LOCAL).is(kNamed),
      })),
      family(Lock::kPhonebook, 0, kNamed, {
          Operation("cfg_destory_group_summary",
                    releasing<cfg_destory_group_summary, cfg_get_group_summary>),
      }),
      family(Lock::kNone, 0, kNamed | kQuiet, {
          Operation("cfg_destory_contact_summary",
                    releasing<cfg_destory_contact_summary, all_contacts>),
      }),
  });
  // clang-format on
}

}  // namespace operations
