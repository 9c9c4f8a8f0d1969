/* The five remote phonebooks, XML files that the host fetches to "/tmp/remote_contact.xml0" to 4.
 *
 * A book is a list of CONTACT_SUMMARY_T (at most 500), sorted by name in byte order, owned by the
 * library. One book at a time is the current one, which the detail and search functions read: the
 * last book loaded, or attempted, or set. Put a loaded book into the search with
 * CfgTrieReloadRemoteBookInfo, and take it out with CfgTrieRemoveRemoteBookInfo before freeing it.
 *
 * Functions take the remote lock (45070) unless their comment says otherwise. */
#ifndef CFGXML_REMOTE_H
#define CFGXML_REMOTE_H

#include <cfgxml/phonebook.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

enum { CFGXML_REMOTE_BOOK_COUNT = 5 };

/* The number 0 to 4 of the book whose path this is, or -1; no lock. */
int cfg_get_remote_book_id(const char *path);

/* Loads the book, unless it is loaded, makes it the current one and returns its head; NULL for a
 * path of no book, or a file that cannot be read or holds no record. The list stays the library's.
 */
CONTACT_SUMMARY_T *cfg_get_remote_contact_summary(const char *path);

/* The first book whose list is the current one, or -1; no lock. */
int cfg_get_remote_contact_summary_clone_id(void);

/* Makes a book the current one; 0, or -1 for a number above 4; no lock. */
int cfg_set_remote_contact_summary_clone_id(int book);

/* Copies name and numbers of the current book's first record with this id; the record's other
 * fields, and all of them when there is no such record, stay as they are. 0; 5 for a NULL record;
 * -1 without a current book. */
int cfg_get_remote_contact_data(int id, CONTACT_DATA_T *contact_data);

/* Copies of the current book's records whose name or number contains the text (all for ""), sorted
 * by name; the caller frees them with cfg_destory_contact_summary. NULL when there are none. */
CONTACT_SUMMARY_T *cfg_search_remote_contact_info(const char *keywords);

/* Frees a book's list; 0, or -1 for a path of no book. */
int cfg_destory_remote_conatct_list(const char *path);

/* --- Who is calling --- */

/* The name that the phonebook has for a number on a line, when it differs from the shown name: that
 * of the first contact, or else the first blacklist entry, in table order, that has the number and
 * holds for the line. Line 0, the entry's or the argument, stands for every line. Numbers and names
 * are compared byte for byte. NULL when there is no such entry, its name is shown already, or a
 * list or an argument is missing. The caller releases the name with delete[]. Takes the phonebook
 * lock (45081) and no other. */
char *cfg_get_contact_name(const char *number, const char *shown_name, int line);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
