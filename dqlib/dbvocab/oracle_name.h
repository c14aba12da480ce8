// Oracle's names with their limit of 30 bytes. New code takes `OracleQuoteName`; this class keeps
// what older callers rely on.

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/string_collections.h"

namespace dq {

/// Quotes names for Oracle. Letters are those of the platform's code page. Null texts count as "".
/// For the user-interface thread.
class COracleName {
 public:
  COracleName();
  COracleName(const COracleName&) = delete;
  COracleName& operator=(const COracleName&) = delete;

  /// Whether the name must be quoted: it begins with no letter, or has what is neither a letter, a
  /// digit nor an allowable symbol, or a lower-case letter while option 50270 is on, or is a
  /// keyword. Keywords are compared as they are, so a keyword in lower case isn't one. False for an
  /// empty and for a quoted name, and always as long as the quote text is empty, as it is at first.
  virtual bool IsQuoteRequired(const char* name);
  virtual ~COracleName();
  /// Loads the keyword for a default, and the keywords if no object has loaded them yet.
  virtual void Initialize();
  /// Sets `result` to the name, cut to 30 bytes and then quoted if need be. Sets the quote text and
  /// the allowable symbols to Oracle's. "DEFAULT" in any case becomes the keyword and is never
  /// quoted. A quoted name of up to 30 bytes, quotes included, stays; a longer one loses its
  /// closing quote by the cut and is quoted once more. The version makes no difference. `name` may
  /// be the text of `result`.
  virtual void QuoteIdentifier(double version, const char* name, CString& result);

  /// What stands before and behind a quoted name; "" at first.
  const CString& GetQuotes() const { return m_strQuotes; }
  void SetQuotes(char quote) { m_strQuotes = quote; }
  /// Characters beside letters and digits that a name may have behind its first one; "" at first.
  /// Like the quote text they hold until the next `QuoteIdentifier`.
  const CString& GetAllowableSymbols() const { return m_strAllowableSymbols; }
  void SetAllowableSymbols(const char* symbols) { m_strAllowableSymbols = symbols; }

  /// Whether the text has a blank, a semicolon or a quote, double or single.
  static bool DBLinkHasInvalidCharacters(CString link);

 private:
  static void InitializeSearchList();

  void SetAllowableSymbols(double version);
  void SetupQuoteIdentifier(double version);
  bool IsIdentifierQuoted(const char* name) const;
  void TruncateName(double version, CString& name) const;

  CString m_strDefault;
  CString m_strQuotes;
  CString m_strAllowableSymbols;

  static inline CStringList m_keywordList;
};

}  // namespace dq
