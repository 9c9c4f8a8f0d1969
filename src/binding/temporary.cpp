// Temporary: until the search is written.
#include <cfgxml/search.h>

int TrieIncreaseInfo(const char *, const TRIE_INFO_T *) { return -1; }
int TrieDecreaseInfo(const char *, const TRIE_INFO_T *) { return -1; }
int CfgTrieReloadLocalBookInfo(void) { return -1; }
int CfgTrieSearchVague(const char *, TRIE_RESULT_T **) { return -1; }
int CfgTrieSearchOfCount(const char *, TRIE_ENTRY_T **) { return -1; }
