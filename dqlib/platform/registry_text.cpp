#include "dqlib/platform/registry_text.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>

#include "dqlib/platform/registry.h"

namespace dq::platform {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";
constexpr std::size_t kHexBytesPerLine = 25;

/// Texts of one line whose zero is the last byte can be written between quotes.
bool IsOneLine(std::string_view data) {
  return !data.empty() && data.back() == '\0' &&
         data.substr(0, data.size() - 1).find_first_of(std::string_view("\0\r\n", 3)) ==
             std::string_view::npos;
}

void AppendQuoted(std::string_view bytes, std::string& text) {
  text += '"';
  for (const char c : bytes) {
    switch (c) {
      case '"':
      case '\\':
        text += '\\';
        text += c;
        break;
      case '\n':
        text += "\\n";
        break;
      case '\r':
        text += "\\r";
        break;
      default:
        text += c;
    }
  }
  text += '"';
}

void AppendHex(std::string_view data, std::string& text) {
  for (std::size_t i = 0; i < data.size(); ++i) {
    if (i > 0) {
      text += ',';
      if (i % kHexBytesPerLine == 0) text += "\\\r\n  ";
    }
    const auto byte = static_cast<unsigned char>(data[i]);
    text += kHexDigits[byte >> 4];
    text += kHexDigits[byte & 15];
  }
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// A hexadecimal number that fills the whole of `text`.
std::optional<DWORD> HexNumber(std::string_view text) {
  DWORD number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

/// A stretch of the text. What is decoded takes no more room than what it is made of.
struct Stretch {
  char* begin;
  char* end;

  std::string_view view() const { return {begin, static_cast<std::size_t>(end - begin)}; }
  bool empty() const { return begin == end; }
  /// The first of its bytes that is this one, or null.
  char* Find(char c) const {
    return static_cast<char*>(std::memchr(begin, c, static_cast<std::size_t>(end - begin)));
  }
};

void TrimBlanks(Stretch& text) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && is_blank(*text.begin)) ++text.begin;
  while (!text.empty() && is_blank(text.end[-1])) --text.end;
}

bool TakePrefix(Stretch& text, std::string_view prefix) {
  if (!text.view().starts_with(prefix)) return false;
  text.begin += prefix.size();
  return true;
}

/// Decodes from the first escape on what goes up to a quote, and takes it off `line`.
bool Unescape(Stretch& line, char* from, char*& end) {
  end = from;
  for (; from != line.end; ++from) {
    char c = *from;
    if (c == '"') {
      line.begin = from + 1;
      return true;
    }
    if (c == '\\') {
      if (++from == line.end) return false;
      c = *from == 'n' ? '\n' : *from == 'r' ? '\r' : *from;
    }
    *end++ = c;
  }
  return false;
}

/// Takes a quoted text off the front of `line`. A byte behind `bytes` is free to write.
bool TakeQuoted(Stretch& line, Stretch& bytes) {
  if (!TakePrefix(line, "\"")) return false;
  bytes = {line.begin, line.Find('"')};
  if (bytes.end == nullptr) return false;
  if (char* const escape = bytes.Find('\\')) return Unescape(line, escape, bytes.end);
  line.begin = bytes.end + 1;
  return true;
}

/// Bytes as two digits each with commas between; continuation lines have been joined already.
bool DecodeHex(Stretch& text) {
  char* end = text.begin;
  const char* at = text.begin;
  const auto skip_blanks = [&] {
    while (at != text.end && (*at == ' ' || *at == '\t')) ++at;
  };
  skip_blanks();
  while (at != text.end) {
    if (text.end - at < 2) return false;
    const int high = HexDigit(at[0]);
    const int low = HexDigit(at[1]);
    if (high < 0 || low < 0) return false;
    *end++ = static_cast<char>(high << 4 | low);
    at += 2;
    skip_blanks();
    if (at == text.end) break;
    if (*at++ != ',') return false;
    skip_blanks();
    if (at == text.end) return false;
  }
  text.end = end;
  return true;
}

class Reader {
 public:
  Reader(std::span<char> text, RegistryTextSink& sink)
      : rest_{text.data(), text.data() + text.size()}, sink_(sink) {}

