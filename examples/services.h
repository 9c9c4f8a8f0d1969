/* What services.c has for its host beside the services of cfgxml/host.h. */
#ifndef CFGXML_EXAMPLES_SERVICES_H
#define CFGXML_EXAMPLES_SERVICES_H

#include <cfgxml/binding.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The callback table, which the host has the library fill. The adapter calls the library through it
 * and through nothing else, so a host may load the library at run time. */
extern CFGXML_CALLBACK_T slots[CFGXML_SLOT_COUNT];

/* Creates the folders of the data files below root. The library creates files, but no folders. 0,
 * or -1 when one can not be created. */
int make_data_folders(const char *root);

#ifdef __cplusplus
}
#endif

#endif
