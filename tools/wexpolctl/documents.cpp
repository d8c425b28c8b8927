#include "tools/wexpolctl/documents.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <memory>
#include <set>
#include <system_error>

#include "tools/wexpolctl/command.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/files.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/connection.h"
#include "wexpol/records/document.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/statement.h"

namespace wexpolctl {
namespace {

namespace fs = std::filesystem;

// "networks" of "Networks.JSON": the letters of a file's name may have been typed by hand.
std::string NameInLowerCase(const fs::path& name) {
  std::string text = wexpol::WideToUtf8(FromPath(name));
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

class Collector {
 public:
  Collector(const std::vector<std::string>& arguments, std::vector<std::string>& skipped)
      : skipped_(skipped) {
    std::vector<std::string> paths;
    for (const std::string& argument : arguments) {
      if (const SyncTable* table = FindSyncTable(argument)) {
        tables_.insert(table);
      } else {
        paths.push_back(argument);
      }
    }
    for (const std::string& path : paths) AddPath(path);
    if (paths.empty()) AddStandardInput();
  }

  // In load order, which is that of the tables' addresses.
  std::vector<SyncDocument> Take() {
    if (documents_.empty()) {
      throw Failure{kUsage, "There is no document to synchronise.",
                    "Documents are files named after their table, such as devices.json."};
    }
    std::sort(documents_.begin(), documents_.end(),
              [](const auto& a, const auto& b) { return a.table < b.table; });
    const auto twice =
        std::adjacent_find(documents_.begin(), documents_.end(),
                           [](const auto& a, const auto& b) { return a.table == b.table; });
    if (twice != documents_.end()) {
      throw Failure{kUsage,
                    std::string("There are two documents for ") + twice->table->name() + ": " +
                        twice->source + " and " + std::next(twice)->source + ".",
                    "A document replaces its table: name one of them."};
    }
    return std::move(documents_);
  }

 private:
  void AddPath(const std::string& argument) {
    const std::wstring path = AbsolutePath(argument);
    std::error_code error;
    if (fs::is_directory(ToPath(path), error)) {
      AddFolder(ToPath(path));
    } else if (const SyncTable* table = TableOf(ToPath(path))) {
      AddFile(table, path);
    } else {
      ThrowNoDocument(argument, fs::exists(ToPath(path), error));
    }
  }

  [[noreturn]] static void ThrowNoDocument(const std::string& argument, bool exists) {
    if (wexpol::FindTable(argument)) {
      throw Failure{kUsage,
                    "The agent fills the table " + argument + " itself; it has no document.",
                    "See 'wexpolctl tables' for those that the console fills."};
    }
    if (!exists) {
      throw Failure{kCannotOpen, "There is no file, folder or table '" + argument + "'.",
                    "Check the path; see 'wexpolctl tables' for the names of tables."};
    }
    throw Failure{kUsage, "'" + argument + "' is named after no table.",
                  "For a document of another name: 'wexpolctl sync TABLE FILE'."};
  }

  // A single table that is named has the last word; else the file's own name.
  const SyncTable* TableOf(const fs::path& path) const {
    if (tables_.size() == 1 && fs::exists(path)) return *tables_.begin();
    return FindSyncTable(NameInLowerCase(path.stem()));
  }

  void AddFolder(const fs::path& folder) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
      const fs::path& path = entry->path();
      if (NameInLowerCase(path.extension()) != ".json") continue;
      const SyncTable* table = FindSyncTable(NameInLowerCase(path.stem()));
      if (!table) {
        skipped_.push_back(wexpol::WideToUtf8(FromPath(path.filename())));
      } else if (tables_.empty() || tables_.contains(table)) {
        AddFile(table, FromPath(path));
      }
    }
    if (error) {
      throw Failure{kCannotOpen, "The folder cannot be read: " + error.message() + ".", ""};
    }
  }

  void AddFile(const SyncTable* table, const std::wstring& path) {
    std::optional<std::string> text = ReadFile(path);
    if (!text) {
      throw Failure{kCannotOpen, "The document " + wexpol::WideToUtf8(path) + " cannot be read.",
                    "Check the path and whether this user may read the file."};
    }
    documents_.push_back({table, wexpol::WideToUtf8(path), std::move(*text)});
  }

  void AddStandardInput() {
    if (tables_.size() != 1) {
      throw Failure{kUsage, "Several tables are named, but neither a folder nor a file.",
                    "Name the folder that holds their documents."};
    }
    documents_.push_back({*tables_.begin(), "standard input",
                          std::string(std::istreambuf_iterator<char>(std::cin), {})});
  }

  std::set<const SyncTable*> tables_;
  std::vector<SyncDocument> documents_;
  std::vector<std::string>& skipped_;
};

// "line 3, column 7"
std::string PlaceOf(const std::string& text, std::size_t offset) {
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(offset, text.size()));
  const auto line_start = std::find(std::reverse_iterator(end), text.rend(), '\n').base();
  return "line " + std::to_string(std::count(text.begin(), end, '\n') + 1) + ", column " +
         std::to_string(end - line_start + 1);
}

