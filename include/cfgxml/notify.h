/* The notification settings that the management server asked for, a list of parameters in one file.
 *
 * No host lock: a mutex of the library keeps the calls apart. Lists belong to the caller. */
#ifndef CFGXML_NOTIFY_H
#define CFGXML_NOTIFY_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* A parameter and its setting, which is not interpreted. */
typedef struct NOTIFICATION_T {
  char Name[256]; /* NUL-terminated; at most 127 characters when read from the file */
  int32_t Notify;
  struct NOTIFICATION_T *next;
} NOTIFICATION_T;

/* The list in the file's order; NULL when there is none, or no readable file. The caller frees it
 * with cfg_destory_notification_list. */
NOTIFICATION_T *cfg_get_notification_list(void);

/* Replaces the file's list. A missing file is created; one that is no well-formed XML is kept as
 * "<file>.corrupt" and replaced. 0; -1 for NULL, or when the file cannot be written. */
int cfg_save_notification_list(const NOTIFICATION_T *list);

/* Frees a list; 0, or -1 for NULL. */
int cfg_destory_notification_list(NOTIFICATION_T *list);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
