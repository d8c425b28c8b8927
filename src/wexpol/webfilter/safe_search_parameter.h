// How the safe search of a search engine is switched on: table "safe_search_parameters".

#ifndef WEXPOL_WEBFILTER_SAFE_SEARCH_PARAMETER_H_
#define WEXPOL_WEBFILTER_SAFE_SEARCH_PARAMETER_H_

#include <cstdint>
#include <list>
#include <string>

#include "wexpol/records/record.h"

struct tblSafeSearchParameter {
  std::int16_t id = -1;
  wexpol::Text search_url;  // Begins the address of a search.
  wexpol::Text name;        // Of the parameter to add to the address.
  wexpol::Text value;
  bool repeat_on_each_request = false;
  std::int64_t row_version = -1;  // Reported to the console; see CGlobalTables.
};

// What makes a search engine leave out adult content: a parameter to add to addresses that begin
// so. The same for all customers.
class WEXPOL_API CSafeSearchParameter
    : public wexpol::Record<CSafeSearchParameter, tblSafeSearchParameter> {
 public:
  static const wexpol::Table& Table();

  // Appends all of them, an address before those that it extends; the records are the caller's. A
  // failure leaves the error object in `error`.
  static bool SpecialGetFromDB(std::list<CSafeSearchParameter*>& out, sqlite3* db,
                               std::string* error = nullptr);
};

#endif  // WEXPOL_WEBFILTER_SAFE_SEARCH_PARAMETER_H_
