#include "failure.h"

#include <fmt/format.h>

namespace deskphone {
namespace {

/// The plug-in's result codes that have a meaning of their own.
enum Result {
  kUnknownId = 4,
  kNameUsed = 7,
  kNameEmpty = 14,
  kGroupsFull = 16,
  kContactsFull = 17,
  kBlacklistFull = 18,
  kNamesSkipped = 19,
};

std::string explain(int result, const Subject& subject) {
  switch (result) {
    case kUnknownId:
      return fmt::format("There is no {0} with the id {1}. The ids are in 'deskphone {2} list'.",
                         subject.kind, subject.id, subject.family);
    case kNameUsed:
      return fmt::format(
          "The name \"{}\" is already used by {}. Choose another name.", subject.name,
          subject.kind == std::string("group") ? "another group"
                                               : "another contact or blacklist entry");
    case kNameEmpty:
      return "The name of a group can not be empty. Give a name.";
    case kGroupsFull:
      return "All 6 groups are in use. Delete one first: deskphone groups delete ID";
    case kContactsFull:
      return "All 500 contacts are in use. Delete one first: deskphone contacts delete ID";
    case kBlacklistFull:
      return "All 100 blacklist entries are in use. Delete one first: "
             "deskphone blacklist delete ID";
    default:
      return fmt::format(
          "The phone refused the {} \"{}\" (result {}). Run it again with -v to see why.",
          subject.kind, subject.name, result);
  }
}

}  // namespace

void expect_success(int result, const Subject& subject) {
  if (result != 0) throw Failure(explain(result, subject));
}

std::string loading_note(int result) {
  switch (result) {
    case kGroupsFull:
      return "There is room for 6 groups; the contacts of the others were left out.";
    case kContactsFull:
      return "There is room for 500 contacts; the others were left out.";
    case kBlacklistFull:
      return "All 100 blacklist entries are in use now; if there were more, they were left out.";
    case kNamesSkipped:
      return "Entries whose name is already used by a contact, a blacklist entry or a group were "
             "left out.";
    default:
      return "";
  }
}

}  // namespace deskphone