// Of a key that does not fit its column, which explains why another is there already; else empty.
std::string CutKey(const wexpol::Table& table, const rapidjson::Value& value) {
  const wexpol::ColumnDef* key = table.key();
  if (!key || key->codec != wexpol::kInt16.untyped()) return {};
  const auto member = value.FindMember(std::string(key->name).c_str());
  if (member == value.MemberEnd() || !member->value.IsInt()) return {};
  const int whole = member->value.GetInt();
  const auto cut = static_cast<std::int16_t>(whole);
  if (cut == whole) return {};
  return " (the " + std::string(key->name) + " " + std::to_string(whole) +
         " is kept in 16 bits, as " + std::to_string(cut) + ")";
}

// What is wrong with a required key; empty when that is not it.
std::string FaultOfKeys(const wexpol::RecordClass& record_class, const rapidjson::Value& value) {
  const std::unique_ptr<void, void (*)(void*)> record(record_class.create(), record_class.destroy);
  for (const wexpol::ColumnDef& column : record_class.table().columns()) {
    const std::string key(column.name);
    const auto member = value.FindMember(key.c_str());
    if (member == value.MemberEnd()) {
      if (column.flags & wexpol::kRequired) return "the key \"" + key + "\" is missing";
    } else if (column.flags & (wexpol::kRequired | wexpol::kWellFormed)) {
      if (!column.codec->parse(member->value, column.field(record_class.row(record.get())))) {
        return "the value of \"" + key + "\" is not of its type";
      }
    }
  }
  return {};
}

// The message out of an error object.
std::string DescriptionOf(const std::string& error_object) {
  wexpol::Document object;
  if (!object.Parse(error_object.c_str()) || !object.root().IsObject()) return error_object;
  const auto member = object.root().FindMember("desc");
  if (member == object.root().MemberEnd() || !member->value.IsString()) return error_object;
  return member->value.GetString();
}

// Null when there is none: a document is UTF-8 without a mark.
const char* FaultOfEncoding(const std::string& text) {
  if (text.starts_with("\xEF\xBB\xBF")) {
    return "It begins with a byte-order mark: save it as UTF-8 without one.";
  }
  const bool marked = text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
  const bool wide = text.size() >= 2 && (text[0] == '\0') != (text[1] == '\0');
  if (marked || wide) return "It is UTF-16: save it as UTF-8.";
  return text.find('\0') == text.npos ? nullptr : "The document holds a zero byte.";
}

// Why a text is no JSON, which the library's own reader does not say.
std::string FaultOfText(const std::string& text) {
  rapidjson::Document tree;
  rapidjson::MemoryStream stream(text.data(), text.size());
  tree.ParseStream<rapidjson::kParseIterativeFlag>(stream);
  if (!tree.HasParseError()) return "it is no JSON";
  return std::string(rapidjson::GetParseError_En(tree.GetParseError())) + " (" +
         PlaceOf(text, tree.GetErrorOffset()) + ")";
}

// Why the record after the `stored` first ones was refused.
Refusal ExplainRefusal(const SyncDocument& document, std::int64_t stored,
                       const std::string& error_object) {
  if (const char* fault = FaultOfEncoding(document.text)) return {0, fault, error_object};
  wexpol::Document parsed;
  if (!parsed.Parse(document.text.c_str())) return {0, FaultOfText(document.text), error_object};
  wexpol::Records found;
  if (!wexpol::FindRecords(document.table->record_class->table(), parsed.root(), found)) {
    return {0, "It holds neither a record nor an array of records.", error_object};
  }
  if (stored >= static_cast<std::int64_t>(found.count)) {
    return {0, DescriptionOf(error_object), error_object};
  }
  const rapidjson::Value& value = found.first[stored];
  if (!value.IsObject()) return {stored + 1, "it is no object", error_object};
  std::string reason = FaultOfKeys(*document.table->record_class, value);
  if (reason.empty()) {
    reason = DescriptionOf(error_object) + CutKey(document.table->record_class->table(), value);
  }
  return {stored + 1, std::move(reason), error_object};
}

// A table whose insert the engine refuses to prepare, though the table itself is well.
bool RefusesEveryRecord(sqlite3* db, const wexpol::Table& table) {
  return !wexpol::Statement(db, table.insert()).ok() && wexpol::Statement(db, table.select()).ok();
}

}  // namespace

std::vector<SyncDocument> CollectDocuments(const std::vector<std::string>& arguments,
                                           std::vector<std::string>& skipped) {
  return Collector(arguments, skipped).Take();
}

std::string InWords(const SyncDocument& document, const Refusal& refusal) {
  std::string words = document.source + " was refused";
  if (refusal.record) words += " at record " + std::to_string(refusal.record);
  words += ": " + refusal.reason;
  return words.ends_with('.') ? words : words + '.';
}

std::optional<Refusal> StoreDocument(CPolicyDB& session, const SyncDocument& document) {
  sqlite3* db = wexpol::HandleOf(session);
  const wexpol::Table& table = document.table->record_class->table();
  wexpol::Savepoint savepoint(db);
  if (!savepoint.ok()) return Refusal{0, sqlite3_errmsg(db), {}};
  std::string error;
  const bool whole = document.text.find('\0') == std::string::npos;
  if (whole && document.table->replace(session, document.text.c_str(), error)) {
    if (savepoint.Commit() == SQLITE_DONE) return std::nullopt;
    return Refusal{0, sqlite3_errmsg(db), {}};
  }
  // Counted while they are there: the records before the one that was refused.
  Refusal refusal = ExplainRefusal(document, CountRows(db, table.name()).value_or(0), error);
  refusal.expected = refusal.record > 0 && RefusesEveryRecord(db, table);
  return refusal;
}

}  // namespace wexpolctl
