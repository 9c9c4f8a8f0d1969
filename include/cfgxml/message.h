/* The text messages: one file with an inbox, an outbox, a sent box and a draft box.
 *
 * Every call reads the file and a change writes it again; nothing stays in memory. A file that does
 * not exist is never created: every call then fails, which is not logged. A file that is no
 * well-formed XML has no messages. The next change keeps it as "<file>.corrupt" and writes a new
 * one, which holds that change alone; when there is no message with the id that is to be changed,
 * it writes none, and then there is no file. A change that fails leaves a sound file as it was.
 *
 * Ids are the library's, unique within a box: a new message gets the largest id of its box plus 1.
 * Texts are NUL-terminated; capacities include the terminator. The caller frees each node of a list
 * with rl_free.
 *
 * Every function takes the message lock (45067). Results: 0 success, -1 failure. */
#ifndef CFGXML_MESSAGE_H
#define CFGXML_MESSAGE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* The boxes, as the records name them; an element of another name gives -1. */
enum { CFGXML_INBOX = 1, CFGXML_OUTBOX = 2, CFGXML_SENTBOX = 3, CFGXML_DRAFTBOX = 4 };

/* The messages that a box settles at: adding to more than 100 drops the oldest. */
enum { CFGXML_MESSAGE_CAPACITY = 101 };

/* One message. */
typedef struct SMS_DATA_T {
  int32_t id;
  int32_t status; /* in the inbox 1 is unread, 0 read */
  int32_t type;   /* the box; filled when read, not stored */
  int32_t port;
  char from_user[64];
  char from_display[64];
  char to_user[64];
  char to_display[64];
  char server[64];
  char reserved[128]; /* in no file */
  char content[256];
  char date[16];
  char time[12];
} SMS_DATA_T;

/* A node of the list of every message. */
typedef struct SMS_DETAILS_T {
  SMS_DATA_T data;
  struct SMS_DETAILS_T *next;
} SMS_DETAILS_T;

/* A node of a box's list. */
typedef struct SMS_SUMMARY_T {
  int32_t id;
  int32_t status;
  int32_t type;
  char label[130]; /* "(display name)number" of the other party; a draft's date */
  struct SMS_SUMMARY_T *next;
} SMS_SUMMARY_T;

/* The messages of a box, the newest first, or NULL. A "#" before a number is left out of the label.
 */
SMS_SUMMARY_T *cfg_get_inbox_list(void);
SMS_SUMMARY_T *cfg_get_outbox_list(void);
SMS_SUMMARY_T *cfg_get_sentbox_list(void);
SMS_SUMMARY_T *cfg_get_draftbox_list(void);

/* Copies the message with this id. */
int cfg_get_inbox_data(int id, SMS_DATA_T *out);
int cfg_get_outbox_data(int id, SMS_DATA_T *out);
int cfg_get_sentbox_data(int id, SMS_DATA_T *out);
int cfg_get_draftbox_data(int id, SMS_DATA_T *out);

/* Changes the message with this id; its id stays. An inbox message whose status goes from 1 to 0
 * lowers the unread count. -1 also when there is no such message. */
int cfg_set_inbox_data(int id, const SMS_DATA_T *sms_data);
int cfg_set_outbox_data(int id, const SMS_DATA_T *sms_data);
int cfg_set_sentbox_data(int id, const SMS_DATA_T *sms_data);
int cfg_set_draftbox_data(int id, const SMS_DATA_T *sms_data);

/* Adds a message at the end of its box; the record's id is not read and not written back. In the
 * inbox, a message with status 1 raises the unread count. */
int cfg_add_inbox_data(const SMS_DATA_T *sms_data);
int cfg_add_outbox_data(const SMS_DATA_T *sms_data);
int cfg_add_sentbox_data(const SMS_DATA_T *sms_data);
int cfg_add_draftbox_data(const SMS_DATA_T *sms_data);

/* Removes every message with this id; 0 also when there is none. */
int cfg_remove_inbox_data(int id);
int cfg_remove_outbox_data(int id);
int cfg_remove_sentbox_data(int id);
int cfg_remove_draftbox_data(int id);

/* Empties a box and sets its counters to 0. */
int cfg_remove_inbox_all(void);
int cfg_remove_outbox_all(void);
int cfg_remove_sentbox_all(void);
int cfg_remove_draftbox_all(void);

/* Every message of every box, the last message of the last box first, or NULL. */
SMS_DETAILS_T *cfg_get_all_sms_details_list(void);

/* The inbox's count of unread messages, or -1. */
int cfg_get_inbox_unread(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
