// Versions of database servers, as their short decimal form.
//
//   const CDQDBVersionString version("Oracle8i Release 8.1.7.0.0", DBMS_ORACLE);  // "8.170"
//   if (version >= 8.1) ...   // any 8.1 and what is above
//   if (version == 8.1) ...   // any 8.1

#pragma once

#include "dqlib/dbvocab/dbms.h"
#include "dqlib/framework/base/c_string.h"

namespace dq {

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

  bool operator<(double number) const { return AtPrecisionOf(number) < number; }
  bool operator<=(double number) const { return AtPrecisionOf(number) <= number; }
  bool operator>(double number) const { return AtPrecisionOf(number) > number; }
  bool operator>=(double number) const { return AtPrecisionOf(number) >= number; }
  bool operator==(double number) const { return AtPrecisionOf(number) == number; }
  bool operator!=(double number) const { return AtPrecisionOf(number) != number; }

  /// With the other's number: "8.170" is equal to "8.1", but "8.1" isn't equal to "8.170".
  bool operator<(const CDQDBVersionString& other) const { return *this < other.GetVersionNumber(); }
  bool operator<=(const CDQDBVersionString& other) const {
    return *this <= other.GetVersionNumber();
  }
  bool operator>(const CDQDBVersionString& other) const { return *this > other.GetVersionNumber(); }
  bool operator>=(const CDQDBVersionString& other) const {
    return *this >= other.GetVersionNumber();
  }
  bool operator==(const CDQDBVersionString& other) const {
    return *this == other.GetVersionNumber();
  }
  bool operator!=(const CDQDBVersionString& other) const {
    return *this != other.GetVersionNumber();
  }

  /// With the version that the text is on this one's platform, by `GetCachedDBMSVersion`.
  bool operator<(const char* text) const { return *this < Cached(text); }
  bool operator<=(const char* text) const { return *this <= Cached(text); }
  bool operator>(const char* text) const { return *this > Cached(text); }
  bool operator>=(const char* text) const { return *this >= Cached(text); }
  bool operator==(const char* text) const { return *this == Cached(text); }
  bool operator!=(const char* text) const { return *this != Cached(text); }

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
  const CDQDBVersionString& Cached(const char* text) const;

  DBMS m_eDBMS;
};

/// The version that the text is on the platform, made at the first time of asking; later ones find
/// it without taking memory. Valid until the process ends.
const CDQDBVersionString& GetCachedDBMSVersion(const char* text, DBMS platform);
/// The same for the text of a number with six decimals, which gets the platform's form: 8.1 is
/// "8.100" on Oracle and "8.10" on SQL Server.
const CDQDBVersionString& GetCachedDBMSVersion(double number, DBMS platform);

}  // namespace dq
