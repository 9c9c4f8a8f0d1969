// The BlockOut list. No lock of the host's guards it, so the library keeps the calls apart itself;
// its workers log under the exported names.
#include "dialrule/rule_list.h"
#include "support/lock.h"
#include "support/mutex.h"
#include "support/paths.h"

namespace cfgxml::dialrule {
namespace {

constexpr Field<BLOCKOUT_DATA_T> kFields[] = {
    field<&BLOCKOUT_DATA_T::Rule>("Rule"),
    field<&BLOCKOUT_DATA_T::Line>("Line"),
};

/// Held while the list's file is loaded, changed and saved.
Mutex blockout_mutex;

constexpr RuleList<BLOCKOUT_DATA_T> kBlockOut GUARDED_BY(blockout_mutex) = {
    {paths::kBlockOut, "Dial", "BlockOut", "BlockOut node", "Data"},
    kFields,
    "Rule",
    &BLOCKOUT_DATA_T::Rule,
    kUnlimited,
    /*distinct=*/false,
    nullptr,
    Target::kFirst,
    -1,
};

static_assert(offsetof(BLOCKOUT_DATA_T, Rule) == 8);
static_assert(offsetof(BLOCKOUT_DATA_T, next) == 72);
static_assert(sizeof(BLOCKOUT_DATA_T) == 72 + sizeof(void*));

}  // namespace

BLOCKOUT_DATA_T* cfg_get_blockout_list() {
  const Hold hold(blockout_mutex);
  return get_rules(kBlockOut, __func__);
}
int cfg_get_blockout_data(int id, BLOCKOUT_DATA_T* out) {
  const Hold hold(blockout_mutex);
  return get_rule(kBlockOut, id, out);
}
int cfg_add_blockout_data(const BLOCKOUT_DATA_T* item) {
  const Hold hold(blockout_mutex);
  return add_rule(kBlockOut, __func__, item);
}
int cfg_set_blockout_data(int id, const BLOCKOUT_DATA_T* item) {
  const Hold hold(blockout_mutex);
  return set_rule(kBlockOut, __func__, id, item);
}
int cfg_remove_blockout_data(int id) {
  const Hold hold(blockout_mutex);
  return remove_rule(kBlockOut.place, __func__, id);
}

}  // namespace cfgxml::dialrule

namespace dialrule = cfgxml::dialrule;
using cfgxml::guarded;

BLOCKOUT_DATA_T* cfg_get_blockout_list(void) {
  return guarded<BLOCKOUT_DATA_T*>(nullptr, dialrule::cfg_get_blockout_list);
}
int cfg_get_blockout_data(int id, BLOCKOUT_DATA_T* out) {
  return guarded(-1, dialrule::cfg_get_blockout_data, id, out);
}
int cfg_add_blockout_data(const BLOCKOUT_DATA_T* item) {
  return guarded(-1, dialrule::cfg_add_blockout_data, item);
}
int cfg_set_blockout_data(int id, const BLOCKOUT_DATA_T* item) {
  return guarded(-1, dialrule::cfg_set_blockout_data, id, item);
}
int cfg_remove_blockout_data(int id) { return guarded(-1, dialrule::cfg_remove_blockout_data, id); }
