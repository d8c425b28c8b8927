#include "wexpol/records/global_tables.h"

#include <cstdlib>
#include <string_view>

#include "wexpol/records/document.h"
#include "wexpol/records/global_table_list.h"
#include "wexpol/records/json_text.h"
#include "wexpol/records/scopes.h"

namespace {

wexpol::Statement MaxVersion(sqlite3* db, std::string_view table) {
  for (const wexpol::GlobalTable& known : wexpol::kGlobalTables) {
    if (known.name == table) return wexpol::Statement(db, known.max_version);
  }
  return wexpol::Statement::Composed(db, "SELECT max(row_version) FROM " + std::string(table));
}

}  // namespace

std::string CGlobalTables::GetMaxRowVersion(std::uint64_t& emptyMask, sqlite3* db,
                                            const char* table, std::uint64_t bit) const {
  std::int64_t version = 0;
  wexpol::Statement select = MaxVersion(db, table);
  if (select.StepRow()) version = select.Int64(0);
  if (version == 0) emptyMask |= bit;
  return std::to_string(static_cast<std::int64_t>(bit)) + "," + std::to_string(version);
}

void CGlobalTables::GenerateJson(std::uint64_t& emptyMask, std::string& out, sqlite3* db) const {
  const wexpol::ReadScope scope(db);
  out = R"({"g": ")";
  const char* separator = "";
  for (const wexpol::GlobalTable& table : wexpol::kGlobalTables) {
    out.append(separator).append(GetMaxRowVersion(emptyMask, db, table.name, table.bit));
    separator = ";";
  }
  out += "\"}";
}

// Any number is taken as a mask, whether a table has that bit or not.
std::uint64_t CGlobalTables::ParseJson(const char* json) {
  wexpol::Document document;
  if (!document.Parse(json) || !document.root().IsObject()) return 0;
  const auto member = document.root().FindMember("g");
  if (member == document.root().MemberEnd() || !member->value.IsString()) return 0;

  std::uint64_t mask = 0;
  const std::string pieces(wexpol::JsonText(member->value));
  for (const char* piece = pieces.c_str(); *piece; ++piece) {
    if (*piece == ',') continue;
    mask |= static_cast<std::uint64_t>(std::strtoll(piece, nullptr, 10));
    while (piece[1] && piece[1] != ',') ++piece;
  }
  return mask;
}
