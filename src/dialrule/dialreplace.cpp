// The DialReplace list.
#include "dialrule/rule_list.h"
#include "support/lock.h"
#include "support/paths.h"

namespace cfgxml::dialrule {
namespace {

constexpr Field<DIAL_REPLACE_DATA_T> kFields[] = {
    field<&DIAL_REPLACE_DATA_T::Prefix>("Prefix"),
    field<&DIAL_REPLACE_DATA_T::Replace>("Replace"),
    field<&DIAL_REPLACE_DATA_T::Line>("Line"),
};

constexpr RuleList<DIAL_REPLACE_DATA_T> kDialReplace = {
    {paths::kDialReplace, "Dial", "DialReplace", "DialReplace node", "Data"},
    kFields,
    "Prefix",
    &DIAL_REPLACE_DATA_T::Prefix,
    CFGXML_DIALRULE_CAPACITY,
    /*distinct=*/true,
    "dial replace",
    Target::kLast,
    kNoSuchRule,
};

static_assert(offsetof(DIAL_REPLACE_DATA_T, Prefix) == 8);
static_assert(offsetof(DIAL_REPLACE_DATA_T, Replace) == 72);
static_assert(offsetof(DIAL_REPLACE_DATA_T, next) == 136);
static_assert(sizeof(DIAL_REPLACE_DATA_T) == 136 + sizeof(void*));

}  // namespace

DIAL_REPLACE_DATA_T* _cfg_get_dialreplace_list() { return get_rules(kDialReplace, __func__); }
int _cfg_get_dialreplace_data(int id, DIAL_REPLACE_DATA_T* out) {
  return get_rule(kDialReplace, id, out);
}
int _cfg_add_dialreplace_data(const DIAL_REPLACE_DATA_T* item) {
  return add_rule(kDialReplace, __func__, item);
}
int _cfg_set_dialreplace_data(int id, const DIAL_REPLACE_DATA_T* item) {
  return set_rule(kDialReplace, __func__, id, item);
}
int _cfg_remove_dialreplace_data(int id) { return remove_rule(kDialReplace.place, __func__, id); }
int _cfg_upload_dialreplace(const char* file_path) {
  return upload_rules(kDialReplace.place, __func__, "is_valid_dialreplace_file", file_path);
}

}  // namespace cfgxml::dialrule

using namespace cfgxml;            // NOLINT(google-build-using-namespace): the boundary
using namespace cfgxml::dialrule;  // NOLINT(google-build-using-namespace): the boundary

DIAL_REPLACE_DATA_T* cfg_get_dialreplace_list() {
  return under_lock<DIAL_REPLACE_DATA_T*>(Lock::kDialReplace, nullptr, _cfg_get_dialreplace_list);
}
int cfg_get_dialreplace_data(int id, DIAL_REPLACE_DATA_T* out) {
  return under_lock(Lock::kDialReplace, -1, _cfg_get_dialreplace_data, id, out);
}
int cfg_add_dialreplace_data(const DIAL_REPLACE_DATA_T* item) {
  return under_lock(Lock::kDialReplace, -1, _cfg_add_dialreplace_data, item);
}
int cfg_set_dialreplace_data(int id, const DIAL_REPLACE_DATA_T* item) {
  return under_lock(Lock::kDialReplace, -1, _cfg_set_dialreplace_data, id, item);
}
int cfg_remove_dialreplace_data(int id) {
  return under_lock(Lock::kDialReplace, -1, _cfg_remove_dialreplace_data, id);
}
int cfg_upload_dialreplace(const char* file_path) {
  return under_lock(Lock::kDialReplace, -1, _cfg_upload_dialreplace, file_path);
}
