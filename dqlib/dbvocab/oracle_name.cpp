#include "dqlib/dbvocab/oracle_name.h"

#include <algorithm>
#include <string_view>

#include "dqlib/dbvocab/quote_options.h"
#include "dqlib/frame/resources.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/resources/library.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

constexpr int kLongestName = 30;

CString LibraryString(UINT id) { return LoadStringA(DQLIB_GetInstanceHandle(), id); }

}  // namespace

COracleName::COracleName() { COracleName::Initialize(); }

COracleName::~COracleName() = default;

void COracleName::Initialize() {
  m_strDefault = LibraryString(IDS_DEFAULT_KEYWORD);
  if (m_keywordList.IsEmpty()) InitializeSearchList();
}

void COracleName::InitializeSearchList() {
  DQLIB_LoadResourceList(DQLIB_GetInstanceHandle(), IDS_ORACLE_WORDS,
                         LibraryString(IDS_ORACLE_WORDS_DELIMITER), m_keywordList);
}

bool COracleName::IsQuoteRequired(const char* name) {
  if (IsIdentifierQuoted(name)) return false;
  const std::string_view text = detail::OrEmpty(name);
  if (text.empty()) return false;
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  const auto is_letter = [&](char each) { return page.IsAlpha(detail::Byte(each)); };
  const auto is_plain = [&](char each) {
    return is_letter(each) || (each >= '0' && each <= '9') ||
           m_strAllowableSymbols.View().find(each) != std::string_view::npos;
  };
  if (!is_letter(text.front()) || !std::ranges::all_of(text.substr(1), is_plain)) return true;
  const auto is_lower = [&](char each) { return page.IsLower(detail::Byte(each)); };
  if (std::ranges::any_of(text, is_lower) && detail::OracleLowerCaseCounts()) return true;
  return m_keywordList.Find(name) != nullptr;
}

void COracleName::QuoteIdentifier(double version, const char* name, CString& result) {
  const CString whole = name;
  if (!whole.IsEmpty() && whole.CompareNoCase("DEFAULT") == 0) {
    result = m_strDefault;
    return;
  }
  CString cut = whole;
  TruncateName(version, cut);
  SetupQuoteIdentifier(version);
  result = IsQuoteRequired(cut) ? m_strQuotes + cut + m_strQuotes : cut;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool COracleName::DBLinkHasInvalidCharacters(CString link) { return link.FindOneOf(" ;\"'") >= 0; }

void COracleName::SetAllowableSymbols(double) {
  m_strAllowableSymbols = LibraryString(IDS_ORACLE_NAME_SYMBOLS);
}

void COracleName::SetupQuoteIdentifier(double version) {
  Initialize();
  SetQuotes('"');
  SetAllowableSymbols(version);
}

bool COracleName::IsIdentifierQuoted(const char* name) const {
  const std::string_view text = detail::OrEmpty(name);
  const std::string_view quotes = m_strQuotes.View();
  return text.size() >= 2 * quotes.size() && text.starts_with(quotes) && text.ends_with(quotes);
}

void COracleName::TruncateName(double, CString& name) const {
  if (name.GetLength() > kLongestName) name = name.Left(kLongestName);
}

}  // namespace dq
