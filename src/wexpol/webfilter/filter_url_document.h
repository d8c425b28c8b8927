// The document of a single address rule, which has no envelope.

#ifndef WEXPOL_WEBFILTER_FILTER_URL_DOCUMENT_H_
#define WEXPOL_WEBFILTER_FILTER_URL_DOCUMENT_H_

#include <string>

class CFilterUrl;
struct sqlite3;

namespace wexpol {

// Takes the document into `url` and adds its row. After false `error` has the error object for a
// fault of the document, such as a null `url`; for one of the engine the text of the log.
[[nodiscard]] bool AddFilterUrl(sqlite3* db, CFilterUrl* url, const char* json, std::string& error);

}  // namespace wexpol

#endif  // WEXPOL_WEBFILTER_FILTER_URL_DOCUMENT_H_
