/* Binding the library to its host: the callback table, the save switches, the storage root.
 *
 * Start-up: load the library, call cfgxml_cb_init, then slots 0, 20 and 14, in this order, to read
 * the files into the host's blocks (a name that is in both phonebook files stays with the
 * contacts), CfgTrieReloadLocalBookInfo to index the contacts, and slots 1, 21 and 15 to switch
 * deferred saving on. Nothing is torn down.
 *
 * Threads: any thread may call a function of the data domains; where a function's header names a
 * lock, the function takes it, and where it says that the function runs under the caller's lock,
 * the caller does. Three things belong to one thread at a time: the screens (xmlbrowser.h), a
 * keypad search with its result (search.h), and cfgxml_set_root.
 *
 * Documents: XML is refused, as if it were not well-formed, when an element has more than 1000
 * attributes, when one text or value of an attribute has more than 1000 open numeric references
 * ("&#" without digits and ";" after it), or above 256 MB. A text that does not fit its field is
 * cut: valid UTF-8 before the character that does not fit, anything else at the byte.
 *
 * Data files: their folders are the host's to make. A file that is not well-formed, or that can't
 * be read for a lasting reason (EIO, EACCES, EPERM), becomes "<file>.corrupt" at the next save,
 * which writes a new one; for want of memory or descriptors it stays and the call fails. (A block
 * that could not be filled for that reason is best loaded again: a save of it quarantines the file,
 * too.) A symbolic link stays, and what it leads to is replaced. Owner, group and mode are kept as
 * far as the process may; a new file gets 0666 less the umask, the history and the messages 0600.
 */
#ifndef CFGXML_BINDING_H
#define CFGXML_BINDING_H

#include <cfgxml/history.h>
#include <cfgxml/phonebook.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* A slot of the callback table; cast it to the slot's own type before calling it. */
typedef void (*CFGXML_CALLBACK_T)(void);

/* The slots, and the function that each receives. */
enum {
  CFGXML_SLOT_CONTACT_INIT = 0,
  CFGXML_SLOT_CONTACT_SAVE_INIT = 1,
  CFGXML_SLOT_CONTACT_DELAY_SAVE = 2,
  CFGXML_SLOT_MOV_CONTACT_DATA = 3,
  CFGXML_SLOT_MOV_BLACK_DATA = 4,
  CFGXML_SLOT_GET_CONTACT_XML = 5,
  CFGXML_SLOT_SAVE_CONTACT_XML = 6,
  CFGXML_SLOT_GET_CONTACT_CSV = 7,
  CFGXML_SLOT_SAVE_CONTACT_CSV = 8,
  CFGXML_SLOT_COPY_CONTACT_XML = 9,
  CFGXML_SLOT_GET_COMMUNITY_CONTACT_CSV = 10,
  CFGXML_SLOT_SAVE_COMMUNITY_XML = 11,
  CFGXML_SLOT_IS_VALID_CONTACT_FILE_XML = 12,
  CFGXML_SLOT_IS_VALID_CONTACT_FILE_CSV = 13,
  CFGXML_SLOT_HISTORY_INIT = 14,
  CFGXML_SLOT_HISTORY_SAVE_INIT = 15,
  CFGXML_SLOT_HISTORY_DELAY_SAVE = 16,
  CFGXML_SLOT_GET_HISTORY_XML = 17,
  CFGXML_SLOT_SAVE_HISTORY_XML = 18,
  CFGXML_SLOT_HISTORY_DEINIT = 19,
  CFGXML_SLOT_BLACK_INIT = 20,
  CFGXML_SLOT_BLACK_SAVE_INIT = 21,
  CFGXML_SLOT_BLACK_DELAY_SAVE = 22,
  CFGXML_SLOT_GET_BLACKLIST_XML = 23,
  CFGXML_SLOT_SAVE_BLACKLIST_XML = 24,
  CFGXML_SLOT_GET_BLACKLIST_CSV = 25,
  CFGXML_SLOT_SAVE_BLACKLIST_CSV = 26,
  CFGXML_SLOT_MATCH_TIMEZONE_NAME = 27,
  CFGXML_SLOT_DEL_CONTACT_RING_INFO = 28,
  CFGXML_SLOT_DEL_CONTACT_PHOTO_INFO = 29,
  CFGXML_SLOT_COUNT = 30
};

/* Fills the 30 slots of the table. */
void cfgxml_cb_init(CFGXML_CALLBACK_T *table);

/* Makes the library open its own fixed files ("/config/...", "/app/...", "/tmp/remote_contact.xml0"
 * to 4) below this folder; NULL or "" stands for the root of the file system, the default. Call it
 * before any other function; it is not safe to call beside them. */
void cfgxml_set_root(const char *directory);

/* Read a data file into the host's block through the adapter, under the domain's lock; the
 * adapter's result. Without a file, as at a first start, contacts and blacklist give -1, the
 * history 0. */
int contact_init(CONTACT_DATA_LIST_T *list);
int black_init(BLACK_DATA_LIST_T *list);
int history_init(HISTORY_DATA_LIST *list);

/* Switch deferred saving on (flag not 0; returns 1) or off (0; returns 0). It is off at load. */
int contact_save_init(int flag);
int black_save_init(int flag);
int history_save_init(int flag);

/* Save after a change: post the kind's code to the host (3 contacts, 4 blacklist, 1 history) while
 * deferred saving is on, else write the file through the adapter at once. Always 0: a write that
 * fails is logged and undoes no change. */
int contact_save(void);
int black_save(void);
int history_save(void);

/* Write a block to its file now, through the adapter; the adapter's result. Only the history's
 * takes its lock (45075); the writers lock the phonebook themselves. */
int contact_delay_save(void);
int black_delay_save(void);
int history_delay_save(void);

/* Return their argument and do nothing else. */
void *contact_deinit(void *argument);
void *black_deinit(void *argument);
void *history_deinit(void *argument);

/* Entry points without a function: 0 and -1. */
int get_file_xml(void);
int save_file_xml(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
