// The content categories: table "categories".

#ifndef WEXPOL_WEBFILTER_CATEGORY_H_
#define WEXPOL_WEBFILTER_CATEGORY_H_

#include <cstdint>
#include <set>
#include <string>

#include "wexpol/records/record.h"

// The flags and the type are the console's; the questions below say which of them count here.
struct tblCategory {
  std::int16_t id = -1;
  wexpol::Text name;  // As the filter names the category of a page.
  wexpol::Text description;
  wexpol::Text notification;
  std::int16_t category_type_id = -1;  // 2 to 5 are movies and television.
  bool client_should_cache = false;    // False: the client must not cache it.
  bool is_search_engine = false;
  bool is_pornography = false;
  bool is_advertisement = false;
  bool is_icat = false;
  bool is_google_malware = false;
  bool is_google_phishing = false;
  bool is_se_keyword = false;
  std::int64_t row_version = -1;
};

// A content category of the web filter. The questions about several of them answer false when they
// cannot be asked; no error is kept.
class WEXPOL_API CCategory : public wexpol::Record<CCategory, tblCategory> {
 public:
  static const wexpol::Table& Table();

  // Whether one of the named categories is of the movie and television types. Names that are not
  // known change nothing.
  static bool AnyMoviesAndTvCategories(sqlite3* db, const std::set<std::wstring>& names);
  // Whether one of the named categories is pornographic.
  static bool IsPornCategoryPresent(sqlite3* db, const std::set<std::wstring>& names);
  // Replaces `out` with one byte for each category that the client must not cache: the low 8 bits
  // of its id. False when there is none.
  static bool GetNoCacheCategories(std::string& out, sqlite3* db);
};

#endif  // WEXPOL_WEBFILTER_CATEGORY_H_
