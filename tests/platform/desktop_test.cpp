// The desktop's programs, by commands that stand in for the system's.

#include <sched.h>

#include "dqlib/platform/posix/desktop_command.h"
#include "tests/support/forked_process.h"
#include "tests/support/temp_directory.h"

namespace dq::platform {
namespace {

using namespace test;

/// The only commands that there are write down what they are told, and end with the same code.
struct DesktopTest : testing::Test {
  DesktopTest() { std::filesystem::create_directory(files / "tmp"); }

  void Add(const std::string& command) {
    const std::string script = "#!/bin/sh\nfor each in " + command +
                               " \"$@\"; do echo \"$each\"; done >> '" + files / "log" +
                               "'\nread code < '" + files / "code" + "'\nexit $code\n";
    std::filesystem::permissions(files.Put(command, script), std::filesystem::perms::owner_all);
  }
  /// What commands were told, with "|" behind each word; nothing of it is told again.
  std::string Told() {
    std::string told = files.Get("log");
    std::filesystem::remove(files / "log");
    std::ranges::replace(told, '\n', '|');
    return files.Shortened(told);
  }

  TempDirectory files;
  ScopedVariable path_{"PATH", files.path()};
  ScopedVariable temporary_{"TMPDIR", files / "tmp"};
};

TEST_F(DesktopTest, ShellOpensPrintsAndExploresWithTheProgramsThatThereAre) {
  using enum ShellVerb;
  const std::string document = files.Put("a b.sql", "");
  for (const char* const command : {"xdg-open", "lpr"}) Add(command);
  const Rows<ShellVerb, std::string, int, const char*, ErrorKind> rows = {
      {kOpen, "https://h/p q?\"'\\", 0, "xdg-open|https://h/p q?\"'\\|", ErrorKind::kNone},
      {kOpen, document, 0, "xdg-open|./a b.sql|", ErrorKind::kNone},
      {kOpen, document, 2, "xdg-open|./a b.sql|", ErrorKind::kNotFound},
      {kOpen, files.path() + "/", 3, "xdg-open|.|", ErrorKind::kUnsupported},
      {kOpen, "mailto:x", 4, "xdg-open|mailto:x|", ErrorKind::kOther},
      {kOpen, files / "none", 0, "(none)", ErrorKind::kNotFound},
      {kOpen, "c:none", 0, "(none)", ErrorKind::kNotFound},
      {kOpen, "a_b:none", 0, "(none)", ErrorKind::kNotFound},
      {kExplore, files.path(), 0, "xdg-open|.|", ErrorKind::kNone},
      {kExplore, document, 0, "(none)", ErrorKind::kNotFound},
      {kExplore, "https://h", 0, "(none)", ErrorKind::kUnsupported},
      {kPrint, document, 0, "lpr|./a b.sql|", ErrorKind::kNone},
      {kPrint, document, 1, "lpr|./a b.sql|", ErrorKind::kOther}};
  const auto execute = [&](ShellVerb verb, const std::string& target) {
    return System().shell->Execute(verb, target).kind;
  };
  for (const auto& [verb, target, code, told, error] : rows) {
    files.Put("code", std::to_string(code) + "\n");
    EXPECT_EQ(execute(verb, target), error) << target;
    EXPECT_EQ(Told(), told);
  }
  for (const char* const command : {"xdg-open", "lpr"}) std::filesystem::remove(files / command);
  for (const ShellVerb verb : {kOpen, kPrint}) {
    EXPECT_EQ(execute(verb, document), ErrorKind::kUnsupported);
  }
  EXPECT_EQ(posix::RunCommand({"/bin/sleep", "1"}, std::chrono::milliseconds(10)).value,
            std::nullopt);
  // A command's standard handles aren't those of this process.
  const char script[] = "for i in 0 1 2; do test /dev/null -ef /dev/fd/$i || exit 8; done; exit 7";
  EXPECT_EQ(posix::RunCommand({"/bin/sh", "-c", script}).value, 7);
}

TEST_F(DesktopTest, ShortcutsAreLinksToDocuments) {
  const std::string document = files.Put("a b.sql", ""), entry = "[Desktop Entry]\nType=";
  files.Put("link.desktop", entry + "Link\nURL=file://" + files.path() + "/a%20b.s%71l%2\n");
  files.Put("local.DESKTOP", entry + "Link\nURL = FILE://localhost/x%2fy\n[Other]\nURL=z\n");
  files.Put("path.desktop", entry + "Link\nURL=/x\n");
  files.Put("short.desktop", entry + "Link\nURL=file:/x\n");
  files.Put("page.desktop", entry + "Link\nURL=https://h/x\n");
  files.Put("program.desktop", entry + "Application\nURL=/x\n");
  files.Put("long.desktop", entry + "Link\nURL=/x\n" + std::string(65'536, '#'));
  for (const auto& [name, to] :
       Cases<2>("s => a b.sql ;; t => s ;; d => path.desktop ;; p => page.desktop ;; n => none")) {
    std::filesystem::create_symlink(to, files / name);
  }
  for (const auto& [name, target] : Cases<2>(R"(
      s => ./a b.sql ;; t => ./a b.sql ;; d => /x ;; p => ./page.desktop ;; a b.sql => ;; tmp =>
      link.desktop => ./a b.sql%2 ;; local.DESKTOP => /x/y ;; path.desktop => /x
      short.desktop => /x ;; page.desktop => ;; program.desktop => ;; long.desktop =>)")) {
    const Result<std::string> found = System().shell->ShortcutTarget(files / name);
    EXPECT_TRUE(found.ok()) << name;
    EXPECT_EQ(found.value, target.starts_with("./") ? files / target.substr(2) : target) << name;
  }
  for (const char* const name : {"n", "none.desktop"}) {
    EXPECT_EQ(System().shell->ShortcutTarget(files / name).error.kind, ErrorKind::kNotFound);
  }
}

TEST_F(DesktopTest, MailsAreHandedOverWithCopiesOfTheirAttachmentsWhichLast) {
  using enum MailOutcome;
  Mail& mail = *System().mail;
  const std::string first = files.Put("first", "1"), second = files.Put("second", "2");
  const MailMessage message{"\"It's\"", "a\nb \\", {{first, "x/SAME"}, {second, "SAME"}, {first}}};
  const auto send = [&](int code) {
    files.Put("code", std::to_string(code) + "\n");
    return mail.Send(message);
  };
  EXPECT_EQ(send(0).value, kNoProgram);
  Add("xdg-email");
  EXPECT_EQ(send(3).value, kNoProgram);
  EXPECT_EQ(send(4).error.kind, ErrorKind::kOther);
  EXPECT_TRUE(std::filesystem::is_empty(files / "tmp")) << "nothing is left";
  Told();
  const std::string old = files / "tmp/velmora-mail-old", other = files / "tmp/velmora";
  for (const std::string& each : {old, other}) {
    std::filesystem::create_directory(each);
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(each, now - std::chrono::hours(49));
  }
  EXPECT_TRUE(send(0).value == kHandedOver && send(0).value == kHandedOver);
  for (const std::string& each : {first, second}) std::filesystem::remove(each);
  EXPECT_EQ(send(0).error.kind, ErrorKind::kNotFound);
  EXPECT_TRUE(!std::filesystem::exists(old) && std::filesystem::exists(other));
  const auto copies = std::filesystem::directory_iterator(files / "tmp");
  EXPECT_EQ(std::distance(begin(copies), end(copies)), 3);

  const std::string log = Told();
  const std::string head = "xdg-email|--utf8|--subject|\"It's\"|--body|a|b \\|--attach|";
  ASSERT_TRUE(log.starts_with(head)) << log;
  const std::string directory = log.substr(head.size(), log.find("/1/SAME|") - head.size());
  EXPECT_TRUE(log.starts_with(head + directory + "/1/SAME|--attach|" + directory +
                              "/2/SAME|--attach|" + directory + "/3/first|xdg-email|"))
      << log;
  EXPECT_EQ(files.Get(directory + "/1/SAME") + files.Get(directory + "/2/SAME"), "12");
  EXPECT_TRUE(files.Mode(directory) == 0700 && mail.Send({}).ok());
  EXPECT_EQ(Told(), "xdg-email|--utf8|");
}

TEST(Threads, TakeIdlePriorityForThemselvesAndGiveItUpAgain) {
  std::thread([] {
    Threads& threads = *System().threads;
    EXPECT_TRUE(threads.SetPriority(ThreadPriority::kIdle).ok());
    EXPECT_EQ(sched_getscheduler(0), SCHED_IDLE);
    EXPECT_TRUE(threads.SetPriority(ThreadPriority::kNormal).ok());
    EXPECT_EQ(sched_getscheduler(0), SCHED_OTHER);
  }).join();
}

TEST(HotKeys, AreNoneWithoutWindows) {
  HotKeys& keys = *System().hot_keys;
  EXPECT_EQ(keys.Register({1, 2, MOD_ALT, 'A'}, [] {}).kind, ErrorKind::kUnsupported);
  EXPECT_EQ(keys.Unregister(1, 2).kind, ErrorKind::kNotFound);
}

}  // namespace
}  // namespace dq::platform
