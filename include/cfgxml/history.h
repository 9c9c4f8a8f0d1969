/* The call history: a table of 100 records that the host owns. */
#ifndef CFGXML_HISTORY_H
#define CFGXML_HISTORY_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

enum { CFGXML_HISTORY_CAPACITY = 100 };

/* One call. */
typedef struct HISTORY_DATA_T {
  int32_t ID;     /* 1 or more; below 1 marks a free slot */
  int32_t CallID; /* the caller's, not interpreted */
  int32_t Type;   /* the host's code */
  int32_t Status; /* the host's code */
  char Date[16];
  char Time[12];
  char Reserved[12]; /* the host's; copied with the record, stored in no file */
  char LocalSipName[64];
  char LocalSipServer[64];
  int32_t LocalSipPort;
  char RemoteSipName[64];
  char RemoteSipServer[64];
  char RemoteDisplayName[64];
  int32_t RemoteSipPort;
  char CallDuration[12];
} HISTORY_DATA_T;

/* The host's call table, packed from the front, the oldest call first. */
typedef struct HISTORY_DATA_LIST {
  HISTORY_DATA_T Records[CFGXML_HISTORY_CAPACITY];
} HISTORY_DATA_LIST;

/* Read and write History.xml, under the caller's lock; path is not used. 0 or -1. */
int get_history_xml(const char *path, HISTORY_DATA_LIST *list);
int save_history_xml(const char *path, HISTORY_DATA_LIST *list);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
