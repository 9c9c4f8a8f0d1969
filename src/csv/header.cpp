// The header line of a contact CSV file, and the check of a file by it.
#include <cfgxml/csv.h>
#include <cfgxml/host.h>

#include <cstring>

#include "csv/rows.h"
#include "support/chain.h"
#include "support/lock.h"
#include "support/paths.h"
#include "support/regular_file.h"
#include "support/text.h"

namespace cfgxml::csv {
namespace {

static_assert(offsetof(CSV_CONTACT_LIST_T, name) == 4);
static_assert(offsetof(CSV_CONTACT_LIST_T, next) == 136 - 4 * (sizeof(void*) == 4));

using Header = Chain<CSV_CONTACT_LIST_T>;

bool append_column(Header& header, const char* name) {
  CSV_CONTACT_LIST_T* column = header.append();
  if (column == nullptr) {
    rl_log_err("%s: Malloc a buf failed", "list_add_contact_section");
    return false;
  }
  copy_text(column->name, name);
  return true;
}

/// Appends the columns of a line; consecutive commas count as one.
bool append_columns(Header& header, Line& line) {
  char* rest = nullptr;
  for (char* name = strtok_r(line, ",", &rest); name != nullptr;
       name = strtok_r(nullptr, ",", &rest)) {
    rl_strtrim(name);
    if (!append_column(header, name)) return false;
  }
  return true;
}

int read_header(const char* path, CSV_CONTACT_LIST_T** list) {
  if (path == nullptr || list == nullptr) return -1;
  const File file = open_to_read(paths::on_disk(path));
  if (file == nullptr) return -1;
  Line line;
  if (!read_line(file.get(), line)) return 0;
  Header header(*list, Allocator::kHost);
  *list = nullptr;
  if (append_columns(header, line)) *list = header.release();
  return 0;
}

int is_valid_file(const char* path, const char* function) {
  if (is_empty(path)) {
    rl_log_err("%s failed: file_path is empty.", function);
    return 0;
  }
  if (rl_file_size(paths::on_disk(path).c_str()) < 1) {
    rl_log_err("%s failed: invalid file size.", function);
    return 0;
  }
  CSV_CONTACT_LIST_T* header = nullptr;
  get_contact_csv_head(path, &header);
  const int valid = header != nullptr ? list_loop_compare(header) : 0;
  list_free(header);
  return valid;
}

}  // namespace
}  // namespace cfgxml::csv

int get_contact_csv_head(const char* path, CSV_CONTACT_LIST_T** list) {
  return cfgxml::guarded(-1, cfgxml::csv::read_header, path, list);
}

CSV_CONTACT_LIST_T* list_add_contact_section(CSV_CONTACT_LIST_T* list, char* name) {
  cfgxml::csv::Header header(list, cfgxml::Allocator::kHost);
  const bool appended = cfgxml::csv::append_column(header, name);
  list = header.release();
  return appended ? list : nullptr;
}

int list_loop_compare(CSV_CONTACT_LIST_T* list) {
  for (const cfgxml::csv::Column& column : cfgxml::csv::kColumns) {
    if (list == nullptr) return 1;
    if (!cfgxml::equal(list->name, column.name)) return 0;
    list = list->next;
  }
  return list == nullptr ? 1 : 0;
}

void list_free(CSV_CONTACT_LIST_T* list) { cfgxml::free_chain(list); }

int is_valid_contact_file_csv(const char* path) {
  return cfgxml::guarded(0, cfgxml::csv::is_valid_file, path, __func__);
}
