// Texts as a terminal shows them.

#ifndef WEXPOL_WEXPOLCTL_LAYOUT_H_
#define WEXPOL_WEXPOLCTL_LAYOUT_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace wexpolctl {

// Where results are shown.
struct Screen {
  std::size_t width = 120;
  bool has_colour = false;
};

// Escapes what a terminal would obey instead of print: control characters, and those that turn or
// hide the text around them.
std::string Printable(std::string_view utf8);

// How many columns of a terminal a printable text takes.
std::size_t WidthOf(std::string_view text);

// With blanks up to `width`, on its left when `right`.
std::string Padded(const std::string& text, std::size_t width, bool right);

// The text in lines of at most `width`, broken at blanks where there are any. At least one.
std::vector<std::string> Wrapped(const std::string& text, std::size_t width);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_LAYOUT_H_
