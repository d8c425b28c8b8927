// How the safe search of a search engine is switched on: table "safe_search_parameters".

#ifndef WEBFILTER_SAFE_SEARCH_PARAMETER_H_
#define WEBFILTER_SAFE_SEARCH_PARAMETER_H_

#include <cstdint>
#include <list>
#include <string>

#include "records/record.h"

struct tblSafeSearchParameter {
  std::int16_t id = -1;
  records::Text search_url;  // Begins the address of a search.
  records::Text name;        // Of the parameter to add to the address.
  records::Text value;
  bool repeat_on_each_request = false;
  std::int64_t row_version = -1;
};

class WEXPOL_API CSafeSearchParameter
    : public records::Record<CSafeSearchParameter, tblSafeSearchParameter> {
 public:
  static const records::Table& Table();

  // Appends all of them, an address before those that it extends; the records are the caller's. A
  // failure leaves the error object in `error`.
  static bool SpecialGetFromDB(std::list<CSafeSearchParameter*>& out, sqlite3* db,
                               std::string* error = nullptr);
};

#endif  // WEBFILTER_SAFE_SEARCH_PARAMETER_H_
