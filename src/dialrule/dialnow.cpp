// The DialNow list.
#include "dialrule/rule_list.h"
#include "support/lock.h"
#include "support/paths.h"

namespace cfgxml::dialrule {
namespace {

constexpr Field<DIAL_NOW_DATA_T> kFields[] = {
    field<&DIAL_NOW_DATA_T::Rule>("Rule"),
    field<&DIAL_NOW_DATA_T::Line>("Line"),
};

constexpr RuleList<DIAL_NOW_DATA_T> kDialNow = {
    {paths::kDialNow, "Dial", "DialNow", "DialNow node", "Data"},
    kFields,
    "Rule",
    &DIAL_NOW_DATA_T::Rule,
    CFGXML_DIALRULE_CAPACITY,
    /*distinct=*/true,
    "dial now",
    Target::kLast,
    kNoSuchRule,
};

static_assert(offsetof(DIAL_NOW_DATA_T, Rule) == 8);
static_assert(offsetof(DIAL_NOW_DATA_T, next) == 72);
static_assert(sizeof(DIAL_NOW_DATA_T) == 72 + sizeof(void*));

}  // namespace

DIAL_NOW_DATA_T* _cfg_get_dialnow_list() { return get_rules(kDialNow, __func__); }
int _cfg_get_dialnow_data(int id, DIAL_NOW_DATA_T* out) { return get_rule(kDialNow, id, out); }
int _cfg_add_dialnow_data(const DIAL_NOW_DATA_T* item) {
  return add_rule(kDialNow, __func__, item);
}
int _cfg_set_dialnow_data(int id, const DIAL_NOW_DATA_T* item) {
  return set_rule(kDialNow, __func__, id, item);
}
int _cfg_remove_dialnow_data(int id) { return remove_rule(kDialNow.place, __func__, id); }
int _cfg_upload_dialnow(const char* file_path) {
  return upload_rules(kDialNow.place, __func__, "is_valid_dialnow_file", file_path);
}

}  // namespace cfgxml::dialrule

using namespace cfgxml;            // NOLINT(google-build-using-namespace): the boundary
using namespace cfgxml::dialrule;  // NOLINT(google-build-using-namespace): the boundary

DIAL_NOW_DATA_T* cfg_get_dialnow_list() {
  return under_lock<DIAL_NOW_DATA_T*>(Lock::kDialNow, nullptr, _cfg_get_dialnow_list);
}
int cfg_get_dialnow_data(int id, DIAL_NOW_DATA_T* out) {
  return under_lock(Lock::kDialNow, -1, _cfg_get_dialnow_data, id, out);
}
int cfg_add_dialnow_data(const DIAL_NOW_DATA_T* item) {
  return under_lock(Lock::kDialNow, -1, _cfg_add_dialnow_data, item);
}
int cfg_set_dialnow_data(int id, const DIAL_NOW_DATA_T* item) {
  return under_lock(Lock::kDialNow, -1, _cfg_set_dialnow_data, id, item);
}
int cfg_remove_dialnow_data(int id) {
  return under_lock(Lock::kDialNow, -1, _cfg_remove_dialnow_data, id);
}
int cfg_upload_dialnow(const char* file_path) {
  return under_lock(Lock::kDialNow, -1, _cfg_upload_dialnow, file_path);
}
