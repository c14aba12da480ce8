// What is told of the desktop and the directories around a program.

#include <fcntl.h>
#include <future>
#include <sys/inotify.h>

#include "dqlib/platform/posix/directory_watches.h"
#include "dqlib/platform/posix/system_calls.h"
#include "tests/support/forked_process.h"
#include "tests/support/temp_directory.h"

namespace dq::platform {
namespace {

using namespace test;

/// Watches on `root`, one for each filter.
struct Watched {
  explicit Watched(bool subtree) {
    RunShell(files.path(), "mkdir -p root/sub && echo 1 | tee root/a > root/sub/x");
    for (int i = 0; i < 5; ++i) {
      one[i] = {.root = files / "root", .subtree = subtree, .filter = DWORD{1} << i};
      EXPECT_TRUE(watches.Add(one[i]).ok());
    }
  }

  std::string Events() {
    std::string bytes(65536, '\0');
    const auto size = ::read(inotify.get(), bytes.data(), bytes.size());
    return bytes.substr(0, size > 0 ? static_cast<std::size_t>(size) : 0);
  }
  /// Letters of the filters that were told of a change: of the names of files, of directories,
  /// attributes, sizes, last writes; "." behind those whose watch has come to its end.
  std::string Told(std::string_view events) {
    watches.Handle(events);
    std::string told;
    for (int i = 0; i < 5; ++i) {
      if (std::exchange(one[i].changed, false)) told += "fdasw"[i];
      if (one[i].gone) told += '.';
    }
    return told;
  }
  std::string After(const std::string& command) {
    RunShell(files.path(), command);
    return Told(Events());
  }

