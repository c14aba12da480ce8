// Printing by commands that only write down what they are given.

#include "tests/support/forked_process.h"
#include "tests/support/temp_directory.h"

namespace dq::platform {
namespace {

using namespace test;

/// The only commands there are, besides what they need.
struct PrintingTest : testing::Test {
  PrintingTest() { std::filesystem::create_symlink("/usr/bin/env", commands_ / "env"); }
  ~PrintingTest() override {
    EXPECT_TRUE(Eventually([] { return Children().empty(); })) << Children();
    EXPECT_EQ(OpenDescriptors(), descriptors_);
  }

  void Install(const char* name, const std::string& script) const {
    const std::string path = commands_.Put(name, "#!/bin/sh\ncd " + files_.path() + "\n" + script);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  }
  /// Prints so many bytes, or fails behind them, and returns kind and words.
  std::string Print(const PrintJob& job, std::size_t size, Error behind = {}) {
    const PrintOutcome outcome = printing_.Print(job, [&](std::span<char> buffer) {
      const std::size_t count = std::min(size, buffer.size());
      std::ranges::fill(buffer, 'x');
      size -= count;
      return count == 0 && !behind.ok() ? Result<std::size_t>(behind) : Result(count);
    });
    return std::to_string(static_cast<int>(outcome.error.kind)) + ' ' + outcome.words;
  }

  Printing& printing_ = *System().printing;
  TempDirectory commands_, files_;
  const ScopedVariable path_{"PATH", commands_.path()};
  const std::ptrdiff_t descriptors_ = OpenDescriptors();
};

constexpr char kTake[] =
    "printf '%s|' \"$0\" \"$@\" >arguments; /bin/cat >document; echo 7 | /usr/bin/tee end\n";

TEST_F(PrintingTest, DocumentGoesToTheFirstCommandThereIsWithWhatTheJobSays) {
  const PrintJob job{.printer = "back \"room", .title = "It's\n\\", .copies = 3};
  EXPECT_EQ(Print(job, 9), "9 This system has no command to print with: neither lp nor lpr.");
  Install("lpr", kTake);
  EXPECT_EQ(Print(job, 300'000), "0 ");
  EXPECT_EQ(files_.Get("arguments"), (commands_ / "lpr") + "|-P|back \"room|-#3|-J|It's \\|");
  EXPECT_EQ(files_.Get("document"), std::string(300'000, 'x'));
  Install("lp", kTake);
  EXPECT_EQ(Print(job, 0), "0 ");
  EXPECT_EQ(files_.Get("arguments"), (commands_ / "lp") + "|-d|back \"room|-n|3|-t|It's \\|");
  EXPECT_EQ(Print({.copies = -1}, 1), "0 ");
  EXPECT_EQ(files_.Get("arguments"), (commands_ / "lp") + "|");
}

TEST_F(PrintingTest, FailureIsToldInTheCommandsWordsOrInOurs) {
  Install("lp", "echo 'lp: no such printer ' >&2; exit 1\n");
  EXPECT_EQ(Print({}, 1'000'000), "10 lp: no such printer") << "though it reads nothing";
  Install("lp", "exit 3\n");
  EXPECT_EQ(Print({}, 0), "10 The system's print command failed with the code 3.");
  Install("lp", "exit 0\n");
  EXPECT_EQ(Print({}, 1'000'000), "10 The system's print command failed with the code 0.");
  Install("lp", "while :; do echo 123456789; done | /usr/bin/head -c 200000; /bin/cat; exit 1\n");
  EXPECT_EQ(Print({}, 100'000).size(), 65'536u + 3) << "read on, but not kept";
  Install("lp", kTake);
  EXPECT_EQ(Print({}, 70'000, {ErrorKind::kNotFound, ENOENT}), "1 ");
  EXPECT_EQ(files_.Get("end"), "(none)") << "half a document is none";
  Install("lp", "/bin/sleep 9 & echo stray; exit 1\n");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Print({}, 0), "10 stray");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(6)) << "not waited for";
  commands_.Put("lp", "no script");
  std::filesystem::permissions(commands_ / "lp", std::filesystem::perms::owner_read);
  EXPECT_EQ(Print({}, 1), "3 ");
}

TEST_F(PrintingTest, PrintersAreThoseThatTheSystemNames) {
  const auto names = [this] {
    const auto printers = printing_.Printers();
    const auto chosen = printing_.DefaultPrinter();
    std::string all = printers.ok() ? "" : std::to_string(static_cast<int>(printers.error.kind));
    for (const std::string& printer : printers.value) all += printer + '|';
    return all + ' ' +
           (chosen.ok() ? chosen.value : std::to_string(static_cast<int>(chosen.error.kind)));
  };
  EXPECT_EQ(names(), "9 9");
  Install("lpstat",
          "test $1 = -e && printf 'one\\ntwo/duplex\\nlpstat: a remark\\n\\n' ||"
          " echo $LC_ALL system default destination: one");
  EXPECT_EQ(names(), "one|two/duplex| one");
  Install("lpstat", "test $1 = -e || echo no system default destination");
  EXPECT_EQ(names(), " ");
  Install("lpstat", "exit 1");
  EXPECT_EQ(names(), "10 10");
}

}  // namespace
}  // namespace dq::platform
