#include "dqlib/framework/base/archive.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <exception>
#include <memory>
#include <utility>

#include "dqlib/framework/base/little_endian.h"

namespace dq {
namespace {

constexpr std::size_t kBufferSize = 4096;

constexpr WORD kNullTag = 0;
constexpr WORD kNewClassTag = 0xFFFF;
constexpr WORD kBigIndexTag = 0x7FFF;
constexpr WORD kClassBit = 0x8000;
constexpr DWORD kBigClassBit = 0x80000000;

/// Objects within objects.
constexpr int kDeepest = 1000;

/// Longest name of a class that is read: the framework's own limit.
constexpr WORD kLongestClassName = 64;

template <typename T>
void Put(CArchive& archive, T value) {
  const auto bytes = detail::ToLittleEndian(value);
  archive.Write(bytes.data(), static_cast<UINT>(bytes.size()));
}

template <typename T>
T Take(CArchive& archive) {
  std::array<char, sizeof(T)> bytes;
  if (archive.Read(bytes.data(), sizeof(T)) != sizeof(T)) {
    throw CArchiveException(CArchiveException::endOfFile);
  }
  return detail::FromLittleEndian<T>(detail::AsText(bytes));
}

/// One object within another, for a scope.
class Deeper {
 public:
  explicit Deeper(int& depth) : depth_(depth) { ++depth_; }
  Deeper(const Deeper&) = delete;
  Deeper& operator=(const Deeper&) = delete;
  ~Deeper() { --depth_; }

