#include "dqlib/framework/base/c_string.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/platform/seam_texts.h"

namespace dq {
namespace {

using detail::OrEmpty;
using detail::ToIndex;

}  // namespace

CString::CString(const CString& other) : CString(other.View()) {}

CString::CString(CString&& other) noexcept
    : text_(std::move(other.text_)), length_(std::exchange(other.length_, 0)) {
  other.text_.clear();
}

CString::CString(const char* text) : CString(OrEmpty(text)) {}

CString::CString(const char* text, int length)
    : CString(text == nullptr || length < 1
                  ? std::string_view()
                  : std::string_view(text, static_cast<std::size_t>(length))) {}

CString::CString(const std::string& text) : CString(std::string_view(text)) {}

CString::CString(std::string&& text) : text_(std::move(text)), length_(Checked(text_.size())) {}

CString::CString(char character, int repeat)
    : text_(static_cast<std::size_t>(std::max(repeat, 0)), character), length_(text_.size()) {}

CString& CString::operator=(const CString& other) { return *this = other.View(); }

CString& CString::operator=(CString&& other) noexcept {
  if (this != &other) {
    text_ = std::move(other.text_);
    length_ = std::exchange(other.length_, 0);
    other.text_.clear();
  }
  return *this;
}

CString& CString::operator=(const char* text) { return *this = OrEmpty(text); }

CString& CString::operator=(std::string_view text) {
  text_.assign(text);
  Commit();
  return *this;
}

CString& CString::operator=(const std::string& text) { return *this = std::string_view(text); }

CString& CString::operator=(char character) {
  text_.assign(1, character);
  Commit();
  return *this;
}

void CString::Empty() {
  text_.clear();
  Commit();
}

void CString::SetAt(int index, char character) {
  text_[static_cast<std::size_t>(index)] = character;
}

CString& CString::operator+=(const char* text) { return Append(OrEmpty(text)); }

CString& CString::operator+=(char character) { return Append({&character, 1}); }

CString& CString::Append(std::string_view text) {
  Storage().append(text);
  Commit();
  return *this;
}

int CString::Compare(const char* text) const { return multi_byte::Compare(View(), OrEmpty(text)); }

int CString::CompareNoCase(const char* text) const {
  return multi_byte::CompareNoCase(View(), OrEmpty(text));
}

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
  const auto start = std::min(static_cast<std::size_t>(std::max(first, 0)), length_);
  return CString(View().substr(start, static_cast<std::size_t>(std::max(count, 0))));
}

CString CString::Left(int count) const { return Mid(0, count); }

CString CString::Right(int count) const {
  const int kept = std::clamp(count, 0, GetLength());
  return Mid(GetLength() - kept, kept);
}

CString CString::SpanIncluding(const char* set) const {
  return CString(View().substr(0, multi_byte::CharacterSet(OrEmpty(set)).FindOther(View(), 0)));
}

CString CString::SpanExcluding(const char* set) const {
  return CString(View().substr(0, multi_byte::CharacterSet(OrEmpty(set)).FindMember(View(), 0)));
}

void CString::MakeUpper() { multi_byte::MakeUpper(Storage()); }

void CString::MakeLower() { multi_byte::MakeLower(Storage()); }

void CString::MakeReverse() {
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  std::string& text = Storage();
  if (page.IsSingleByte()) {
    std::ranges::reverse(text);
    return;
  }
  const std::string source = text;
  std::size_t target = text.size();
  for (std::string_view rest = source; !rest.empty();) {
    const std::size_t size = page.CharacterSize(rest);
    target -= size;
    text.replace(target, size, rest.substr(0, size));
    rest.remove_prefix(size);
  }
}

void CString::TrimRight() {
  length_ = multi_byte::TrimRight(View()).size();
  Storage();
}

void CString::TrimLeft() {
  std::string& text = Storage();
  text.erase(0, text.size() - multi_byte::TrimLeft(text).size());
  Commit();
}

int CString::Find(char character) const { return ToIndex(multi_byte::Find(View(), character)); }

int CString::Find(const char* text) const {
  return ToIndex(multi_byte::Find(View(), OrEmpty(text)));
}

int CString::ReverseFind(char character) const {
  return ToIndex(multi_byte::ReverseFind(View(), character));
}

int CString::FindOneOf(const char* set) const {
  const std::size_t hit = multi_byte::CharacterSet(OrEmpty(set)).FindMember(View(), 0);
  return hit == length_ ? -1 : static_cast<int>(hit);
}

void CString::Format(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  FormatV(format, arguments);
  va_end(arguments);
}

void CString::Format(UINT id, ...) {
  const std::string format(AfxFindString(id).value_or(""));
  std::va_list arguments;
  va_start(arguments, id);
  FormatV(format.c_str(), arguments);
  va_end(arguments);
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
void CString::FormatV(const char* format, std::va_list arguments) {
  const char* const pattern = format == nullptr ? "" : format;
  std::va_list measured;
  va_copy(measured, arguments);
  const int size = std::vsnprintf(nullptr, 0, pattern, measured);
  va_end(measured);
  // The run-time refuses what doesn't fit an int.
  if (size < 0) throw std::bad_alloc();
  // An argument may be this string's own text.
  std::string formatted(static_cast<std::size_t>(size), '\0');
  std::vsnprintf(formatted.data(), formatted.size() + 1, pattern, arguments);
  text_ = std::move(formatted);
  Commit();
}
#pragma GCC diagnostic pop

BOOL CString::LoadString(UINT id) {
  const auto text = AfxFindString(id);
  *this = text.value_or("");
  return text ? 1 : 0;
}

char* CString::GetBuffer(int minimum) {
  const std::size_t size = static_cast<std::size_t>(std::max(minimum, 0));
  text_.resize(length_);
  text_.resize(std::max(size, length_));
  return text_.data();
}

void CString::ReleaseBuffer(int length) {
  length_ = length < 0 ? std::strlen(text_.c_str())
                       : std::min(static_cast<std::size_t>(length), text_.size());
  text_.resize(length_);
}

std::string& CString::Storage() {
  text_.resize(length_);
  return text_;
}

void CString::Commit() { length_ = Checked(text_.size()); }

CString CString::Sum(std::string_view left, std::string_view right) {
  std::string sum;
  sum.reserve(left.size() + right.size());
  sum += left;
  sum += right;
  return CString(std::move(sum));
}

CString operator+(const CString& left, const CString& right) {
  return CString::Sum(left.View(), right.View());
}

CString operator+(const CString& left, const char* right) {
  return CString::Sum(left.View(), OrEmpty(right));
}

CString operator+(const char* left, const CString& right) {
  return CString::Sum(OrEmpty(left), right.View());
}

CString operator+(const CString& left, char right) {
  return CString::Sum(left.View(), {&right, 1});
}

CString operator+(char left, const CString& right) {
  return CString::Sum({&left, 1}, right.View());
}

CString detail::LoadText(UINT id) {
  CString text;
  text.LoadString(id);
  return text;
}

void AfxFormatString1(CString& result, UINT id, const char* text1) {
  result = platform::Filled(AfxFindString(id).value_or(""), {OrEmpty(text1)});
}

void AfxFormatString2(CString& result, UINT id, const char* text1, const char* text2) {
  result = platform::Filled(AfxFindString(id).value_or(""), {OrEmpty(text1), OrEmpty(text2)});
}

}  // namespace dq
