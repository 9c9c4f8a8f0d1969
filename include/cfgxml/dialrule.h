/* The dial rules: the DialNow, DialReplace and BlockOut lists. The library keeps the rules; the
 * phone's dialler applies them.
 *
 * Every call reads the list's file and a change writes it again; nothing stays in memory. A file
 * that does not exist is never created: every change then fails, which is not logged. A file that
 * is no well-formed XML has no rules. The next change keeps it as "<file>.corrupt" and writes a new
 * one, which holds that change alone; when the change is refused (4, or an unknown id of BlockOut)
 * it writes none, and then there is no file. A change that fails leaves a sound file as it was.
 *
 * Ids are the library's: a new rule gets the largest id in the list plus 1. Lines and texts are the
 * caller's, not interpreted. Texts are NUL-terminated; capacities include the terminator. The lists
 * come in file order; the caller frees each node with rl_free. */
#ifndef CFGXML_DIALRULE_H
#define CFGXML_DIALRULE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

enum {
  CFGXML_DIALRULE_CAPACITY = 350,      /* rules in the DialNow and in the DialReplace list */
  CFGXML_DIALRULE_UPLOAD_LIMIT = 30720 /* bytes of a file that replaces a list */
};

/* A number that is dialled as soon as it matches. */
typedef struct DIAL_NOW_DATA_T {
  int32_t ID;
  int32_t Line;
  char Rule[64]; /* unique in its list */
  struct DIAL_NOW_DATA_T *next;
} DIAL_NOW_DATA_T;

/* A prefix and what is dialled in its place. */
typedef struct DIAL_REPLACE_DATA_T {
  int32_t ID;
  int32_t Line;
  char Prefix[64]; /* unique in its list */
  char Replace[64];
  struct DIAL_REPLACE_DATA_T *next;
} DIAL_REPLACE_DATA_T;

/* A number that is not to be dialled. */
typedef struct BLOCKOUT_DATA_T {
  int32_t ID;
  int32_t Line;
  char Rule[64];
  struct BLOCKOUT_DATA_T *next;
} BLOCKOUT_DATA_T;

/* --- DialNow (lock 45076) and DialReplace (lock 45077). Results: 0 success; -1 a bad argument, a
 * missing file or a failed save; 4 no rule with that id; 7 another rule has the text (Rule, or
 * Prefix); 10 the list is full. --- */

/* The first 350 rules, or NULL. */
DIAL_NOW_DATA_T *cfg_get_dialnow_list(void);
DIAL_REPLACE_DATA_T *cfg_get_dialreplace_list(void);

/* Copies the first rule with this id. 0 or -1. */
int cfg_get_dialnow_data(int id, DIAL_NOW_DATA_T *out);
int cfg_get_dialreplace_data(int id, DIAL_REPLACE_DATA_T *out);

/* Adds a rule at the end; its ID is not read and not written back. 0, 7, 10 or -1. */
int cfg_add_dialnow_data(const DIAL_NOW_DATA_T *item);
int cfg_add_dialreplace_data(const DIAL_REPLACE_DATA_T *item);

/* Changes the texts and the line of the last rule with this id. 0, 4, 7 or -1. */
int cfg_set_dialnow_data(int id, const DIAL_NOW_DATA_T *item);
int cfg_set_dialreplace_data(int id, const DIAL_REPLACE_DATA_T *item);

/* Removes every rule with this id. 0, also when there is none; -1. */
int cfg_remove_dialnow_data(int id);
int cfg_remove_dialreplace_data(int id);

/* Copies a file over the list's. It must be XML of 1 to 30720 bytes whose root has a child named
 * like the list; the rules in it are not checked. 0, whatever the copy's result: a copy that is
 * not complete leaves the old list. -1 for a file that is not acceptable, a path that could leave
 * its quotes in a shell command, or when the old list can't be kept meanwhile or the new one not
 * be synced. */
int cfg_upload_dialnow(const char *file_path);
int cfg_upload_dialreplace(const char *file_path);

/* --- BlockOut: any number of rules, equal texts too. No host lock: a mutex of the library keeps
 * the calls apart. Results: 0 or -1. --- */

BLOCKOUT_DATA_T *cfg_get_blockout_list(void);
int cfg_get_blockout_data(int id, BLOCKOUT_DATA_T *out);
int cfg_add_blockout_data(const BLOCKOUT_DATA_T *item);
/* Changes the first rule with this id; -1 when there is none. */
int cfg_set_blockout_data(int id, const BLOCKOUT_DATA_T *item);
/* 0 also when there is no rule with this id. */
int cfg_remove_blockout_data(int id);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
