#include "tools/wexpolctl/report.h"

#include <algorithm>
#include <numeric>
#include <sstream>
#include <utility>

#include "tools/wexpolctl/json_writer.h"
#include "tools/wexpolctl/secrets.h"

namespace wexpolctl {
namespace {

constexpr std::string_view kGap = "  ";
constexpr std::size_t kNarrowest = 16;  // Of a column that is wrapped.
constexpr const char *kBold = "\x1b[1m", *kRed = "\x1b[31m", *kPlain = "\x1b[0m";

std::string Coloured(const std::string& text, const char* colour, const Screen& screen) {
  return screen.has_colour ? colour + text + kPlain : text;
}

}  // namespace

// Whether its values are numbers, as far as there are any.
bool Listing::HasNumbers(std::size_t column) const {
  const auto is_none = [&](const auto& row) { return row[column].json == "null"; };
  const auto fits = [&](const auto& row) { return is_none(row) || row[column].is_number; };
  return std::all_of(rows_.begin(), rows_.end(), fits) &&
         !std::all_of(rows_.begin(), rows_.end(), is_none);
}

// The columns' widths, the widest ones cut to the screen; none when that does not do.
std::vector<std::size_t> Listing::Widths(std::size_t screen) const {
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    std::size_t width = WidthOf(columns_[i]);
    for (const auto& row : rows_) width = std::max(width, WidthOf(row[i].text));
    widths.push_back(width);
  }
  std::size_t total = std::accumulate(widths.begin(), widths.end(), std::size_t{0}) +
                      kGap.size() * (widths.size() - 1);
  while (total > screen) {
    const auto widest = std::max_element(widths.begin(), widths.end());
    const std::size_t excess = total - screen;
    if (*widest <= kNarrowest) return {};
    const std::size_t cut = std::min(excess, *widest - kNarrowest);
    *widest -= cut;
    total -= cut;
  }
  return widths;
}

void Listing::PrintText(std::ostream& out, const Screen& screen) const {
  const std::vector<std::size_t> widths = Widths(screen.width);
  if (widths.empty()) return PrintBlocks(out);
  std::vector<bool> right;
  for (std::size_t i = 0; i < widths.size(); ++i) right.push_back(HasNumbers(i));
  const auto print = [&](const auto& cell_of, const char* colour) {
    std::vector<std::vector<std::string>> cells;
    std::size_t height = 1;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      cells.push_back(Wrapped(cell_of(i).text, widths[i]));
      height = std::max(height, cells.back().size());
    }
    for (std::size_t line = 0; line < height; ++line) {
      std::string gap, text;
      for (std::size_t i = 0; i < widths.size(); ++i) {
        const std::string part = line < cells[i].size() ? cells[i][line] : "";
        const std::string shown = Padded(part, widths[i], right[i]);
        text += gap + (cell_of(i).is_bad ? Coloured(shown, kRed, screen) : shown);
        gap = kGap;
      }
      text.erase(text.find_last_not_of(' ') + 1);
      out << (colour ? Coloured(text, colour, screen) : text) << '\n';
    }
  };
  print([&](std::size_t i) { return Cell{"", columns_[i]}; }, kBold);
  for (const auto& row : rows_)
    print([&](std::size_t i) -> const Cell& { return row[i]; }, nullptr);
}

void Listing::PrintBlocks(std::ostream& out) const {
  std::size_t longest = 0;
  for (const auto& name : columns_) longest = std::max(longest, WidthOf(name));
  for (const auto& row : rows_) {
    if (&row != &rows_.front()) out << '\n';
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      out << Padded(columns_[i], longest, false) << kGap << row[i].text << '\n';
    }
  }
}

void Listing::WriteJson(JsonWriter& writer) const {
  writer.StartArray();
  for (const auto& row : rows_) {
    writer.StartObject();
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      writer.Name(columns_[i]);
      writer.Value(row[i].json);
    }
    writer.EndObject();
  }
  writer.EndArray();
}

void Report::Add(std::string name, Cell value) {
  parts_.push_back({Part::kValue, std::move(name), std::move(value), Listing({})});
}

Listing& Report::AddListing(std::string name, std::vector<std::string> columns) {
  parts_.push_back({Part::kListing, std::move(name), {}, Listing(std::move(columns))});
  return parts_.back().listing;
}

void Report::AddLine(const std::string& text) {
  parts_.push_back({Part::kLine, {}, Text(text), Listing({})});
}

void Report::AddBlock(std::string name, const std::string& lines) {
  Cell cell{Text(lines).json, ""};
  std::istringstream stream(WithoutCredentials(lines));
  for (std::string line; std::getline(stream, line);) cell.text += Printable(line) + '\n';
  parts_.push_back({Part::kBlock, std::move(name), std::move(cell), Listing({})});
}

void Report::PrintText(std::ostream& out, const Screen& screen) const {
  std::size_t longest = 0;
  for (const Part& part : parts_) {
    if (part.kind == Part::kValue) longest = std::max(longest, WidthOf(part.name));
  }
  bool first = true;
  for (const Part& part : parts_) {
    if (part.kind == Part::kValue) {
      out << Padded(part.name, longest, false) << kGap << part.value.text << '\n';
    } else if (part.kind == Part::kBlock) {
      out << part.value.text;
    } else if (part.kind == Part::kLine) {
      out << part.value.text << '\n';
    } else if (!part.listing.empty()) {
      if (!first) out << '\n';
      part.listing.PrintText(out, screen);
    }
    first = false;
  }
}

void Report::PrintJson(std::ostream& out) const {
  JsonWriter writer;
  writer.StartObject();
  for (const Part& part : parts_) {
    if (part.kind == Part::kLine) continue;
    writer.Name(part.name);
    if (part.kind == Part::kListing) {
      part.listing.WriteJson(writer);
    } else {
      writer.Value(part.value.json);
    }
  }
  writer.EndObject();
  out << writer.Text() << '\n';
}

}  // namespace wexpolctl