  RegistryTextDamage Run() {
    const Stretch whole = rest_;
    damage_.no_header = NextLine().view() != kRegistryTextHeader;
    // Without its header the first line may be one that is worth reading.
    if (damage_.no_header) {
      rest_ = whole;
      line_number_ = 0;
    }
    return ReadLines();
  }

  RegistryTextDamage RunBelowKey() {
    in_key_ = true;
    return ReadLines();
  }

 private:
  RegistryTextDamage ReadLines() {
    while (!rest_.empty()) ReadLine();
    return damage_;
  }

  /// The next line without its end and the blanks around it.
  Stretch NextLine() {
    Stretch line = rest_;
    if (char* const end = rest_.empty() ? nullptr : rest_.Find('\n')) {
      line.end = end;
      rest_.begin = end + 1;
    } else {
      rest_.begin = rest_.end;
    }
    ++line_number_;
    if (!line.empty() && line.end[-1] == '\r') --line.end;
    TrimBlanks(line);
    return line;
  }

  void ReadLine() {
    const Stretch line = NextLine();
    if (line.empty()) return;
    const std::size_t number = line_number_;
    bool used = true;
    if (*line.begin == ';') {
      sink_.OnComment(line.view().substr(1));
    } else if (*line.begin == '[') {
      used = ReadKey(line);
    } else {
      used = ReadValue(line);
    }
    if (used) return;
    ++damage_.lost_lines;
    sink_.OnLostLine(number);
  }

  bool ReadKey(Stretch line) {
    in_key_ = false;
    if (line.end[-1] != ']') return false;
    ++line.begin;
    --line.end;
    const bool deleted = TakePrefix(line, "-");
    Stretch path{line.begin, line.begin};
    while (!line.empty()) {
      char c = *line.begin++;
      if (c == '\\' && (TakePrefix(line, "\\n") || TakePrefix(line, "\\r"))) {
        c = line.begin[-1] == 'n' ? '\n' : '\r';
      }
      *path.end++ = c;
    }
    if (deleted) return sink_.OnDeletedKey(path.view());
    in_key_ = sink_.OnKey(path.view());
    if (in_key_ && sink_.TakesLines()) GiveLines();
    return in_key_;
  }

  /// Gives all up to the next line that begins with a bracket.
  void GiveLines() {
    Stretch lines = rest_;
    while (!rest_.empty()) {
      char* const bracket = rest_.Find('[');
      rest_.begin = bracket == nullptr ? rest_.end : bracket;
      if (bracket == nullptr || bracket[-1] == '\n') break;
      ++rest_.begin;
    }
    lines.end = rest_.begin;
    sink_.OnLines({lines.begin, lines.end});
  }

  bool ReadValue(Stretch rest) {
    Stretch name{rest.begin, rest.begin};
    if (!TakePrefix(rest, "@") && !TakeQuoted(rest, name)) return false;
    TrimBlanks(rest);
    if (!TakePrefix(rest, "=")) return false;
    TrimBlanks(rest);
    // Even below no key, the lines that go on with this one belong to it.
    if (rest.view() == "-") return in_key_ && sink_.OnDeletedValue(name.view());
    DWORD type = REGISTRY_NONE;
    Stretch data{};
    return ReadData(rest, type, data) && in_key_ && sink_.OnValue(name.view(), type, data.view());
  }

