#include "wexpol/records/codec.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>

#include "wexpol/platform/text.h"

namespace wexpol {
namespace {

template <typename Integer>
void WriteNumber(Integer value, std::string& out) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  out.append(digits, end);
}

// A column value that is not NULL. Asking for the type only when the value reads as 0 spares most
// rows a call per column.
bool ReadInt(sqlite3_stmt* row, int column, std::int32_t& value) {
  value = sqlite3_column_int(row, column);
  return value != 0 || sqlite3_column_type(row, column) != SQLITE_NULL;
}

template <typename Integer>
struct NumberCoding {
  static bool Parse(const rapidjson::Value& value, Integer& field) {
    if constexpr (std::is_unsigned_v<Integer>) {
      if (!value.IsUint()) return false;
      field = value.GetUint();
    } else {
      if (!value.IsInt()) return false;
      field = static_cast<Integer>(value.GetInt());
    }
    return true;
  }
  static bool IsNull(Integer field) { return field == static_cast<Integer>(-1); }
  static void Write(Integer field, std::string& out) { WriteNumber(field, out); }
  static void Bind(Integer field, Statement& statement, int index) {
    if (IsNull(field)) return statement.BindNull(index);
    statement.Bind(index, static_cast<std::int32_t>(field));
  }
  static void Copy(sqlite3_stmt* row, int column, Integer& field) {
    std::int32_t value;
    if (ReadInt(row, column, value)) field = static_cast<Integer>(value);
  }
};

template <typename Integer, Integer kNull>
struct Int64Coding {
  static bool Parse(const rapidjson::Value& value, Integer& field) {
    if (!value.IsInt64()) return false;
    field = static_cast<Integer>(value.GetInt64());
    return true;
  }
  static bool IsNull(Integer field) { return field == kNull; }
  static void Write(Integer field, std::string& out) { WriteNumber(field, out); }
  static void Bind(Integer field, Statement& statement, int index) {
    if (IsNull(field)) return statement.BindNull(index);
    statement.Bind(index, static_cast<std::int64_t>(field));
  }
  static void Copy(sqlite3_stmt* row, int column, Integer& field) {
    if (sqlite3_column_type(row, column) == SQLITE_NULL) return;
    field = static_cast<Integer>(sqlite3_column_int64(row, column));
  }
};

template <typename Flag, bool kOnlyBoolean>
struct FlagCoding {
  static bool Parse(const rapidjson::Value& value, Flag& field) {
    if (value.IsBool()) {
      field = static_cast<Flag>(value.GetBool());
    } else if (!kOnlyBoolean && value.IsInt()) {
      field = static_cast<Flag>(value.GetInt());
    } else {
      return false;
    }
    return true;
  }
  static bool IsNull(Flag field) {
    if constexpr (std::is_same_v<Flag, bool>) {
      return false;
    } else {
      return field == -1;
    }
  }
  static void Write(Flag field, std::string& out) { out += field ? "true" : "false"; }
  static void Bind(Flag field, Statement& statement, int index) {
    if (IsNull(field)) return statement.BindNull(index);
    statement.Bind(index, static_cast<std::int32_t>(field));
  }
  static void Copy(sqlite3_stmt* row, int column, Flag& field) {
    std::int32_t value;
    if (ReadInt(row, column, value)) field = static_cast<Flag>(value);
  }
};

// Null for NULL.
const char* ColumnText(sqlite3_stmt* row, int column) {
  return reinterpret_cast<const char*>(sqlite3_column_text(row, column));
}

struct TextCoding {
  static bool Parse(const rapidjson::Value& value, Text& field) {
    if (!value.IsString()) return false;
    field = Text(JsonText(value));
    return true;
  }
  static bool BindParsed(const rapidjson::Value& value, Statement& statement, int index) {
    if (!value.IsString()) return false;
    const std::string_view text = JsonText(value);
    statement.Bind(index, text.data(), text.size());
    return true;
  }
  static bool IsNull(const Text& field) { return field == nullptr; }
  static void Write(const Text& field, std::string& out) { AppendJsonString(field.view(), out); }
  static void Bind(const Text& field, Statement& statement, int index) {
    statement.Bind(index, field.get());
  }
  static void Copy(sqlite3_stmt* row, int column, Text& field) {
    if (const char* text = ColumnText(row, column)) field = Text(text);
  }
  static void Release(Text& field) { field.release(); }
};

WideText Widen(std::string_view utf8) {
  std::unique_ptr<wchar_t[]> wide(new wchar_t[utf8.size() + 1]);
  wide[Utf8ToWide(utf8, wide.get())] = L'\0';
  return WideText::Adopt(std::move(wide));
}

struct WideTextCoding {
  static bool Parse(const rapidjson::Value& value, WideText& field) {
    if (!value.IsString()) return false;
    field = Widen(JsonText(value));
    return true;
  }
  static bool BindParsed(const rapidjson::Value& value, Statement& statement, int index) {
    if (!value.IsString()) return false;
    const std::string_view text = JsonText(value);
    if (IsUtf8(text)) {
      statement.Bind(index, text.data(), text.size());
    } else {
      statement.BindCopy(index, RepairUtf8(text));
    }
    return true;
  }
  static bool IsNull(const WideText& field) { return field == nullptr; }
  static void Write(const WideText& field, std::string& out) {
    AppendJsonString(WideToUtf8(field.view()), out);
  }
  static void Bind(const WideText& field, Statement& statement, int index) {
    statement.Bind(index, field.get());
  }
  static void Copy(sqlite3_stmt* row, int column, WideText& field) {
    if (const char* text = ColumnText(row, column)) field = Widen(text);
  }
  static void Release(WideText& field) { field.release(); }
};

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

constexpr char kHexDigits[] = "0123456789abcdef";

// The character behind the backslash for what JSON has a short escape for, else 0.
char ShortEscape(char c) {
  switch (c) {
    case '"':
    case '\\':
      return c;
    case '\b':
      return 'b';
    case '\f':
      return 'f';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    default:
      return 0;
  }
}

}  // namespace

