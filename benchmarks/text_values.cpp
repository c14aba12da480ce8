// Speed of big integers against GMP, of log lines against spdlog and of templates against
// ctemplate.

#include <cstdlib>
#include <ctemplate/template.h>
#include <filesystem>
#include <gmp.h>
#include <memory>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#include <string>
#include <vector>

#include "benchmarks/ratio.h"
#include "dqlib/core/big_int.h"
#include "dqlib/output/log.h"
#include "siblings/options/template_engine.h"

namespace {

using dq::CDQBigInt;

/// Ends the program if the peers don't do the same.
void Require(bool same, const char* name) {
  if (same) return;
  std::fprintf(stderr, "%s: the results differ\n", name);
  std::exit(2);
}

std::string Digits(std::size_t count, unsigned state) {
  std::string text;
  while (text.size() < count) {
    state = state * 214013 + 2531011;
    text += static_cast<char>('1' + (state >> 16) % 9);
  }
  return text;
}

std::string TextOf(const mpz_t number) {
  std::string text(mpz_sizeinbase(number, 10) + 2, '\0');
  mpz_get_str(text.data(), 10, number);
  text.resize(std::char_traits<char>::length(text.c_str()));
  return text;
}

constexpr int kNumbers = 10'000;

void BenchBigIntTexts() {
  std::vector<std::string> texts;
  for (unsigned i = 0; i < kNumbers; ++i) texts.push_back(Digits(62, i));
  const auto ours = [](const std::string& text) { return CDQBigInt(text).toString(); };
  const auto peer = [](const std::string& text) {
    mpz_t number;
    mpz_init_set_str(number, text.c_str(), 10);
    std::string back = TextOf(number);
    mpz_clear(number);
    return back;
  };
  for (const std::string& text : texts) Require(ours(text) == peer(text), "big integers");
  bench::Ratio("big integer, text to number to text, 62 digits", "GMP", 0.99)
      .Run(
          [&] {
            for (const std::string& text : texts) bench::Keep(ours(text));
          },
          [&] {
            for (const std::string& text : texts) bench::Keep(peer(text));
          });
}

void BenchBigIntArithmetic() {
  const std::string wide = Digits(62, 1);
  const std::string narrow = Digits(31, 2);
  const std::string other = Digits(62, 3);
  const CDQBigInt a(wide);
  const CDQBigInt b(narrow);
  const CDQBigInt c(other);
  mpz_t w;
  mpz_t x;
  mpz_t y;
  mpz_t z;
  mpz_init_set_str(w, other.c_str(), 10);
  mpz_init_set_str(x, wide.c_str(), 10);
  mpz_init_set_str(y, narrow.c_str(), 10);
  mpz_init(z);
  const auto run = [&](const char* name, double goal, auto ours, auto peer) {
    peer();
    Require(ours().toString() == TextOf(z), name);
    bench::Ratio(std::string("big integer, ") + name + " digits", "GMP", goal)
        .Run(
            [&] {
              for (int i = 0; i < kNumbers; ++i) bench::Keep(ours());
            },
            [&] {
              for (int i = 0; i < kNumbers; ++i) {
                peer();
                bench::Keep(z);
              }
            });
  };
  run(
      "sum of 62 and 31", 0, [&] { return a + b; }, [&] { mpz_add(z, x, y); });
  run(
      "product of 62 and 31", 0, [&] { return a * b; }, [&] { mpz_mul(z, x, y); });
  run(
      "product of 62 and 62", 10, [&] { return a * c; }, [&] { mpz_mul(z, x, w); });
  run(
      "quotient of 62 and 31", 10, [&] { return a / b; }, [&] { mpz_tdiv_q(z, x, y); });
  mpz_clears(w, x, y, z, nullptr);
}

void BenchLog(const std::filesystem::path& directory) {
  constexpr int kLines = 20'000;
  dq::CDQLog log((directory / "ours.log").c_str(), 4'000'000, true);
  const auto peer = spdlog::basic_logger_st("peer", (directory / "peer.log").string());
  peer->set_pattern("%m/%d/%Y %H:%M:%S.%e  %v");
  peer->flush_on(spdlog::level::info);
  const dq::CString text("Object SCOTT.EMP was altered and its dependent objects recompiled");
  // Near its maximum a log asks for its length line by line.
  dq::CDQLog near((directory / "near.log").c_str(), 10'000, true);
  const auto run = [&](const char* name, dq::CDQLog& ours, double goal) {
    bench::Ratio(name, "spdlog, flushed each line", goal)
        .Run(
            [&] {
              for (int i = 0; i < kLines; ++i) ours.LogMessage(text);
            },
            [&] {
              for (int i = 0; i < kLines; ++i) peer->info(static_cast<const char*>(text));
            },
            [&] { near.ClearLogFile(); }, 5);
  };
  run("LogMessage, 20,000 lines", log, 1.05);
  run("LogMessage, 20,000 lines near the maximum", near, 0);
}

void BenchTemplate() {
  constexpr int kNames = 60'000;
  dq::CDQTemplateEngine engine;
  ctemplate::TemplateDictionary dictionary("names");
  std::string ours;
  std::string peer;
  for (int i = 0; i < kNames; ++i) {
    const std::string name = "object_name_" + std::to_string(i);
    const std::string value = "\"SCOTT\".\"EMP_" + std::to_string(i) + "\"";
    engine.SetVariable(("$$" + name + "$$").c_str(), value.c_str());
    dictionary.SetValue(name, value);
    ours += "DROP TABLE $$" + name + "$$;\n";
    peer += "DROP TABLE {{" + name + "}};\n";
  }
  std::string expanded;
  const auto run_ours = [&] { bench::Keep(engine.ResolveVariableString(ours.c_str())); };
  const auto run_peer = [&] {
    expanded.clear();
    const std::unique_ptr<ctemplate::Template> scanned(
        ctemplate::Template::StringToTemplate(peer, ctemplate::DO_NOT_STRIP));
    scanned->Expand(&expanded, &dictionary);
  };
  run_peer();
  Require(engine.ResolveVariableString(ours.c_str()).View() == expanded, "template");
  bench::Ratio("template with 60,000 names, scanned and expanded", "ctemplate", 0.99)
      .Run(run_ours, run_peer);
}

}  // namespace

int main() {
  std::string name = (std::filesystem::temp_directory_path() / "dqlib_bench_XXXXXX").string();
  Require(::mkdtemp(name.data()) != nullptr, "directory");
  BenchBigIntTexts();
  BenchBigIntArithmetic();
  BenchLog(name);
  BenchTemplate();
  std::filesystem::remove_all(name);
  return bench::Finish();
}
