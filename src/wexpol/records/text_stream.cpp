#include "wexpol/records/text_stream.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace wexpol {
namespace {

// The next quote, backslash or control character; the zero behind the text is one. Eight bytes at a
// time: a byte below `limit` borrows from its high bit.
const char* EndOfPlain(const char* at, const char* end) {
  constexpr std::uint64_t kOnes = 0x0101010101010101u;
  const auto below = [](std::uint64_t bytes, std::uint64_t limit) {
    return (bytes - kOnes * limit) & ~bytes;
  };
  for (std::uint64_t eight; end - at >= 8; at += 8) {
    std::memcpy(&eight, at, sizeof eight);
    const std::uint64_t stops =
        (below(eight ^ (kOnes * '"'), 1) | below(eight ^ (kOnes * '\\'), 1) | below(eight, 0x20)) &
        (kOnes << 7);
    if (stops) return at + std::countr_zero(stops) / 8;
  }
  while (*at != '"' && *at != '\\' && static_cast<unsigned char>(*at) >= 0x20) ++at;
  return at;
}

}  // namespace

char* TextStream::PutBegin() {
  const char* head = at_;
  const std::string_view expected = shared_->expected;
  out_ = nullptr;
  if (static_cast<std::size_t>(shared_->end - head) > expected.size() &&
      head[expected.size()] == '"' && std::memcmp(head, expected.data(), expected.size()) == 0) {
    shared_->met = head;
    at_ += expected.size();
  } else {
    at_ = EndOfPlain(head, shared_->end);
    if (*at_ == '\\') return Decode(head);
  }
  return const_cast<char*>(head);
}

// A decoded string is never longer than its text.
char* TextStream::Decode(const char* head) {
  const char* quote = at_;
  while (*quote && *quote != '"') quote += *quote == '\\' && quote[1] ? 2 : 1;
  auto* decoded =
      static_cast<char*>(shared_->pool.allocate(static_cast<std::size_t>(quote - head) + 1, 1));
  out_ = decoded + (at_ - head);
  std::memcpy(decoded, head, static_cast<std::size_t>(at_ - head));
  return decoded;
}

}  // namespace wexpol
