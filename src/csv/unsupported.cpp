// The entry points of the kinds that have no CSV form; their results are fixed.
#include <cfgxml/csv.h>

int get_blacklist_csv(const char* /*path*/, BLACK_DATA_LIST_T* /*list*/) { return -1; }
int save_blacklist_csv(const char* /*path*/, BLACK_DATA_LIST_T* /*list*/) { return -1; }
int get_history_csv(const char* /*path*/, HISTORY_DATA_LIST* /*list*/) { return -1; }
int save_history_csv(const char* /*path*/, HISTORY_DATA_LIST* /*list*/) { return -1; }
int get_file_csv(const char* /*path*/, int /*kind*/) { return 0; }
int save_file_csv(const char* /*path*/, INI_SECTION_T* /*section*/, int /*kind*/) { return -1; }
