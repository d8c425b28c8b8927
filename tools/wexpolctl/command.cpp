#include "tools/wexpolctl/command.h"

#include <charconv>
#include <cstring>

namespace wexpolctl {

std::string Option::key() const { return {name, std::strcspn(name, " ")}; }

std::vector<std::string> Options::Texts(const std::string& name) const {
  const auto found = given_.find(name);
  return found == given_.end() ? std::vector<std::string>() : found->second;
}

std::string Options::Text(const std::string& name) const {
  const auto texts = Texts(name);
  return texts.empty() ? std::string() : texts.front();
}

std::optional<std::int64_t> Options::Number(const std::string& name) const {
  return Has(name) ? ParseNumber(Text(name)) : std::nullopt;
}

Effect Command::EffectOf(const Options& given) const {
  Effect answer = effect;
  for (const Option& option : options) {
    if (option.effect && given.Has(option.key())) answer = *option.effect;
  }
  return answer;
}

std::optional<std::int64_t> ParseNumber(std::string_view text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [at, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || at != end) return std::nullopt;
  return number;
}

std::string AdviceFor(const std::string& tool, const std::string& text) {
  constexpr std::string_view kName = "wexpolctl ";
  std::string advice;
  std::size_t from = 0;
  for (std::size_t at; (at = text.find(kName, from)) != text.npos; from = at + kName.size()) {
    advice.append(text, from, at - from).append(tool) += ' ';
  }
  return advice.append(text, from);
}

}  // namespace wexpolctl
