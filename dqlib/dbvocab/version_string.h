// Versions of database servers, as their short decimal form.
//
//   const CDQDBVersionString version("Oracle8i Release 8.1.7.0.0", DBMS_ORACLE);  // "8.170"
//   if (version >= 8.1) ...   // any 8.1 and what is above
//   if (version == 8.1) ...   // any 8.1

#pragma once

#include <compare>
#include <concepts>
#include <type_traits>

#include "dqlib/dbvocab/dbms.h"
#include "dqlib/framework/base/c_string.h"

namespace dq {

class CDQDBVersionString;

namespace detail {
template <class T>
concept VersionNumber =
    !std::is_class_v<T> && !std::is_pointer_v<T> && std::convertible_to<T, double>;
/// Any text but a version.
template <class T>
concept VersionText = std::convertible_to<const T&, CString> && !VersionNumber<T> &&
                      !std::derived_from<T, CDQDBVersionString>;
}  // namespace detail

/// A server's version. The text is the version in the form of its platform: what stands before the
/// first dot, a dot, and the first two (SQL Server) or three of the characters behind it, further
/// dots left out; if there are too few digits, letters come in. A text without a dot, and any text
/// of `DBMS_NONE`, stays as it is.
///
/// A comparison is made with as many characters of the text as the number on the right needs, so
/// that 8.1 is met by every 8.1.x, whatever it is: the number has six decimals, of which trailing
/// zeros don't count but the first does, so 8.0 needs three characters. What is left of the text
/// counts up to where it is no number any more; a text that is none is 0.
///
/// A decimal point is "." and formatting has six decimals, whatever the locale. Comparing takes no
/// memory; with a text it does the first time. For the user-interface thread.
class CDQDBVersionString : public CString {
 public:
  /// Takes what the server calls itself, never null.
  CDQDBVersionString(const char* text, DBMS platform);
  /// The number with six decimals, in no platform's form: 8.1 is "8.100000".
  CDQDBVersionString(double number, DBMS platform);
  CDQDBVersionString(const CDQDBVersionString&) = default;
  CDQDBVersionString(CDQDBVersionString&&) = default;
  CDQDBVersionString& operator=(const CDQDBVersionString&) = default;
  CDQDBVersionString& operator=(CDQDBVersionString&&) = default;
  ~CDQDBVersionString() = default;

  /// The whole text as a number.
  operator double() const { return GetVersionNumber(); }

  /// With a number of any type. `<`, `<=`, `>`, `>=` and `!=` come from these, and so does an
  /// exchange of the sides: 8.1 <= version is version >= 8.1.
  template <detail::VersionNumber Number>
  bool operator==(Number number) const {
    return AtPrecisionOf(static_cast<double>(number)) == static_cast<double>(number);
  }
  template <detail::VersionNumber Number>
  std::partial_ordering operator<=>(Number number) const {
    return AtPrecisionOf(static_cast<double>(number)) <=> static_cast<double>(number);
  }

  /// With the other's number: "8.170" is equal to "8.1", but "8.1" isn't equal to "8.170".
  bool operator==(const CDQDBVersionString& other) const {
    return *this == other.GetVersionNumber();
  }
  std::partial_ordering operator<=>(const CDQDBVersionString& other) const {
    return *this <=> other.GetVersionNumber();
  }

  /// With the version that the text is on this one's platform, by `GetCachedDBMSVersion`.
  template <detail::VersionText Text>
  bool operator==(const Text& text) const {
    return *this == Cached(text);
  }
  template <detail::VersionText Text>
  std::partial_ordering operator<=>(const Text& text) const {
    return *this <=> Cached(text);
  }

  /// The version itself, unchanged: callers write them, and a version has no sum.
  const CDQDBVersionString& operator+(double) const { return *this; }
  const CDQDBVersionString& operator-(double) const { return *this; }

 protected:
  /// Takes another text, as it is, and keeps the platform.
  CDQDBVersionString& operator=(const CString& text);
  double GetVersionNumber() const;

 private:
  void FormatVersionStr();
  /// As much of the text as the number needs, as a number.
  double AtPrecisionOf(double number) const;
  template <class Text>
  const CDQDBVersionString& Cached(const Text& text) const {
    if constexpr (std::convertible_to<const Text&, const char*>) {
      return CachedText(text);
    } else {
      return CachedText(CString(text));
    }
  }
  const CDQDBVersionString& CachedText(const char* text) const;

  DBMS m_eDBMS;
};

/// The version that the text is on the platform, made at the first time of asking; later ones find
/// it without taking memory. Valid until the process ends.
const CDQDBVersionString& GetCachedDBMSVersion(const char* text, DBMS platform);
/// The same for the text of a number with six decimals, which gets the platform's form: 8.1 is
/// "8.100" on Oracle and "8.10" on SQL Server.
const CDQDBVersionString& GetCachedDBMSVersion(double number, DBMS platform);

}  // namespace dq
