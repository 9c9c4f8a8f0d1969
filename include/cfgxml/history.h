/* The call history: a table of 100 records that the host owns.
 *
 * Used records are packed from the front, the oldest call first, and end at the first ID below 1.
 * IDs start at 1; a new record gets the largest used ID plus 1. Every change saves the table, or
 * posts its save code while deferred saving is on; a save that fails undoes no change.
 *
 * Listed calls carry the name that the phonebook has for the remote number. The contacts are asked
 * before the blacklist, both in the order of their names; the first entry counts that has the
 * number and either holds for every line (Line 0) or for the line of the call's local account. A
 * call of no configured account takes the entries of every line. Numbers are compared byte for
 * byte. A call without such an entry keeps the name it was stored with.
 *
 * Character fields hold NUL-terminated text; their capacity includes the terminator.
 *
 * Results: 0 success; -1 bad arguments, no such record or no table, which changes nothing.
 *
 * Every function takes the history lock (45075) unless its comment says otherwise; the phonebook
 * lock (45081) is taken inside it, never around it. */
#ifndef CFGXML_HISTORY_H
#define CFGXML_HISTORY_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

enum { CFGXML_HISTORY_CAPACITY = 100 };

/* One call. */
typedef struct HISTORY_DATA_T {
  int32_t ID;     /* 1 or more; below 1 marks a free slot */
  int32_t CallID; /* the caller's, not interpreted */
  int32_t Type;   /* the host's code */
  int32_t Status; /* the host's code */
  char Date[16];
  char Time[12];
  char Reserved[12]; /* the host's; copied with the record, stored in no file */
  char LocalSipName[64];
  char LocalSipServer[64];
  int32_t LocalSipPort;
  char RemoteSipName[64];
  char RemoteSipServer[64];
  char RemoteDisplayName[64];
  int32_t RemoteSipPort;
  char CallDuration[12];
} HISTORY_DATA_T;

/* The host's call table, packed from the front, the oldest call first. */
typedef struct HISTORY_DATA_LIST {
  HISTORY_DATA_T Records[CFGXML_HISTORY_CAPACITY];
} HISTORY_DATA_LIST;

/* A call as the screens list it. */
typedef struct HISTORY_SUMMARY_T {
  int32_t ID;
  int32_t Type;
  int32_t Status;
  char Date[16];
  char Time[12];
  char LocalSipName[64];
  char LocalSipServer[64];
  int32_t LocalSipPort;
  char RemoteSipName[64];
  char RemoteSipServer[64];
  char RemoteDisplayName[64];
  int32_t RemoteSipPort;
  struct HISTORY_SUMMARY_T *next;
} HISTORY_SUMMARY_T;

/* The whole history in a block of the caller's. */
typedef struct HISTORY_SUMMARY_SET_T {
  int32_t Reserved;                                   /* the caller's */
  int32_t count;                                      /* entries in use */
  int32_t sync_id;                                    /* in: the ID of the call to name */
  int32_t sync_index;                                 /* out: the index of the call named */
  HISTORY_SUMMARY_T entries[CFGXML_HISTORY_CAPACITY]; /* next stays NULL */
} HISTORY_SUMMARY_SET_T;

/* --- Lists --- */

/* The calls with their names from the phonebook, the newest first; NULL when there are none. When
 * memory runs out, as many of the oldest calls as it held. The caller frees the list with
 * cfg_destory_history_summary. */
HISTORY_SUMMARY_T *cfg_get_history_summary(void);

/* Frees a list of calls; 0, or -1 for NULL. */
int cfg_destory_history_summary(HISTORY_SUMMARY_T *history_header);

/* Copies the calls to the entries of the set, the oldest first, with the names they were stored
 * with, and clears the entries behind them. Without a table the set stays as it is. */
void cfg_get_history_summary_set(HISTORY_SUMMARY_SET_T *set);

/* Names one entry of a set: the first with the ID sync_id, or entry 0 when none has it; its index
 * goes to sync_index. The name is that of cfg_get_contact_name for the entry's number and line.
 * Takes no history lock: the set is the caller's. */
void cfg_summary_sync_out(HISTORY_SUMMARY_SET_T *set);

/* --- Single calls --- */

/* Copies the call with this ID and names it from the phonebook. 0; -1, also when there is none. */
int cfg_get_history_data(int id, HISTORY_DATA_T *history);

/* Adds a call behind the others and sets its ID; a full table drops its oldest call. 0 or -1. */
int cfg_add_history(HISTORY_DATA_T *history_data);

/* Gives the call with this ID the record's Status and nothing else. 0, also when there is no such
 * call; -1. */
int cfg_mod_history(int id, const HISTORY_DATA_T *history_data);

/* Deletes a call. 0, also when there is none with this ID; -1 for an ID below 1. */
int cfg_del_history(int id);

/* Deletes the calls of a type, or all for type 0. 0 or -1. */
int cfg_del_all_history(int type);

/* --- The file --- */

/* Read and write History.xml; path is not used. They take no lock: they run under their caller's.
 * The reader fills the table from the front and clears nothing behind the last call. 0 or -1. */
int get_history_xml(const char *path, HISTORY_DATA_LIST *list);
int save_history_xml(const char *path, HISTORY_DATA_LIST *list);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
