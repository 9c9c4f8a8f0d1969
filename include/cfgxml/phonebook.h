/* The local phonebook: groups, contacts and the blacklist.
 *
 * The tables live in two blocks that the host owns and hands out through cfg_get_contact_list and
 * cfg_get_black_list; the library changes them in place. Used slots are packed from the front and
 * end at the first Id below 1. Ids start at 1; a new record gets the largest used Id plus 1.
 * Display names are unique over contacts and blacklist together, group names over the groups.
 * Character fields hold NUL-terminated text; their capacity includes the terminator.
 *
 * Two records of a file with one Id are both kept: they are listed, found from the keypad and saved
 * as two, and the functions that take an Id mean the first of them.
 *
 * Results: 0 success; -1 bad arguments or a NULL host list; 4 no record with that id; 7 the name is
 * already used; 14 empty group name; 16 all 6 groups used; 17 all 500 contacts used; 18 all 100
 * blacklist entries used; 19 a file held names already used, which were skipped.
 *
 * Every function takes the phonebook lock (45081) unless its comment says otherwise. */
#ifndef CFGXML_PHONEBOOK_H
#define CFGXML_PHONEBOOK_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

enum { CFGXML_GROUP_CAPACITY = 6, CFGXML_CONTACT_CAPACITY = 500, CFGXML_BLACKLIST_CAPACITY = 100 };

/* One group of contacts. */
typedef struct GROUP_DATA_T {
  int32_t Id; /* 1 or more; below 1 marks a free slot */
  char Name[64];
  char Ring[64]; /* "Auto" for the group "Default" */
  char Description[64];
} GROUP_DATA_T;

/* One contact or blacklist entry. */
typedef struct CONTACT_DATA_T {
  int32_t position; /* 0-based place in the case-insensitive order of names; stored in no file */
  int32_t Id;       /* 1 or more; below 1 marks the end of the used records */
  int32_t Line;     /* 0 stands for every line */
  char DisplayName[64];
  char OfficeNumber[64];
  char MobileNumber[64];
  char OtherNumber[64];
  char Group[64]; /* name of the contact's group */
  char Ring[64];  /* "Auto" for none of its own */
  char Photo[64]; /* "Default" for none of its own */
} CONTACT_DATA_T;

/* The host's contact list. */
typedef struct CONTACT_DATA_LIST_T {
  GROUP_DATA_T Groups[CFGXML_GROUP_CAPACITY];
  CONTACT_DATA_T Contacts[CFGXML_CONTACT_CAPACITY];
} CONTACT_DATA_LIST_T;

/* The host's blacklist. */
typedef struct BLACK_DATA_LIST_T {
  CONTACT_DATA_T Entries[CFGXML_BLACKLIST_CAPACITY];
} BLACK_DATA_LIST_T;

/* A node of the lists of contacts handed to callers, and a record of the remote books. */
typedef struct CONTACT_SUMMARY_T {
  int32_t position; /* used by the remote books only */
  int32_t Id;
  int32_t Line;
  char DisplayName[64];
  char OfficeNumber[32];
  char MobileNumber[32];
  char OtherNumber[32];
  char Group[64];
  char Ring[64];
  char Photo[64];
  struct CONTACT_SUMMARY_T *next;
} CONTACT_SUMMARY_T;

/* A node of the list of groups handed to callers. */
typedef struct GROUP_SUMMARY_T {
  int32_t Id;
  char Name[64];
  char Ring[64];
  char Description[64];
  struct GROUP_SUMMARY_T *next;
} GROUP_SUMMARY_T;

/* A contact of the community data. */
typedef struct COMMUNITY_CONTACT_T {
  CONTACT_DATA_T Contact;
  struct COMMUNITY_CONTACT_T *next;
} COMMUNITY_CONTACT_T;

/* Groups and contacts outside the phonebook, as read by get_community_contact_csv. The caller owns
 * the block and both chains. */
typedef struct COMMUNITY_DATA_T {
  void *Reserved[2]; /* stay NULL */
  GROUP_SUMMARY_T *Groups;
  COMMUNITY_CONTACT_T *Contacts;
} COMMUNITY_DATA_T;

/* --- Name checks and releases. They take no lock: the name checks run under the caller's. --- */

/* 1 if a record other than the one with this id has the name, else 0; pass -1 to check against
 * every record. An empty name is never used. */
int is_name_in_group(const char *name, int id);
int is_name_in_contact(const char *name, int id);
int is_name_in_black(const char *name, int id);

/* Frees a list of contacts or blacklist entries; 0, or -1 for NULL. */
int cfg_destory_contact_summary(CONTACT_SUMMARY_T *contact_header);

/* --- Contacts --- */

/* The contacts of a group, or all for "" and "All Contacts", sorted by name in byte order; equal
 * names in reverse table order. NULL when there are none. The numbers keep 31 characters. The
 * caller frees the list with cfg_destory_contact_summary. */
CONTACT_SUMMARY_T *cfg_get_contact_summary(const char *group_name);

/* As above, the contacts whose name or one of whose numbers contains the text (all for ""); Ring
 * and Photo stay empty unless the text is. */
CONTACT_SUMMARY_T *cfg_search_contact_summary(const char *text);

/* Copies the contact with this id; 0, or -1 when there is none. */
int cfg_get_contact_data(int id, CONTACT_DATA_T *contact_data);

/* Adds a contact and sets its Id. 0, 7, 17 or -1. A contact that there is no memory to index is not
 * added (-1). */
int cfg_add_contact_data(CONTACT_DATA_T *contact_data);

