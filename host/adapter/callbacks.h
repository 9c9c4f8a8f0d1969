// The callback table that the plug-in filled, with each slot under its own type.
#pragma once

#include <cfgxml/binding.h>

#include <array>

namespace host {

class Callbacks {
 public:
  void fill(decltype(&cfgxml_cb_init) fill_table) { fill_table(table_.data()); }

  int contact_init(CONTACT_DATA_LIST_T* list) const {
    return slot<int(CONTACT_DATA_LIST_T*)>(CFGXML_SLOT_CONTACT_INIT)(list);
  }
  int black_init(BLACK_DATA_LIST_T* list) const {
    return slot<int(BLACK_DATA_LIST_T*)>(CFGXML_SLOT_BLACK_INIT)(list);
  }
  int history_init(HISTORY_DATA_LIST* list) const {
    return slot<int(HISTORY_DATA_LIST*)>(CFGXML_SLOT_HISTORY_INIT)(list);
  }

  int contact_save_init(int flag) const {
    return slot<int(int)>(CFGXML_SLOT_CONTACT_SAVE_INIT)(flag);
  }
  int black_save_init(int flag) const { return slot<int(int)>(CFGXML_SLOT_BLACK_SAVE_INIT)(flag); }
  int history_save_init(int flag) const {
    return slot<int(int)>(CFGXML_SLOT_HISTORY_SAVE_INIT)(flag);
  }

  int contact_delay_save() const { return slot<int()>(CFGXML_SLOT_CONTACT_DELAY_SAVE)(); }
  int black_delay_save() const { return slot<int()>(CFGXML_SLOT_BLACK_DELAY_SAVE)(); }
  int history_delay_save() const { return slot<int()>(CFGXML_SLOT_HISTORY_DELAY_SAVE)(); }

  int get_contact_xml(const char* path, CONTACT_DATA_LIST_T* list) const {
    return slot<int(const char*, CONTACT_DATA_LIST_T*)>(CFGXML_SLOT_GET_CONTACT_XML)(path, list);
  }
  int save_contact_xml(const char* path, CONTACT_DATA_LIST_T* list) const {
    return slot<int(const char*, CONTACT_DATA_LIST_T*)>(CFGXML_SLOT_SAVE_CONTACT_XML)(path, list);
  }
  int get_contact_csv(const char* path, CONTACT_DATA_LIST_T* list) const {
    return slot<int(const char*, CONTACT_DATA_LIST_T*)>(CFGXML_SLOT_GET_CONTACT_CSV)(path, list);
  }
  int save_contact_csv(const char* path, CONTACT_SUMMARY_T* summary) const {
    return slot<int(const char*, CONTACT_SUMMARY_T*)>(CFGXML_SLOT_SAVE_CONTACT_CSV)(path, summary);
  }
  COMMUNITY_DATA_T* get_community_contact_csv(const char* path) const {
    return slot<COMMUNITY_DATA_T*(const char*)>(CFGXML_SLOT_GET_COMMUNITY_CONTACT_CSV)(path);
  }
  int save_community_xml(const char* path, COMMUNITY_DATA_T* data) const {
    return slot<int(const char*, COMMUNITY_DATA_T*)>(CFGXML_SLOT_SAVE_COMMUNITY_XML)(path, data);
  }
  int copy_contact_xml(const char* path) const {
    return slot<int(const char*)>(CFGXML_SLOT_COPY_CONTACT_XML)(path);
  }
  int is_valid_contact_file_xml(const char* path) const {
    return slot<int(const char*)>(CFGXML_SLOT_IS_VALID_CONTACT_FILE_XML)(path);
  }
  int is_valid_contact_file_csv(const char* path) const {
    return slot<int(const char*)>(CFGXML_SLOT_IS_VALID_CONTACT_FILE_CSV)(path);
  }
  int get_blacklist_xml(const char* path, BLACK_DATA_LIST_T* list) const {
    return slot<int(const char*, BLACK_DATA_LIST_T*)>(CFGXML_SLOT_GET_BLACKLIST_XML)(path, list);
  }
  int save_blacklist_xml(const char* path, BLACK_DATA_LIST_T* list) const {
    return slot<int(const char*, BLACK_DATA_LIST_T*)>(CFGXML_SLOT_SAVE_BLACKLIST_XML)(path, list);
  }
  int get_history_xml(const char* path, HISTORY_DATA_LIST* list) const {
    return slot<int(const char*, HISTORY_DATA_LIST*)>(CFGXML_SLOT_GET_HISTORY_XML)(path, list);
  }
  int save_history_xml(const char* path, HISTORY_DATA_LIST* list) const {
    return slot<int(const char*, HISTORY_DATA_LIST*)>(CFGXML_SLOT_SAVE_HISTORY_XML)(path, list);
  }

  int mov_contact_data(int id) const { return slot<int(int)>(CFGXML_SLOT_MOV_CONTACT_DATA)(id); }
  int mov_black_data(int id) const { return slot<int(int)>(CFGXML_SLOT_MOV_BLACK_DATA)(id); }

 private:
  template <typename Signature>
  Signature* slot(std::size_t number) const {
    return reinterpret_cast<Signature*>(table_[number]);
  }

  std::array<CFGXML_CALLBACK_T, CFGXML_SLOT_COUNT> table_{};
};

}  // namespace host
