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
#include "tools/wexpolctl/files.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/document.h"

namespace wexpolctl {
namespace {

namespace fs = std::filesystem;

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
      throw Failure{kUsage, "'" + argument + "' is no table, folder or document of a table.",
                    "See 'wexpolctl tables'; for a document of another name: 'wexpolctl sync TABLE "
                    "FILE'."};
    }
  }

  // A single table that is named has the last word; else the file's own name.
  const SyncTable* TableOf(const fs::path& path) const {
    if (tables_.size() == 1 && fs::exists(path)) return *tables_.begin();
    return FindSyncTable(wexpol::WideToUtf8(FromPath(path.stem())));
  }

  void AddFolder(const fs::path& folder) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
      const fs::path& path = entry->path();
      if (path.extension() != ".json") continue;
      const SyncTable* table = FindSyncTable(wexpol::WideToUtf8(FromPath(path.stem())));
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

// Why a text is no JSON, which the library's own reader does not say.
std::string FaultOfText(const std::string& text) {
  rapidjson::Document tree;
  rapidjson::MemoryStream stream(text.data(), text.size());
  tree.ParseStream<rapidjson::kParseIterativeFlag>(stream);
  if (!tree.HasParseError()) return "it is no JSON";
  return std::string(rapidjson::GetParseError_En(tree.GetParseError())) + " (" +
         PlaceOf(text, tree.GetErrorOffset()) + ")";
}

}  // namespace

std::vector<SyncDocument> CollectDocuments(const std::vector<std::string>& arguments,
                                           std::vector<std::string>& skipped) {
  return Collector(arguments, skipped).Take();
}

Refusal ExplainRefusal(const SyncDocument& document, std::int64_t stored,
                       const std::string& error_object) {
  if (document.text.find('\0') != std::string::npos) return {0, "The document holds a zero byte."};
  wexpol::Document parsed;
  if (!parsed.Parse(document.text.c_str())) return {0, FaultOfText(document.text)};
  wexpol::Records found;
  if (!wexpol::FindRecords(document.table->record_class->table(), parsed.root(), found)) {
    return {0, "It holds neither a record nor an array of records."};
  }
  if (stored >= static_cast<std::int64_t>(found.count)) return {0, DescriptionOf(error_object)};
  const rapidjson::Value& value = found.first[stored];
  if (!value.IsObject()) return {stored + 1, "it is no object"};
  std::string reason = FaultOfKeys(*document.table->record_class, value);
  if (reason.empty()) reason = DescriptionOf(error_object);
  return {stored + 1, std::move(reason)};
}

}  // namespace wexpolctl
