#include "dqlib/toolkit/library_options_dialog.h"

#include <array>
#include <span>

#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

/// The option that keeps which page was shown last.
constexpr int kPageOption = 50391;

constexpr std::array kEditor = {50180, 50181, 50182, 50183, 50184, 50185,
                                50194, 50198, 50203, 50226, 50227, 50229};
constexpr std::array kFormatter = {50241, 50242, 50243, 50244, 50245, 50246,
                                   50247, 50248, 50249, 50311, 50326, 50327};
constexpr std::array kNames = {50270, 50274, 50390};
constexpr std::array kOutput = {50144, 50255, 50256, 50257};
constexpr std::array kFavorites = {50135, 50139};
constexpr std::array kJobs = {50230, 50231};

struct PageRow {
  DQOptionsPageType type;
  UINT title_id;
  std::span<const int> options;
};
constexpr PageRow kPages[] = {
    {OPTIONS_PAGE_EDITOR, IDS_OPTIONS_PAGE_EDITOR, kEditor},
    {OPTIONS_PAGE_FORMATTER, IDS_OPTIONS_PAGE_FORMATTER, kFormatter},
    {OPTIONS_PAGE_NAMES, IDS_OPTIONS_PAGE_NAMES, kNames},
    {OPTIONS_PAGE_OUTPUT, IDS_OPTIONS_PAGE_OUTPUT, kOutput},
    {OPTIONS_PAGE_FAVORITES, IDS_OPTIONS_PAGE_FAVORITES, kFavorites},
    {OPTIONS_PAGE_JOBS, IDS_OPTIONS_PAGE_JOBS, kJobs},
};

/// Numbers that stand for one of a few choices.
struct NamesRow {
  int option;
  UINT names_id;
};
constexpr NamesRow kNamedValues[] = {
    {50198, IDS_OPTIONS_OVERWRITE_POLICIES},
    {50241, IDS_OPTIONS_CASES},
    {50242, IDS_OPTIONS_CASES},
    {50244, IDS_OPTIONS_CASES},
    {50245, IDS_OPTIONS_CASES},
};

}  // namespace

CDQLibraryOptionsDlg::CDQLibraryOptionsDlg(CWnd* parent)
    : CDQOptionsDlg(kTemplateId, kPageOption, parent) {
  for (const PageRow& row : kPages) {
    CDQOptionsPage& page =
        *m_ownPages.emplace_back(std::make_unique<CDQOptionsPage>(row.type, row.title_id));
    for (const int option : row.options) page.AddOption(option);
    for (const NamesRow& named : kNamedValues) page.NameValues(named.option, named.names_id);
    AddPage(page);
  }
}

CDQLibraryOptionsDlg::~CDQLibraryOptionsDlg() = default;

}  // namespace dq
