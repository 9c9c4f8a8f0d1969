/* A host in C: starts the library over the folder given, adds a contact, lists the phonebook and
 * finds the contact from the keypad. The services are in services.c. */
#include <cfgxml/cfgxml.h>
#include <cfgxml/host.h>
#include <stdio.h>
#include <string.h>

#include "services.h"

static void start(const char *folder) {
  cfgxml_set_root(folder);
  cfgxml_cb_init(slots);
  /* -1 each while there is no file yet. */
  ((int (*)(CONTACT_DATA_LIST_T *))slots[CFGXML_SLOT_CONTACT_INIT])(cfg_get_contact_list());
  ((int (*)(BLACK_DATA_LIST_T *))slots[CFGXML_SLOT_BLACK_INIT])(cfg_get_black_list());
  ((int (*)(HISTORY_DATA_LIST *))slots[CFGXML_SLOT_HISTORY_INIT])(cfg_get_history_list());
  CfgTrieReloadLocalBookInfo();
}

int main(int argc, char **argv) {
  const char *folder = argc > 1 ? argv[1] : ".";
  CONTACT_DATA_T contact = {.DisplayName = "Ada Example", .OfficeNumber = "5550100"};
  CONTACT_SUMMARY_T *all, *node;
  TRIE_RESULT_T *hits = NULL;
  int result;

  if (make_data_folders(folder) != 0) return 1;
  start(folder);
  strcpy(contact.Group, "Default");
  result = cfg_add_contact_data(&contact);
  printf("added %s: result %d, id %d\n", contact.DisplayName, result, contact.Id);

  all = cfg_get_contact_summary("");
  for (node = all; node != NULL; node = node->next)
    printf("%d %s %s\n", node->Id, node->DisplayName, node->OfficeNumber);
  cfg_destory_contact_summary(all);

  if (CfgTrieSearchVague("232", &hits) > 0)
    printf("keys 232: %s\n", ((CONTACT_DATA_T *)hits->records[CFGXML_BOOK_LOCAL][0])->DisplayName);
  return result != 0 || hits == NULL;
}
