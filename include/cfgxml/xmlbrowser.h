/* The XML browser: documents that a server pushes or that the phone fetches, turned into flat
 * screen objects that the user interface reads field by field.
 *
 * Use: cfg_parse_remote_xml, then cfg_get_remote_xml_type to learn which object was made, then the
 * accessor of that type; when the screen is left, the release function of that type. There is one
 * current object per type. The next document of a type does not release the object before it: the
 * caller does, before parsing.
 *
 * Objects: a zero-filled block of the fields below, in this order and without gaps. Character
 * fields hold NUL-terminated text cut to their capacity, which includes the terminator; what the
 * document does not carry stays zero. Flags are 1 or 0. What does not fit an array is dropped.
 *
 * No function takes a lock. All of them belong to one thread, or their caller lets only one run at
 * a time. */
#ifndef CFGXML_XMLBROWSER_H
#define CFGXML_XMLBROWSER_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

enum {
  CFGXML_MENU_ITEM_CAPACITY = 30,
  CFGXML_OPTION_CAPACITY = 30, /* of a menu item or an input field */
  CFGXML_ENTRY_CAPACITY = 500,
  CFGXML_INPUT_FIELD_CAPACITY = 20,
  CFGXML_SOFT_KEY_CAPACITY = 4,
  CFGXML_KEY_CAPACITY = 3
};

/* The type of a document: its root element is a prefix, "IPPhone" unless item 0 of section 46 says
 * otherwise, and the name given here. */
enum {
  XML_TYPE_NONE = 0,
  XML_TYPE_TEXT_MENU = 1,    /* TextMenu */
  XML_TYPE_TEXT_SCREEN = 2,  /* TextScreen */
  XML_TYPE_DIRECTORY = 3,    /* Directory */
  XML_TYPE_INPUT_SCREEN = 4, /* InputScreen */
  XML_TYPE_CONFIGURATION = 5 /* Configuration */
};

/* The presence of a directory entry. */
enum {
  XML_PRESENCE_NONE = 0, /* none given, or none of these */
  XML_PRESENCE_OFFLINE = 1,
  XML_PRESENCE_DND = 2,
  XML_PRESENCE_ONLINE = 3,
  XML_PRESENCE_AWAY = 4,
  XML_PRESENCE_RINGING = 5,
  XML_PRESENCE_BUSY = 6,
  XML_PRESENCE_BUSY_RINGING = 7,
  XML_PRESENCE_OUTGOING = 8,
  XML_PRESENCE_MISSED_CALL = 9
};

/* How the text of an input field is entered. */
enum {
  XML_INPUT_UNKNOWN = -1,
  XML_INPUT_EDIT = 0, /* "edit", "number", or no type */
  XML_INPUT_COMBOX = 1,
  XML_INPUT_IPADDR = 2,
  XML_INPUT_DATE = 3,
  XML_INPUT_TIME = 4,
  XML_INPUT_PROGRESS = 5
};

/* What the root of a text menu adds to the header. */
typedef struct XML_TEXT_MENU_BLOCK_T {
  int32_t LocalData[CFGXML_MENU_ITEM_CAPACITY]; /* flags, one per item */
  int32_t IsSimplified;                         /* flag */
  int32_t DivPosPix;
  char CombineData[64];
} XML_TEXT_MENU_BLOCK_T;

/* What the root and the fields of an input screen add to the header; an entry per field. */
typedef struct XML_INPUT_SCREEN_BLOCK_T {
  int32_t type[CFGXML_INPUT_FIELD_CAPACITY];     /* XML_INPUT_... */
  int32_t password[CFGXML_INPUT_FIELD_CAPACITY]; /* flags */
  int32_t editable[CFGXML_INPUT_FIELD_CAPACITY]; /* flags */
  int32_t Reserved[2];
  int32_t DivPosPix;
  int32_t is_interger[CFGXML_INPUT_FIELD_CAPACITY]; /* flags: options count from min to max */
  int32_t min[CFGXML_INPUT_FIELD_CAPACITY];
  int32_t max[CFGXML_INPUT_FIELD_CAPACITY];
  int32_t step[CFGXML_INPUT_FIELD_CAPACITY];
  int32_t emptyable[CFGXML_INPUT_FIELD_CAPACITY]; /* flags */
  char CombineData[64];
  char SaveNext[128];
  int32_t startodot[CFGXML_INPUT_FIELD_CAPACITY]; /* flags */
} XML_INPUT_SCREEN_BLOCK_T;

/* The beginning of every object: what the attributes of the root element say. */
typedef struct XML_BROWSER_HEADER_T {
  int32_t type;         /* XML_TYPE_... */
  int32_t defaultIndex; /* 0 when absent, 1 when empty */
  char style[64];
  int32_t Beep;     /* 1 for "yes", 0 for "no" or absent, else the number given */
  int32_t wrapList; /* flag */
  int32_t Timeout;  /* -1 when absent or empty */
  int32_t LockIn;   /* flag */
  int32_t LocalData;
  int32_t RollMode;
  int32_t Dial;  /* 1 for "Telephone1", else 0 */
  int32_t Dial1; /* 0 for "Telephone" or absent, else 1 */
  char InputType[64];
  char Next[128];
  char Previous[128];
  char Selection[512];
  char Exit[128];
  int32_t Reserved[3];
  union {
    XML_TEXT_MENU_BLOCK_T menu;
    XML_INPUT_SCREEN_BLOCK_T input;
  } block; /* zero for the other types */
} XML_BROWSER_HEADER_T;

typedef struct XML_SOFTKEY_T {
  char Label[64];
  char URI[256];
} XML_SOFTKEY_T;

