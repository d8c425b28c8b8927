#include "wexpol/records/document_table.h"

#include <memory>
#include <string>

namespace wexpol {
namespace {

constexpr char kPointerType[] = "wexpol.rows";
constexpr int kArgument = kMaxColumns;  // The hidden column behind those of the document.

struct Cursor : sqlite3_vtab_cursor {
  DocumentRows* rows = nullptr;
};

DocumentRows& RowsOf(sqlite3_vtab_cursor* cursor) { return *static_cast<Cursor*>(cursor)->rows; }

// The engine's callbacks let no exception out.
template <typename Step>
int Guarded(Step&& step) noexcept {
  try {
    return step() ? SQLITE_OK : SQLITE_ERROR;
  } catch (...) {
    return SQLITE_NOMEM;
  }
}

int Connect(sqlite3* db, void*, int, const char* const*, sqlite3_vtab** table, char**) {
  return Guarded([&] {
    std::string sql = "CREATE TABLE document(";
    for (std::size_t i = 0; i < kMaxColumns; ++i) sql += "c" + std::to_string(i) + ",";
    sql += "rows HIDDEN)";
    if (sqlite3_declare_vtab(db, sql.c_str()) != SQLITE_OK) return false;
    sqlite3_vtab_config(db, SQLITE_VTAB_DIRECTONLY);
    *table = new sqlite3_vtab();
    return true;
  });
}

int Disconnect(sqlite3_vtab* table) {
  delete table;
  return SQLITE_OK;
}

// There is one way: from the first record to the last of the rows in the argument.
int ChooseIndex(sqlite3_vtab*, sqlite3_index_info* info) {
  for (int i = 0; i < info->nConstraint; ++i) {
    const auto& constraint = info->aConstraint[i];
    if (constraint.iColumn != kArgument || !constraint.usable ||
        constraint.op != SQLITE_INDEX_CONSTRAINT_EQ) {
      continue;
    }
    info->aConstraintUsage[i].argvIndex = 1;
    info->aConstraintUsage[i].omit = 1;
    info->estimatedCost = 1;
    return SQLITE_OK;
  }
  return SQLITE_CONSTRAINT;
}

int Open(sqlite3_vtab*, sqlite3_vtab_cursor** cursor) {
  return Guarded([&] {
    *cursor = new Cursor();
    return true;
  });
}

int Close(sqlite3_vtab_cursor* cursor) {
  delete static_cast<Cursor*>(cursor);
  return SQLITE_OK;
}

int Filter(sqlite3_vtab_cursor* cursor, int, const char*, int, sqlite3_value** arguments) {
  auto* rows = static_cast<DocumentRows*>(sqlite3_value_pointer(arguments[0], kPointerType));
  static_cast<Cursor*>(cursor)->rows = rows;
  return rows ? SQLITE_OK : SQLITE_MISUSE;
}

int Next(sqlite3_vtab_cursor* cursor) {
  return Guarded([&] { return RowsOf(cursor).Next(); });
}

int AtEnd(sqlite3_vtab_cursor* cursor) { return RowsOf(cursor).AtEnd(); }

int Column(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int column) {
  return Guarded([&] {
    Target target(context);
    return RowsOf(cursor).Column(static_cast<std::size_t>(column), target);
  });
}

// Nobody asks for it.
int RowId(sqlite3_vtab_cursor*, sqlite3_int64*) { return SQLITE_ERROR; }

constexpr sqlite3_module MakeModule() {
  sqlite3_module module{};
  module.xConnect = Connect;
  module.xDisconnect = Disconnect;
  module.xBestIndex = ChooseIndex;
  module.xOpen = Open;
  module.xClose = Close;
  module.xFilter = Filter;
  module.xNext = Next;
  module.xEof = AtEnd;
  module.xColumn = Column;
  module.xRowid = RowId;
  return module;
}

constexpr sqlite3_module kModule = MakeModule();

}  // namespace

int EnableDocumentTable(sqlite3* db) {
  return sqlite3_create_module(db, kDocumentTable, &kModule, nullptr);
}

void BindRows(Statement& statement, int index, DocumentRows& rows) {
  statement.BindPointer(index, &rows, kPointerType);
}

}  // namespace wexpol
