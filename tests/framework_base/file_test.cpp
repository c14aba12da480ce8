
#include "tests/support/forwarding_files.h"
#include "tests/support/serial_node.h"
#include "tests/support/temp_directory.h"

namespace dq::test {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using Text = const char*;
using Cause = CFileException;
using Failure = CArchiveException;

/// The cause of what `operation` throws, `none` if it doesn't.
int CauseOf(const std::function<void()>& operation) try {
  operation();
  return Cause::none;
} catch (const CFileException& error) {
  return error.m_cause;
}

/// A test with a directory of its own and the path of a file there.
struct File : testing::Test {
  const TempDirectory directory;
  const std::string name = directory / "f";
  const char* const path = name.c_str();
};

TEST(Exception, CausesFollowFromTheSystemsErrorsAndAreToldInTheRoomThereIs) {
  using enum platform::ErrorKind;
  std::string all;
  constexpr std::pair<platform::ErrorKind, DWORD> kErrors[] = {
      {kNone, 0}, {kNotFound, 0}, {kInvalidArgument, 0}, {kAccessDenied, 0}, {kAlreadyExists, 0},
      {kBusy, 0}, {kNoSpace, 0},  {kNoSpace, EMFILE},    {kNoSpace, ENFILE}, {kNoSpace, ENOMEM},
      {kOther, 0}};
  for (const auto& [is, code] : kErrors) all += std::to_string(Cause::CauseOf({is, code})) + " ";
  EXPECT_EQ(all, "0 2 3 5 5 11 13 4 4 1 1 ");

  ScriptedPlatform platform;
  platform.errors.texts = {{1, "It broke. \r\n"}, {2, ".\r\n"}};
  const auto told = [](const CException& error, UINT room = 99) {
    char text[99] = "former";
    UINT topic = 7;
    EXPECT_EQ(error.GetErrorMessage(text, room), error.GetErrorMessage(text, room, &topic));
    return std::to_string(topic) + text + std::to_string(error.GetErrorMessage(text, room));
  };
  for (const auto& [cause, code, words] : Cases<3>(R"(-1 => 1 => 61841The system gave no reason1
      0 => 1 => 61840There was no error1 ;; 1 => 0 => 61841The system gave no reason1
      1 => 1 => 61841It broke1 ;; 1 => 2 => 61841The system gave no reason1
      14 => 1 => 61854The file ended too soon1 ;; 15 => 1 => 61841The system gave no reason1)")) {
    EXPECT_EQ(told(CFileException(std::stoi(cause), std::stoi(code))), words);
  }
  std::string topics;
  for (const int cause : {-1, 0, 7, 8}) topics += told(CArchiveException(cause), 1) + " ";
  EXPECT_EQ(topics, "618611 618601 618671 618611 ");
  const CArchiveException none;
  EXPECT_EQ(told(none, 6) + told(none, 1) + told(none, 0), "61860There161860161860former1");
  EXPECT_EQ(told(CException()), "00");
}

TEST_F(File, AnOpeningThatFailsTellsWhy) {
  CFileException error;
  CFile file;
  EXPECT_FALSE(file.Open(path, CFile::modeRead, &error) || file.Open(nullptr, 0));
  EXPECT_TRUE(error.m_cause == Cause::fileNotFound && error.m_lOsError == ENOENT);
  const CFile alone(path, 0x1021);
  EXPECT_EQ(CauseOf([&] { CFile second(path, CFile::modeWrite); }), Cause::sharingViolation);
  EXPECT_EQ(file.Open(path, CFile::modeRead), 1);
}

TEST_F(File, TellsTheSystemWhatItsFlagsMean) {
  struct ToldFiles : ForwardingFiles {
    platform::Result<HANDLE> Open(std::string_view, const platform::OpenOptions& is) override {
      const bool flags[] = {is.read,       is.write,    is.create,
                            is.append,     is.truncate, is.deny_read,
                            is.deny_write, is.replace,  is.patience == 20'000};
      for (std::size_t i = 0; i < std::size(flags); ++i) told += flags[i] ? "rwcatRWpP"[i] : '-';
      return platform::Error{platform::ErrorKind::kNotFound, 2};
    }
    std::string told;
  } files;
  const Rows<UINT, Text> rows = {
      {0x0000, "r--------"},   {0x0001, "-w-------"}, {0x0002, "rw-------"},
      {0x0010, "r----RW--"},   {0x0020, "r-----W--"}, {0x0040, "r--------"},
      {0x1000, "rwc-t----"},   {0x3000, "r-c------"}, {0x100001, "-w-a-----"},
      {0x200000, "r-------P"}, {~0U, "rwc----p-"}};
  for (const auto& [flags, told] : rows) {
    files.told.clear();
    ~flags == 0 ? CReplacingFile().Open(path, CFile::modeCreate) : CFile().Open(path, flags);
    EXPECT_EQ(files.told, told) << flags;
  }
}

TEST_F(File, ReplacingLeavesTheOldOneUntilItIsClosed) {
  directory.Put("f", "old");
  CReplacingFile file;
  char old[9] = {};
  for (const bool aborts : {true, false}) {
    EXPECT_EQ(file.Open(path, CFile::modeRead), 1);
    for (const Text text : {"ne", "w"}) file.Write(text, static_cast<UINT>(std::strlen(text)));
    EXPECT_TRUE(file.Read(old, 9) == 3 && directory.Get("f") == "old");
    EXPECT_EQ(CauseOf([&] { file.SetLength(1); }), Cause::accessDenied);
    aborts ? file.Abort() : file.Close();
    EXPECT_EQ(directory.Get("f"), aborts ? "old" : "new");
  }
  file.Close();
}

TEST_F(File, PositionsLengthsAndBadSeeks) {
  CFile on_disk(path, CFile::modeCreate | CFile::modeReadWrite);
  CMemFile in_memory;
  for (CFile* file : {&on_disk, static_cast<CFile*>(&in_memory)}) {
    file->Write("0123456789", 10);
    char buffer[16] = {};
    EXPECT_TRUE(file->Seek(-4, CFile::end) == 6 && file->Read(buffer, sizeof buffer) == 4);
    EXPECT_STREQ(buffer, "6789");
    EXPECT_EQ(CauseOf([&] { file->Seek(-1, CFile::begin); }), Cause::badSeek);
    EXPECT_TRUE(file->GetPosition() == 10 && file->Seek(2, CFile::end) == 12);
    file->Write("x", 1);
    EXPECT_TRUE(file->IsOpen() && file->GetLength() == 13 && file->Seek(-1, CFile::end) == 12);
    EXPECT_TRUE(file->Read(buffer, 2) == 1 && buffer[0] == 'x');
    file->SetLength(3);
    EXPECT_EQ(file->GetPosition(), 3);
  }
  constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max();
  in_memory.Seek(kFar, CFile::begin);
  EXPECT_EQ(CauseOf([&] { in_memory.Seek(1, CFile::current); }), Cause::badSeek);
  EXPECT_EQ(CauseOf([&] { in_memory.Write("x", 1); }), Cause::diskFull);
  EXPECT_EQ(CauseOf([&] { in_memory.SetLength(kFar); }), Cause::diskFull);
  char byte = 0;
  EXPECT_TRUE(in_memory.Read(&byte, 1) == 0 && in_memory.GetLength() == 3);
  for (const bool closes : {false, true}) {
    closes ? in_memory.Close() : in_memory.SetLength(-1);
    EXPECT_TRUE(in_memory.GetLength() == 0 && in_memory.GetPosition() == 0) << closes;
    in_memory.Write("x", 1);
  }
}

TEST_F(File, StatusesNamesAndRemovals) {
  directory.Put("f", "abc");
  const std::string renamed = directory / "g";
  CFile::Rename(path, renamed.c_str());
  CFileStatus status;
  EXPECT_FALSE(CFile::GetStatus(path, status));
  for (const DWORD attribute : {FILE_READ_ONLY, FILE_ARCHIVE}) {
    status.m_mtime = 86'400;
    status.m_attribute = attribute;
    CFile::SetStatus(renamed.c_str(), status);
    status.m_mtime = 0;
    CFile::SetStatus(renamed.c_str(), status);
    const CFile file(renamed.c_str(), CFile::modeRead);
    EXPECT_TRUE(file.GetStatus(status) == 1 && status.m_size == 3 && status.m_mtime == 86'400 &&
                status.m_attribute == (attribute | FILE_ARCHIVE) && status.m_szFullName == renamed);
    EXPECT_EQ(file.GetFileName(), "g");
    EXPECT_EQ(CauseOf([&] { CFile::Remove(renamed.c_str()); }),
              attribute == FILE_READ_ONLY ? Cause::accessDenied : Cause::none);
  }
  EXPECT_EQ(CauseOf([&] { CFile::Remove(renamed.c_str()); }), Cause::fileNotFound);
}

TEST_F(File, StdioLinesEndInLfOrCrLfAcrossBuffers) {
  const std::string wide(65535, 'x'), text = wide + "\r\n\r\na\rb\n\r\r\nlast\r";
  directory.Put("f", text);
  CStdioFile file(path, CFile::modeRead);
  CString line;
  for (const char* const expected : {wide.c_str(), "", "a\rb", "\r", "last\r"}) {
    EXPECT_TRUE(file.ReadString(line) && line == expected) << expected;
  }
  EXPECT_TRUE(!file.ReadString(line) && line.IsEmpty());
  file.SeekToBegin();
  std::string all(text.size() + 1, '?');
  EXPECT_TRUE(file.Read(all.data(), static_cast<UINT>(all.size())) == text.size() &&
              all == text + '?');
}

TEST_F(File, StdioReadsAndWritesMixAtOnePosition) {
  directory.Put("f", "one\nt\0o\nthree\n"s);
  CString line;
  {
    CStdioFile file(path, CFile::modeReadWrite);
    file.ReadString(line);
    EXPECT_EQ(file.GetPosition(), 4);
    file.WriteString("2");
    EXPECT_TRUE(file.PeekByte() == 0 && file.ReadByte() == 0 && file.ReadByte() == 'o');
    file.SeekToEnd();
    file.WriteString("four");
    EXPECT_TRUE(file.GetLength() == 18 && file.ReadByte() == -1);
    file.WriteString("5");
    file.SeekToBegin();
    EXPECT_TRUE(file.GetPosition() == 0 && file.ReadString(line) && line == "one");
    file.Seek(0, CFile::end);
    file.WriteString("6");
  }
  EXPECT_EQ(directory.Get("f"), "one\n2\0o\nthree\nfour56"s) << "what is dropped is written";
  CStdioFile file(path, CFile::modeCreate | CFile::modeReadWrite);
  file.WriteString(std::string(65535, 'x').c_str());
  EXPECT_EQ(directory.Get("f"), "") << "until there is more";
  file.WriteString("x");
  EXPECT_EQ(directory.Get("f").size(), 65536u);
  file.WriteString("yes");
  file.Flush();
  file.WriteString("no");
  file.Abort();
  EXPECT_TRUE(file.Open(path, CFile::modeReadWrite) == 1 && file.GetPosition() == 0);
  file.Close();
  EXPECT_EQ(directory.Get("f").substr(65536), "yes");
}

/// Runs `read(archive)` on a stream, all of which it takes; the cause of what that throws, `none`
/// if it doesn't.
int Load(std::string_view stream, const auto& read) try {
  LoadFrom(stream, [&](CArchive& archive) {
    read(archive);
    EXPECT_EQ(archive.Remaining(), 0u);
  });
  return Failure::none;
} catch (const Failure& error) {
  return error.m_cause;
}

/// Loads any objects.
int LoadObjects(std::string_view stream, const CRuntimeClass* expected = nullptr) {
  return Load(stream, [&](CArchive& archive) {
    std::vector<std::unique_ptr<CObject>> owners;
    while (archive.Remaining() > 0) SerialNode::Read(archive, expected, owners.emplace_back());
  });
}

/// "SerialNode" as a new class with schema 3, and a node without anything in it.
const std::string kNewClass("\xFF\xFF\3\0\x0A\0SerialNode", 16);
const std::string kEmptyNode("\0\0\0\0\0\0\0\0\0", 9);

TEST(RuntimeClass, KnowsItsBasesAndIsMadeAndFoundByName) {
  CMemFile file;
  EXPECT_TRUE(file.IsKindOf(RUNTIME_CLASS(CFile)) && file.IsKindOf(RUNTIME_CLASS(CObject)));
  EXPECT_EQ(DYNAMIC_DOWNCAST(CFile, &file), &file);
  EXPECT_TRUE(!DYNAMIC_DOWNCAST(CStdioFile, &file) && !DYNAMIC_DOWNCAST(CFile, nullptr));
  EXPECT_EQ(RUNTIME_CLASS(CMemFile)->CreateObject(), nullptr);
  EXPECT_EQ(CRuntimeClass::FromName("CMemFile"), RUNTIME_CLASS(CMemFile));
  EXPECT_TRUE(!CRuntimeClass::FromName("cMemFile") && !CRuntimeClass::FromName(nullptr));
}

TEST(Archive, ValuesAreLittleEndianByteForByte) {
  static constexpr std::int64_t kWide = -0x0102030405060708;
  const std::string stream = Stored([](CArchive& archive) {
    archive << BYTE{0x81} << WORD{0x8102} << LONG{-2} << DWORD{0x81020304} << kWide << 1.5F << -2.0
            << CString("a\0b"sv);
  });
  EXPECT_EQ(stream,
            "\x81\x02\x81\xFE\xFF\xFF\xFF\x04\x03\x02\x81\xF8\xF8\xF9\xFA\xFB\xFC\xFD\xFE"
            "\0\0\xC0\x3F\0\0\0\0\0\0\0\xC0\3a\0b"sv);
  std::tuple<BYTE, WORD, LONG, DWORD, std::int64_t, float, double, CString> read;
  Load(stream, [&](CArchive& archive) {
    std::apply([&](auto&... value) { (archive >> ... >> value); }, read);
  });
  EXPECT_EQ(read, std::tuple(0x81, 0x8102, -2, 0x81020304, kWide, 1.5F, -2.0, CString("a\0b"sv)));
}

TEST(Archive, LengthsAndCountsGrowAtTheirLimits) {
  for (const auto& [size, text_head, count_head] :
       {std::tuple(254u, "\xFE"sv, "\xFE\0"sv),
        {255u, "\xFF\xFF\0"sv, "\xFF\0"sv},
        {0xFFFDu, "\xFF\xFD\xFF"sv, "\xFD\xFF"sv},
        {0xFFFEu, "\xFF\xFF\xFF\xFE\xFF\0\0"sv, "\xFE\xFF"sv},
        {0xFFFFu, "\xFF\xFF\xFF\xFF\xFF\0\0"sv, "\xFF\xFF\xFF\xFF\0\0"sv}}) {
    const std::string text(size, 'x');
    const std::string stored = Stored([&text](CArchive& archive) {
      archive << CString(text);
      archive.WriteCount(static_cast<DWORD>(text.size()));
    });
    EXPECT_EQ(stored, std::string(text_head) + text + std::string(count_head)) << size;
    Load(stored + text, [&text](CArchive& archive) {
      CString read;
      archive >> read;
      std::string rest(archive.ReadCount(), '\0');
      archive.Read(rest.data(), static_cast<UINT>(rest.size()));
      EXPECT_TRUE(read == text && rest == text) << text.size();
    });
  }
}

TEST(Archive, ObjectsShareOneCountOfIndicesWithClasses) {
  SerialNode first, second;
  first.number = 0x0201;
  first.text = "t";
  first.bytes = "bc";
  first.next = &second;
  first.other = second.other = &first;
  const std::string stream = Stored([&](CArchive& archive) { archive << &first << &second; });
  // Class 1 and object 2; the node within is object 3 of class 1.
  EXPECT_EQ(stream, kNewClass + std::string("\1\2\1t\2\0bc\1\x80\0\0\0\0\0\0\0\2\0\2\0\3\0", 23));
  Load(stream + "\0\0"s, [](CArchive& archive) {
    SerialNode *read = nullptr, *next = nullptr;
    archive >> read >> next;
    const std::unique_ptr<CObject> owner(read);
    EXPECT_TRUE(read->schema == 3 && read->number == 0x0201 && read->bytes == "bc");
    EXPECT_TRUE(read->other == read && read->next == next && next->other == read);
    archive >> next;
    EXPECT_EQ(next, nullptr);
  });
  CMapStringToOb* map = nullptr;
  EXPECT_EQ(Load(stream, [&](CArchive& archive) { archive >> map; }), Failure::badClass);
  for (std::size_t size = 1; size + 2 < stream.size(); ++size) {
    EXPECT_EQ(LoadObjects(stream.substr(0, size)), Failure::endOfFile) << size;
  }
}

TEST(Archive, IndicesFrom7FFFhAreOf32Bits) {
  std::vector<SerialNode> nodes(0x8000);
  const std::string stream = Stored([&](CArchive& archive) {
    for (const SerialNode& node : nodes) archive << &node;
    archive << &nodes[0x7FFC] << &nodes[0x7FFD] << &nodes[0x7FFE];
  });
  EXPECT_EQ(stream.substr(stream.size() - 14), "\xFE\x7F\xFF\x7F\xFF\x7F\0\0\xFF\x7F\0\x80\0\0"sv);
  Load(stream, [](CArchive& archive) {
    std::vector<std::unique_ptr<CObject>> read(0x8000);
    for (auto& node : read) SerialNode::Read(archive, nullptr, node);
    for (const int i : {0x7FFC, 0x7FFD, 0x7FFE})
      EXPECT_EQ(archive.ReadObject(nullptr), read[i].get());
  });
}

TEST(Archive, StreamsThatDontFitAreRefusedBeforeMemoryIsTaken) {
  const std::string node = kNewClass + kEmptyNode;
  const std::string x62(62, 'x'), map("CMapStringToOb\0\0", 16);
  const Rows<int, std::vector<std::string>> rows = {
      {Failure::endOfFile,
       {kNewClass + "\0\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s,
        kNewClass + "\0\0\0\xFF\xFF\xFF\xFF\xFF\xFF"s, "\xFF\xFF\7\0\x3F\0"s + x62}},
      {Failure::badClass,
       {"\xFF\xFF\7\0\x40\0"s + x62, "\xFF\xFF\7\0\x08\0CMemFile"s,
        kNewClass + "\0\0\xFF\xFE\xFFxx"s}},
      {Failure::badSchema, {"\xFF\xFF\1\0\x0E\0"s + map}},
      {Failure::badIndex,
       {"\0\x80"s, node + "\2\x80"s, node + "\3\0"s, node + "\xFF\x7F\xFF\xFF\xFF\xFF"s}},
      // A class by a big index, too.
      {Failure::none,
       {node + "\xFF\x7F\1\0\0\x80"s + kEmptyNode, node + "\0\0\2\0\1\x80"s + kEmptyNode,
        "\xFF\xFF\0\0\x0E\0"s + map}}};
  for (const auto& [cause, streams] : rows) {
    for (const std::string& each : streams) EXPECT_EQ(LoadObjects(each), cause) << each;
  }
  EXPECT_EQ(LoadObjects(node, RUNTIME_CLASS(CMapStringToOb)), Failure::badClass);
  EXPECT_EQ(LoadObjects(node, RUNTIME_CLASS(CObject)), Failure::none);
  // A node that is cut short is gone for later indices, which ask for it here.
  Load(kNewClass + "\0\0\0\0\0\2\x80\2\0"s, [](CArchive& archive) {
    for (int i = 0; i < 2; ++i) EXPECT_THROW(archive.ReadObject(nullptr), Failure) << i;
  });
}

TEST(Archive, ArraysAreACountAndTheirElementsAndStayIfTheStreamDoesNotFit) {
  CWordArray words;
  CStringArray texts;
  const auto serialize = [&](CArchive& archive) {
    words.Serialize(archive);
    texts.Serialize(archive);
  };
  for (const int word : {0x0102, 0xFFFE}) words.Add(static_cast<WORD>(word));
  for (const char* const text : {"", "ab"}) texts.Add(text);
  const std::string stream = Stored(serialize);
  EXPECT_EQ(stream, "\2\0\2\1\xFE\xFF\2\0\0\2ab"s);
  EXPECT_EQ(Load("\2\0\1\0"s, serialize), Failure::endOfFile);
  EXPECT_EQ(Load("\2\0\2\1\xFE\xFF\2\0\1x\1"s, serialize), Failure::endOfFile);
  EXPECT_EQ(Stored(serialize), stream);
  EXPECT_EQ(Load(stream, serialize), Failure::none);
  EXPECT_EQ(Stored(serialize), stream) << "in the place of what was there";
}

TEST(Archive, NestingThatWouldExhaustTheStackIsRefusedBothWays) {
  std::string stream = kNewClass;
  for (int depth = 1; depth < 100'000; ++depth) stream += "\0\0\0\0\0\1\x80"s;
  EXPECT_EQ(LoadObjects(stream), Failure::generic);

  std::vector<SerialNode> nodes(1001);
  for (std::size_t i = 0; i + 1 < nodes.size(); ++i) nodes[i].next = &nodes[i + 1];
  EXPECT_THROW(Stored([&](CArchive& archive) { archive << &nodes[0]; }), Failure);
  EXPECT_EQ(LoadObjects(Stored([&](CArchive& archive) { archive << &nodes[1]; })), Failure::none);
}

TEST(Archive, WritesWhenItsBufferIsFullOrItGoesAndGivesBackWhatWasReadAhead) {
  CMemFile file;
  BYTE byte = 7;
  {
    CArchive storing(&file, CArchive::store);
    storing.Write(std::string(4094, 'x').append("y").data(), 4095);
    EXPECT_EQ(file.GetLength(), 0);
    storing << byte;
    EXPECT_EQ(file.GetLength(), 4096);
    storing << byte;
  }
  EXPECT_EQ(file.GetLength(), 4097);
  EXPECT_THROW((CArchive(&file, CArchive::store) << byte).ReadCount(), Failure);
  EXPECT_THROW((CArchive(&file, CArchive::store) << byte << &file), Failure) << "has no class";
  EXPECT_EQ(file.GetLength(), 4097) << "nothing of what failed";
  EXPECT_EQ(Load("x", [&](CArchive& archive) { archive << byte; }), Failure::readOnly);
  file.Seek(4093, CFile::begin);
  CArchive loading(&file, CArchive::load);
  loading >> byte;
  loading.Flush();
  EXPECT_TRUE(byte == 'x' && file.GetPosition() == 4094);
  loading >> byte;
  loading.Close();
  EXPECT_TRUE(byte == 'y' && file.GetPosition() == 4095);
}

}  // namespace
}  // namespace dq::test
