#include "dqlib/platform/registry_text.h"

#include <algorithm>
#include <charconv>
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

std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

bool TakePrefix(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

/// Takes a quoted text off the front of `line`.
bool TakeQuoted(std::string_view& line, std::string& bytes) {
  bytes.clear();
  if (!TakePrefix(line, "\"")) return false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const std::size_t plain = i;
    while (i < line.size() && line[i] != '"' && line[i] != '\\') ++i;
    bytes.append(line, plain, i - plain);
    if (i == line.size()) return false;
    if (line[i] == '"') {
      line.remove_prefix(i + 1);
      return true;
    }
    if (++i == line.size()) return false;
    switch (line[i]) {
      case 'n':
        bytes += '\n';
        break;
      case 'r':
        bytes += '\r';
        break;
      default:
        bytes += line[i];
    }
  }
  return false;
}

/// Bytes as two digits each with commas between; continuation lines have been joined already.
bool ReadHex(std::string_view text, std::string& data) {
  data.clear();
  std::size_t i = 0;
  const auto skip_blanks = [&] {
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  };
  skip_blanks();
  while (i < text.size()) {
    if (i + 2 > text.size()) return false;
    const int high = HexDigit(text[i]);
    const int low = HexDigit(text[i + 1]);
    if (high < 0 || low < 0) return false;
    data += static_cast<char>(high << 4 | low);
    i += 2;
    skip_blanks();
    if (i == text.size()) return true;
    if (text[i++] != ',') return false;
    skip_blanks();
    if (i == text.size()) return false;
  }
  return true;
}

class Reader {
 public:
  Reader(std::string_view text, RegistryTextSink& sink) : rest_(text), sink_(sink) {}

  RegistryTextDamage Run() {
    damage_.no_header = TrimBlanks(NextLine()) != kRegistryTextHeader;
    // Without its header the first line may be one that is worth reading.
    if (damage_.no_header) {
      rest_ = whole_;
      line_number_ = 0;
    }
    while (!rest_.empty()) ReadLine();
    return damage_;
  }

 private:
  std::string_view NextLine() {
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    ++line_number_;
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
  }

  void ReadLine() {
    const std::string_view line = TrimBlanks(NextLine());
    if (line.empty()) return;
    const std::size_t number = line_number_;
    bool used = true;
    if (line[0] == ';') {
      sink_.OnComment(line.substr(1));
    } else if (line[0] == '[') {
      used = ReadKey(line);
    } else {
      used = ReadValue(line);
    }
    if (used) return;
    ++damage_.lost_lines;
    sink_.OnLostLine(number);
  }

  bool ReadKey(std::string_view line) {
    in_key_ = false;
    if (!line.ends_with(']')) return false;
    line = line.substr(1, line.size() - 2);
    const bool deleted = TakePrefix(line, "-");
    path_.clear();
    for (std::size_t i = 0; i < line.size(); ++i) {
      const std::string_view here = line.substr(i);
      if (here.starts_with("\\\\n") || here.starts_with("\\\\r")) {
        path_ += here[2] == 'n' ? '\n' : '\r';
        i += 2;
      } else {
        path_ += here[0];
      }
    }
    if (deleted) return sink_.OnDeletedKey(path_);
    in_key_ = sink_.OnKey(path_);
    return in_key_;
  }

  bool ReadValue(std::string_view line) {
    std::string_view rest = line;
    if (TakePrefix(rest, "@")) {
      name_.clear();
    } else if (!TakeQuoted(rest, name_)) {
      return false;
    }
    rest = TrimBlanks(rest);
    if (!TakePrefix(rest, "=")) return false;
    rest = TrimBlanks(rest);
    // Even below no key, the lines that go on with this one belong to it.
    DWORD type = REGISTRY_NONE;
    if (rest == "-") return in_key_ && sink_.OnDeletedValue(name_);
    return ReadData(rest, type) && in_key_ && sink_.OnValue(name_, type, data_);
  }

  bool ReadData(std::string_view rest, DWORD& type) {
    if (rest.starts_with('"')) {
      type = REGISTRY_STRING;
      if (!TakeQuoted(rest, data_) || !TrimBlanks(rest).empty()) return false;
      data_ += '\0';
      return true;
    }
    if (TakePrefix(rest, "dword:")) {
      type = REGISTRY_DWORD;
      const std::optional<DWORD> number = HexNumber(rest);
      if (!number || rest.size() > 8) return false;
      data_.clear();
      for (int shift = 0; shift < 32; shift += 8) data_ += static_cast<char>(*number >> shift);
      return true;
    }
    if (!TakePrefix(rest, "hex")) return false;
    type = REGISTRY_BINARY;
    if (TakePrefix(rest, "(")) {
      const std::size_t end = std::min(rest.find(')'), rest.size());
      const std::optional<DWORD> number = HexNumber(rest.substr(0, end));
      if (!number) return false;
      type = *number;
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return TakePrefix(rest, ":") && ReadHex(JoinLines(rest), data_);
  }

  /// The rest of a line with the lines that go on with it, as their last characters tell.
  std::string_view JoinLines(std::string_view rest) {
    if (!rest.ends_with('\\')) return rest;
    joined_.assign(rest.substr(0, rest.size() - 1));
    while (!rest_.empty()) {
      // Any other line than one of digits is no part of this value: what was between is gone.
      const std::size_t first = rest_.find_first_not_of(" \t");
      if (first == std::string_view::npos || HexDigit(rest_[first]) < 0) break;
      const std::string_view line = TrimBlanks(NextLine());
      const bool more = line.ends_with('\\');
      joined_ += more ? line.substr(0, line.size() - 1) : line;
      if (!more) break;
    }
    return joined_;
  }

  std::string_view rest_;
  const std::string_view whole_ = rest_;
  RegistryTextSink& sink_;
  RegistryTextDamage damage_;
  std::size_t line_number_ = 0;
  bool in_key_ = false;
  std::string path_;
  std::string name_;
  std::string data_;
  std::string joined_;
};

}  // namespace

RegistryTextSink::~RegistryTextSink() = default;
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
  return Reader(text, sink).Run();
}

}  // namespace dq::platform
