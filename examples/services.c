/* The services of a small host, over the C library: copy this file and adapt it.
 *
 * Settings have their defaults only, changes are saved at once (a host that saves later would
 * remember the codes of cfg_add_save_msg), contact files to import are XML, and the host's own two
 * lookups find nothing. */
#define _GNU_SOURCE
#define _FILE_OFFSET_BITS 64 /* files dated after 2038, large inodes: on 32 bits too */
#define _TIME_BITS 64
#include "services.h"

#include <cfgxml/host.h>
#include <ctype.h>
#include <dirent.h>
#include <errno.h>
#include <pthread.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

/* --- Memory and text --- */

void *rl_malloc(size_t size) { return malloc(size); }
void rl_free(void *block) { free(block); }
void *rl_memset(void *to, int byte, size_t size) { return memset(to, byte, size); }
void *rl_memcpy(void *to, const void *from, size_t size) { return memcpy(to, from, size); }
void *rl_memmove(void *to, const void *from, size_t size) { return memmove(to, from, size); }

int rl_strcpy_s(char *to, size_t capacity, const char *from) {
  return snprintf(to, capacity, "%s", from != NULL ? from : "") < 0 ? -1 : 0;
}

int rl_strcat_s(char *to, size_t capacity, const char *from) {
  const size_t used = strnlen(to, capacity);
  return rl_strcpy_s(to + used, capacity - used, from);
}

size_t rl_strlen(const char *text) { return strlen(text); }
int rl_strcmp(const char *a, const char *b) { return strcmp(a, b); }
int rl_strncmp(const char *a, const char *b, size_t size) { return strncmp(a, b, size); }
int rl_strcasecmp(const char *a, const char *b) { return strcasecmp(a, b); }
char *rl_strstr(const char *text, const char *part) { return strstr(text, part); }
int rl_str_isempty(const char *text) { return text == NULL || *text == '\0'; }
int rl_atoi(const char *text) { return text != NULL ? atoi(text) : 0; }

char *rl_strtrim(char *text) {
  size_t begin = 0, end = strlen(text);
  while (isspace((unsigned char)text[begin])) ++begin;
  while (end > begin && isspace((unsigned char)text[end - 1])) --end;
  memmove(text, text + begin, end - begin);
  text[end - begin] = '\0';
  return text;
}

/* --- Logging --- */

static void write_log(const char *level, const char *format, va_list arguments) {
  fprintf(stderr, "%s: ", level);
  vfprintf(stderr, format, arguments);
  if (*format == '\0' || format[strlen(format) - 1] != '\n') fputc('\n', stderr);
}

#define LOG_LEVEL(name)                         \
  void rl_log_##name(const char *format, ...) { \
    va_list arguments;                          \
    va_start(arguments, format);                \
    write_log(#name, format, arguments);        \
    va_end(arguments);                          \
  }
LOG_LEVEL(err)
LOG_LEVEL(warn)
LOG_LEVEL(info)
LOG_LEVEL(debug)

/* --- Locks: recursive, one per id; the library's ids differ in their last six bits --- */

static pthread_mutex_t locks[64];
static pthread_once_t locks_made = PTHREAD_ONCE_INIT;

static void make_locks(void) {
  pthread_mutexattr_t recursive;
  pthread_mutexattr_init(&recursive);
  pthread_mutexattr_settype(&recursive, PTHREAD_MUTEX_RECURSIVE);
  for (int i = 0; i < 64; ++i) pthread_mutex_init(&locks[i], &recursive);
  pthread_mutexattr_destroy(&recursive);
}

int rl_sem_lock(int id) {
  pthread_once(&locks_made, make_locks);
  return pthread_mutex_lock(&locks[id & 63]);
}

int rl_sem_unlock(int id) { return pthread_mutex_unlock(&locks[id & 63]); }

/* --- Files and the shell --- */

int rl_access(const char *path, int mode) { return access(path, mode); }

int rl_file_size(const char *path) {
  struct stat file;
  return stat(path, &file) == 0 ? (int)file.st_size : -1;
}

void *rl_opendir(const char *path) { return opendir(path); }
void *rl_readdir(void *directory) {
  static __thread CFGXML_DIRECTORY_ENTRY_T entry;
  const struct dirent *found = readdir(directory);
  if (found == NULL) return NULL;
  snprintf(entry.d_name, sizeof entry.d_name, "%s", found->d_name);
  return &entry;
}
int rl_closedir(void *directory) { return closedir(directory); }

int rl_system_ex(const char *command, int first, int second) {
  (void)first;
  (void)second;
  return system(command);
}

