// Running console programs against the C library's own ways: popen with getline, and posix_spawn.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "benchmarks/ratio.h"
#include "dqlib/output/console_program.h"
#include "dqlib/platform/platform.h"

namespace {

/// What arrived.
struct Tally {
  std::size_t lines = 0;
  std::size_t bytes = 0;
  void Add(std::size_t size) {
    ++lines;
    bytes += size;
  }
};

Tally g_tally;

int Count(int, const char* text) {
  g_tally.Add(std::char_traits<char>::length(text));
  return 0;
}

/// Ends the benchmark where it would compare different work.
void Require(bool met, const char* what) {
  if (met) return;
  std::fprintf(stderr, "%s\n", what);
  std::exit(2);
}

/// Lines and bytes of the output of `sh -c script`.
Tally RunOurs(const std::string& script) {
  dq::CDQConsoleProgram program;
  program.SetCallback(Count);
  dq::CString last;
  g_tally = {};
  const std::string arguments = "-c \"" + script + '"';
  Require(program.RunExecutable("sh", last, arguments.c_str()) == 1, "the child didn't run");
  // The command line was reported as the first line.
  return {g_tally.lines - 1, g_tally.bytes - 3 - arguments.size()};
}

Tally RunPeer(const std::string& script) {
  Tally tally;
  FILE* const output = popen(script.c_str(), "r");
  char* line = nullptr;
  std::size_t room = 0;
  for (ssize_t size; (size = getline(&line, &room, output)) > 0;) {
    tally.Add(static_cast<std::size_t>(size) - (line[size - 1] == '\n' ? 1 : 0));
  }
  std::free(line);
  pclose(output);
  return tally;
}

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

void BenchTwoMillionLines() {
  const std::string script = "seq 2000000";
  RunOurs("seq 1000");
  const long before = PeakKilobytes();
  RunOurs(script);
  const long growth = PeakKilobytes() - before;
  const bool flat = growth <= 1024;
  if (!flat) ++bench::Misses();
  std::printf("%-58s %10ld KB  goal 1024  %s\n",
              "RunExecutable, 2,000,000 lines: growth of peak RSS", growth,
              flat ? "met" : "MISSED");

  Tally ours;
  Tally peer;
  bench::Ratio("RunExecutable, 2,000,000 lines", "popen, getline", 2)
      .Run([&] { ours = RunOurs(script); }, [&] { peer = RunPeer(script); }, 15);
  Require(ours.lines == peer.lines && ours.bytes == peer.bytes, "the lines differ");
}

void BenchLongLine() {
  const auto run = [](auto& runner, const std::string& megabytes) {
    const Tally tally = runner("head -c " + megabytes + "000000 /dev/zero | tr '\\0' x");
    Require(tally.lines == 1 && tally.bytes == std::stoul(megabytes) * 1'000'000,
            "the long line is not whole");
  };
  bench::Ratio("RunExecutable, a line of 100 MB", "the same with 50 MB", 2.4)
      .Run([&] { run(RunOurs, "100"); }, [&] { run(RunOurs, "50"); });
  bench::Ratio("RunExecutable, a line of 100 MB", "popen, getline", 0)
      .Run([&] { run(RunOurs, "100"); }, [&] { run(RunPeer, "100"); });
}

void BenchStart(const char* name) {
  constexpr int kStarts = 20;
  dq::platform::Processes& processes = *dq::platform::Current().processes;
  const auto ours = [&] {
    for (int i = 0; i < kStarts; ++i) {
      const auto pipe = processes.CreatePipe().value;
      const auto started =
          processes.Start({.command_line = "/bin/true", .standard_output = pipe.write_end});
      processes.Wait(started.value.process);
      processes.Close(started.value.process);
      processes.Close(pipe.read_end);
      processes.Close(pipe.write_end);
    }
  };
  const auto peer = [&] {
    for (int i = 0; i < kStarts; ++i) {
      char program[] = "/bin/true";
      char* arguments[] = {program, nullptr};
      pid_t number = 0;
      posix_spawn(&number, program, nullptr, nullptr, arguments, environ);
      waitpid(number, nullptr, 0);
    }
  };
  bench::Ratio(name, "posix_spawn, waitpid", 1.2).Run(ours, peer, 60);
}

}  // namespace

int main() {
  BenchTwoMillionLines();
  BenchStart("20 starts from a small process");
  {
    const std::string touched(std::size_t{2} << 30, 'x');
    bench::Keep(touched);
    BenchStart("20 starts from a process that holds 2 GiB");
  }
  BenchLongLine();
  return bench::Finish();
}
