// The console's documents as files, and why one is refused.

#ifndef WEXPOL_WEXPOLCTL_DOCUMENTS_H_
#define WEXPOL_WEXPOLCTL_DOCUMENTS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/wexpolctl/tables.h"

namespace wexpolctl {

struct SyncDocument {
  const SyncTable* table;
  std::string source;  // The file's path, or "standard input".
  std::string text;
};

// What the arguments name, in load order. A folder gives its TABLE.json files, a file the document
// of the table it is named after. Tables that are named pick from the folders; a single one says
// which table a file belongs to, whatever its name, and alone is read from standard input. Names of
// files that belong to no table go to `skipped`. Throws a Failure.
std::vector<SyncDocument> CollectDocuments(const std::vector<std::string>& arguments,
                                           std::vector<std::string>& skipped);

// Why a document was refused, in words.
struct Refusal {
  std::int64_t record = 0;  // From 1; 0 when the document as a whole is no document.
  std::string reason;
  std::string error_object;  // Of the library; empty where the document was not handed to it.
  bool expected = false;     // The table refuses every record, whatever it is.
};

// As a sentence that names the document and the record.
std::string InWords(const SyncDocument& document, const Refusal& refusal);

// Replaces the document's table by it. When it is refused, the table keeps its rows.
std::optional<Refusal> StoreDocument(CPolicyDB& session, const SyncDocument& document);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_DOCUMENTS_H_
