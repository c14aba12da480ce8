#include "dqlib/platform/posix/registry_snapshot.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
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

class Loader : public RegistryTextSink {
 public:
  Loader(RegistryTree& tree, std::string_view root_name) : tree_(tree), root_name_(root_name) {}

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
    RegistryTree::SetValue(*key_, name, type, data);
    ++values_;
    return true;
  }

  bool OnDeletedKey(std::string_view) override { return false; }
  bool OnDeletedValue(std::string_view) override { return false; }

  std::size_t values() const { return values_; }

 private:
  RegistryTree& tree_;
  const std::string_view root_name_;
  TreeKey* key_ = nullptr;
  std::size_t values_ = 0;
};

/// Whether a snapshot ends as it must with this many values.
bool IsWhole(std::string_view text, std::size_t values) {
  const std::size_t trailer = text.rfind(kTrailerBegin);
  if (trailer == std::string_view::npos) return false;
  return text.substr(trailer) == Trailer(values, Checksum(text.substr(0, trailer)));
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

LoadedSnapshot ReadSnapshot(std::string_view text, std::string_view root_name) {
  LoadedSnapshot loaded;
  loaded.tree = std::make_unique<RegistryTree>();
  Loader loader(*loaded.tree, root_name);
  // A value in a line that was cut off may have lost its end without a trace.
  const std::size_t whole_lines = text.rfind('\n') + 1;
  const RegistryTextDamage damage = ReadRegistryText(text.substr(0, whole_lines), loader);
  loaded.lost_lines = damage.lost_lines + (whole_lines < text.size() ? 1 : 0);
  loaded.values = loader.values();
  loaded.damaged = damage.any() || !IsWhole(text, loaded.values);
  loaded.epochs = FindSnapshotEpochs(text.substr(0, kSnapshotHeadSize));
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