 private:
  int& depth_;
};

}  // namespace

CArchive::CArchive(CFile* file, UINT mode) : m_pFile(file), m_bLoading(mode == load) {
  m_loaded.push_back({});  // Index 0 is null.
}

CArchive::~CArchive() {
  if (m_pFile == nullptr || std::uncaught_exceptions() > 0) return;
  try {
    Flush();
  } catch (const CException&) {
    // A destructor can't report; who must know calls `Close` before.
  }
}

UINT CArchive::Read(void* buffer, UINT count) {
  if (!m_bLoading) throw CArchiveException(CArchiveException::writeOnly);
  UINT total = 0;
  while (total < count) {
    if (m_nNext == m_buffer.size()) {
      m_buffer.resize(kBufferSize);
      m_nNext = kBufferSize;  // Nothing to read if the file throws.
      m_buffer.resize(m_pFile->Read(m_buffer.data(), static_cast<UINT>(m_buffer.size())));
      m_nNext = 0;
      if (m_buffer.empty()) break;
    }
    const std::size_t part = std::min<std::size_t>(count - total, m_buffer.size() - m_nNext);
    std::memcpy(static_cast<char*>(buffer) + total, m_buffer.data() + m_nNext, part);
    m_nNext += part;
    total += static_cast<UINT>(part);
  }
  return total;
}

void CArchive::Write(const void* buffer, UINT count) {
  if (m_bLoading) throw CArchiveException(CArchiveException::readOnly);
  m_buffer.append(static_cast<const char*>(buffer), count);
  if (m_buffer.size() >= kBufferSize) Flush();
}

void CArchive::Flush() {
  if (m_bLoading) {
    // What was read ahead is given back to the file.
    if (m_nNext < m_buffer.size()) {
      m_pFile->Seek(-static_cast<std::int64_t>(m_buffer.size() - m_nNext), CFile::current);
    }
  } else {
    // What a file refuses isn't written a second time: a part of it may stand there already.
    std::string written = std::exchange(m_buffer, {});
    m_pFile->Write(written.data(), static_cast<UINT>(written.size()));
    m_buffer = std::move(written);  // for its memory
  }
  m_buffer.clear();
  m_nNext = 0;
}

void CArchive::Close() {
  Flush();
  m_pFile = nullptr;
}

CArchive& CArchive::operator<<(BYTE value) {
  Put(*this, value);
  return *this;
}

CArchive& CArchive::operator<<(WORD value) {
  Put(*this, value);
  return *this;
}

CArchive& CArchive::operator<<(LONG value) {
  Put(*this, static_cast<DWORD>(value));
  return *this;
}

CArchive& CArchive::operator<<(DWORD value) {
  Put(*this, value);
  return *this;
}

CArchive& CArchive::operator<<(std::int64_t value) {
  Put(*this, static_cast<std::uint64_t>(value));
  return *this;
}

CArchive& CArchive::operator<<(float value) {
  Put(*this, std::bit_cast<DWORD>(value));
  return *this;
}

CArchive& CArchive::operator<<(double value) {
  Put(*this, std::bit_cast<std::uint64_t>(value));
  return *this;
}

CArchive& CArchive::operator<<(const CString& text) {
  const std::string_view bytes = text.View();
  if (bytes.size() < 0xFF) {
    *this << static_cast<BYTE>(bytes.size());
  } else if (bytes.size() < 0xFFFE) {
    *this << static_cast<BYTE>(0xFF) << static_cast<WORD>(bytes.size());
  } else {
    *this << static_cast<BYTE>(0xFF) << static_cast<WORD>(0xFFFF)
          << static_cast<DWORD>(bytes.size());
  }
  Write(bytes.data(), static_cast<UINT>(bytes.size()));
  return *this;
}

CArchive& CArchive::operator<<(const CObject* object) {
  WriteObject(object);
  return *this;
}

CArchive& CArchive::operator>>(BYTE& value) {
  value = Take<BYTE>(*this);
  return *this;
}

CArchive& CArchive::operator>>(WORD& value) {
  value = Take<WORD>(*this);
  return *this;
}

CArchive& CArchive::operator>>(LONG& value) {
  value = static_cast<LONG>(Take<DWORD>(*this));
  return *this;
}

CArchive& CArchive::operator>>(DWORD& value) {
  value = Take<DWORD>(*this);
  return *this;
}

CArchive& CArchive::operator>>(std::int64_t& value) {
  value = static_cast<std::int64_t>(Take<std::uint64_t>(*this));
  return *this;
}

CArchive& CArchive::operator>>(float& value) {
  value = std::bit_cast<float>(Take<DWORD>(*this));
  return *this;
}

CArchive& CArchive::operator>>(double& value) {
  value = std::bit_cast<double>(Take<std::uint64_t>(*this));
  return *this;
}

CArchive& CArchive::operator>>(CString& text) {
  DWORD length = Take<BYTE>(*this);
  if (length == 0xFF) length = Take<WORD>(*this);
  if (length == 0xFFFE) throw CArchiveException(CArchiveException::badClass);  // Wide text.
  if (length == 0xFFFF) length = Take<DWORD>(*this);
  Need(length);
  if (length > 0x7FFFFFFF) throw CArchiveException(CArchiveException::endOfFile);
  char* const buffer = text.GetBuffer(static_cast<int>(length));
  if (Read(buffer, length) != length) throw CArchiveException(CArchiveException::endOfFile);
  text.ReleaseBuffer(static_cast<int>(length));
  return *this;
}

void CArchive::WriteCount(DWORD count) {
  if (count < 0xFFFF) {
    *this << static_cast<WORD>(count);
  } else {
    *this << static_cast<WORD>(0xFFFF) << count;
  }
}

DWORD CArchive::ReadCount() {
  DWORD count = Take<WORD>(*this);
  if (count == 0xFFFF) count = Take<DWORD>(*this);
  Need(count);
  return count;
}

void CArchive::WriteIndex(DWORD index, bool is_class) {
  if (index < kBigIndexTag) {
    *this << static_cast<WORD>(index | (is_class ? kClassBit : 0));
  } else {
    *this << kBigIndexTag << (index | (is_class ? kBigClassBit : 0));
  }
}

void CArchive::WriteClass(const CRuntimeClass* runtime_class) {
  if (const auto known = m_stored.find(runtime_class); known != m_stored.end()) {
    WriteIndex(known->second, true);
    return;
  }
  const std::string_view name = runtime_class->m_lpszClassName;
  *this << kNewClassTag << static_cast<WORD>(runtime_class->m_wSchema)
        << static_cast<WORD>(name.size());
  Write(name.data(), static_cast<UINT>(name.size()));
  m_stored[runtime_class] = m_nNextIndex++;
}

void CArchive::WriteObject(const CObject* object) {
  if (object == nullptr) {
    *this << kNullTag;
    return;
  }
  const auto [known, is_new] = m_stored.try_emplace(object, 0);
  if (!is_new) {
    WriteIndex(known->second, false);
    return;
  }
  if (!object->IsSerializable() || m_nDepth == kDeepest) {
    m_stored.erase(known);
    throw CArchiveException(object->IsSerializable() ? CArchiveException::generic
                                                     : CArchiveException::badClass);
  }
  // Which stays where it is when the class is entered too.
  DWORD& index = known->second;
  WriteClass(object->GetRuntimeClass());
  index = m_nNextIndex++;
  const Deeper deeper(m_nDepth);
  // Storing leaves an object as it is; `Serialize` serves both ways.
  const_cast<CObject*>(object)->Serialize(*this);
}

const CRuntimeClass* CArchive::ReadNewClass() {
  const WORD schema = Take<WORD>(*this);
  const WORD length = Take<WORD>(*this);
  char name[kLongestClassName] = {};
  if (length >= kLongestClassName) throw CArchiveException(CArchiveException::badClass);
  if (Read(name, length) != length) throw CArchiveException(CArchiveException::endOfFile);
  const CRuntimeClass* const runtime_class = CRuntimeClass::FromName(name);
  if (runtime_class == nullptr || !runtime_class->IsSerial()) {
    throw CArchiveException(CArchiveException::badClass);
  }
  if ((runtime_class->m_wSchema & VERSIONABLE_SCHEMA) == 0 && runtime_class->m_wSchema != schema) {
    throw CArchiveException(CArchiveException::badSchema);
  }
  m_loaded.push_back({nullptr, runtime_class, schema});
  return runtime_class;
}

CObject* ReadObjectOf(CArchive& archive, const CRuntimeClass* runtime_class) {
  return archive.ReadObject(runtime_class);
}

CObject* CArchive::ReadObject(const CRuntimeClass* expected, bool* is_new) {
  if (is_new != nullptr) *is_new = false;
  const WORD tag = Take<WORD>(*this);
  DWORD index = tag & ~kClassBit;
  bool is_class = (tag & kClassBit) != 0;
  if (tag == kBigIndexTag) {
    const DWORD big = Take<DWORD>(*this);
    index = big & ~kBigClassBit;
    is_class = (big & kBigClassBit) != 0;
  }
  if (tag != kNewClassTag && index >= m_loaded.size()) {
    throw CArchiveException(CArchiveException::badIndex);
  }
  const auto require = [&](const CRuntimeClass* found) {
    if (expected != nullptr && !found->IsDerivedFrom(expected)) {
      throw CArchiveException(CArchiveException::badClass);
    }
  };
  if (tag != kNewClassTag && !is_class) {
    CObject* const known = m_loaded[index].object;
    if (index != 0 && known == nullptr) throw CArchiveException(CArchiveException::badIndex);
    if (known != nullptr) require(known->GetRuntimeClass());
    return known;
  }
  const CRuntimeClass* const runtime_class =
      tag == kNewClassTag ? ReadNewClass() : m_loaded[index].runtime_class;
  if (runtime_class == nullptr) throw CArchiveException(CArchiveException::badIndex);
  const UINT schema = tag == kNewClassTag ? m_loaded.back().schema : m_loaded[index].schema;
  require(runtime_class);
  CObject* const object = ReadNewObject(runtime_class, schema);
  if (is_new != nullptr) *is_new = true;
  return object;
}

CObject* CArchive::ReadNewObject(const CRuntimeClass* runtime_class, UINT schema) {
  if (m_nDepth == kDeepest) throw CArchiveException(CArchiveException::generic);
  std::unique_ptr<CObject> object(runtime_class->CreateObject());
  if (object == nullptr) throw CArchiveException(CArchiveException::badClass);
  const std::size_t index = m_loaded.size();
  m_loaded.push_back({object.get(), nullptr, 0});
  const UINT former = std::exchange(m_nObjectSchema, schema);
  const Deeper deeper(m_nDepth);
  try {
    object->Serialize(*this);
  } catch (...) {
    // It goes, and may take along what it holds: no later index leads to any of them.
    for (std::size_t i = index; i < m_loaded.size(); ++i) m_loaded[i].object = nullptr;
    m_nObjectSchema = former;
    throw;
  }
  m_nObjectSchema = former;
  return object.release();
}

std::uint64_t CArchive::Remaining() const {
  const std::int64_t behind = m_pFile->GetLength() - m_pFile->GetPosition();
  return (behind < 0 ? 0 : static_cast<std::uint64_t>(behind)) + (m_buffer.size() - m_nNext);
}

void CArchive::Need(std::uint64_t bytes) const {
  // The file need not be asked for what is here already.
  if (bytes > m_buffer.size() - m_nNext && bytes > Remaining())
    throw CArchiveException(CArchiveException::endOfFile);
}

}  // namespace dq
