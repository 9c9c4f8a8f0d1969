// The slots whose subsystem is not built yet: each fails with its published result and says so.
#include <cfgxml/history.h>
#include <cfgxml/host.h>
#include <cfgxml/timezone.h>

namespace {

template <typename Result>
Result fail(const char* function, Result failure) {
  rl_log_err("%s failed: not supported yet.", function);
  return failure;
}

}  // namespace

int get_history_xml(const char* /*path*/, HISTORY_DATA_LIST* /*list*/) {
  return fail(__func__, -1);
}
int save_history_xml(const char* /*path*/, HISTORY_DATA_LIST* /*list*/) {
  return fail(__func__, -1);
}

int cfg_match_timezone_name(void) { return fail(__func__, -1); }