typedef struct XML_OPTION_T {
  char text[64]; /* what is shown */
  char value[12];
} XML_OPTION_T;

typedef struct XML_TEXT_SCREEN_T {
  XML_BROWSER_HEADER_T header;
  char Title[64];
  int32_t wrap;          /* flag */
  int32_t showlistcount; /* flag */
  char Text[256];
  XML_SOFTKEY_T SoftKeys[CFGXML_SOFT_KEY_CAPACITY];
} XML_TEXT_SCREEN_T;

typedef struct XML_MENU_ITEM_T {
  char Prompt[64];
  char URI[256];
  char Dial[64];
  char Selection[64];
  char PromptDataID[64]; /* attribute DataID of the item's Prompt */
  char DataID[64];
  int32_t Reserved;
  XML_OPTION_T Options[CFGXML_OPTION_CAPACITY];
} XML_MENU_ITEM_T;

typedef struct XML_TEXT_MENU_T {
  XML_BROWSER_HEADER_T header;
  char Title[64];
  int32_t wrap;
  int32_t ItemCount; /* 0 to 30 */
  int32_t showlistcount;
  XML_MENU_ITEM_T Items[CFGXML_MENU_ITEM_CAPACITY];
  XML_SOFTKEY_T SoftKeys[CFGXML_SOFT_KEY_CAPACITY];
} XML_TEXT_MENU_T;

typedef struct XML_DIRECTORY_ENTRY_T {
  char Name[64];
  char Telephone[64];
  char Telephone1[64];
  char Presence[64]; /* as written */
  char URI[128];
  char Selection[64];
  int32_t PresenceState; /* XML_PRESENCE_... */
} XML_DIRECTORY_ENTRY_T;

typedef struct XML_DIRECTORY_T {
  XML_BROWSER_HEADER_T header;
  char Title[64];
  int32_t wrap;
  int32_t EntryCount; /* 0 to 500 */
  int32_t showlistcount;
  XML_DIRECTORY_ENTRY_T Entries[CFGXML_ENTRY_CAPACITY];
  XML_SOFTKEY_T SoftKeys[CFGXML_SOFT_KEY_CAPACITY];
} XML_DIRECTORY_T;

typedef struct XML_INPUT_FIELD_T {
  char Prompt[64];
  char Parameter[64];
  char Default[64];
  char URL[256];
  char DataID[64];
  XML_OPTION_T Options[CFGXML_OPTION_CAPACITY];
} XML_INPUT_FIELD_T;

typedef struct XML_INPUT_SCREEN_T {
  XML_BROWSER_HEADER_T header; /* with the attributes of every field */
  char Title[64];
  int32_t wrap;
  int32_t FieldCount; /* 1 to 20; the root element is the first field */
  int32_t showlistcount;
  XML_INPUT_FIELD_T Fields[CFGXML_INPUT_FIELD_CAPACITY];
  XML_SOFTKEY_T SoftKeys[CFGXML_SOFT_KEY_CAPACITY];
} XML_INPUT_SCREEN_T;

typedef struct XML_KEY_CONFIG_T {
  char Type[12];
  char Label[64];
  char Param1[128];
  char Param2[64];
  char Param3[64];
  char Reserved[64];
} XML_KEY_CONFIG_T;

typedef struct XML_CONFIGURATION_T {
  XML_BROWSER_HEADER_T header;
  XML_KEY_CONFIG_T Keys[CFGXML_KEY_CAPACITY];
} XML_CONFIGURATION_T;

/* Parses the document at this path into a new object of its type, which becomes the current one.
 * A path of the file cache is taken from there, with the default element names; any other is
 * loaded, within the limits that binding.h gives. 0, also for a root element of no known type (then
 * cfg_get_remote_xml_type gives 0 and no object changes); -1 for NULL, a file that does not load, a
 * document without a root element, and when memory is out. After -1 the type is 0 and every object
 * is as it was. */
int cfg_parse_remote_xml(const char *path);

/* The type of the last document parsed (XML_TYPE_...). */
int cfg_get_remote_xml_type(void);

/* The current object of a type, or NULL. It stays the library's and lives until it is released. */
XML_TEXT_SCREEN_T *cfg_get_text_screen_object(void);
XML_TEXT_MENU_T *cfg_get_text_menu_object(void);
XML_DIRECTORY_T *cfg_get_xml_browser_directory_object(void);
XML_INPUT_SCREEN_T *cfg_get_xml_browser_input_screen_object(void);
XML_CONFIGURATION_T *cfg_get_xml_browser_configuration_object(void);

/* Free the current object of a type; 0, or -1 when there is none. */
int cfg_destory_text_screen_object(void);
int cfg_destory_text_menu_object(void);
int cfg_destory_xml_browser_directory_object(void);
int cfg_destory_xml_browser_input_screen_object(void);
int cfg_destory_xml_browser_configuration_object(void);

/* Reads every factory document, the files of "/app/factory/Static/XMLBrowser/", into the file
 * cache, unless it holds documents already. Hidden files, folders and what cannot be read are
 * skipped; line ends become LF. 0; -1 when the folder cannot be read, or when memory runs out,
 * which keeps the documents read so far. */
int cfg_load_local_xml_file_cache(void);

/* Empties the file cache. Always 0. */
int cfg_free_local_xml_file_cache(void);

/* Replaces every occurrence of one string in a text by another, in place, from left to right; the
 * result is cut to the capacity in bytes. 0; -1 and an unchanged text when an argument is NULL, the
 * string to find is empty, the capacity is below 1, or memory is out. */
int xmlbrowser_str_replace(char *text, int capacity, const char *old_text, const char *new_text);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
