#include "dqlib/platform/posix/registry_snapshot.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <span>
#include <utility>
#include <vector>

#include "dqlib/platform/checksum.h"
#include "dqlib/platform/registry_text.h"

namespace dq::platform::posix {
namespace {

/// Bytes that are gathered before they are written.
constexpr std::size_t kPieceSize = std::size_t{256} << 10;

constexpr std::string_view kTrailerBegin = "; ";
constexpr std::string_view kEpochsBegin = "; epochs ";

std::string Trailer(std::size_t values, std::uint32_t checksum) {
  char line[64];
  const int size =
      std::snprintf(line, sizeof line, "; %zu values, checksum %08x\r\n", values, checksum);
  return std::string(line, static_cast<std::size_t>(size));
}

void AppendEpochs(const SnapshotEpochs& epochs, std::string& text) {
  text += kEpochsBegin;
  const auto append = [&text](std::uint64_t number, std::string_view behind) {
    char digits[16];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, number, 16).ptr);
    text += behind;
  };
  append(epochs.epoch, " ");
  append(epochs.folded_epoch, " ");
  append(epochs.folded_size, " ");
  append(epochs.next_epoch, kRegistryTextLineEnd);
}

/// Keeps a walk over a tree of any depth off the stack of calls.
class Walk {
 public:
  explicit Walk(const TreeKey& root) : key_(&root) {}

  const TreeKey* key() const { return key_; }
  const std::string& path() const { return path_; }

  /// Goes on to the next key, above those below it.
  void Next() {
    std::size_t child = 0;
    while (child >= key_->children.size()) {
      if (steps_.empty()) {
        key_ = nullptr;
        return;
      }
      key_ = key_->parent;
      child = steps_.back().child + 1;
      path_.resize(steps_.back().path_size);
      steps_.pop_back();
    }
    steps_.push_back({child, path_.size()});
    key_ = key_->children[child].key;
    path_ += '\\';
    path_ += key_->name;
  }

 private:
  struct Step {
    std::size_t child;
    std::size_t path_size;
  };
  const TreeKey* key_;
  std::vector<Step> steps_;
  std::string path_;
};

/// How many values stand in lines that are as they were written.
std::size_t CountValues(std::string_view lines) {
  std::size_t values = 0;
  while (!lines.empty()) {
    if (lines[0] == '"' || lines[0] == '@') ++values;
    lines.remove_prefix(std::min(lines.find('\n'), lines.size() - 1) + 1);
  }
  return values;
}

class Loader : public RegistryTextSink {
 public:
  /// `is_whole`: the text is the one that was written.
  Loader(RegistryTree& tree, std::string_view root_name, bool is_whole)
      : tree_(tree), root_name_(root_name), is_whole_(is_whole) {}

  bool OnKey(std::string_view path) override {
    key_ = nullptr;
    if (!SameName(path.substr(0, root_name_.size()), root_name_)) return false;
    path.remove_prefix(root_name_.size());
    if (!path.empty() && path.front() != '\\') return false;
    if (!IsKeyPath(path)) return false;
    key_ = &tree_.MakeKey(tree_.root(), path);
    return true;
  }

  bool OnValue(std::string_view name, DWORD type, std::string_view data) override {
    if (!IsValueName(name) || data.size() > kMaxValueData) return false;
    RegistryTree::SetKept(*key_, name, type, data);
    ++values_;
    return true;
  }

  bool TakesLines() const override { return is_whole_; }
  void OnLines(std::span<char> lines) override {
    // An empty line stands before the next key.
    if (lines.size() > kRegistryTextLineEnd.size()) key_->values.SetLines(lines);
    values_ += CountValues({lines.data(), lines.size()});
  }

  bool OnDeletedKey(std::string_view) override { return false; }
  bool OnDeletedValue(std::string_view) override { return false; }

  std::size_t values() const { return values_; }

