#include "dqlib/platform/version_resources.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <mutex>

#include "dqlib/platform/ascii.h"
#include "dqlib/platform/files.h"
#include "dqlib/platform/paths.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

// A block begins with the mark, its own size and the translation. Then come names and texts in
// turn, each as its size in bytes, its bytes and a zero. Numbers have 32 bits, lowest byte first.
constexpr std::string_view kMark = "DQVR";
constexpr std::size_t kSizeAt = 4;
constexpr std::size_t kTranslationAt = 8;
constexpr std::size_t kEntriesAt = 12;

/// English of the United States, UTF-16, which is what the texts of most programs say.
constexpr DWORD kDefaultTranslation = 0x04B00409;

constexpr std::string_view kTranslation = "Translation";

/// A larger file is no version resource.
constexpr std::uint64_t kMaxFile = 1 << 20;

void AppendNumber(std::string& block, std::size_t number) {
  for (int shift = 0; shift < 32; shift += 8) block += static_cast<char>(number >> shift & 0xFF);
}

DWORD NumberAt(std::string_view block, std::size_t index) {
  DWORD number = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    number |= DWORD{static_cast<unsigned char>(block[index + i])} << (8 * i);
  }
  return number;
}

void AppendText(std::string& block, std::string_view text) {
  AppendNumber(block, text.size());
  block += text;
  block += '\0';
}

/// Cuts a text off the entries of a block; no value at the end, and where the block is damaged.
std::optional<std::string_view> TakeText(std::string_view& entries) {
  if (entries.size() < 5) return std::nullopt;
  const std::size_t size = NumberAt(entries, 0);
  if (size > entries.size() - 5) return std::nullopt;
  const std::string_view text = entries.substr(4, size);
  entries.remove_prefix(size + 5);
  return text;
}

std::optional<DWORD> ParseHex(std::string_view digits) {
  DWORD number = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  const bool whole = error == std::errc{} && end == digits.data() + digits.size();
  return whole ? std::optional(number) : std::nullopt;
}

/// The number for "0409,04b0", which has the language in its low half.
std::optional<DWORD> ParseTranslation(std::string_view text) {
  if (text.size() != 9 || text[4] != ',') return std::nullopt;
  const auto language = ParseHex(text.substr(0, 4));
  const auto code_page = ParseHex(text.substr(5));
  if (!language || !code_page) return std::nullopt;
  return *language | *code_page << 16;
}

std::string MakeBlock(const VersionTable& table) {
  if (table.empty()) return {};
  DWORD translation = kDefaultTranslation;
  std::string entries;
  for (const auto& [name, text] : table) {
    if (EqualIgnoringCase(name, kTranslation)) {
      translation = ParseTranslation(text).value_or(translation);
    } else {
      AppendText(entries, name);
      AppendText(entries, text);
    }
  }
  std::string block(kMark);
  AppendNumber(block, kEntriesAt + entries.size());
  AppendNumber(block, translation);
  return block + entries;
}

std::string_view Trim(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

VersionTable ParseVersionFile(std::string_view text) {
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  if (text.starts_with(kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
  VersionTable table;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = Trim(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || line.front() == ';') continue;
    table.emplace(Trim(line.substr(0, equals)), Trim(line.substr(equals + 1)));
  }
  return table;
}

/// What is behind a prefix, whose case is ignored.
std::optional<std::string_view> Behind(std::string_view text, std::string_view prefix) {
  if (!EqualIgnoringCase(text.substr(0, prefix.size()), prefix)) return std::nullopt;
  return text.substr(prefix.size());
}

class TextVersionResources : public VersionResources {
 public:
  std::size_t Size(std::string_view path) override { return Load(path).size(); }

  bool Fetch(std::string_view path, std::span<char> block) override {
    const std::string loaded = Load(path);
    if (loaded.empty() || loaded.size() > block.size()) return false;
    std::memcpy(block.data(), loaded.data(), loaded.size());
    return true;
  }

  std::optional<std::string_view> Query(std::span<const char> block,
                                        std::string_view query) override;

  void SetTable(std::string_view path, VersionTable table) override {
    const std::lock_guard lock(mutex_);
    tables_.insert_or_assign(KeyOf(path), std::move(table));
  }

 private:
  /// One text for all ways to write the path of a file.
  static std::string KeyOf(std::string_view path) {
    const Result<std::string> full = SystemFiles().FullPath(path);
    std::string key = full.ok() ? full.value : std::string(path);
    if (FormOf(key) == PathForm::kWindows) {
      std::transform(key.begin(), key.end(), key.begin(), AsciiLower);
    }
    return key;
  }

  std::string Load(std::string_view path) {
    {
      const std::lock_guard lock(mutex_);
      const auto found = tables_.find(KeyOf(path));
      if (found != tables_.end()) return MakeBlock(found->second);
    }
    const std::string version_file = std::string(path) + ".version";
    const Result<FileStatus> status = SystemFiles().Status(version_file);
    std::string text;
    if (!status.ok() || status.value.size > kMaxFile ||
        !SystemFiles().ReadAll(version_file, text).ok()) {
      return {};
    }
    return MakeBlock(ParseVersionFile(text));
  }

  std::mutex mutex_;
  std::map<std::string, VersionTable> tables_;
};

std::optional<std::string_view> TextVersionResources::Query(std::span<const char> block,
                                                            std::string_view query) {
  std::string_view bytes(block.data(), block.size());
  if (bytes.size() < kEntriesAt || !bytes.starts_with(kMark)) return std::nullopt;
  const std::size_t size = NumberAt(bytes, kSizeAt);
  if (size < kEntriesAt || size > bytes.size()) return std::nullopt;
  bytes = bytes.substr(0, size);
  if (EqualIgnoringCase(query, "\\VarFileInfo\\Translation")) {
    return bytes.substr(kTranslationAt, kEntriesAt - kTranslationAt);
  }
  const auto rest = Behind(query, "\\StringFileInfo\\");
  if (!rest || rest->size() < 9 || (*rest)[8] != '\\') return std::nullopt;
  const auto language = ParseHex(rest->substr(0, 4));
  const auto code_page = ParseHex(rest->substr(4, 4));
  if (!language || !code_page ||
      (*language | *code_page << 16) != NumberAt(bytes, kTranslationAt)) {
    return std::nullopt;
  }
  const std::string_view wanted = rest->substr(9);
  std::string_view entries = bytes.substr(kEntriesAt);
  for (;;) {
    const auto name = TakeText(entries);
    const auto text = TakeText(entries);
    if (!name || !text) return std::nullopt;
    if (EqualIgnoringCase(*name, wanted)) return text;
  }
}

}  // namespace

VersionResources& SystemVersionResources() {
  static TextVersionResources& resources = *new TextVersionResources;
  return resources;
}

}  // namespace dq::platform::posix
