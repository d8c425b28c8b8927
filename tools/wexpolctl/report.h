// What a command found out, printed as plain aligned text or as one JSON object.

#ifndef WEXPOL_WEXPOLCTL_REPORT_H_
#define WEXPOL_WEXPOLCTL_REPORT_H_

#include <cstdint>
#include <deque>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace wexpolctl {

// One value in both of its forms.
struct Cell {
  std::string json;
  std::string text;  // Fit for a terminal: no control characters.
  bool is_number = false;
};

// Escapes what a terminal would obey instead of print.
std::string Printable(std::string_view utf8);

Cell Nothing();  // null, "-"
Cell Text(std::string_view utf8);
Cell Text(std::wstring_view wide);
Cell Number(std::int64_t value);
Cell Flag(bool value);
// Bytes and seconds: numbers in JSON, with a unit in the text.
Cell Size(std::uint64_t bytes);
Cell Duration(std::int64_t seconds);
// An instant in seconds since 1970 UTC; local time in the text.
Cell Instant(std::int64_t utc);
// A value that is JSON already.
Cell Json(std::string json);

// Rows of cells under column names.
class Listing {
 public:
  // One line per row; with `may_wrap`, one per column where the table would be too wide.
  explicit Listing(std::vector<std::string> columns, bool may_wrap = true)
      : columns_(std::move(columns)), may_wrap_(may_wrap) {}

  void Add(std::vector<Cell> row) { rows_.push_back(std::move(row)); }
  bool empty() const { return rows_.empty(); }

  void PrintText(std::ostream& out) const;
  void PrintJson(std::ostream& out) const;

 private:
  void PrintBlocks(std::ostream& out) const;

  std::vector<std::string> columns_;
  bool may_wrap_;
  std::vector<std::vector<Cell>> rows_;
};

// Named values, listings and lines for humans, in the order in which they were added. In JSON the
// blanks of a name are underscores and the lines are left out.
class Report {
 public:
  void Add(std::string name, Cell value);
  // The listing stays valid as long as the report.
  Listing& AddListing(std::string name, std::vector<std::string> columns, bool may_wrap = true);
  void AddLine(std::string text);
  // A text of whole lines, printed as it is; one string in JSON.
  void AddBlock(std::string name, const std::string& lines);
  bool empty() const { return parts_.empty(); }

  void PrintText(std::ostream& out) const;
  void PrintJson(std::ostream& out) const;

 private:
  struct Part {
    enum Kind { kValue, kListing, kLine, kBlock } kind;
    std::string name;
    Cell value;
    Listing listing;
  };

  std::deque<Part> parts_;
};

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_REPORT_H_
