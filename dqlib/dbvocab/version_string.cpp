#include "dqlib/dbvocab/version_string.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "dqlib/dbvocab/version_map.h"
#include "dqlib/dbvocab/version_number.h"
#include "dqlib/framework/base/text.h"

namespace dq {
namespace {

constexpr std::size_t npos = std::string_view::npos;

bool HasLastWordAsHead(DBMS platform) {
  return platform == DBMS_ORACLE || platform == DBMS_DB2 || platform == DBMS_DB2OS390;
}

bool DropsLeadingZero(DBMS platform) {
  return platform == DBMS_DB2 || platform == DBMS_SQLSERVER || platform == DBMS_DB2OS390;
}

/// What stands between the first two slashes, or behind the only one.
std::string_view BetweenSlashes(std::string_view text) {
  const std::size_t first = text.find('/');
  if (first != npos) text.remove_prefix(first + 1);
  return text.substr(0, text.find('/'));
}

/// The text in the form of a platform that isn't `DBMS_NONE`.
std::string VersionOf(std::string_view text, DBMS platform) {
  if (platform == DBMS_SYBASE) text = BetweenSlashes(text);
  const std::size_t dot = text.find('.');
  if (dot == npos) return std::string(text);
  std::string_view head = text.substr(0, dot);
  if (HasLastWordAsHead(platform)) head.remove_prefix(head.rfind(' ') + 1);
  if (DropsLeadingZero(platform) && head.starts_with('0')) head.remove_prefix(1);
  std::size_t room = platform == DBMS_SQLSERVER ? 2 : 3;
  std::string version(head);
  version += '.';
  for (const char each : text.substr(dot)) {
    if (each == '.') continue;
    if (room-- == 0) break;
    version += each;
  }
  return version;
}

/// The map's key: the text, "TypeID" and the platform's number.
class CacheKey {
 public:
  CacheKey(std::string_view text, DBMS platform) {
    constexpr std::string_view kBetween = "TypeID";
    char number[16];
    const auto written = std::to_chars(std::begin(number), std::end(number), int{platform});
    const std::string_view digits(number, static_cast<std::size_t>(written.ptr - number));
    size_ = text.size() + kBetween.size() + digits.size();
    if (size_ > usual_.size()) long_ = std::make_unique<char[]>(size_);
    char* to = long_ == nullptr ? usual_.data() : long_.get();
    to = std::copy(text.begin(), text.end(), to);
    to = std::copy(kBetween.begin(), kBetween.end(), to);
    std::copy(digits.begin(), digits.end(), to);
  }

  std::string_view View() const { return {long_ == nullptr ? usual_.data() : long_.get(), size_}; }

 private:
  std::array<char, 256> usual_;
  std::unique_ptr<char[]> long_;
  std::size_t size_;
};

/// It lives to the end of the process, since callers keep references to its versions.
CDQDBVersionMap& Cache() {
  static CDQDBVersionMap& map = *new CDQDBVersionMap;
  return map;
}

}  // namespace

CDQDBVersionString::CDQDBVersionString(const char* text, DBMS platform)
    : CString(text), m_eDBMS(platform) {
  FormatVersionStr();
}

CDQDBVersionString::CDQDBVersionString(double number, DBMS platform)
    : CString(detail::VersionNumberText(number).View()), m_eDBMS(platform) {}

CDQDBVersionString& CDQDBVersionString::operator=(const CString& text) {
  CString::operator=(text);
  return *this;
}

double CDQDBVersionString::GetVersionNumber() const { return detail::LeadingNumber(View()); }

void CDQDBVersionString::FormatVersionStr() {
  if (m_eDBMS != DBMS_NONE) *this = CString(VersionOf(View(), m_eDBMS));
}

double CDQDBVersionString::AtPrecisionOf(double number) const {
  return detail::LeadingNumber(View().substr(0, detail::SignificantLength(number)));
}

const CDQDBVersionString& CDQDBVersionString::CachedText(const char* text) const {
  return GetCachedDBMSVersion(text, m_eDBMS);
}

const CDQDBVersionString& GetCachedDBMSVersion(const char* text, DBMS platform) {
  const CacheKey key(detail::OrEmpty(text), platform);
  CDQDBVersionString* version = nullptr;
  if (!Cache().Lookup(key.View(), version)) {
    auto made = std::make_unique<CDQDBVersionString>(text, platform);
    version = made.get();
    Cache().SetAt(key.View(), std::move(made));
  }
  return *version;
}

const CDQDBVersionString& GetCachedDBMSVersion(double number, DBMS platform) {
  const detail::VersionNumberText text(number);
  return GetCachedDBMSVersion(std::string(text.View()).c_str(), platform);
}

}  // namespace dq
