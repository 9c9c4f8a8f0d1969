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
  const char* path = choices.text(paths::kContacts, Argument::kWord);
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

/// A file of contacts or of a blacklist. What a reader skipped is still in the file: a careful
/// caller has it written again.
template <auto Function, const char* Path, int (*Save)()>
Result importing(World& world, Choices& choices) {
  const char* path = world.file(choices, Path);
  const int result = world.call(Function, path);
  if (choices.varies() && result > 0 && Save != nullptr) Save();
  return number_of(result);
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
          Operation("cfg_upload_contact", importing<cfg_upload_contact, kOthers, contact_save>)
              .with_story("xml").also("16|17|19").runs_out("-1|0")
              .is(kIndexStale | kFileReplaced | kHoldLock).often(1),
          Operation("cfg_upload_contact", importing<cfg_upload_contact, kRows, contact_save>)
              .with_story("csv").also("16|17|19").runs_out("-1")
              .is(kIndexStale | kFileReplaced | kBlocksMixed | kHoldLock).often(1),
          Operation("cfg_upload_blacklist", importing<cfg_upload_blacklist, kBlacklistFile, nullptr>)
              .also("18|19").runs_out("-1|0").is(kFileReplaced).often(1),
      }),
      family(Lock::kNone, 0, 0, {
          Operation("is_valid_contact_file_xml",
                    importing<is_valid_contact_file_xml, kOthers, nullptr>)
              .gives("1").fails("0").runs_out("0"),
          Operation("copy_contact_xml", importing<copy_contact_xml, kOthers, nullptr>)
              .unknown_gives("1").runs_out("-1").is(kIndexStale).never_at_random(),
      }),
  });
  // clang-format on
}

}  // namespace operations
