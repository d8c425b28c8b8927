// What a command found out, printed as plain aligned text or as one JSON object.

#ifndef WEXPOL_WEXPOLCTL_REPORT_H_
#define WEXPOL_WEXPOLCTL_REPORT_H_

#include <cstdint>
#include <deque>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tools/wexpolctl/layout.h"

namespace wexpolctl {

class JsonWriter;

// One value in both of its forms.
struct Cell {
  std::string json;
  std::string text;  // Printable.
  bool is_number = false;
  bool is_bad = false;  // Stands out where there is colour.
};

Cell Nothing();  // null, "-"
// Without what is secret in the addresses of the text.
Cell Text(std::string_view utf8);
Cell Text(std::wstring_view wide);
Cell Number(std::int64_t value);
Cell Flag(bool value);
// Bytes and seconds: numbers in JSON, with a unit in the text.
Cell Size(std::uint64_t bytes);
Cell Duration(std::int64_t seconds);
// An instant in seconds since 1970 UTC; local time with its zone in the text.
Cell Instant(std::int64_t utc);
// A value that is JSON already.
Cell Json(std::string json);
Cell Bad(Cell cell);

// Rows of cells under column names.
class Listing {
 public:
  explicit Listing(std::vector<std::string> columns) : columns_(std::move(columns)) {}

  void Add(std::vector<Cell> row) { rows_.push_back(std::move(row)); }
  bool empty() const { return rows_.empty(); }

  // A line per row; the widest columns are wrapped where the screen is too narrow, and with very
  // many columns each gets a line.
  void PrintText(std::ostream& out, const Screen& screen) const;
  void WriteJson(JsonWriter& writer) const;

 private:
  bool HasNumbers(std::size_t column) const;
  std::vector<std::size_t> Widths(std::size_t screen) const;
  void PrintBlocks(std::ostream& out) const;

  std::vector<std::string> columns_;
  std::vector<std::vector<Cell>> rows_;
};

// Named values, listings and lines for humans, in the order in which they were added. In JSON the
// blanks of a name are underscores and the lines are left out.
class Report {
 public:
  void Add(std::string name, Cell value);
  // The listing stays valid as long as the report.
  Listing& AddListing(std::string name, std::vector<std::string> columns);
  void AddLine(const std::string& text);
  // A text of whole lines, each printable; one string in JSON.
  void AddBlock(std::string name, const std::string& lines);
  bool empty() const { return parts_.empty(); }

  void PrintText(std::ostream& out, const Screen& screen = {}) const;
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
