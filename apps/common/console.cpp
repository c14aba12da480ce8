#include "apps/common/console.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace dqapps {
namespace {

std::string& Complainer() {
  static std::string& text = *new std::string;
  return text;
}

}  // namespace

void PrintLine(std::string_view line) {
  std::string whole;
  whole.reserve(line.size() + 1);
  whole.append(line).push_back('\n');
  if (std::fwrite(whole.data(), 1, whole.size(), stdout) != whole.size() ||
      std::fflush(stdout) != 0) {
    const int error = errno;
    throw OutputClosed(std::string("standard output: ") + std::strerror(error), error == EPIPE);
  }
}

void SetComplainer(std::string_view program, std::string_view command) {
  std::string& text = Complainer();
  text.clear();
  for (const std::string_view part : {program, command}) {
    if (!part.empty()) text.append(part).append(": ");
  }
}

std::string ByComplainer(std::string_view text) { return Complainer() + std::string(text); }

int Complain(std::string_view text) {
  text = text.substr(0, text.find_last_not_of("\r\n") + 1);
  const std::string line = ByComplainer(OnOneLine(text)) + '\n';
  // There is no other place to complain of a failure to complain.
  std::fwrite(line.data(), 1, line.size(), stderr);
  return kNo;
}

void ComplainInLines(std::string_view text) {
  while (!text.empty()) {
    const std::size_t size = std::min(text.find('\n'), text.size());
    Complain(text.substr(0, size));
    text.remove_prefix(std::min(size + 1, text.size()));
  }
}

std::string OnOneLine(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string line;
  line.reserve(text.size());
  for (const char each : text) {
    const auto byte = static_cast<unsigned char>(each);
    if (byte < 0x20 || byte == 0x7F) {
      line.append("\\x").append({digits[byte >> 4], digits[byte & 0xF]});
    } else {
      line += each;
    }
  }
  return line;
}

}  // namespace dqapps
