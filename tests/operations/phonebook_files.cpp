// The files of contacts and blacklist: reading, writing, imports.
#include <cfgxml/binding.h>
#include <cfgxml/phonebook.h>

#include "operations/shapes.h"
#include "support/paths.h"

namespace operations {
namespace {

namespace paths = cfgxml::paths;

constexpr char kOthers[] = "/import/new-colleagues.xml";
constexpr char kRows[] = "/import/phone.csv";
constexpr char kLoaded[] = "0|16|17|18|19|-1";  // what is left of a file depends on it
constexpr char kBlacklistFile[] = "/import/blacklist.xml";

/// Another file than the one that the host's block came from.
void with_another_blacklist(World& world) {
  world.write(paths::kBlacklist, world.read(kBlacklistFile));
}

/// More contacts than the first blocks of a parse hold.
void with_many_contacts(World& world) {
  std::string text = "<ContactData><Group Id=\"1\" Name=\"Default\">";
  for (int i = 1; i <= 490; ++i) {
    const std::string number = std::to_string(i);
    text += "<Contact Id=\"" + number + "\" DisplayName=\"N" + number + "\" OfficeNumber=\"" +
            number + "\"/>\n";
  }
  world.write(kOthers, text + "</Group></ContactData>");
}

/// The host's block as an argument.
CONTACT_DATA_LIST_T* contact_block(World& world, Choices& choices) {
  return choices.argument(world.contacts());
}
BLACK_DATA_LIST_T* black_block(World& world, Choices& choices) {
  return choices.argument(world.blacklist());
}

Result read_contacts(World& world, Choices& choices) {
  const char* path = world.file(choices, kOthers, Argument::kWord);
  return number_of(world.call(get_contact_xml, path, contact_block(world, choices)));
}

Result write_contacts(World& world, Choices& choices) {
  const char* path = choices.path(paths::kContacts, Argument::kWord);
  return number_of(world.call(save_contact_xml, path, contact_block(world, choices)));
}

template <auto Function>
Result with_blacklist(World& world, Choices& choices) {
  return number_of(world.call(Function, "", black_block(world, choices)));
}

Result write_community(World& world, Choices& choices) {
  GROUP_SUMMARY_T home{1, "Home", "Auto", "", nullptr};
  COMMUNITY_CONTACT_T dora{};
  dora.Contact.Id = 1;
  fill(dora.Contact.DisplayName, choices.name("Dora"));
  fill(dora.Contact.Group, "Home");
  COMMUNITY_DATA_T data{{nullptr, nullptr}, &home, &dora};
  const char* path = world.target(choices, "/import/community.xml", Argument::kWord);
  return number_of(world.call(save_community_xml, path, choices.argument(data)));
}

/// Not indexed: a contact that is read again is the same.
void not_indexed(World& world) { world.host().load(); }

template <auto Function>
Result with_file(World& world, Choices& choices) {
  return number_of(world.call(Function, world.file(choices, kOthers)));
}

/// The first record tells which file was read. What a reader skipped is still in the file: a
/// careful caller has it written again.
template <auto Function, const char* Path>
Result importing(World& world, Choices& choices, const CONTACT_DATA_T& first) {
  const int result = world.call(Function, world.file(choices, Path));
  if (!choices.varies()) return text_of(std::to_string(result) + " " + first.DisplayName);
  if (result > 0) contact_save();
  return number_of(result);
}
template <const char* Path>
Result import_contacts(World& world, Choices& choices) {
  return importing<cfg_upload_contact, Path>(world, choices, world.contacts().Contacts[0]);
}
Result import_blacklist(World& world, Choices& choices) {
  return importing<cfg_upload_blacklist, kBlacklistFile>(world, choices,
                                                         world.blacklist().Entries[0]);
}

}  // namespace

Operations phonebook_file_operations() {
  // clang-format off
  return joined({
      in_callers_lock(family(Lock::kPhonebook, 0, kNamed, {
          Operation("get_contact_xml", read_contacts).runs_out("-1").is(kIndexStale)
              .never_at_random(),
          Operation("get_contact_xml", read_contacts).with_story("many").after(with_many_contacts)
              .runs_out("-1").is(kIndexStale | kBlockLost).never_at_random(),
          OPERATION(with_blacklist, get_blacklist_xml).after(with_another_blacklist)
              .needs(kContacts).runs_out("-1").never_at_random(),
      })),
      family(Lock::kPhonebook, 0, kNamed, {
          Operation("save_contact_xml", write_contacts).runs_out("-1").never_at_random(),
          OPERATION(with_blacklist, save_blacklist_xml).runs_out("-1").never_at_random(),
          Operation("save_community_xml", write_community).runs_out("-1"),
          Operation("cfg_upload_contact", import_contacts<kOthers>).with_story("xml")
              .after(not_indexed).gives("0 Ida Nygård").fails("-1 Reception").also(kLoaded)
              .runs_out("-1 Reception|0 Reception")
              .is(kIndexStale | kFileReplaced | kHoldLock).often(1),
          Operation("cfg_upload_contact", import_contacts<kRows>).with_story("csv")
              .after(not_indexed).gives("0 Eero Yıldız").fails("-1 Reception").also(kLoaded)
              .runs_out("-1 Reception|0 Reception|-1 Eero Yıldız")
              .is(kIndexStale | kFileReplaced | kBlocksMixed | kHoldLock).often(1),
          Operation("cfg_upload_blacklist", import_blacklist).gives("0 Zed")
              .fails("-1 Prize hotline").also(kLoaded)
              .runs_out("-1 Prize hotline|0 Prize hotline").is(kFileReplaced).often(1),
      }),
      family(Lock::kNone, 0, 0, {
          OPERATION(with_file, is_valid_contact_file_xml).gives("1").fails("0").runs_out("0"),
          OPERATION(with_file, copy_contact_xml)
              .unknown_gives("1").runs_out("-1").is(kIndexStale).never_at_random(),
      }),
  });
  // clang-format on
}

}  // namespace operations
