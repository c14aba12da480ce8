#include "dqlib/dbvocab/quote_name.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "dqlib/dbvocab/quote_options.h"
#include "dqlib/dbvocab/sql_word_set.h"
#include "dqlib/frame/resources.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/resources/library.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

using detail::Byte;

/// What a byte may be in a name without quotes.
enum ByteClass : std::uint8_t { kFirst = 1, kOther = 2, kLower = 4 };

using ByteClasses = std::array<std::uint8_t, 256>;

constexpr bool IsLetter(int byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

/// Letters, and digits behind the first character, with the characters that the platform adds.
constexpr ByteClasses Classes(std::string_view first, std::string_view other) {
  ByteClasses classes{};
  for (int byte = 0; byte < 256; ++byte) {
    std::uint8_t& each = classes[static_cast<std::size_t>(byte)];
    if (IsLetter(byte)) each = kFirst | kOther;
    if (byte >= 'a' && byte <= 'z') each |= kLower;
    if (byte >= '0' && byte <= '9') each = kOther;
  }
  for (const char each : first) classes[static_cast<unsigned char>(each)] |= kFirst;
  for (const char each : other) classes[static_cast<unsigned char>(each)] |= kOther;
  return classes;
}

constexpr ByteClasses kSqlServerClasses = Classes("_@#", "_@#$");
constexpr ByteClasses kSybaseClasses = Classes("_@#", "_@#$\xA5\xA3");
constexpr ByteClasses kOracleClasses = Classes("", "_$#()");
constexpr ByteClasses kDb2Classes = Classes("", "_.");

/// The classes that all characters of the name have, of the first one's `kFirst` counting as
/// `kOther`.
struct Shape {
  bool is_plain;
  bool has_lower;
};
inline Shape ShapeOf(std::string_view name, const ByteClasses& classes) {
  if (name.empty()) return {true, false};
  const std::uint8_t first = classes[Byte(name.front())];
  unsigned all = (first & kFirst) != 0 ? kOther : 0;
  unsigned any = first;
  for (const char each : name.substr(1)) {
    all &= classes[Byte(each)];
    any |= classes[Byte(each)];
  }
  return {(all & kOther) != 0, (any & kLower) != 0};
}

void Wrap(std::string& name, char open, char close) {
  name.reserve(name.size() + 2);
  name.insert(name.begin(), open);
  name += close;
}

// The options are asked last: most names need no quotes whatever they say.

bool NeedsDb2Quotes(std::string_view name) {
  const Shape shape = ShapeOf(name, kDb2Classes);
  return (!shape.is_plain || shape.has_lower) && detail::IsQuotingOn();
}

detail::SqlWordSet& WordSet() {
  static detail::SqlWordSet& set = *new detail::SqlWordSet;
  return set;
}

}  // namespace

QuoteName::~QuoteName() = default;

CStringList& QuoteNameBase::Words() {
  static CStringList& words = *new CStringList;
  return words;
}

QuoteNameBase::QuoteNameBase(UINT words, UINT delimiter) {
  if (!Words().IsEmpty()) return;
  const HINSTANCE library = DQLIB_GetInstanceHandle();
  DQLIB_LoadResourceList(library, words, LoadStringA(library, delimiter), Words());
  WordSet().Fill(Words());
}

bool QuoteNameBase::IsReserved(std::string_view name) { return WordSet().ContainsUpperOf(name); }

SS65QuoteName::SS65QuoteName()
    : QuoteNameBase(IDS_SQL_SERVER_WORDS, IDS_SQL_SERVER_WORDS_DELIMITER) {}

bool SS65QuoteName::NeedsQuotes(const std::string& name) {
  return (!ShapeOf(name, kSqlServerClasses).is_plain || IsReserved(name)) && detail::IsQuotingOn();
}

void SS65QuoteName::Quote(std::string& name) {
  if (NeedsQuotes(name)) Wrap(name, '"', '"');
}

void SS7QuoteName::Quote(std::string& name) {
  if (NeedsQuotes(name)) Wrap(name, '[', ']');
}

SybaseQuoteName::SybaseQuoteName() : QuoteNameBase(IDS_SYBASE_WORDS, IDS_SYBASE_WORDS_DELIMITER) {}

bool SybaseQuoteName::NeedsQuotes(const std::string& name) {
  return (!ShapeOf(name, kSybaseClasses).is_plain || IsReserved(name)) && detail::IsQuotingOn();
}

void SybaseQuoteName::Quote(std::string& name) {
  if (NeedsQuotes(name)) Wrap(name, '"', '"');
}

OracleQuoteName::OracleQuoteName() : QuoteNameBase(IDS_ORACLE_WORDS, IDS_ORACLE_WORDS_DELIMITER) {}

bool OracleQuoteName::NeedsQuotes(const std::string& name) {
  const Shape shape = ShapeOf(name, kOracleClasses);
  return !shape.is_plain || IsReserved(name) ||
         (shape.has_lower && detail::OracleLowerCaseCounts());
}

void OracleQuoteName::Quote(std::string& name) {
  if (NeedsQuotes(name)) Wrap(name, '"', '"');
}

bool DB2QuoteName::NeedsQuotes(const std::string& name) { return NeedsDb2Quotes(name); }

void DB2QuoteName::Quote(std::string& name) {
  if (NeedsQuotes(name)) Wrap(name, '"', '"');
}

bool DB2OS390QuoteName::NeedsQuotes(const std::string& name) { return NeedsDb2Quotes(name); }

void DB2OS390QuoteName::Quote(std::string& name) {
  if (NeedsQuotes(name)) Wrap(name, '"', '"');
}

}  // namespace dq
