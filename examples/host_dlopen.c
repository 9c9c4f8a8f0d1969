/* A host that loads the library at run time, as a phone does: it is not linked with it, and calls
 * what dlsym finds. The library's own calls of the services bind to the program when it is loaded,
 * so the program exports them (-rdynamic). The services are in services.c. */
#include <cfgxml/cfgxml.h>
#include <cfgxml/host.h>
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "services.h"

static void *library;

static void *find(const char *name) {
  void *function = dlsym(library, name);
  if (function != NULL) return function;
  fprintf(stderr, "%s\n", dlerror());
  exit(1);
}

/* An exported function, under the type that its header declares. */
#define CFGXML(name) ((__typeof__(&(name)))find(#name))

int main(int argc, char **argv) {
  const char *folder = argc > 1 ? argv[1] : ".";
  CONTACT_DATA_T contact = {.DisplayName = "Cy Example", .OfficeNumber = "5550199"};
  TRIE_RESULT_T *hits = NULL;
  int result;

  library = dlopen("libcfgxml.so.1", RTLD_NOW);
  if (library == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  if (make_data_folders(folder) != 0) return 1;
  CFGXML(cfgxml_set_root)(folder);
  CFGXML(cfgxml_cb_init)(slots);
  ((int (*)(CONTACT_DATA_LIST_T *))slots[CFGXML_SLOT_CONTACT_INIT])(cfg_get_contact_list());
  ((int (*)(BLACK_DATA_LIST_T *))slots[CFGXML_SLOT_BLACK_INIT])(cfg_get_black_list());
  ((int (*)(HISTORY_DATA_LIST *))slots[CFGXML_SLOT_HISTORY_INIT])(cfg_get_history_list());
  CFGXML(CfgTrieReloadLocalBookInfo)();

  strcpy(contact.Group, "Default");
  result = CFGXML(cfg_add_contact_data)(&contact);
  if (CFGXML(CfgTrieSearchVague)("29", &hits) > 0)
    printf("keys 29: %s\n", ((CONTACT_DATA_T *)hits->records[CFGXML_BOOK_LOCAL][0])->DisplayName);
  return result != 0 || hits == NULL;
}
