// A JSON document as a table of the engine.

#ifndef WEXPOL_RECORDS_DOCUMENT_TABLE_H_
#define WEXPOL_RECORDS_DOCUMENT_TABLE_H_

#include "wexpol/records/document_rows.h"
#include "wexpol/records/statement.h"

namespace wexpol {

// Makes the table function wexpol_document(rows) known to `db`. Its columns c0, c1, ... are those
// of the table that the bound rows are read for; its rows can be gone through once. A document that
// turns out not to be plain fails the statement.
int EnableDocumentTable(sqlite3* db);

// Binds the argument of the function; `rows` must outlive the statement's last step.
void BindRows(Statement& statement, int index, DocumentRows& rows);

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_DOCUMENT_TABLE_H_
