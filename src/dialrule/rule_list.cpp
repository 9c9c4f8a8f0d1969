// The operations on a list of dial rules that do not look into a rule.
#include "dialrule/rule_list.h"

#include "support/copy_over.h"

namespace cfgxml::dialrule {
namespace {

constexpr shell::HostWords kUploadWords{5, 3};

}  // namespace

int remove_rule(const ListPlace& place, const char* worker, int id) {
  ListFile file(place);
  tinyxml2::XMLElement* rules = file.open(worker);
  if (rules == nullptr) return -1;
  for (tinyxml2::XMLElement& rule : Children(rules, place.entry)) {
    if (id_of(rule) == id) rules->DeleteChild(&rule);
  }
  return file.save(worker);
}

int upload_rules(const ListPlace& place, const char* worker, const char* validator,
                 const char* file_path) {
  if (!is_valid_upload(file_path, place.list, validator, CFGXML_DIALRULE_UPLOAD_LIMIT)) {
    rl_log_err("%s failed: file is invalid.", worker);
    return -1;
  }
  return copy_over(file_path, place.path, kUploadWords) ? 0 : -1;
}

}  // namespace cfgxml::dialrule