constexpr TypedCodec<std::int16_t> kInt16 = MakeCodec<NumberCoding<std::int16_t>, std::int16_t>();
constexpr TypedCodec<std::int32_t> kInt32 = MakeCodec<NumberCoding<std::int32_t>, std::int32_t>();
constexpr TypedCodec<std::uint32_t> kUint32 =
    MakeCodec<NumberCoding<std::uint32_t>, std::uint32_t>();
constexpr TypedCodec<std::int64_t> kInt64 =
    MakeCodec<Int64Coding<std::int64_t, -1>, std::int64_t>();
constexpr TypedCodec<std::uint64_t> kUint64NullIsZero =
    MakeCodec<Int64Coding<std::uint64_t, 0>, std::uint64_t>();
constexpr TypedCodec<bool> kBool = MakeCodec<FlagCoding<bool, false>, bool>();
constexpr TypedCodec<std::int16_t> kFlag16 =
    MakeCodec<FlagCoding<std::int16_t, false>, std::int16_t>();
constexpr TypedCodec<bool> kStrictBool = MakeCodec<FlagCoding<bool, true>, bool>();
constexpr TypedCodec<std::int16_t> kStrictFlag16 =
    MakeCodec<FlagCoding<std::int16_t, true>, std::int16_t>();
constexpr TypedCodec<Text> kText = MakeCodec<TextCoding, Text>();
constexpr TypedCodec<WideText> kWideText = MakeCodec<WideTextCoding, WideText>();

bool ParseHex(const rapidjson::Value& value, std::uint8_t* bytes, std::size_t size) {
  if (!value.IsString() || value.GetStringLength() != 2 * size) return false;
  const char* digits = value.GetString();
  if (!std::all_of(digits, digits + 2 * size, [](char c) { return HexDigit(c) >= 0; }))
    return false;
  for (std::size_t i = 0; i < size; ++i) {
    bytes[i] =
        static_cast<std::uint8_t>(HexDigit(digits[2 * i]) * 16 + HexDigit(digits[2 * i + 1]));
  }
  return true;
}

void WriteHex(const std::uint8_t* bytes, std::size_t size, std::string& out) {
  out += '"';
  for (std::size_t i = 0; i < size; ++i) {
    out += kHexDigits[bytes[i] >> 4];
    out += kHexDigits[bytes[i] & 15];
  }
  out += '"';
}

void CopyBlob(sqlite3_stmt* row, int column, std::uint8_t* bytes, std::size_t size) {
  if (sqlite3_column_type(row, column) != SQLITE_BLOB) return;
  const auto* blob = static_cast<const std::uint8_t*>(sqlite3_column_blob(row, column));
  const auto stored = static_cast<std::size_t>(sqlite3_column_bytes(row, column));
  if (blob && stored <= size) std::copy(blob, blob + stored, bytes);
}

void AppendJsonString(std::string_view text, std::string& out) {
  if (!IsUtf8(text)) return AppendJsonString(RepairUtf8(text), out);
  out += '"';
  for (const char c : text) {
    if (const char escape = ShortEscape(c)) {
      out += '\\';
      out += escape;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      out.append("\\u00");
      out += kHexDigits[c >> 4];
      out += kHexDigits[c & 15];
    } else {
      out += c;
    }
  }
  out += '"';
}

std::string_view JsonText(const rapidjson::Value& string) {
  const char* text = string.GetString();
  const std::size_t size = string.GetStringLength();
  const void* zero = std::memchr(text, '\0', size);
  return {text, zero ? static_cast<std::size_t>(static_cast<const char*>(zero) - text) : size};
}

}  // namespace wexpol
