#include "dqlib/framework/base/archive.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/rows.h"
#include "tests/support/serial_node.h"

namespace dq {
namespace {

using test::SerialNode;
using namespace std::string_literals;
using namespace std::string_view_literals;

class PlainObject : public CObject {
  DECLARE_DYNAMIC(PlainObject)
};
IMPLEMENT_DYNAMIC(PlainObject, CObject)

class StrictNode : public CObject {
  DECLARE_SERIAL(StrictNode)
};
IMPLEMENT_SERIAL(StrictNode, CObject, 7)

/// What `write(archive)` stores.
template <typename Write>
std::string Stored(Write write) {
  CMemFile file;
  CArchive archive(&file, CArchive::store);
  write(archive);
  archive.Close();
  std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
  file.SeekToBegin();
  file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
  return bytes;
}

/// Runs `read(archive)` on a stream.
template <typename Read>
void Load(std::string_view stream, Read read) {
  CMemFile file;
  file.Write(stream.data(), static_cast<UINT>(stream.size()));
  file.SeekToBegin();
  CArchive archive(&file, CArchive::load);
  read(archive);
}

/// Loads any objects; the cause of what that throws, `none` if it doesn't.
int CauseOfObject(std::string_view stream, const CRuntimeClass* expected = nullptr) try {
  Load(stream, [&](CArchive& archive) {
    std::vector<std::unique_ptr<CObject>> owners;
    while (archive.Remaining() > 0) {
      auto& owner = owners.emplace_back();
      CObject* const object = SerialNode::Read(archive, expected, owner);
      if (owner == nullptr && DYNAMIC_DOWNCAST(StrictNode, object)) owner.reset(object);
    }
  });
  return CArchiveException::none;
} catch (const CArchiveException& error) {
  return error.m_cause;
}

/// "SerialNode" as a new class with schema 3, and a node without anything in it.
const std::string kNewClass("\xFF\xFF\3\0\x0A\0SerialNode", 16);
const std::string kEmptyNode("\0\0\0\0\0\0\0\0\0", 9);

TEST(Archive, ValuesAreLittleEndianByteForByte) {
  static constexpr std::int64_t kWide = -0x0102030405060708;
  const std::string stream = Stored([](CArchive& archive) {
    archive << BYTE{0x81} << WORD{0x8102} << LONG{-2} << DWORD{0x81020304} << kWide << 1.5F << -2.0
            << CString("a\0b"sv);
  });
  EXPECT_EQ(stream,
            "\x81\x02\x81\xFE\xFF\xFF\xFF\x04\x03\x02\x81\xF8\xF8\xF9\xFA\xFB\xFC\xFD\xFE"
            "\0\0\xC0\x3F\0\0\0\0\0\0\0\xC0\x03"
            "a\0b"sv);
  Load(stream, [](CArchive& archive) {
    std::tuple<BYTE, WORD, LONG, DWORD, std::int64_t, float, double, CString> values;
    std::apply([&](auto&... value) { (archive >> ... >> value); }, values);
    EXPECT_EQ(values,
              std::tuple(0x81, 0x8102, -2, 0x81020304, kWide, 1.5F, -2.0, CString("a\0b"sv)));
    EXPECT_EQ(archive.Remaining(), 0u);
  });
}

TEST(Archive, LengthsAndCountsGrowAtTheirLimits) {
  for (const auto& [size, text_head, count_head] :
       test::Rows<DWORD, std::string_view, std::string_view>{
           {0, "\0"sv, "\0\0"sv},
           {254, "\xFE"sv, "\xFE\0"sv},
           {255, "\xFF\xFF\0"sv, "\xFF\0"sv},
           {0xFFFD, "\xFF\xFD\xFF"sv, "\xFD\xFF"sv},
           {0xFFFE, "\xFF\xFF\xFF\xFE\xFF\0\0"sv, "\xFE\xFF"sv},
           {0xFFFF, "\xFF\xFF\xFF\xFF\xFF\0\0"sv, "\xFF\xFF\xFF\xFF\0\0"sv},
           {0x10000, "\xFF\xFF\xFF\0\0\1\0"sv, "\xFF\xFF\0\0\1\0"sv},
       }) {
    const CString text('x', static_cast<int>(size));
    const std::string stored = Stored([&](CArchive& archive) { archive << text; });
    EXPECT_EQ(stored.substr(0, stored.size() - size), text_head) << size;
    const std::string counted = Stored([&](CArchive& archive) { archive.WriteCount(size); });
    EXPECT_EQ(counted, count_head) << size;
    Load(stored + counted + std::string(size, 'y'), [&](CArchive& archive) {
      CString read;
      archive >> read;
      EXPECT_EQ(read, text);
      EXPECT_EQ(archive.ReadCount(), size);
    });
  }
}

TEST(Archive, ObjectsShareOneCountOfIndicesWithClasses) {
  SerialNode first;
  SerialNode second;
  first.number = 0x0201;
  first.text = "t";
  first.bytes = "bc";
  first.next = &second;
  first.other = &first;
  second.other = &first;
  const std::string stream = Stored([&](CArchive& archive) { archive << &first << &second; });
  // Class 1 and object 2; the node within is object 3 of class 1.
  EXPECT_EQ(stream, kNewClass + std::string("\1\2\1t\2\0bc\1\x80\0\0\0\0\0\0\0\2\0\2\0\3\0", 23));
  std::unique_ptr<CObject> owner;
  Load(stream, [&](CArchive& archive) {
    auto* const read = static_cast<SerialNode*>(SerialNode::Read(archive, nullptr, owner));
    EXPECT_TRUE(read->schema == 3 && read->number == 0x0201 && read->bytes == "bc");
    EXPECT_TRUE(read->other == read && read->next->other == read);
    EXPECT_EQ(archive.ReadObject(nullptr), read->next);
    EXPECT_EQ(archive.Remaining(), 0u);
  });
}

TEST(Archive, IndicesFrom7FFFhAreOf32Bits) {
  std::vector<SerialNode> nodes(0x8000);
  const std::string stream = Stored([&](CArchive& archive) {
    for (const SerialNode& node : nodes) archive << &node;
    archive << &nodes[0x7FFC] << &nodes[0x7FFD] << &nodes[0x7FFF];
  });
  EXPECT_EQ(stream.substr(stream.size() - 14), "\xFE\x7F\xFF\x7F\xFF\x7F\0\0\xFF\x7F\1\x80\0\0"sv);
  Load(stream, [](CArchive& archive) {
    std::vector<std::unique_ptr<CObject>> read(0x8000);
    for (auto& node : read) SerialNode::Read(archive, nullptr, node);
    for (const int again : {0x7FFC, 0x7FFD, 0x7FFF}) {
      EXPECT_EQ(archive.ReadObject(nullptr), read[again].get());
    }
  });
  // A class by a big index.
  EXPECT_EQ(CauseOfObject(kNewClass + kEmptyNode + "\xFF\x7F\1\0\0\x80"s + kEmptyNode),
            CArchiveException::none);
}

TEST(Archive, AStreamCutAnywhereEndsInTheException) {
  SerialNode first;
  SerialNode second;
  first.text = CString('x', 300);
  first.bytes = "bytes";
  first.next = &second;
  first.other = &second;
  const std::string stream = Stored([&](CArchive& archive) { archive << &first; });
  for (std::size_t size = 1; size < stream.size(); ++size) {
    EXPECT_EQ(CauseOfObject(stream.substr(0, size)), CArchiveException::endOfFile) << size;
  }
}

TEST(Archive, StreamsThatDontFitAreRefusedBeforeMemoryIsTaken) {
  const std::string node = kNewClass + kEmptyNode;
  for (const auto& [stream, cause] : test::Rows<std::string, int>{
           {kNewClass + "\0\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s, CArchiveException::endOfFile},
           {kNewClass + "\0\0\xFF\xFF\xFF\xFF\xFF\xFF\x7F"s, CArchiveException::endOfFile},
           {kNewClass + "\0\0\xFF\xFE\xFFxx"s, CArchiveException::badClass},
           {kNewClass + "\0\0\0\xFF\xFF\xFF\xFF\xFF\xFF"s, CArchiveException::endOfFile},
           {"\xFF\xFF\7\0\x0B\0PlainObject"s, CArchiveException::badClass},
           {"\xFF\xFF\7\0\x0A\0StrictNode"s, CArchiveException::none},
           {"\xFF\xFF\6\0\x0A\0StrictNode"s, CArchiveException::badSchema},
           {"\1\0"s, CArchiveException::badIndex},
           {"\0\x80"s, CArchiveException::badIndex},
           {node + "\2\x80"s, CArchiveException::badIndex},
           {node + "\3\0"s, CArchiveException::badIndex},
           {node + "\xFF\x7F\xFF\xFF\xFF\xFF"s, CArchiveException::badIndex},
           {node + "\0\0\2\0\1\x80"s + kEmptyNode, CArchiveException::none},
       }) {
    EXPECT_EQ(CauseOfObject(stream), cause) << testing::PrintToString(stream);
  }
  EXPECT_EQ(CauseOfObject(node, RUNTIME_CLASS(StrictNode)), CArchiveException::badClass);
  EXPECT_EQ(CauseOfObject(node, RUNTIME_CLASS(CObject)), CArchiveException::none);
}

TEST(Archive, AnObjectThatFailedIsGoneForLaterIndices) {
  // The node is cut short inside the first read; the second asks for it by its index.
  Load(kNewClass + "\0\0\0\0\0\2\x80\2\0"s, [](CArchive& archive) {
    EXPECT_THROW(archive.ReadObject(nullptr), CArchiveException);
    EXPECT_THROW(archive.ReadObject(nullptr), CArchiveException);
  });
}

TEST(Archive, NestingThatWouldExhaustTheStackIsRefusedBothWays) {
  std::string stream = kNewClass;
  for (int depth = 1; depth < 100'000; ++depth) stream += "\0\0\0\0\0\1\x80"s;
  EXPECT_EQ(CauseOfObject(stream), CArchiveException::generic);

  std::vector<SerialNode> nodes(1001);
  for (std::size_t i = 0; i + 1 < nodes.size(); ++i) nodes[i].next = &nodes[i + 1];
  EXPECT_THROW(Stored([&](CArchive& archive) { archive << &nodes[0]; }), CArchiveException);
  EXPECT_EQ(CauseOfObject(Stored([&](CArchive& archive) { archive << &nodes[1]; })),
            CArchiveException::none);
}

TEST(Archive, WrongDirectionsAndClassesThatCantBeReadBackAreRefused) {
  const PlainObject plain;
  BYTE byte = 0;
  EXPECT_THROW(Stored([&](CArchive& archive) { archive << &plain; }), CArchiveException);
  EXPECT_THROW(Stored([&](CArchive& archive) { archive >> byte; }), CArchiveException);
  EXPECT_THROW(Load("x", [&](CArchive& archive) { archive << byte; }), CArchiveException);
}

}  // namespace
}  // namespace dq