  TempDirectory files;
  posix::FileDescriptor inotify{posix::RealSystemCalls(), ::inotify_init1(IN_NONBLOCK)};
  posix::DirectoryWatches watches{inotify.get()};
  posix::DirectoryWatch one[5];
};

/// More has happened than the system keeps.
std::string Overflow() {
  const inotify_event event{.wd = -1, .mask = IN_Q_OVERFLOW, .cookie = 0, .len = 0};
  return {reinterpret_cast<const char*>(&event), sizeof event};
}

TEST(ChangeNotifications, EachFilterIsToldOfWhatConcernsIt) {
  Watched directory(false);
  for (const auto& [command, told] : Cases<2>(R"(
    : > root/new => f ;; echo 1 > root/new2 => fsw ;; rm root/new2 => f ;; mkdir root/d => d
    mv root/d root/e => d ;; rmdir root/e => d ;; echo 2 >> root/a => sw ;; chmod 600 root/a => aw
    touch -d 2001-02-03 root/a => aw ;; mv root/a root/b => fasw ;; mv root/b . => f
    mv b root/a => fasw ;; cat root/a; ls root; chmod 700 root; echo 3 > root/sub/x => )")) {
    EXPECT_EQ(directory.After(command), told) << command;
  }
  EXPECT_EQ(directory.Told(Overflow()), "fdasw");
  EXPECT_EQ(directory.After("echo 2 >> root/a"), "sw");
  EXPECT_EQ(directory.After("mv root gone; mkdir root; : > root/f; : > gone/f"), ".....");
  EXPECT_EQ(directory.After("rm -r root gone"), ".....");
}

TEST(ChangeNotifications, DirectoriesBelowComeAndGo) {
  Watched tree(true);
  for (const auto& [command, told] : Cases<2>(R"(echo 2 >> root/sub/x => sw
    ln -s ../../outside root/link; mkdir outside => f ;; : > outside/f =>
    mkdir -p root/d/e => fdasw ;; : > root/d/e/f => f ;; mv root/sub root/d/moved => fdasw
    echo 3 >> root/d/moved/x => sw ;; mv root/d/moved . => d ;; echo 4 >> moved/x =>
    mv moved root/d => fdasw ;; rm -r root/d/e => fd ;; mkdir root/d/e => d ;; : > root/d/e/f => f)")) {
    EXPECT_EQ(tree.After(command), told) << command;
  }
  RunShell(tree.files.path(), "mv root/d outside/d; mkdir -p root/deep/er");
  tree.Events();  // which are lost
  EXPECT_EQ(tree.Told(Overflow()), "fdasw");
  EXPECT_EQ(tree.After("chmod 700 outside/d/e/f"), "");
  EXPECT_EQ(tree.After(": > root/deep/er/f"), "f");
  EXPECT_EQ(tree.one[0].directories.size(), 3u);
  tree.watches.Remove(tree.one[0]);
  EXPECT_EQ(tree.After("rm -r root/deep"), "d");
  RunShell(tree.files.path(), "rm -r root; mkdir root");
  tree.Events();
  EXPECT_EQ(tree.Told(Overflow()), "d.a.s.w.");
}

TEST(ChangeNotifications, AWaitEndsByAChangeAnInterruptionOrTheDirectorysEnd) {
  using enum ChangeNotice;
  ChangeNotifications& service = *System().change_notifications;
  const std::ptrdiff_t descriptors = OpenDescriptors();
  const TempDirectory files;
  RunShell(files.path(), "mkdir one two; : > file");
  const Rows<std::string, DWORD, int> refused = {{"no", CHANGE_SIZE, ENOENT},
                                                 {"file", CHANGE_SIZE, ENOTDIR},
                                                 {"one", 0, EINVAL},
                                                 {std::string("one\0", 4), CHANGE_SIZE, EINVAL}};
  for (const auto& [name, filter, error] : refused) {
    const auto opened = service.Open(files / name, false, filter);
    EXPECT_EQ(opened.error.code, static_cast<DWORD>(error)) << name;
  }
  const auto open = [&](const char* name) {
    return service.Open(files / name, true, CHANGE_FILE_NAME).value;
  };
  const HANDLE one = open("one/"), two = open("two"), again = open("two");
  const auto wait = [&](HANDLE watch) {
    return std::async(std::launch::async, [&service, watch] { return service.Wait(watch).value; });
  };
  auto first = wait(one);
  auto second = wait(two);
  files.Put("one/f", "");
  EXPECT_EQ(first.get(), kChanged);
  files.Put("one/g", "");
  EXPECT_EQ(wait(one).get(), kChanged) << "though nobody waited then";
  service.Interrupt(one);
  EXPECT_TRUE(wait(one).get() == kInterrupted && wait(one).get() == kInterrupted);
  EXPECT_EQ(second.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
  service.Close(two);
  EXPECT_EQ(second.get(), kInterrupted);
  EXPECT_EQ(service.Wait(two).error.code, static_cast<DWORD>(EBADF));
  RunShell(files.path(), "rmdir two");
  EXPECT_TRUE(wait(again).get() == kGone && wait(again).get() == kGone);
  for (const HANDLE each : {one, two, again}) service.Close(each);
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

/// Plays a script to its dialogs, and presses No in boxes until it has none left of `yes`.
struct ScriptedChoosers : Prompts {
  explicit ScriptedChoosers(std::string_view steps) {
    EXPECT_FALSE(DialogScript::Read(steps, script)) << steps;
  }
  int Show(std::string_view caption, std::string_view text, UINT type, UINT) override {
    told += std::string(caption) + ": " + std::string(text) + "|";
    return (type & 0xF) == BOX_YES_NO && yes-- > 0 ? BUTTON_YES : BUTTON_NO;
  }
  void RunDialog(DialogView& dialog) override {
    script.Play(dialog);
    EXPECT_FALSE(script.problem()) << script.problem()->text;
  }
  DialogScript script;
  int yes = 0;
  std::string told;
};

TEST(Choosers, FilesAreChosenWhenAllThatIsAskedOfThemHolds) {
  const TempDirectory files;
  RunShell(files.path(), "mkdir in in/deep.x; touch in/a in/a.sql in/b.sql");
  FileQuestion any{.folder = files / "in", .kinds = {{"SQL", "*.sql"}, {"All", "*.*"}}};
  FileQuestion open{.folder = any.folder, .kinds = any.kinds, .kind = 7, .extension = "sql"};
  FileQuestion save{.open = false, .title = "Keep", .folder = any.folder, .name = "b"};
  save.extension = "sql";
  any.folder_must_exist = open.file_must_exist = open.multiple = save.ask_to_replace = true;
  const Rows<const FileQuestion*, const char*, const char*, const char*> rows = {
      {&open, "1152= a \npress 1", "a 2", ""},
      {&open, "1152=b\\n\\n a\n1136=SQL\npress 1", "b.sql a 1", ""},
      {&open, "1152=c\npress 1\npress 2", "-", "Open: ./in/c.sql\nThere is no such file.|"},
      {&open, "press 1\n1152=deep.x\npress 1\n1152=../a.sql\npress 1", "a.sql 2", ""},
      {&any, "1152=c\n1136=1\npress 1", "c 1", ""},
      {&any, "1152=no/c\npress 1", "-", "Open: ./in/no/\nThere is no such folder.|"},
      {&save, "press 1\npress 1", "b.sql 1",
       "Keep: ./in/b.sql\nThe file exists already. Do you want to replace it?|"},
      {&save, "1152=.x\npress 1", ".x 1", ""},
      {&save, "1152=c.\npress 1", "c. 1", ""}};
  for (const auto& [question, steps, chosen, told] : rows) {
    ScriptedChoosers prompts(steps);
    prompts.yes = question == &save ? 1 : 0;
    std::string answer = "-";
    if (const auto choice = prompts.ChooseFile(*question)) {
      answer.clear();
      for (const std::string& path : choice->paths) {
        EXPECT_EQ(path.substr(0, path.rfind('/')), files / "in");
        answer += path.substr(path.rfind('/') + 1) + " ";
      }
      answer += std::to_string(choice->kind);
    }
    EXPECT_EQ(answer, chosen) << steps;
    EXPECT_EQ(files.Shortened(prompts.told), told) << steps;
  }
}

TEST(Choosers, FoldersExistAndPagesAndCopiesAreWithinTheirBounds) {
  const TempDirectory files;
  const std::string file = files.Put("file", "");
  ScriptedChoosers folder("1152=file\npress 1\n1152= . \npress 1");
  EXPECT_EQ(folder.ChooseFolder("", files.path()), files.path());
  EXPECT_EQ(folder.told, "Select Folder: " + file + "\nThere is no such folder.|");

  PrintQuestion question{.printers = {"one", "two"}, .offer_pages = true, .last_page = 9};
  question.choice = {.part = PrintedPart::kSelection, .copies = 2, .printer = "two"};
  ScriptedChoosers print(
      "1058=1\n1056=1\n1058=1\n1154=10\npress 1\n1154= 9\n1153=0\npress 1\n1153=9\n1155=x\n"
      "press 1\n1155=10000\npress 1\n1155=9999\n1139=1\npress 1");
  const PrintChoice choice = print.ChoosePrint(question).value_or(PrintChoice());
  EXPECT_TRUE(choice.part == PrintedPart::kPages && choice.from == 9 && choice.to == 9);
  EXPECT_TRUE(choice.copies == 9999 && choice.printer == "one" && !choice.to_file);
  EXPECT_EQ(print.told,
            "Print: Enter pages from 1 to 9.|Print: Enter pages from 1 to 9.|"
            "Print: Enter from 1 to 9999 copies.|Print: Enter from 1 to 9999 copies.|");
  question.offer_selection = question.offer_file = question.choice.to_file = true;
  const auto as_it_stands = ScriptedChoosers("press 1").ChoosePrint(question);
  EXPECT_TRUE(as_it_stands->part == PrintedPart::kSelection && as_it_stands->printer == "two");
  EXPECT_TRUE(as_it_stands->copies == 2 && as_it_stands->to_file);
}

TEST(Clipboard, HoldsOneThingInSeveralFormatsAndNumbersNames) {
  Clipboard& clipboard = *System().clipboard;
  const UINT rows = clipboard.RegisterFormat("Rows"), more = clipboard.RegisterFormat("* more *");
  EXPECT_TRUE(rows >= 0xC000 && more == rows + 1 && clipboard.RegisterFormat("rOWS") == rows);
  EXPECT_EQ(clipboard.FormatName(rows) + clipboard.FormatName(more), "Rows* more *");
  EXPECT_EQ(clipboard.FormatName(more + 1) + clipboard.FormatName(CLIPBOARD_TEXT), "");
  EXPECT_EQ(clipboard.RegisterFormat(""), 0u);

  const std::string files = FileListData(std::array<std::string, 3>{"/a b", "", "/c"});
  EXPECT_EQ(files, std::string("/a b\0/c\0\0", 9));
  EXPECT_EQ(ReadFileList(files), (std::vector<std::string>{"/a b", "/c"}));
  EXPECT_TRUE(ReadFileList("/c").size() == 1 && ReadFileList("").empty());

  const ClipboardData pieces[] = {{more, "1"}, {CLIPBOARD_FILES, files}, {more, "2"}};
  EXPECT_TRUE(clipboard.SetAll(pieces).ok() && clipboard.Get(more) == "2");
  EXPECT_EQ(clipboard.Formats(), (std::vector<UINT>{more, CLIPBOARD_FILES}));
  EXPECT_TRUE(clipboard.SetAll({}).ok() && !clipboard.Get(more) && clipboard.Formats().empty());
}

}  // namespace
}  // namespace dq::platform
