#include "dqlib/core/dq_string.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/random.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

using detail::Byte;
using platform::CodePage;

std::size_t Size(int number) { return static_cast<std::size_t>(std::max(number, 0)); }

int ClampToInt(long number) {
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<long>(number, Limits::min(), Limits::max()));
}

/// Removes the one-byte characters for which `unwanted` holds, in one pass, without allocating.
template <typename Unwanted>
void RemoveCharacters(std::string& text, Unwanted unwanted) {
  const CodePage& page = multi_byte::CurrentCodePage();
  if (page.IsSingleByte()) {
    std::erase_if(text, unwanted);
    return;
  }
  std::size_t target = 0;
  for (std::size_t source = 0; source < text.size();) {
    const std::size_t size = page.CharacterSize(std::string_view(text).substr(source));
    const bool removed = size == 1 && unwanted(text[source]);
    if (!removed) {
      std::memmove(&text[target], &text[source], size);
      target += size;
    }
    source += size;
  }
  text.resize(target);
}

/// The character of random text that a number from the generator stands for.
char RandomCharacter(int number, CDQString::RANDOMSTRINGTYPE type) {
  switch (type) {
    case CDQString::RANDOM_ALPHANUMERIC:
      number %= 122;
      if (number < 48) number += 48;
      if (number >= 58 && number <= 64) number += 7;
      if (number >= 91 && number <= 96) number += 6;
      break;
    case CDQString::RANDOM_ALPHA:
      number %= 122;
      if (number < 65) number = number % 56 + 65;
      if (number >= 91 && number <= 96) number += 6;
      break;
    case CDQString::RANDOM_NUMERIC:
      number = '0' + number % 9;
      break;
  }
  return static_cast<char>(number & 0xFF);
}

}  // namespace

double CDQString::Double() const { return std::atof(*this); }

int CDQString::Int() const { return ClampToInt(std::strtol(*this, nullptr, 10)); }

bool CDQString::Bool() const { return Int() != 0; }

void CDQString::SetNumber(int number) { Format("%d", number); }

void CDQString::SetNumber(unsigned int number) { Format("%u", number); }

void CDQString::SetNumber(long number) { SetNumber(ClampToInt(number)); }

void CDQString::SetNumber(bool number) { SetNumber(number ? 1 : 0); }

CDQString& CDQString::Insert(int pos, const char* text) { return Replace(pos, 0, text); }

CDQString& CDQString::Insert(int pos, char ch) { return Insert(pos, CString(ch)); }

CDQString& CDQString::Delete(int pos, int count) { return Replace(pos, count, ""); }

CDQString& CDQString::Delete(char ch) {
  RemoveCharacters(Storage(), [ch](char other) { return other == ch; });
  Commit();
  return *this;
}

CDQString& CDQString::Replace(int pos, int count, const char* text) {
  const std::string_view inserted = text == nullptr ? "" : text;
  const std::size_t start = Size(pos);
  const std::size_t length = Size(GetLength());
  if (start < length) {
    const std::size_t removed = count < 0 ? length : Size(count);
    Storage().replace(start, removed, inserted);
    Commit();
  } else if (!inserted.empty()) {
    std::string padded;
    padded.reserve(start + inserted.size());
    padded.append(View()).append(start - length, ' ').append(inserted);
    *this = CDQString(std::move(padded));
  }
  return *this;
}

int CDQString::TrimWhiteSpace() {
  RemoveCharacters(Storage(), [](char other) { return multi_byte::IsSpace(Byte(other)); });
  Commit();
  return GetLength();
}

CDQString& CDQString::MakeProper() {
  if (IsEmpty()) return *this;
  const CodePage& page = multi_byte::CurrentCodePage();
  MakeLower();
  std::string& text = Storage();
  text.front() = static_cast<char>(page.Upper(Byte(text.front())));
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (multi_byte::IsSpace(Byte(text[i - 1])) && page.IsAlpha(Byte(text[i]))) {
      text[i] = static_cast<char>(page.Upper(Byte(text[i])));
    }
  }
  return *this;
}

CDQString& CDQString::MakePlural() {
  if (IsEmpty()) return *this;
  const std::size_t last = multi_byte::LastCharacter(View());
  const std::string lower = multi_byte::Lower(View().substr(last));
  if (lower == "y") {
    SetAt(static_cast<int>(last), 'i');
    *this += "es";
  } else {
    *this += lower == "s" || lower == "x" ? "es" : "s";
  }
  return *this;
}

void CDQString::ExtractFromCharBuffer(const char* buffer, int size) {
  const std::string_view field(buffer, buffer == nullptr ? 0 : Size(size));
  *this = multi_byte::TrimRight(field.substr(0, field.find('\0')));
}

char* CDQString::PutToCharBuffer(const char* text, int size) {
  const char* const source = text == nullptr ? "" : text;
  const void* const zero = std::memchr(source, 0, Size(size));
  const std::string field(
      source, zero == nullptr ? Size(size)
                              : static_cast<std::size_t>(static_cast<const char*>(zero) - source));
  Empty();
  char* const buffer = GetBuffer(size);
  field.copy(buffer, field.size());
  return buffer;
}

void CDQString::SetDouble(double value, int width, int precision) {
  if (width >= 1 && precision >= 1) {
    Format("%*.*f", width, precision, value);
  } else if (width == 0 && precision >= 1) {
    Format("%.*f", precision, value);
  } else if (width >= 1 && precision == 0) {
    Format("%1.*g", width, value);
  } else {
    Format("%.38g", value);
  }
}

void CDQString::GenerateRandomString(int length, RANDOMSTRINGTYPE type) {
  std::string& text = Storage();
  for (DWORD i = 0; i < Size(length); ++i) {
    SeedRandom((i + 1) * static_cast<DWORD>(length) * platform::Current().clock->TickCount());
    text += RandomCharacter(NextRandom(), type);
  }
  Commit();
}

}  // namespace dq
