/* The table of time zones, a file that the library only reads.
 *
 * Texts are NUL-terminated; capacities include the terminator. */
#ifndef CFGXML_TIMEZONE_H
#define CFGXML_TIMEZONE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* A node of the list of zones. */
typedef struct TIMEZONE_DATA_T {
  int32_t Id;
  char TimeZone[64]; /* the zone's value as the configuration stores it; several names may share it
                      */
  char Name[64];
  struct TIMEZONE_DATA_T *next;
} TIMEZONE_DATA_T;

/* A zone's rule for daylight saving, in the forms of the table, not interpreted. */
typedef struct DST_INFO_T {
  int32_t Type;
  char Start[64];
  char End[64];
  char Offset[64];
} DST_INFO_T;

/* The zones in the table's order, or NULL; takes the time-zone lock (45082). The caller frees the
 * list with cfg_destory_timezone_list. */
TIMEZONE_DATA_T *cfg_get_timezone_list(void);

/* Frees a list of zones; 0, or -1 for NULL; no lock. */
int cfg_destory_timezone_list(TIMEZONE_DATA_T *timezone_header);

/* Fills the record with the daylight saving of the first zone of this name; no lock. 0; -1 when
 * there is no such zone or it has no daylight saving, and the record stays as it was. */
int cfg_get_dst_info_by_timezone(const char *name, DST_INFO_T *out);

/* Brings the configured zone name (section 26, item 65) into line with the configured zone (item
 * 64): a name that belongs to the zone stays, another is replaced by the zone's first name, or
 * cleared when the table does not know the zone, and section 26 is saved. Takes the time-zone lock
 * only while it reads the table. 0; -1 without a table, or when memory runs out, which changes
 * nothing. */
int cfg_match_timezone_name(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
