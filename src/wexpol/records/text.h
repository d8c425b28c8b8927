// A text field that knows "no text" from "empty text".

#ifndef WEXPOL_RECORDS_TEXT_H_
#define WEXPOL_RECORDS_TEXT_H_

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace wexpol {

// Null, or an owned zero-terminated copy. One pointer wide; copies are deep and a moved-from text
// is null, so a plain struct of such fields needs no copy, move or destroy code of its own.
//
// It reads as the pointer: `const wchar_t* name = device.name;`.
template <typename Char>
class BasicText {
 public:
  using View = std::basic_string_view<Char>;

  BasicText() noexcept = default;
  BasicText(const Char* text) : chars_(text ? Duplicate(View(text)) : nullptr) {}
  explicit BasicText(View text) : chars_(Duplicate(text)) {}

  BasicText(const BasicText& other) : BasicText(other.get()) {}
  BasicText(BasicText&& other) noexcept = default;
  // By value: the copy is made before the old text is freed, so assigning a text, or a part of it,
  // to itself is safe, and a failed copy changes nothing.
  BasicText& operator=(BasicText other) noexcept {
    chars_.swap(other.chars_);
    return *this;
  }
  ~BasicText() = default;

  // Takes over a zero-terminated array.
  static BasicText Adopt(std::unique_ptr<Char[]> chars) noexcept {
    BasicText text;
    text.chars_ = std::move(chars);
    return text;
  }

  operator const Char*() const noexcept { return chars_.get(); }
  const Char* get() const noexcept { return chars_.get(); }
  // Empty for a null text.
  View view() const noexcept { return chars_ ? View(chars_.get()) : View(); }

  // Hands the array, to be deleted with delete[], to the caller; the text is null afterwards.
  Char* release() noexcept { return chars_.release(); }

  // Two null texts are equal; a null text and an empty one are not.
  friend bool operator==(const BasicText& a, const BasicText& b) noexcept {
    return !a.chars_ == !b.chars_ && a.view() == b.view();
  }
  friend bool operator!=(const BasicText& a, const BasicText& b) noexcept { return !(a == b); }
  friend bool operator==(const BasicText& a, const Char* b) noexcept {
    return !a.chars_ == !b && a.view() == (b ? View(b) : View());
  }
  friend bool operator!=(const BasicText& a, const Char* b) noexcept { return !(a == b); }
  friend bool operator==(const BasicText& a, std::nullptr_t) noexcept { return !a.chars_; }
  friend bool operator!=(const BasicText& a, std::nullptr_t) noexcept { return !!a.chars_; }

 private:
  static std::unique_ptr<Char[]> Duplicate(View text) {
    std::unique_ptr<Char[]> copy(new Char[text.size() + 1]);
    text.copy(copy.get(), text.size());
    copy[text.size()] = Char();
    return copy;
  }

  std::unique_ptr<Char[]> chars_;
};

using Text = BasicText<char>;         // UTF-8
using WideText = BasicText<wchar_t>;  // the target's wide encoding

// The one as the other; a null pointer gives a null text.
Text ToUtf8(const wchar_t* text);
WideText ToWide(const char* text);

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_TEXT_H_
