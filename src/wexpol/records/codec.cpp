#include "wexpol/records/codec.h"

#include <algorithm>
#include <charconv>
#include <memory>

#include "wexpol/platform/hex.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/json_text.h"

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
  using Field = Integer;
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
  static void Bind(Integer field, Target& target) {
    if (IsNull(field)) return target.Null();
    target.Int(static_cast<std::int32_t>(field));
  }
  static void Copy(sqlite3_stmt* row, int column, Integer& field) {
    std::int32_t value;
    if (ReadInt(row, column, value)) field = static_cast<Integer>(value);
  }
};

template <typename Integer, Integer kNull>
struct Int64Coding {
  using Field = Integer;
  static bool Parse(const rapidjson::Value& value, Integer& field) {
    if (!value.IsInt64()) return false;
    field = static_cast<Integer>(value.GetInt64());
    return true;
  }
  static bool IsNull(Integer field) { return field == kNull; }
  static void Write(Integer field, std::string& out) { WriteNumber(field, out); }
  static void Bind(Integer field, Target& target) {
    if (IsNull(field)) return target.Null();
    target.Int64(static_cast<std::int64_t>(field));
  }
  static void Copy(sqlite3_stmt* row, int column, Integer& field) {
    if (sqlite3_column_type(row, column) == SQLITE_NULL) return;
    field = static_cast<Integer>(sqlite3_column_int64(row, column));
  }
};

template <typename Flag, bool kOnlyBoolean>
struct FlagCoding {
  using Field = Flag;
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
  static void Bind(Flag field, Target& target) {
    if (IsNull(field)) return target.Null();
    target.Int(static_cast<std::int32_t>(field));
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
  using Field = Text;
  static bool Parse(const rapidjson::Value& value, Text& field) {
    if (!value.IsString()) return false;
    field = Text(JsonText(value));
    return true;
  }
  static bool BindParsed(const rapidjson::Value& value, Target& target) {
    if (!value.IsString()) return false;
    target.Text(JsonText(value));
    return true;
  }
  static bool IsNull(const Text& field) { return field == nullptr; }
  static void Write(const Text& field, std::string& out) { AppendJsonString(field.view(), out); }
  static void Bind(const Text& field, Target& target) { target.Text(field.get()); }
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
  using Field = WideText;
  static bool Parse(const rapidjson::Value& value, WideText& field) {
    if (!value.IsString()) return false;
    field = Widen(JsonText(value));
    return true;
  }
  static bool BindParsed(const rapidjson::Value& value, Target& target) {
    if (!value.IsString()) return false;
    const std::string_view all(value.GetString(), value.GetStringLength());
    const bool plain = IsPlainAscii(all);
    const std::string_view text = plain ? all : JsonText(value);
    if (plain || IsUtf8(text)) {
      target.Text(text);
    } else {
      target.CopyOf(RepairUtf8(text));
    }
    return true;
  }
  static bool IsNull(const WideText& field) { return field == nullptr; }
  static void Write(const WideText& field, std::string& out) {
    AppendJsonString(WideToUtf8(field.view()), out);
  }
  static void Bind(const WideText& field, Target& target) { target.Text(field.get()); }
  static void Copy(sqlite3_stmt* row, int column, WideText& field) {
    if (const char* text = ColumnText(row, column)) field = Widen(text);
  }
  static void Release(WideText& field) { field.release(); }
};

}  // namespace

constexpr TypedCodec<std::int16_t> kInt16 = MakeCodec<NumberCoding<std::int16_t>>();
constexpr TypedCodec<std::int32_t> kInt32 = MakeCodec<NumberCoding<std::int32_t>>();
constexpr TypedCodec<std::uint32_t> kUint32 = MakeCodec<NumberCoding<std::uint32_t>>();
constexpr TypedCodec<std::int64_t> kInt64 = MakeCodec<Int64Coding<std::int64_t, -1>>();
constexpr TypedCodec<std::uint64_t> kUint64NullIsZero = MakeCodec<Int64Coding<std::uint64_t, 0>>();
constexpr TypedCodec<bool> kBool = MakeCodec<FlagCoding<bool, false>>();
constexpr TypedCodec<std::int16_t> kFlag16 = MakeCodec<FlagCoding<std::int16_t, false>>();
constexpr TypedCodec<bool> kStrictBool = MakeCodec<FlagCoding<bool, true>>();
constexpr TypedCodec<std::int16_t> kStrictFlag16 = MakeCodec<FlagCoding<std::int16_t, true>>();
constexpr TypedCodec<Text> kText = MakeCodec<TextCoding>();
constexpr TypedCodec<WideText> kWideText = MakeCodec<WideTextCoding>();

bool ParseHex(const rapidjson::Value& value, std::uint8_t* bytes, std::size_t size) {
  return value.IsString() && ReadHex({value.GetString(), value.GetStringLength()}, bytes, size);
}

void WriteHex(const std::uint8_t* bytes, std::size_t size, std::string& out) {
  out += '"';
  AppendHex(bytes, size, out);
  out += '"';
}

void CopyBlob(sqlite3_stmt* row, int column, std::uint8_t* bytes, std::size_t size) {
  if (sqlite3_column_type(row, column) != SQLITE_BLOB) return;
  const auto* blob = static_cast<const std::uint8_t*>(sqlite3_column_blob(row, column));
  const auto stored = static_cast<std::size_t>(sqlite3_column_bytes(row, column));
  if (blob) std::copy_n(blob, std::min(stored, size), bytes);
}

}  // namespace wexpol
