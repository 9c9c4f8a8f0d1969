// The slots whose subsystem is not built yet: each fails with its published result and says so.
#include <cfgxml/csv.h>
#include <cfgxml/host.h>

namespace {

template <typename Result>
Result fail(const char* function, Result failure) {
  rl_log_err("%s failed: not supported yet.", function);
  return failure;
}

}  // namespace


int is_valid_contact_file_csv(const char* /*path*/) { return fail(__func__, 0); }
int get_contact_csv(const char* /*path*/, CONTACT_DATA_LIST_T* /*list*/) {
  return fail(__func__, -1);
}
int save_contact_csv(const char* /*path*/, CONTACT_SUMMARY_T* /*summary*/) {
  return fail(__func__, -1);
}
COMMUNITY_DATA_T* get_community_contact_csv(const char* /*path*/) {
  return fail<COMMUNITY_DATA_T*>(__func__, nullptr);
}
