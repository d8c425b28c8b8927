// A JSON text that the reader reads where it lies.

#ifndef WEXPOL_RECORDS_TEXT_STREAM_H_
#define WEXPOL_RECORDS_TEXT_STREAM_H_

#include <rapidjson/stream.h>

#include <cstddef>
#include <memory_resource>
#include <string_view>

namespace wexpol {

// For the reader's in-place mode: a string without escapes is answered where it lies, one with
// escapes is decoded into a pool. The text itself is never written to.
class TextStream {
 public:
  using Ch = char;

  // What outlives the copies that the reader makes of a stream.
  struct Shared {
    const char* end;                            // The zero behind the text.
    std::pmr::monotonic_buffer_resource& pool;  // Of the decoded strings.
    std::string_view expected;  // The string that probably comes next; it costs one comparison.
    const char* met = nullptr;  // Where it came last.
  };

  TextStream(const char* text, Shared& shared) : at_(text), shared_(&shared) {}

  char Peek() const { return *at_; }
  char Take() { return *at_++; }
  std::size_t Tell() const { return reinterpret_cast<std::size_t>(at_); }
  bool AtEnd() const { return at_ == shared_->end; }

  // The reader's way to a string: its beginning, its characters, which it takes and puts one by one
  // but for those that PutBegin has passed over, and its size with the zero behind it. What it gets
  // here it only hands on as constant.
  char* PutBegin();
  void Put(char c) {
    if (out_) *out_++ = c;
  }
  std::size_t PutEnd(const char* begin) {
    return static_cast<std::size_t>((out_ ? out_ : at_) - begin);
  }
  void Flush() {}

 private:
  char* Decode(const char* head);

  const char* at_;
  char* out_ = nullptr;  // Where a decoded string goes on; null for one that stays where it lies.
  Shared* shared_;
};

}  // namespace wexpol

// The reader works on a copy of its own while it reads a string or a number.
template <>
struct rapidjson::StreamTraits<wexpol::TextStream> {
  enum { copyOptimization = 1 };
};

#endif  // WEXPOL_RECORDS_TEXT_STREAM_H_
