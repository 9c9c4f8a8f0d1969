/* The keypad search: one index over the local contacts, the five remote phonebooks and the six
 * BroadSoft lists.
 *
 * Every record is indexed under four strings: its display name and its three numbers. The index
 * identifies a record by its address, so whoever moves or frees an indexed record removes its
 * strings first. The index has a mutex of its own; searches may overlap changes. There is one
 * result table: one search at a time, and its result is read before any book changes. */
#ifndef CFGXML_SEARCH_H
#define CFGXML_SEARCH_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

enum {
  CFGXML_BOOK_LOCAL = 0,           /* records are CONTACT_DATA_T */
  CFGXML_BOOK_REMOTE_FIRST = 1,    /* books 1 to 5, records are CONTACT_SUMMARY_T */
  CFGXML_BOOK_BROADSOFT_FIRST = 6, /* books 6 to 11, records are CONTACT_SUMMARY_T */
  CFGXML_BOOK_COUNT = 12,
  CFGXML_BOOK_RECORDS = 500 /* places of one book in the result table */
};

/* Whose string it is. */
typedef struct TRIE_INFO_T {
  int32_t book;
  void *record; /* begins with the record's int32 position */
} TRIE_INFO_T;

/* A cell of the list of records that share one string, oldest first. */
typedef struct TRIE_ENTRY_T {
  TRIE_INFO_T info;
  struct TRIE_ENTRY_T *next;
} TRIE_ENTRY_T;

/* The hits of a search: records[b][p] is the record of book b at position p, or NULL. Owned by the
 * library and overwritten by the next search, which clears only what this one has set: callers read
 * the table and write nothing into it. */
typedef struct TRIE_RESULT_T {
  void *records[CFGXML_BOOK_COUNT][CFGXML_BOOK_RECORDS];
  void *others; /* always NULL */
} TRIE_RESULT_T;

/* Adds a string of a record to the index; 0, or -1 for NULL arguments or an empty string, or when
 * memory runs out. */
int TrieIncreaseInfo(const char *str, const TRIE_INFO_T *info);

/* Removes the oldest entry of this string that belongs to info's record (its book is not looked
 * at). 0, also when there is none; -1 for an empty string or an index that was never filled. */
int TrieDecreaseInfo(const char *str, const TRIE_INFO_T *info);

/* Indexes the local contacts afresh and renumbers their positions; takes the phonebook lock
 * (45081). 0, or -1 when the host has no contact list, or when memory runs out: then the contacts
 * indexed so far are found. */
int CfgTrieReloadLocalBookInfo(void);

/* Indexes a loaded remote book (0 to 4) afresh and sets its positions; takes the remote lock
 * (45070). 0, or -1 when the book is empty or the number out of range, or when memory runs out:
 * then the records indexed so far are found. */
int CfgTrieReloadRemoteBookInfo(int book);

/* Takes a remote book (0 to 4) out of the index; returns the number of strings removed. No lock. */
int CfgTrieRemoveRemoteBookInfo(int book);

/* Finds the records with a name or number that starts with what the keys may stand for, and stores
 * the result table at out. Returns the number of collection steps, 0 to 100; 0 with NULL at out
 * when nothing matched or a character is no key, 0 with out untouched for NULL arguments or an
 * index that was never filled. No lock. */
int CfgTrieSearchVague(const char *keys, TRIE_RESULT_T **out);

/* Returns how many indexed strings start with the prefix, and stores at out (unless NULL) the
 * entries of the string that is the prefix; the list belongs to the index. No lock. */
int CfgTrieSearchOfCount(const char *prefix, TRIE_ENTRY_T **out);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
