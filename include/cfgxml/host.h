/* The services that a host supplies to the library, and the only place that declares them.
 *
 * They are undefined symbols of libcfgxml.so, resolved when the host loads it, so the host program
 * exports them (link it with -rdynamic, or put them in a library loaded before). Every service must
 * admit calls from several threads at once. The library does not look at the results of the bounded
 * copies, the locks, cfg_get_string, cfg_set_string, cfg_save and cfg_add_save_msg. */
#ifndef CFGXML_HOST_H
#define CFGXML_HOST_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Memory. Blocks handed to callers come from rl_malloc (NULL when memory is out) or from calloc;
 * rl_free releases both kinds. */
void *rl_malloc(size_t size);
void rl_free(void *block);
void *rl_memset(void *destination, int byte, size_t size);
void *rl_memcpy(void *destination, const void *source, size_t size);
/* Copes with overlap. */
void *rl_memmove(void *destination, const void *source, size_t size);

/* Text. Capacities are in bytes and include the terminator. The bounded copies cut what does not
 * fit, terminate it, and take a NULL source as an empty string; rl_atoi takes NULL as 0. */
int rl_strcpy_s(char *destination, size_t capacity, const char *source);
int rl_strcat_s(char *destination, size_t capacity, const char *source);
size_t rl_strlen(const char *text);
int rl_strcmp(const char *left, const char *right);
int rl_strncmp(const char *left, const char *right, size_t size);
/* Ignores letter case. */
int rl_strcasecmp(const char *left, const char *right);
char *rl_strstr(const char *text, const char *part);
/* Trims white space at both ends in place; returns its argument. */
char *rl_strtrim(char *text);
/* Non-zero when the text is empty. */
int rl_str_isempty(const char *text);
int rl_atoi(const char *text);

/* Logging at four levels, printf-style. The host adds the newline. */
void rl_log_err(const char *format, ...) __attribute__((format(printf, 1, 2)));
void rl_log_warn(const char *format, ...) __attribute__((format(printf, 1, 2)));
void rl_log_info(const char *format, ...) __attribute__((format(printf, 1, 2)));
void rl_log_debug(const char *format, ...) __attribute__((format(printf, 1, 2)));

/* Numbered locks. A thread that holds a lock may take it again; it is free when it was released as
 * often as it was taken. They don't fail for the ids that the headers name. */
int rl_sem_lock(int id);
int rl_sem_unlock(int id);

/* Files. rl_access returns 0 when the check holds; rl_file_size gives bytes, below 1 for a file
 * that is missing or empty. */
int rl_access(const char *path, int mode);
int rl_file_size(const char *path);
/* Directory listing: rl_readdir gives an entry, NULL at the end. It is laid out as struct dirent
 * is, on 32 bits as that of a program built without _FILE_OFFSET_BITS=64. The library reads d_name.
 */
typedef struct CFGXML_DIRECTORY_ENTRY_T {
  unsigned long d_ino;
  long d_off;
  unsigned short d_reclen;
  unsigned char d_type;
  char d_name[256];
} CFGXML_DIRECTORY_ENTRY_T;
void *rl_opendir(const char *path);
void *rl_readdir(void *directory);
int rl_closedir(void *directory);

/* Runs a shell command and returns its result; the two numbers are the host's own. */
int rl_system_ex(const char *command, int first, int second);

/* The blocks of memory that the host owns, or NULL while it has none. */
struct CONTACT_DATA_LIST_T;
struct BLACK_DATA_LIST_T;
struct HISTORY_DATA_LIST;
struct CONTACT_DATA_LIST_T *cfg_get_contact_list(void);
struct BLACK_DATA_LIST_T *cfg_get_black_list(void);
struct HISTORY_DATA_LIST *cfg_get_history_list(void);

/* Queues a deferred write: 1 the history, 3 the contacts, 4 the blacklist. The host calls the
 * delay-save slot of that kind later. A code that is not queued leaves the change in memory. */
int cfg_add_save_msg(int code);

/* Configuration items by section and key. A read gives the default for an item that is not set;
 * cfg_get_string fills the buffer in every case, cut to its size and terminated. cfg_save makes a
 * section's changes permanent. */
int cfg_get_string(int section, int key, char *buffer, int size, const char *fallback);
int cfg_get_int(int section, int key, int fallback);
int cfg_set_string(int section, int key, const char *value);
int cfg_save(int section);

/* The file adapter: reads the file at path into a host block, or writes the block to it, through
 * the callback of that kind of file, and returns that callback's result. Paths are the published
 * ones, whatever root the library works below. */
int adapter_read_file_ex(void *list, const char *path);
int adapter_write_file_ex(void *list, const char *path);
/* Non-zero when the file is an acceptable contact file to import. */
int adapter_check_contact_file_valid(const char *path);
/* Imports a contact file (CSV or XML) into the contact list. */
int adapter_read_contact_file(const char *path);
/* Carry a move out through slots 3 and 4; called with the phonebook lock held. */
int adapter_move_contact_to_blackList(int id);
int adapter_move_blackList_to_contact(int id);
/* The library's find_group_id and find_contacts_ring_url hand their words through to these, and
 * what they return back: both are between the host and the callers. Called without a lock. */
void *adapter_find_group_id(void *first, void *second, void *third, void *fourth);
void *adapter_find_contacts_ring_url(void *first, void *second, void *third, void *fourth);

#ifdef __cplusplus
}
#endif

#endif
