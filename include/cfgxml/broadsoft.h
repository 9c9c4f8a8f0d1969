/* Directories of a BroadSoft server, read from the pages of its XSI answers that the host stores in
 * files.
 *
 * A page adds at most 500 entries to one of two kinds of list: the full list, which keeps 19 texts
 * of every entry and can be searched, and the six simple lists, which keep a name and three numbers
 * and are found from the keypad (books 6 to 11 of the search).
 *
 * Numbers of a page are 32-bit; what arithmetic on them would carry out of that range stays at its
 * end. Functions take the remote lock (45070) unless their comment says otherwise. */
#ifndef CFGXML_BROADSOFT_H
#define CFGXML_BROADSOFT_H

#include <cfgxml/phonebook.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

enum {
  CFGXML_BROADSOFT_PAGE_CAPACITY = 500, /* entries taken from one page */
  CFGXML_BROADSOFT_LIST_COUNT = 6,      /* simple lists 0 to 5 */
  CFGXML_BROADSOFT_COMPLETE = 20        /* state of a simple list whose last page was read */
};

/* An entry of the full list. Texts are cut to their capacity; NUL-terminated. */
typedef struct BSFT_CONTACT_DATA_T {
  int32_t index; /* 0-based place in the server's directory */
  int32_t flag;  /* 0; -1 in a search result */
  char LastName[64];
  char FirstName[64];
  char UserId[64];
  char GroupId[64];
  char Number[64];
  char Extension[64];
  char Mobile[32];
  char YahooId[64];
  char Pager[64];
  char EmailAddress[64];
  char Title[64];
  char Location[64];
  char AddressLine1[64];
  char AddressLine2[64];
  char City[64];
  char State[64];
  char Zip[64];
  char Country[64];
  char Department[64];
  struct BSFT_CONTACT_DATA_T *next;
} BSFT_CONTACT_DATA_T;

/* How far a directory was read. */
typedef struct BSFT_CONTACT_POS_T {
  int32_t start; /* 0-based index of the last page's first entry */
  int32_t count; /* entries of that page, as the server says */
  int32_t total; /* entries of the directory; more pages remain while start + count is below it */
  int32_t state; /* simple lists: pages read while more remained, CFGXML_BROADSOFT_COMPLETE at the
                    end; full list: 0 */
} BSFT_CONTACT_POS_T;

/* --- The full list --- */

/* Starts the list afresh, its position too, with the page in this file; returns its head, which
 * stays the library's. NULL for an empty path, a file that cannot be loaded or a page without
 * entries. */
BSFT_CONTACT_DATA_T *cfg_get_broadsoft_contact_summary(const char *path);

/* Appends a further page; returns the head of the whole list. NULL, with the list as it was, for an
 * empty path or a file that cannot be loaded; the unchanged head for a document of another kind. */
BSFT_CONTACT_DATA_T *cfg_add_broadsoft_contact_summary_to_tail(const char *path);

/* Copies the list's position and returns pos; NULL for NULL. No lock. */
BSFT_CONTACT_POS_T *cfg_get_broadsoft_conatct_pos(BSFT_CONTACT_POS_T *pos);

/* Copies the flag and the texts of the first entry with this index; the record stays as it is when
 * there is none. 0; 5 for a NULL record; -1 without a list. */
int cfg_get_broadsoft_contact_data(int index, BSFT_CONTACT_DATA_T *contact_data);

/* Copies of the entries one of whose texts contains the keywords (all for ""), in list order; the
 * caller frees them one by one with rl_free. NULL when there are none. */
BSFT_CONTACT_DATA_T *cfg_search_broadsoft_contact_info(const char *keywords);

/* Frees the list and clears its position; 0, or -1 without a list. */
int cfg_destory_broadsoft_conatct_list(void);

/* --- The simple lists --- */

/* Appends a page to simple list 0 to 5 and indexes its entries; pos is the caller's record for this
 * list, zeroed before the first page. When the last page is in, pos->state turns
 * CFGXML_BROADSOFT_COMPLETE and every record gets its position. Returns the list's head, which
 * stays the library's; NULL for bad arguments or a file that cannot be loaded; the unchanged head
 * for a document of another kind. */
CONTACT_SUMMARY_T *cfg_append_broadsoft_simple_contact_summary(int list, const char *path,
                                                               BSFT_CONTACT_POS_T *pos);

/* Takes a simple list out of the search and frees it; 0, or -1 for an empty list or a number out of
 * range. */
int cfg_destory_broadsoft_simple_conatct_list(int list);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
