// How a field of one type travels between JSON, the row and the record.

#ifndef WEXPOL_RECORDS_CODEC_H_
#define WEXPOL_RECORDS_CODEC_H_

#include <rapidjson/document.h>

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>

#include "wexpol/records/target.h"
#include "wexpol/records/text.h"

namespace wexpol {

// Works on a field by its address. Only TypedCodec and the columns of a table, which have checked
// the type of the field, use it.
struct Codec {
  // Takes a JSON value of the right type; else answers false, the field kept.
  bool (*parse)(const rapidjson::Value& value, void* field);
  // Gives what parse would have taken, texts straight from the document; false as parse.
  bool (*bind_parsed)(const rapidjson::Value& value, Target& target);
  // Whether the field holds its null marker: left out of updates and of generated JSON.
  bool (*is_null)(const void* field);
  void (*write)(const void* field, std::string& out);
  // Gives the field, NULL for the null marker.
  void (*bind)(const void* field, Target& target);
  // Takes a column of the current row; NULL leaves the field.
  void (*copy)(sqlite3_stmt* row, int column, void* field);
  // Lets go of memory without freeing it; null for fields that own none.
  void (*release)(void* field);
};

// The codec of fields of one type; it compiles with no other.
template <typename Field>
class TypedCodec {
 public:
  constexpr explicit TypedCodec(const Codec& codec) : codec_(codec) {}

  void Bind(const std::same_as<Field> auto& field, Statement& statement, int index) const {
    Target target(statement, index);
    codec_.bind(&field, target);
  }
  void Copy(sqlite3_stmt* row, int column, std::same_as<Field> auto& field) const {
    codec_.copy(row, column, &field);
  }

  constexpr const Codec* untyped() const { return &codec_; }

 private:
  Codec codec_;
};

// Makes the codec of a class that names its Field and has the static operations Parse, IsNull,
// Write, Bind and Copy on it.
template <typename Coding>
constexpr auto MakeCodec() {
  using Field = typename Coding::Field;
  Codec codec{};
  codec.parse = [](const rapidjson::Value& value, void* field) {
    return Coding::Parse(value, *static_cast<Field*>(field));
  };
  codec.bind_parsed = [](const rapidjson::Value& value, Target& target) {
    if constexpr (requires { &Coding::BindParsed; }) {
      return Coding::BindParsed(value, target);
    } else {
      Field field{};
      if (!Coding::Parse(value, field)) return false;
      Coding::Bind(field, target);
      return true;
    }
  };
  codec.is_null = [](const void* field) {
    return Coding::IsNull(*static_cast<const Field*>(field));
  };
  codec.write = [](const void* field, std::string& out) {
    Coding::Write(*static_cast<const Field*>(field), out);
  };
  codec.bind = [](const void* field, Target& target) {
    Coding::Bind(*static_cast<const Field*>(field), target);
  };
  codec.copy = [](sqlite3_stmt* row, int column, void* field) {
    Coding::Copy(row, column, *static_cast<Field*>(field));
  };
  if constexpr (requires { &Coding::Release; }) {
    codec.release = [](void* field) { Coding::Release(*static_cast<Field*>(field)); };
  }
  return TypedCodec<Field>(codec);
}

// Integers: null is the value with all bits set. JSON numbers that do not fit the sign and 32 bits
// (64 for the 64-bit ones) are of the wrong type; 16-bit fields keep the low half.
extern const TypedCodec<std::int16_t> kInt16;
extern const TypedCodec<std::int32_t> kInt32;
extern const TypedCodec<std::uint32_t> kUint32;
extern const TypedCodec<std::int64_t> kInt64;
// The same of a counter, with another null marker: 0.
extern const TypedCodec<std::uint64_t> kUint64NullIsZero;
// A JSON boolean or integer, written as a boolean; a bool has no null marker, the 16-bit flag is -1
// while unknown.
extern const TypedCodec<bool> kBool;
extern const TypedCodec<std::int16_t> kFlag16;
// The same where only a JSON boolean counts.
extern const TypedCodec<bool> kStrictBool;
extern const TypedCodec<std::int16_t> kStrictFlag16;
// A JSON string; null is no text. Wide fields take U+FFFD for bytes that are no UTF-8.
extern const TypedCodec<Text> kText;
extern const TypedCodec<WideText> kWideText;

// The codec of a type for the columns that name none.
template <typename Field>
inline constexpr const TypedCodec<Field>* kDefaultCodec = nullptr;
template <>
inline constexpr const TypedCodec<std::int16_t>* kDefaultCodec<std::int16_t> = &kInt16;
template <>
inline constexpr const TypedCodec<std::int32_t>* kDefaultCodec<std::int32_t> = &kInt32;
template <>
inline constexpr const TypedCodec<std::uint32_t>* kDefaultCodec<std::uint32_t> = &kUint32;
template <>
inline constexpr const TypedCodec<std::int64_t>* kDefaultCodec<std::int64_t> = &kInt64;
template <>
inline constexpr const TypedCodec<bool>* kDefaultCodec<bool> = &kBool;
template <>
inline constexpr const TypedCodec<Text>* kDefaultCodec<Text> = &kText;
template <>
inline constexpr const TypedCodec<WideText>* kDefaultCodec<WideText> = &kWideText;

// A blob as a JSON string of exactly two hexadecimal digits for each byte, written in lower case.
[[nodiscard]] bool ParseHex(const rapidjson::Value& value, std::uint8_t* bytes, std::size_t size);
void WriteHex(const std::uint8_t* bytes, std::size_t size, std::string& out);
// Takes a blob into the front, of a longer one as much as fits; anything else changes nothing.
void CopyBlob(sqlite3_stmt* row, int column, std::uint8_t* bytes, std::size_t size);

// Fixed blocks of bytes: a BLOB in the row, hexadecimal digits in JSON, no null marker.
template <std::size_t kSize>
struct BytesCoding {
  using Field = std::array<std::uint8_t, kSize>;
  static bool Parse(const rapidjson::Value& value, Field& field) {
    return ParseHex(value, field.data(), kSize);
  }
  static bool BindParsed(const rapidjson::Value& value, Target& target) {
    Field field;
    if (!Parse(value, field)) return false;
    target.CopyOf(Blob{field.data(), kSize});
    return true;
  }
  static bool IsNull(const Field&) { return false; }
  static void Write(const Field& field, std::string& out) { WriteHex(field.data(), kSize, out); }
  static void Bind(const Field& field, Target& target) { target.Bytes(Blob{field.data(), kSize}); }
  static void Copy(sqlite3_stmt* row, int column, Field& field) {
    CopyBlob(row, column, field.data(), kSize);
  }
};
template <std::size_t kSize>
inline constexpr auto kBytes = MakeCodec<BytesCoding<kSize>>();
template <std::size_t kSize>
inline constexpr const TypedCodec<std::array<std::uint8_t, kSize>>*
    kDefaultCodec<std::array<std::uint8_t, kSize>> = &kBytes<kSize>;

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_CODEC_H_
