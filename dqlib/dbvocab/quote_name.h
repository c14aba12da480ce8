// Which names a platform's SQL needs in quotes, and putting them there.
//
//   SS7QuoteName quoting;
//   std::string name = "order lines";
//   quoting.Quote(name);  // "[order lines]"
//
// Letters and digits are those of ASCII; every other byte is neither. A quote character inside a
// name is not doubled. An empty name needs no quotes. Asking about a name takes no memory. For the
// user-interface thread.

#pragma once

#include <string>
#include <string_view>

#include "dqlib/framework/base/string_collections.h"

namespace dq {

/// The rules of one platform.
class QuoteName {
 public:
  QuoteName() = default;
  QuoteName(const QuoteName&) = delete;
  QuoteName& operator=(const QuoteName&) = delete;
  virtual ~QuoteName();

  /// Whether the name must be quoted.
  virtual bool NeedsQuotes(const std::string& name) = 0;
  /// Puts the name between quote characters if it needs them.
  virtual void Quote(std::string& name) = 0;
};

/// A platform with reserved words, which must be quoted whatever their case.
///
/// All such platforms share one list: the first object of a process loads its platform's, and that
/// list stays for every object of every platform. Scripts that tools have generated depend on it,
/// and a tool speaks to one platform.
class QuoteNameBase : public QuoteName {
 protected:
  /// Loads the list of the library's string `words`, cut at the characters of the string
  /// `delimiter`, if there is none yet.
  QuoteNameBase(UINT words, UINT delimiter);

  static bool IsReserved(std::string_view name);

 private:
  static CStringList& Words();
};

/// SQL Server up to 6.5: a letter or "_@#", then letters, digits or "_@#$"; double quotes.
class SS65QuoteName : public QuoteNameBase {
 public:
  SS65QuoteName();
  /// False for every name while option 50274 is off.
  bool NeedsQuotes(const std::string& name) override;
  void Quote(std::string& name) override;
};

/// SQL Server above 6.5: the same names, in square brackets.
class SS7QuoteName : public SS65QuoteName {
 public:
  void Quote(std::string& name) override;
};

/// Sybase: as SQL Server up to 6.5, with the yen and the pound sign (bytes A5h and A3h) behind the
/// first character too.
class SybaseQuoteName : public QuoteNameBase {
 public:
  SybaseQuoteName();
  /// False for every name while option 50274 is off.
  bool NeedsQuotes(const std::string& name) override;
  void Quote(std::string& name) override;
};

/// Oracle: a letter, then letters, digits or "_$#()"; double quotes.
class OracleQuoteName : public QuoteNameBase {
 public:
  OracleQuoteName();
  /// A lower-case letter needs quotes while option 50270 is on. Option 50274 isn't asked.
  bool NeedsQuotes(const std::string& name) override;
  void Quote(std::string& name) override;
};

/// DB2: a letter, then letters, digits or "_.", all in upper case; double quotes. There are no
/// reserved words, and a qualified name passes as one name.
class DB2QuoteName : public QuoteName {
 public:
  /// False for every name while option 50274 is off.
  bool NeedsQuotes(const std::string& name) override;
  void Quote(std::string& name) override;
};

/// DB2 for OS/390: as DB2.
class DB2OS390QuoteName : public QuoteName {
 public:
  /// False for every name while option 50274 is off.
  bool NeedsQuotes(const std::string& name) override;
  void Quote(std::string& name) override;
};

}  // namespace dq