int make_data_folders(const char *root) {
  static const char *const folders[] = {
      "/config",
      "/config/Phone",
      "/config/Phone/Contact",
      "/config/Phone/History",
      "/config/Phone/General",
      "/config/Phone/General/DialRule",
      "/config/Phone/Message",
      "/config/System",
      "/config/Network",
      "/config/Network/Rcpe",
  };
  char path[4096];
  for (size_t i = 0; i < sizeof folders / sizeof folders[0]; ++i) {
    snprintf(path, sizeof path, "%s%s", root, folders[i]);
    if (mkdir(path, 0755) != 0 && errno != EEXIST) return -1;
  }
  return 0;
}

/* --- Settings: every item has its default --- */

int cfg_get_string(int section, int key, char *buffer, int size, const char *fallback) {
  (void)section;
  (void)key;
  return rl_strcpy_s(buffer, (size_t)size, fallback);
}

int cfg_get_int(int section, int key, int fallback) {
  (void)section;
  (void)key;
  return fallback;
}

int cfg_set_string(int section, int key, const char *value) {
  (void)section;
  (void)key;
  (void)value;
  return 0;
}

int cfg_save(int section) {
  (void)section;
  return 0;
}

/* --- The host's blocks, and the adapter between them and their files --- */

static CONTACT_DATA_LIST_T contacts;
static BLACK_DATA_LIST_T blacklist;
static HISTORY_DATA_LIST history;

CONTACT_DATA_LIST_T *cfg_get_contact_list(void) { return &contacts; }
BLACK_DATA_LIST_T *cfg_get_black_list(void) { return &blacklist; }
HISTORY_DATA_LIST *cfg_get_history_list(void) { return &history; }

int cfg_add_save_msg(int code) {
  (void)code;
  return 0;
}

static const char contact_file[] = "/config/Phone/Contact/Contact.xml";
static const char blacklist_file[] = "/config/Phone/Contact/Blacklist.xml";
static const char history_file[] = "/config/Phone/History/History.xml";

CFGXML_CALLBACK_T slots[CFGXML_SLOT_COUNT];

typedef int (*contact_slot)(const char *path, CONTACT_DATA_LIST_T *list);
typedef int (*blacklist_slot)(const char *path, BLACK_DATA_LIST_T *list);
typedef int (*history_slot)(const char *path, HISTORY_DATA_LIST *list);
typedef int (*path_slot)(const char *path);
typedef int (*id_slot)(int id);

int adapter_read_file_ex(void *list, const char *path) {
  if (strcmp(path, contact_file) == 0)
    return ((contact_slot)slots[CFGXML_SLOT_GET_CONTACT_XML])(path, list);
  if (strcmp(path, blacklist_file) == 0)
    return ((blacklist_slot)slots[CFGXML_SLOT_GET_BLACKLIST_XML])(path, list);
  if (strcmp(path, history_file) == 0)
    return ((history_slot)slots[CFGXML_SLOT_GET_HISTORY_XML])(path, list);
  return -1;
}

int adapter_write_file_ex(void *list, const char *path) {
  if (strcmp(path, contact_file) == 0)
    return ((contact_slot)slots[CFGXML_SLOT_SAVE_CONTACT_XML])(path, list);
  if (strcmp(path, blacklist_file) == 0)
    return ((blacklist_slot)slots[CFGXML_SLOT_SAVE_BLACKLIST_XML])(path, list);
  if (strcmp(path, history_file) == 0)
    return ((history_slot)slots[CFGXML_SLOT_SAVE_HISTORY_XML])(path, list);
  return -1;
}

int adapter_check_contact_file_valid(const char *path) {
  return ((path_slot)slots[CFGXML_SLOT_IS_VALID_CONTACT_FILE_XML])(path);
}

int adapter_read_contact_file(const char *path) {
  return ((path_slot)slots[CFGXML_SLOT_COPY_CONTACT_XML])(path);
}

int adapter_move_contact_to_blackList(int id) {
  return ((id_slot)slots[CFGXML_SLOT_MOV_CONTACT_DATA])(id);
}

int adapter_move_blackList_to_contact(int id) {
  return ((id_slot)slots[CFGXML_SLOT_MOV_BLACK_DATA])(id);
}

void *adapter_find_group_id(void *first, void *second, void *third, void *fourth) {
  (void)first;
  (void)second;
  (void)third;
  (void)fourth;
  return NULL;
}

void *adapter_find_contacts_ring_url(void *first, void *second, void *third, void *fourth) {
  return adapter_find_group_id(first, second, third, fourth);
}
