// wexpolctl export: tables as the documents that sync takes back unchanged.

#include <cstdio>
#include <filesystem>
#include <memory>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/files.h"
#include "tools/wexpolctl/new_file.h"
#include "tools/wexpolctl/rehearsal.h"
#include "tools/wexpolctl/tables.h"
#include "wexpol/antivirus/last_scan_summary.h"
#include "wexpol/catalog/content_hash.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/system_types.h"
#include "wexpol/records/json_text.h"
#include "wexpol/records/statement.h"

namespace wexpolctl {
namespace {

// A text with the bytes that it has, also where they are no UTF-8: a document may hold such.
void AppendText(std::string_view text, std::string& out) {
  out += '"';
  for (const char c : text) {
    std::string escaped;
    wexpol::AppendJsonString({&c, 1}, escaped);
    const bool ascii = static_cast<unsigned char>(c) < 0x80;
    out += ascii ? escaped.substr(1, escaped.size() - 2) : std::string(1, c);
  }
  out += '"';
}

// Of the one time that comes as a text and is stored, and reported, as a number.
std::string TimeText(std::int64_t utc) {
  const SYSTEMTIME time = wexpol::FromFileTime(wexpol::UnixToFileTime(utc));
  char text[48];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", time.wYear, time.wMonth,
                time.wDay, time.wHour, time.wMinute, time.wSecond);
  return text;
}

// The rows of one table as a document.
class Writer {
 public:
  explicit Writer(const wexpol::RecordClass& record_class)
      : table_(record_class.table()),
        fresh_(record_class.create(), record_class.destroy),
        current_(record_class.create(), record_class.destroy),
        fresh_row_(record_class.row(fresh_.get())),
        current_row_(record_class.row(current_.get())),
        columns_(wexpol::DocumentColumns(table_)) {}

  // In the order in which the rows were added, on which the answer of "the first row" rests.
  std::string Write(sqlite3* db) {
    std::string names;
    for (const wexpol::ColumnDef* column : columns_) {
      names.append(names.empty() ? "" : ",").append(column->name);
    }
    auto select = wexpol::Statement::Composed(
        db, "SELECT " + names + " FROM " + table_.name() + " ORDER BY rowid");
    std::string document = "[";
    int code;
    while ((code = select.Step()) == SQLITE_ROW) {
      document += rows_++ ? ",\n  " : "\n  ";
      WriteRow(select.get(), document);
    }
    if (code != SQLITE_DONE) {
      throw Failure{
          kFinding,
          std::string(table_.name()) + " cannot be read to its end: " + sqlite3_errmsg(db) + ".",
          "Check the file with 'wexpolctl check'."};
    }
    return document += rows_ ? "\n]\n" : "]\n";
  }

  std::int64_t rows() const { return rows_; }

 private:
  void WriteRow(sqlite3_stmt* row, std::string& document) {
    const char* separator = "{";
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      const std::string value = ValueOf(*columns_[i], row, static_cast<int>(i));
      if (value.empty()) continue;
      document.append(separator).append("\"").append(columns_[i]->name).append("\": ") += value;
      separator = ", ";
    }
    document += *separator == '{' ? "{}" : "}";
  }

  // Empty for what is left out: NULL, where a missing key means the same.
  std::string ValueOf(const wexpol::ColumnDef& column, sqlite3_stmt* row, int index) {
    const bool is_null = sqlite3_column_type(row, index) == SQLITE_NULL;
    const bool is_text =
        column.codec == wexpol::kText.untyped() || column.codec == wexpol::kWideText.untyped();
    if (&table_ == &CLastScanSummary::Table() && column.name == "end_time") {
      return '"' + (is_null ? "" : TimeText(sqlite3_column_int64(row, index))) + '"';
    }
    if (is_null) return is_text || column.codec->is_null(column.field(fresh_row_)) ? "" : "-1";
    std::string value;
    if (is_text) {
      AppendText(reinterpret_cast<const char*>(sqlite3_column_text(row, index)), value);
    } else {
      column.codec->copy(row, index, column.field(current_row_));
      column.codec->write(column.field(current_row_), value);
    }
    return value;
  }

  using Record = std::unique_ptr<void, void (*)(void*)>;

  const wexpol::Table& table_;
  const Record fresh_;    // As Reset leaves it.
  const Record current_;  // To write the values of a row by.
  void* const fresh_row_;
  void* const current_row_;
  const std::vector<const wexpol::ColumnDef*> columns_;
  std::int64_t rows_ = 0;
};

// Whether the document gives the rows that it was made of.
bool ComesBack(Rehearsal& rehearsal, const SyncTable& table, const std::string& document) {
  std::string error;
  return table.replace(rehearsal.session(), document.c_str(), error) &&
         rehearsal.ChangesOf(table.record_class->table()).empty();
}

struct Target {
  const SyncTable* table;
  std::wstring path;
};

std::vector<Target> TargetsOf(const Options& options) {
  const std::string name = options.Text("TABLE");
  if (options.Has("--all") == options.Has("TABLE") || options.Has("TABLE") != options.Has("FILE")) {
    throw Failure{kUsage, "It is not told what to export and where to.",
                  "Write 'wexpolctl export TABLE FILE' or 'wexpolctl export --all FOLDER'."};
  }
  if (!options.Has("--all")) {
    const SyncTable* table = FindSyncTable(name);
    if (table) return {{table, AbsolutePath(options.Text("FILE"))}};
    throw Failure{kUsage, "The console fills no table '" + name + "'.",
                  "See 'wexpolctl tables' for those that it fills."};
  }
  const std::wstring folder = AbsolutePath(options.Text("--all"));
  std::vector<Target> targets;
  for (const SyncTable& table : SyncTables()) {
    targets.push_back({&table, FromPath(ToPath(folder) / (std::string(table.name()) + ".json"))});
  }
  return targets;
}

ExitCode Export(Call& call) {
  const std::vector<Target> targets = TargetsOf(call.options);
  Database database(call.database);
  Rehearsal rehearsal(database.handle());
  std::error_code ignored;  // What cannot be made cannot be written to, either.
  if (call.options.Has("--all")) {
    std::filesystem::create_directories(ToPath(targets.front().path).parent_path(), ignored);
  }
  call.report.Add("holds secrets", Flag(true));
  Listing& listing = call.report.AddListing("files", {"table", "rows", "comes back", "file"});
  std::string lost;
  for (const Target& target : targets) {
    Writer writer(*target.table->record_class);
    const std::string document = writer.Write(database.handle());
    WriteNewFile(target.path, document);
    const bool comes_back = ComesBack(rehearsal, *target.table, document);
    if (!comes_back) lost.append(lost.empty() ? "" : ", ").append(target.table->name());
    listing.Add(
        {Text(target.table->name()), Number(writer.rows()), Flag(comes_back), Text(target.path)});
  }
  call.report.AddLine("Passwords and tokens are in the files as they are; only you may read them.");
  if (lost.empty()) return kDone;
  throw Failure{kFinding, "No document can bring all that these tables hold: " + lost + ".",
                "What does not come back is shown by 'wexpolctl diff'."};
}

}  // namespace

Command ExportCommand() {
  return {"export",
          "Write tables as documents, with their secrets, for sync to take back unchanged",
          {{"TABLE", Option::kText, "The table"},
           {"FILE", Option::kText, "Where to write its document; never over a file"},
           {"--all FOLDER", Option::kText, "Write every table's TABLE.json into this folder"}},
          &Export,
          Effect::kWritesFile,
          "export --all documents"};
}

}  // namespace wexpolctl
