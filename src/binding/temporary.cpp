
// Temporary: until the phonebook, the search and the remote books are written.
#include <cfgxml/phonebook.h>
#include <cfgxml/remote.h>
#include <cfgxml/search.h>
int is_name_in_group(const char *, int) { return -1; }
int is_name_in_contact(const char *, int) { return -1; }
int is_name_in_black(const char *, int) { return -1; }
int cfg_destory_contact_summary(CONTACT_SUMMARY_T *) { return -1; }
CONTACT_SUMMARY_T *cfg_get_contact_summary(const char *) { return nullptr; }
CONTACT_SUMMARY_T *cfg_search_contact_summary(const char *) { return nullptr; }
int cfg_get_contact_data(int, CONTACT_DATA_T *) { return -1; }
int cfg_add_contact_data(CONTACT_DATA_T *) { return -1; }
int cfg_mod_contact_data(CONTACT_DATA_T *) { return -1; }
int cfg_del_contact_data(int) { return -1; }
int cfg_del_all_contacts(void) { return -1; }
int cfg_del_contacts_by_group(const char *) { return -1; }
GROUP_SUMMARY_T *cfg_get_group_summary(void) { return nullptr; }
int cfg_destory_group_summary(GROUP_SUMMARY_T *) { return -1; }
int cfg_get_group_data(GROUP_DATA_T *) { return -1; }
int cfg_add_group_data(GROUP_DATA_T *) { return -1; }
int cfg_mod_group_data(GROUP_DATA_T *) { return -1; }
int cfg_del_group_data(int) { return -1; }
int cfg_del_all_group_data(void) { return -1; }
int cfg_del_contact_ring_info(const char *) { return -1; }
int cfg_del_contact_photo_info(const char *) { return -1; }
CONTACT_SUMMARY_T *cfg_get_black_summary(void) { return nullptr; }
CONTACT_SUMMARY_T *cfg_search_black_info(const char *) { return nullptr; }
int cfg_get_black_data(int, CONTACT_DATA_T *) { return -1; }
int cfg_add_black_data(CONTACT_DATA_T *) { return -1; }
int cfg_set_black_data(CONTACT_DATA_T *) { return -1; }
int cfg_remove_black_data(int) { return -1; }
int cfg_remove_black_all(void) { return -1; }
int cfg_mov_contact_data(int) { return -1; }
int cfg_mov_black_data(int) { return -1; }
int mov_contact_data(int) { return -1; }
int mov_black_data(int) { return -1; }
int get_contact_xml(const char *, CONTACT_DATA_LIST_T *) { return -1; }
int save_contact_xml(const char *, CONTACT_DATA_LIST_T *) { return -1; }
int save_community_xml(const char *, COMMUNITY_DATA_T *) { return -1; }
int get_blacklist_xml(const char *, BLACK_DATA_LIST_T *) { return -1; }
int save_blacklist_xml(const char *, BLACK_DATA_LIST_T *) { return -1; }
int is_valid_contact_file_xml(const char *) { return -1; }
int copy_contact_xml(const char *) { return -1; }
int cfg_upload_contact(const char *) { return -1; }
int cfg_upload_blacklist(const char *) { return -1; }
int contact_data_sync(void) { return -1; }
int TrieIncreaseInfo(const char *, const TRIE_INFO_T *) { return -1; }
int TrieDecreaseInfo(const char *, const TRIE_INFO_T *) { return -1; }
int CfgTrieReloadLocalBookInfo(void) { return -1; }
int CfgTrieReloadRemoteBookInfo(int) { return -1; }
int CfgTrieRemoveRemoteBookInfo(int) { return -1; }
int CfgTrieSearchVague(const char *, TRIE_RESULT_T **) { return -1; }
int CfgTrieSearchOfCount(const char *, TRIE_ENTRY_T **) { return -1; }
int cfg_get_remote_book_id(const char *) { return -1; }
CONTACT_SUMMARY_T *cfg_get_remote_contact_summary(const char *) { return nullptr; }
int cfg_get_remote_contact_summary_clone_id(void) { return -1; }
int cfg_set_remote_contact_summary_clone_id(int) { return -1; }
int cfg_get_remote_contact_data(int, CONTACT_DATA_T *) { return -1; }
CONTACT_SUMMARY_T *cfg_search_remote_contact_info(const char *) { return nullptr; }
int cfg_destory_remote_conatct_list(const char *) { return -1; }
