/* Time zones. */
#ifndef CFGXML_TIMEZONE_H
#define CFGXML_TIMEZONE_H

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Brings the configured zone name into line with the configured zone. 0 or -1. */
int cfg_match_timezone_name(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
