#include "dqlib/datetime/date_time_fmt_dictionary.h"

#include <iterator>
#include <memory>
#include <string>

#include "dqlib/datetime/date_time_cells.h"
#include "dqlib/framework/base/text_cache.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

CLGDateTimeFmtDictionary* g_dictionary = nullptr;
int g_uses = 0;
bool g_has_added_entries = false;

CDQDateTimeFmtDictionary* g_small_dictionary = nullptr;
int g_small_uses = 0;

/// The first cell whose code in the notation is exactly this one, or null.
template <typename Cell>
const Cell* Find(const CLGAutoDeletePtrCollectionT<Cell>& cells, const CString& code,
                 DATETIME_FMTTYPE notation) {
  CConstPtrArrayIterT<Cell> walk(cells);
  while (const Cell* cell = walk.Next()) {
    if (cell->GetDateTimeElementFmt(notation) == code) return cell;
  }
  return nullptr;
}

}  // namespace

IMPLEMENT_DYNAMIC(CLGDateTimeFmtDictionary, CObject)

CLGDateTimeFmtDictionary::CLGDateTimeFmtDictionary() {
  thread_local constinit detail::TextCache<IDS_DATE_TIME_CELLS, std::size(detail::kDateTimeCells)>
      descriptions;
  entries_.Reserve(std::size(detail::kDateTimeCells));
  UINT id = IDS_DATE_TIME_CELLS;
  std::string description;
  for (const auto& row : detail::kDateTimeCells) {
    description = descriptions.Find(id++);
    INSERT_DICTIONARY(row.kind, row.disp, row.ole, row.win, description.c_str(), row.example);
  }
  g_has_added_entries = false;
}

CLGDateTimeFmtDictionary::~CLGDateTimeFmtDictionary() {
  g_dictionary = nullptr;
  g_has_added_entries = false;
}

CLGDateTimeFmtDictionary* CLGDateTimeFmtDictionary::Instance() {
  if (g_dictionary == nullptr) g_dictionary = new CLGDateTimeFmtDictionary;
  ++g_uses;
  return g_dictionary;
}

void CLGDateTimeFmtDictionary::Release() {
  if (--g_uses == 0) delete this;
}

void CLGDateTimeFmtDictionary::AddEntry(CLGDateTimeFmtCell* cell) {
  entries_.AddTail(cell);
  g_has_added_entries = true;
}

bool CLGDateTimeFmtDictionary::HasAddedEntries() { return g_has_added_entries; }

void CLGDateTimeFmtDictionary::INSERT_DICTIONARY(DATETIMETYPE kind, const char* disp,
                                                 const char* ole, const char* win,
                                                 const char* description, const char* example) {
  AddEntry(
      std::make_unique<CLGDateTimeFmtCell>(kind, disp, ole, win, description, example).release());
}

const CLGDateTimeFmtCell* CLGDateTimeFmtDictionary::GetEntry(const CString& code) const {
  CConstPtrArrayIterT<CLGDateTimeFmtCell> walk(entries_);
  while (const CLGDateTimeFmtCell* cell = walk.Next()) {
    if (cell->GetDateTimeElementFmt(DTF_OLE) == code ||
        cell->GetDateTimeElementFmt(DTF_DISP) == code) {
      return cell;
    }
  }
  return nullptr;
}

const CLGDateTimeFmtCell* CLGDateTimeFmtDictionary::GetEntry(const CString& code,
                                                             DATETIME_FMTTYPE notation) const {
  return Find(entries_, code, notation);
}

IMPLEMENT_DYNAMIC(CDQDateTimeFmtCell, CObject)
IMPLEMENT_DYNAMIC(CDQDateTimeFmtDictionary, CObject)

CDQDateTimeFmtDictionary::CDQDateTimeFmtDictionary() {
  entries_.Reserve(std::size(detail::kDateTimeCells));
  for (const auto& row : detail::kDateTimeCells) {
    if (*row.win == '\0') continue;
    AddEntry(std::make_unique<CDQDateTimeFmtCell>(row.disp, row.ole, row.win).release());
  }
}

CDQDateTimeFmtDictionary::~CDQDateTimeFmtDictionary() { g_small_dictionary = nullptr; }

CDQDateTimeFmtDictionary* CDQDateTimeFmtDictionary::Instance() {
  if (g_small_dictionary == nullptr) g_small_dictionary = new CDQDateTimeFmtDictionary;
  ++g_small_uses;
  return g_small_dictionary;
}

void CDQDateTimeFmtDictionary::Release() {
  if (--g_small_uses == 0) delete this;
}

void CDQDateTimeFmtDictionary::AddEntry(CDQDateTimeFmtCell* cell) { entries_.AddTail(cell); }

const CDQDateTimeFmtCell* CDQDateTimeFmtDictionary::GetEntry(const CString& code,
                                                             DATETIME_FMTTYPE notation) const {
  return Find(entries_, code, notation);
}

}  // namespace dq