/* Replaces the contact that has the record's Id by the whole record: get it with
 * cfg_get_contact_data and change what is to change. Its position is stored too while name and
 * numbers stay, else computed afresh. 0, 4, 7 or -1. A contact that there is no memory to index
 * stays as it was (-1). */
int cfg_mod_contact_data(CONTACT_DATA_T *contact_data);

/* Deletes a contact; 0 also when there is none with this id, -1 for an id below 1. */
int cfg_del_contact_data(int id);

/* Bulk deletes. They leave the search index and the positions as they were: call
 * CfgTrieReloadLocalBookInfo afterwards. */
int cfg_del_all_contacts(void);
int cfg_del_contacts_by_group(const char *group_name);

/* --- Groups. The group "Default" always exists after a load: contacts without a valid group
 * belong to it. --- */

/* Every group but "Default" in table order; NULL when there is none. The caller frees the list with
 * cfg_destory_group_summary. */
GROUP_SUMMARY_T *cfg_get_group_summary(void);
int cfg_destory_group_summary(GROUP_SUMMARY_T *group_header);

/* Fills the record from the group with its Id, or with its Name when the Id is below 1. 0 or -1. */
int cfg_get_group_data(GROUP_DATA_T *group_data);

/* Adds a group and sets its Id. A load keeps a place for "Default": where no group has that name,
 * the sixth group of the file and its contacts are left out then. 0, 7, 14, 16 or -1. */
int cfg_add_group_data(GROUP_DATA_T *group_data);

/* Replaces the group that has the record's Id. Contacts of a renamed group fall to "Default" at the
 * next write of the contact file. "Default" itself keeps its name while all six groups are used
 * (16). 0, 4, 7, 16 or -1. */
int cfg_mod_group_data(GROUP_DATA_T *group_data);

/* Deletes a group other than "Default"; its contacts move to "Default". 0 or -1. */
int cfg_del_group_data(int id);

/* Deletes every group but "Default". 0 or -1. */
int cfg_del_all_group_data(void);

/* Give every group and contact that uses a deleted ring the ring "Auto", and every contact that
 * uses a deleted photo the photo "Default". 0, or -1 for NULL. */
int cfg_del_contact_ring_info(const char *ring);
int cfg_del_contact_photo_info(const char *photo);

/* Hand their arguments to adapter_find_group_id and adapter_find_contacts_ring_url and return the
 * result unchanged; no lock. */
void *find_group_id(void *first, void *second, void *third, void *fourth);
void *find_contacts_ring_url(void *first, void *second, void *third, void *fourth);

/* --- Blacklist. Entries are not in the search index; summaries carry no Ring and no Photo. --- */

/* All entries, or those that contain the text, sorted as contacts are. The caller frees the list
 * with cfg_destory_contact_summary. */
CONTACT_SUMMARY_T *cfg_get_black_summary(void);
CONTACT_SUMMARY_T *cfg_search_black_info(const char *text);

int cfg_get_black_data(int id, CONTACT_DATA_T *black_data); /* 0, -1 */
int cfg_add_black_data(CONTACT_DATA_T *black_data);         /* sets its Id; 0, 7, 18, -1 */
int cfg_set_black_data(CONTACT_DATA_T *black_data);         /* 0, 4, 7, -1 */
int cfg_remove_black_data(int id);                          /* 0, also for an unknown id; -1 */
int cfg_remove_black_all(void);                             /* 0, -1 */

/* Move a record through the host's adapter and return its result. */
int cfg_mov_contact_data(int id);
int cfg_mov_black_data(int id);

/* The moves themselves (slots 3 and 4), under the caller's lock. A record moves into the group
 * "Default" and gets a new Id; when the second half fails, the first is undone. 0, 7, -1 or the
 * failing step's code. */
int mov_contact_data(int id);
int mov_black_data(int id);

/* --- Files. The readers and contact_data_sync take no lock (they run under their caller's); the
 * writers hold it only while they copy the lists. --- */

/* Reads a contact file into the list, which is zeroed first. 0, 16, 17, 19 or -1. When memory runs
 * out the list stays as it was (-1). */
int get_contact_xml(const char *path, CONTACT_DATA_LIST_T *list);

/* Writes the list to Contact.xml; path names the file whose root element is kept. 0 or -1. */
int save_contact_xml(const char *path, CONTACT_DATA_LIST_T *list);

/* Writes community data to path in the format of the contact file. 0 or -1. */
int save_community_xml(const char *path, COMMUNITY_DATA_T *data);

/* Read and write Blacklist.xml; path is not used. 0, 18, 19 or -1; 0 or -1. */
int get_blacklist_xml(const char *path, BLACK_DATA_LIST_T *list);
int save_blacklist_xml(const char *path, BLACK_DATA_LIST_T *list);

/* 1 when the file is an acceptable contact file, else 0. */
int is_valid_contact_file_xml(const char *path);

/* Copies a file over Contact.xml; the shell's result, or -1 for a path that is no safe word, or
 * when the old file can't be kept meanwhile or the new one not be synced. A copy that is not
 * complete leaves the old file. */
int copy_contact_xml(const char *path);

/* Import a file, which replaces the list. The contacts come through the host's adapter; a blacklist
 * file is checked, copied over Blacklist.xml and read. The reader's result, or -1 for a file that
 * is not acceptable. The list is read from its file afterwards, so the host writes what is
 * outstanding of it first. An import of contacts leaves the search index as it was, with records in
 * it that are others by then: call CfgTrieReloadLocalBookInfo afterwards. */
int cfg_upload_contact(const char *path);
int cfg_upload_blacklist(const char *path);

/* Gives contacts without a name the name "(Empty)", and contacts of no existing group the group
 * "Default". 0 or -1. */
int contact_data_sync(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
