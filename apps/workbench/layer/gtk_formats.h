// Data as programs exchange them, on the clipboard and by drag and drop, and in the library's
// formats.

#pragma once

#include <functional>
#include <gtk/gtk.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/clipboard.h"

namespace workbench {

/// A piece of what is offered. The name is that of a registered format, or "".
struct DataPiece {
  dq::UINT format = 0;
  std::string name;
  std::string bytes;
};

struct TargetListDeleter {
  void operator()(GtkTargetList* list) const { gtk_target_list_unref(list); }
};
using TargetList = std::unique_ptr<GtkTargetList, TargetListDeleter>;

/// What other programs can ask of the pieces; the information of each target is the piece's place.
TargetList TargetsOf(const std::vector<DataPiece>& pieces);

/// The same as a table, for its lifetime.
class TargetTable {
 public:
  explicit TargetTable(const std::vector<DataPiece>& pieces)
      : entries_(gtk_target_table_new_from_list(TargetsOf(pieces).get(), &count_)) {}
  TargetTable(const TargetTable&) = delete;
  TargetTable& operator=(const TargetTable&) = delete;
  ~TargetTable() {
    if (entries_ != nullptr) gtk_target_table_free(entries_, count_);
  }

  const GtkTargetEntry* entries() const { return entries_; }
  guint count() const { return static_cast<guint>(count_); }

 private:
  gint count_ = 0;
  GtkTargetEntry* entries_;
};

/// Answers who has asked for a piece: text goes out in UTF-8 with the desktop's line ends, and a
/// list of files as their addresses.
void PutPiece(GtkSelectionData& selection, const DataPiece& piece);

/// A format of the library's and the target to ask for it.
struct OfferedFormat {
  dq::UINT format = 0;
  GdkAtom target = nullptr;
};

/// The formats that another program offers, each once. `number_of` gives the number of a
/// registered one.
std::vector<OfferedFormat> FormatsOf(
    const std::vector<GdkAtom>& targets,
    const std::function<dq::UINT(std::string_view name)>& number_of);

/// The target of a registered format.
GdkAtom TargetOf(const std::string& name);

/// What another program has answered, in the library's form; no value if it had nothing.
std::optional<std::string> BytesOf(const GtkSelectionData& selection, dq::UINT format);

}  // namespace workbench
