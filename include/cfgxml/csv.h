/* Contacts as comma-separated text. These functions have C++ linkage: their symbols carry the
 * argument types, so they are declared for C++ only. None takes a lock. */
#ifndef CFGXML_CSV_H
#define CFGXML_CSV_H

#include <cfgxml/history.h>
#include <cfgxml/phonebook.h>

/* A column of a header line. */
typedef struct CSV_CONTACT_LIST_T {
  int32_t index; /* stays 0 */
  char name[128];
  struct CSV_CONTACT_LIST_T *next;
} CSV_CONTACT_LIST_T;

#ifdef __cplusplus
#pragma GCC visibility push(default)

struct INI_SECTION_T;

/* 1 when the file begins with the columns of a contact CSV file, else 0. */
int is_valid_contact_file_csv(const char *path);

/* Appends the columns of the file's first line to the list; 0, or -1 when it can't be opened. When
 * memory is out the list is freed and becomes NULL. The caller frees it with list_free. */
int get_contact_csv_head(const char *path, CSV_CONTACT_LIST_T **list);

/* Appends a column and returns the list's head, or NULL when memory is out. */
CSV_CONTACT_LIST_T *list_add_contact_section(CSV_CONTACT_LIST_T *list, char *name);

/* 1 when the columns are the first ones of a contact CSV file, in order, else 0. */
int list_loop_compare(CSV_CONTACT_LIST_T *list);

void list_free(CSV_CONTACT_LIST_T *list);

/* Reads contacts and groups from a file into the list, which is zeroed first; under the caller's
 * phonebook lock. 0; 16 the group table was full, 17 over 500 rows, 19 names already used; -1. */
int get_contact_csv(const char *path, CONTACT_DATA_LIST_T *list);

/* Reads a file as community data, which the caller frees chain by chain with rl_free; NULL for a
 * NULL path, empty data for a file that can't be opened. */
COMMUNITY_DATA_T *get_community_contact_csv(const char *path);

/* Writes contacts to a file, which is replaced in one piece, with the groups that the host's list
 * has at that moment; under the caller's phonebook lock. A NULL list writes the header line only.
 * 0, or -1 with an old file as it was. */
int save_contact_csv(const char *path, CONTACT_SUMMARY_T *summary);

/* Entry points of kinds that have no CSV form. */
int get_blacklist_csv(const char *path, BLACK_DATA_LIST_T *list);      /* -1 */
int save_blacklist_csv(const char *path, BLACK_DATA_LIST_T *list);     /* -1 */
int get_history_csv(const char *path, HISTORY_DATA_LIST *list);        /* -1 */
int save_history_csv(const char *path, HISTORY_DATA_LIST *list);       /* -1 */
int get_file_csv(const char *path, int kind);                          /* 0 */
int save_file_csv(const char *path, INI_SECTION_T *section, int kind); /* -1 */

#pragma GCC visibility pop
#endif

#endif
