#include "dqlib/platform/profile_text.h"

#include <algorithm>
#include <unordered_set>

#include "dqlib/platform/ascii.h"

namespace dq::platform {
namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t";

std::string_view Trim(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::string_view Unquote(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

enum class LineKind { kSection, kKey, kOther };

struct Line {
  LineKind kind = LineKind::kOther;
  /// Indices into the text: of the line, of its line end, and of what is behind that.
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t next = 0;
  /// Name of the section or key, without blanks.
  std::string_view name;
  /// Behind the `=`, without blanks.
  std::string_view value;
};

/// Walks through the lines of a text.
class LineReader {
 public:
  explicit LineReader(std::string_view text)
      : text_(text), position_(text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0) {}

  /// False at the end of the text.
  bool Next(Line& line) {
    if (position_ >= text_.size()) return false;
    line.begin = position_;
    line.end = std::min(Ahead(line_feed_, '\n'), Ahead(carriage_return_, '\r'));
    const bool pair = text_.substr(line.end, 2) == "\r\n";
    line.next = std::min(line.end + (pair ? 2 : 1), text_.size());
    position_ = line.next;
    Classify(line);
    return true;
  }

 private:
  /// Index of the next such character, or the text's size. Kept until it is passed, so that a text
  /// without one of the two isn't searched for it at each line.
  std::size_t Ahead(std::size_t& index, char character) const {
    if (index < position_ || index == npos) {
      index = std::min(text_.find(character, position_), text_.size());
    }
    return index;
  }

  void Classify(Line& line) {
    const std::string_view bytes = Trim(text_.substr(line.begin, line.end - line.begin));
    line.kind = LineKind::kOther;
    if (bytes.empty() || bytes.front() == ';') return;
    if (bytes.front() == '[') {
      const std::size_t close = bytes.rfind(']');
      if (close == npos) return;
      line.kind = LineKind::kSection;
      line.name = Trim(bytes.substr(1, close - 1));
      in_section_ = true;
      return;
    }
    const std::size_t equals = bytes.find('=');
    if (equals == npos || !in_section_) return;
    line.name = Trim(bytes.substr(0, equals));
    line.value = Trim(bytes.substr(equals + 1));
    if (!line.name.empty()) line.kind = LineKind::kKey;
  }

  std::string_view text_;
  std::size_t position_;
  std::size_t line_feed_ = npos;
  std::size_t carriage_return_ = npos;
  bool in_section_ = false;
};

/// Goes on to the line that begins the section.
bool FindSection(LineReader& lines, std::string_view section, Line& line) {
  section = Trim(section);
  while (lines.Next(line)) {
    if (line.kind == LineKind::kSection && EqualIgnoringCase(line.name, section)) return true;
  }
  return false;
}

/// Adds a name, unless one that is equal but for case is there already.
class NameList {
 public:
  void Add(std::string_view name) {
    std::string lower(name);
    std::transform(lower.begin(), lower.end(), lower.begin(), AsciiLower);
    if (seen_.insert(std::move(lower)).second) names_.emplace_back(name);
  }
  std::vector<std::string> Take() { return std::move(names_); }

 private:
  std::vector<std::string> names_;
  std::unordered_set<std::string> seen_;
};

std::string_view LineEndOf(std::string_view text, const Line& line) {
  return text.substr(line.end, line.next - line.end);
}

/// The line end that new text behind a line gets; `line` may be empty, at the begin of the text.
std::string NewLineEnd(std::string_view text, const Line& line) {
  if (line.next > line.end) return std::string(LineEndOf(text, line));
  Line first;
  if (LineReader(text).Next(first) && first.next > first.end) {
    return std::string(LineEndOf(text, first));
  }
  return "\r\n";
}

/// Inserts new lines, each to be ended by the same line end, behind `line`.
void InsertBehind(std::string& text, const Line& line,
                  std::initializer_list<std::string> new_lines) {
  const std::string line_end = NewLineEnd(text, line);
  std::string inserted;
  if (line.end > line.begin && line.next == line.end) inserted = line_end;
  for (const std::string& new_line : new_lines) inserted += new_line + line_end;
  text.insert(line.next, inserted);
}

/// Copies a text but for some of its lines.
class Remover {
 public:
  explicit Remover(std::string_view text) : text_(text) {}

  void Remove(const Line& line) {
    kept_ += text_.substr(copied_, line.begin - copied_);
    copied_ = line.next;
  }

  /// Puts what is left in the place of `text`; false if that is all of it.
  bool Finish(std::string& text) {
    if (copied_ == 0) return false;
    kept_ += text_.substr(copied_);
    text = std::move(kept_);
    return true;
  }

 private:
  std::string_view text_;
  std::string kept_;
  std::size_t copied_ = 0;
};

bool IsOneLine(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == npos;
}

}  // namespace

bool IsWideProfile(std::string_view text) {
  return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
}

bool IsProfileSectionName(std::string_view name) { return !Trim(name).empty() && IsOneLine(name); }

bool IsProfileKeyName(std::string_view name) {
  const std::string_view trimmed = Trim(name);
  return !trimmed.empty() && IsOneLine(name) && trimmed.front() != '[' && trimmed.front() != ';' &&
         trimmed.find('=') == npos;
}

bool IsProfileValue(std::string_view value) { return IsOneLine(value); }

std::optional<std::string_view> FindProfileValue(std::string_view text, std::string_view section,
                                                 std::string_view key) {
  LineReader lines(text);
  Line line;
  if (!FindSection(lines, section, line)) return std::nullopt;
  key = Trim(key);
  while (lines.Next(line) && line.kind != LineKind::kSection) {
    if (line.kind == LineKind::kKey && EqualIgnoringCase(line.name, key)) {
      return Unquote(line.value);
    }
  }
  return std::nullopt;
}

std::vector<std::string> ProfileSections(std::string_view text) {
  LineReader lines(text);
  NameList names;
  Line line;
  while (lines.Next(line)) {
    if (line.kind == LineKind::kSection && !line.name.empty()) names.Add(line.name);
  }
  return names.Take();
}

std::vector<std::string> ProfileKeys(std::string_view text, std::string_view section) {
  LineReader lines(text);
  NameList names;
  Line line;
  if (!FindSection(lines, section, line)) return {};
  while (lines.Next(line) && line.kind != LineKind::kSection) {
    if (line.kind == LineKind::kKey) names.Add(line.name);
  }
  return names.Take();
}

bool SetProfileValue(std::string& text, std::string_view section, std::string_view key,
                     std::string_view value) {
  key = Trim(key);
  const std::string wanted(value);
  LineReader lines(text);
  Line line;
  if (!FindSection(lines, section, line)) {
    // Reading has come to the end, so `line` is the last one, or empty where there is none.
    if (line.next == 0) line.begin = line.end = line.next = text.size();
    InsertBehind(text, line,
                 {"[" + std::string(Trim(section)) + "]", std::string(key) + "=" + wanted});
    return true;
  }
  // Blank lines at the end of a section set it off from the next one.
  Line last = line;
  while (lines.Next(line) && line.kind != LineKind::kSection) {
    if (!Trim(std::string_view(text).substr(line.begin, line.end - line.begin)).empty())
      last = line;
    if (line.kind != LineKind::kKey) continue;
    if (!EqualIgnoringCase(line.name, key)) continue;
    if (line.value == value) return false;
    const std::string replaced = std::string(line.name) + "=" + wanted;
    if (text.compare(line.begin, line.end - line.begin, replaced) == 0) return false;
    text.replace(line.begin, line.end - line.begin, replaced);
    return true;
  }
  InsertBehind(text, last, {std::string(key) + "=" + wanted});
  return true;
}

bool DeleteProfileKey(std::string& text, std::string_view section, std::string_view key) {
  LineReader lines(text);
  Remover remover(text);
  Line line;
  if (!FindSection(lines, section, line)) return false;
  key = Trim(key);
  while (lines.Next(line) && line.kind != LineKind::kSection) {
    if (line.kind == LineKind::kKey && EqualIgnoringCase(line.name, key)) remover.Remove(line);
  }
  return remover.Finish(text);
}

bool DeleteProfileSection(std::string& text, std::string_view section) {
  LineReader lines(text);
  Remover remover(text);
  Line line;
  section = Trim(section);
  bool inside = false;
  while (lines.Next(line)) {
    if (line.kind == LineKind::kSection) inside = EqualIgnoringCase(line.name, section);
    if (inside && line.kind != LineKind::kOther) remover.Remove(line);
  }
  return remover.Finish(text);
}

}  // namespace dq::platform