  bool ReadData(Stretch rest, DWORD& type, Stretch& data) {
    if (!rest.empty() && *rest.begin == '"') {
      type = REGISTRY_STRING;
      if (!TakeQuoted(rest, data)) return false;
      TrimBlanks(rest);
      *data.end++ = '\0';
      return rest.empty();
    }
    if (TakePrefix(rest, "dword:")) {
      type = REGISTRY_DWORD;
      const std::optional<DWORD> number = HexNumber(rest.view());
      if (!number || rest.view().size() > 8) return false;
      // There is room, because the word before the number is as long.
      data = {rest.begin - 4, rest.begin};
      for (int i = 0; i < 4; ++i) data.begin[i] = static_cast<char>(*number >> 8 * i);
      return true;
    }
    if (!TakePrefix(rest, "hex")) return false;
    type = REGISTRY_BINARY;
    if (TakePrefix(rest, "(")) {
      char* const end = rest.Find(')');
      if (end == nullptr) return false;
      const std::optional<DWORD> number = HexNumber(Stretch{rest.begin, end}.view());
      if (!number) return false;
      type = *number;
      rest.begin = end + 1;
    }
    if (!TakePrefix(rest, ":")) return false;
    data = JoinLines(rest);
    return DecodeHex(data);
  }

  /// The rest of a line with the lines that go on with it, as their last characters tell.
  Stretch JoinLines(Stretch rest) {
    if (!rest.view().ends_with('\\')) return rest;
    --rest.end;
    while (!rest_.empty()) {
      // Any other line than one of digits is no part of this value: what was between is gone.
      const std::size_t first = rest_.view().find_first_not_of(" \t");
      if (first == std::string_view::npos || HexDigit(rest_.begin[first]) < 0) break;
      Stretch line = NextLine();
      const bool more = line.view().ends_with('\\');
      if (more) --line.end;
      rest.end = std::copy(line.begin, line.end, rest.end);
      if (!more) break;
    }
    return rest;
  }

  /// What hasn't been read; what has may have been written over.
  Stretch rest_;
  RegistryTextSink& sink_;
  RegistryTextDamage damage_;
  std::size_t line_number_ = 0;
  bool in_key_ = false;
};

}  // namespace

RegistryTextSink::~RegistryTextSink() = default;
void RegistryTextSink::OnLines(std::span<char>) {}
void RegistryTextSink::OnComment(std::string_view) {}
void RegistryTextSink::OnLostLine(std::size_t) {}

void AppendRegistryKey(std::string_view path, std::string& text) {
  text += '[';
  for (const char c : path) {
    if (c == '\n') {
      text += "\\\\n";
    } else if (c == '\r') {
      text += "\\\\r";
    } else {
      text += c;
    }
  }
  text += ']';
  text += kRegistryTextLineEnd;
}

void AppendRegistryValue(std::string_view name, DWORD type, std::string_view data,
                         std::string& text) {
  if (name.empty()) {
    text += '@';
  } else {
    AppendQuoted(name, text);
  }
  text += '=';
  if (type == REGISTRY_STRING && IsOneLine(data)) {
    AppendQuoted(data.substr(0, data.size() - 1), text);
  } else if (type == REGISTRY_DWORD && data.size() == 4) {
    text += "dword:";
    for (std::size_t i = 4; i-- > 0;) AppendHex(data.substr(i, 1), text);
  } else {
    text += "hex";
    if (type != REGISTRY_BINARY) {
      char digits[8];
      const auto end = std::to_chars(digits, digits + sizeof digits, type, 16).ptr;
      text += '(';
      text.append(digits, end);
      text += ')';
    }
    text += ':';
    AppendHex(data, text);
  }
  text += kRegistryTextLineEnd;
}

RegistryTextDamage ReadRegistryText(std::string_view text, RegistryTextSink& sink) {
  std::string copy(text);
  return ReadRegistryTextInPlace(copy, sink);
}

RegistryTextDamage ReadRegistryTextInPlace(std::span<char> text, RegistryTextSink& sink) {
  return Reader(text, sink).Run();
}

RegistryTextDamage ReadRegistryLinesInPlace(std::span<char> lines, RegistryTextSink& sink) {
  return Reader(lines, sink).RunBelowKey();
}

}  // namespace dq::platform
