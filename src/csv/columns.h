// The columns of a contact CSV file. Files are read and written by the place of a column; the names
// stand in the header line only.
#pragma once

#include <cstddef>
#include <cstdint>

namespace cfgxml::csv {

/// What a field carries.
enum class Value : std::uint8_t {
  kNothing,
  kName,
  kOffice,
  kMobile,
  kOther,
  kRing,
  kGroup,
  kGroupRing,
  kGroupDescription,
  kPhoto,
  kLine,
  kEnd,
};

struct Column {
  const char* name;
  Value imported;
  Value exported;
};

inline constexpr Column kColumns[] = {
    {"FN", Value::kName, Value::kName},
    {"N", Value::kNothing, Value::kName},
    {"EMAIL", Value::kNothing, Value::kNothing},
    {"TEL_HOME", Value::kNothing, Value::kNothing},
    {"TEL_WORK", Value::kOffice, Value::kOffice},
    {"TEL_MOBILE", Value::kMobile, Value::kMobile},
    {"TEL_OTHER", Value::kOther, Value::kOther},
    {"TEL_FAX", Value::kNothing, Value::kNothing},
    {"TEL_CUSTOM", Value::kNothing, Value::kNothing},
    {"RING", Value::kRing, Value::kRing},
    {"COMPANY", Value::kNothing, Value::kNothing},
    {"TITLE", Value::kNothing, Value::kNothing},
    {"ADDR_MAIN", Value::kNothing, Value::kNothing},
    {"ADDR_OTHER", Value::kNothing, Value::kNothing},
    {"IMS", Value::kNothing, Value::kNothing},
    {"WEB", Value::kNothing, Value::kNothing},
    {"NOTES", Value::kNothing, Value::kNothing},
    {"BIRTHDAY", Value::kNothing, Value::kNothing},
    {"X-IRMC-LUID", Value::kNothing, Value::kNothing},
    {"GROUP", Value::kGroup, Value::kGroup},
    {"GROUP_RING", Value::kGroupRing, Value::kGroupRing},
    {"GROUP_DESCRIPTION", Value::kGroupDescription, Value::kGroupDescription},
    {"PHOTO", Value::kPhoto, Value::kPhoto},
    {"LINE", Value::kLine, Value::kLine},
    {"END", Value::kNothing, Value::kEnd},
};

/// The text that ends a row.
inline constexpr char kEndOfRow[] = "END";

/// Bytes of a line that are read in one piece, its line end and the terminator included.
inline constexpr std::size_t kLineCapacity = 4096;

}  // namespace cfgxml::csv