 private:
  RegistryTree& tree_;
  const std::string_view root_name_;
  const bool is_whole_;
  TreeKey* key_ = nullptr;
  std::size_t values_ = 0;
};

/// How many values a snapshot says it has; none if its bytes aren't those that were written.
std::optional<std::size_t> CountIfWhole(std::string_view text) {
  const std::size_t trailer = text.rfind(kTrailerBegin);
  if (trailer == std::string_view::npos) return std::nullopt;
  const std::string_view line = text.substr(trailer);
  std::size_t values = 0;
  // The whole line is compared, so that it doesn't matter where the number ends.
  std::from_chars(line.data() + kTrailerBegin.size(), line.data() + line.size(), values);
  if (line != Trailer(values, Checksum(text.substr(0, trailer)))) return std::nullopt;
  return values;
}

}  // namespace

Error WriteSnapshot(const RegistryTree& tree, std::string_view root_name,
                    const std::optional<SnapshotEpochs>& epochs, const SnapshotWriter& write) {
  std::string piece(kRegistryTextHeader);
  piece += kRegistryTextLineEnd;
  if (epochs) AppendEpochs(*epochs, piece);
  std::string path;
  std::size_t values = 0;
  std::uint32_t checksum = 0;
  const auto put = [&] {
    checksum = Checksum(piece, checksum);
    const Error error = write(piece);
    piece.clear();
    return error;
  };
  for (Walk walk(tree.root()); walk.key() != nullptr; walk.Next()) {
    // The line of a key makes those above it. One line for each key of a long path would be as many
    // bytes as the square of that path.
    if (walk.key()->values.size() == 0 && walk.key()->children.size() > 0) continue;
    piece += kRegistryTextLineEnd;
    path.assign(root_name);
    path += walk.path();
    AppendRegistryKey(path, piece);
    for (const TreeValue& value : walk.key()->values) {
      AppendRegistryValue(value.name, value.type, value.data, piece);
      ++values;
      if (piece.size() < kPieceSize) continue;
      if (const Error error = put(); !error.ok()) return error;
    }
  }
  if (const Error error = put(); !error.ok()) return error;
  return write(Trailer(values, checksum));
}

LoadedSnapshot ReadSnapshot(std::string text, std::string_view root_name) {
  LoadedSnapshot loaded;
  loaded.tree = std::make_unique<RegistryTree>();
  // All that asks for the text as it is, before it is decoded where it stands.
  loaded.epochs = FindSnapshotEpochs(std::string_view(text).substr(0, kSnapshotHeadSize));
  const std::optional<std::size_t> values = CountIfWhole(text);
  // A value in a line that was cut off may have lost its end without a trace.
  const std::size_t whole_lines = text.rfind('\n') + 1;
  const bool is_cut = whole_lines < text.size();
  Loader loader(*loaded.tree, root_name, values.has_value());
  const std::span<char> kept = loaded.tree->KeepText(std::move(text));
  const RegistryTextDamage damage = ReadRegistryTextInPlace(kept.first(whole_lines), loader);
  loaded.lost_lines = damage.lost_lines + (is_cut ? 1 : 0);
  loaded.values = loader.values();
  loaded.damaged = damage.any() || values != loaded.values;
  return loaded;
}

std::optional<SnapshotEpochs> FindSnapshotEpochs(std::string_view head) {
  const std::size_t line = head.find('\n') + 1;
  if (!head.substr(line).starts_with(kEpochsBegin)) return std::nullopt;
  const char* at = head.data() + line + kEpochsBegin.size();
  const char* const end = head.data() + head.size();
  std::uint64_t numbers[4];
  for (std::uint64_t& number : numbers) {
    const auto [stop, error] = std::from_chars(at, end, number, 16);
    if (error != std::errc() || stop == end) return std::nullopt;
    at = stop + 1;  // one blank, or the end of the line
  }
  return SnapshotEpochs{numbers[0], numbers[1], numbers[2], numbers[3]};
}

}  // namespace dq::platform::posix
