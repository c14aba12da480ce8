// Speed of the string class against abseil and plain loops over the same text: 16 MiB with a hit
// every 16 bytes (dense, a million) or every 16 KiB (sparse).

#include <absl/strings/str_replace.h>
#include <absl/strings/str_split.h>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/ratio.h"
#include "dqlib/core/dq_string.h"

namespace {

using dq::CDQString;

constexpr std::size_t kSize = std::size_t{16} << 20;

/// Random letters, none of them "z", with `hit` at every `distance` bytes.
std::string Text(std::string_view hit, std::size_t distance) {
  std::string text;
  text.reserve(kSize + distance);
  for (unsigned state = 1; text.size() < kSize; state = state * 214013 + 2531011) {
    if (text.size() % distance == 0) text += hit;
    text += static_cast<char>('a' + (state >> 16) % 25);
  }
  return text;
}

/// Ends the program if the peers don't do the same.
void Require(bool same, const std::string& name) {
  if (same) return;
  std::fprintf(stderr, "%s: the results differ\n", name.c_str());
  std::exit(2);
}

/// Walks over all hits, from either end: each step costs the way to the next hit, no more.
void BenchWalks() {
  constexpr int kHits = 8'000;
  std::string source;
  for (int i = 0; i < kHits; ++i) source += std::string(97, 'x') + "Abc";
  const CDQString text(source);
  const std::string lower = [&] {
    std::string copy = source;
    for (char& byte : copy) byte = static_cast<char>(std::tolower(byte));
    return copy;
  }();
  int hits = 0;
  const auto count = [&](auto next) {
    hits = 0;
    for (std::ptrdiff_t at = next(std::ptrdiff_t{-1}); at > 0; at = next(at)) ++hits;
    Require(hits == kHits, "walk");
  };
  bench::Ratio("FindNoCase, 8,000 hits in 800 KB", "strcasestr", 0)
      .Run(
          [&] {
            count([&](std::ptrdiff_t at) {
              return text.FindNoCase("aBC", static_cast<int>(at) + 1);
            });
          },
          [&] {
            count([&](std::ptrdiff_t at) {
              const char* const hit = ::strcasestr(source.c_str() + at + 1, "aBC");
              return hit == nullptr ? -1 : hit - source.c_str();
            });
          });
  bench::Ratio("ReverseFindNoCase, 8,000 hits in 800 KB", "rfind in lower case", 0)
      .Run(
          [&] {
            count([&](std::ptrdiff_t at) {
              return text.ReverseFindNoCase("aBC", at < 0 ? -1 : static_cast<int>(at) - 1);
            });
          },
          [&] {
            count([&](std::ptrdiff_t at) {
              return static_cast<std::ptrdiff_t>(
                  lower.rfind("abc", at < 0 ? lower.npos : static_cast<std::size_t>(at) - 1));
            });
          });
}

void BenchReplace(const std::string& density, std::size_t distance) {
  struct Case {
    const char* what;
    const char* hit;
    const char* find;
    const char* with;
    bool no_case;
  };
  const Case cases[] = {
      {"grow", "$$x", "$$x", "value", false},
      {"shrink", "$$x", "$$x", "v", false},
      {"equal, in place", "$$x", "$$x", "val", false},
      {"byte for byte, in place", ";", ";", ",", false},
      {"long texts", "<name of the next customer>", "<name of the next customer>",
       "a value that has some length, too", false},
      {"grow", "$$X", "$$x", "value", true},
      {"equal, in place", "$$X", "$$x", "val", true},
      {"word", "BAZAR", "bazar", "market", true},
  };
  for (const Case& c : cases) {
    const std::string source = Text(c.hit, distance);
    CDQString ours;
    std::string peer;
    int hits = 0;
    const std::string name =
        std::string(c.no_case ? "FindReplaceNoCase, " : "FindReplace, ") + c.what + ", " + density;
    const auto run_ours = [&] {
      hits = c.no_case ? ours.FindReplaceNoCase(c.find, c.with) : ours.FindReplace(c.find, c.with);
    };
    const auto run_peer = [&] { peer = absl::StrReplaceAll(peer, {{c.hit, c.with}}); };
    const auto prepare = [&] {
      ours = source;
      peer = source;
    };
    prepare();
    run_ours();
    run_peer();
    Require(hits > 0 && ours.View() == peer, name);
    bench::Ratio(name, "absl::StrReplaceAll", c.no_case ? 3.0 : 1.5)
        .Run(run_ours, run_peer, prepare, 7);
  }
}

std::size_t CountByMemchr(std::string_view text, char delimiter) {
  std::size_t count = 1;
  const char* at = text.data();
  const char* const end = at + text.size();
  while ((at = static_cast<const char*>(
              std::memchr(at, delimiter, static_cast<std::size_t>(end - at)))) != nullptr) {
    ++count;
    ++at;
  }
  return count;
}

std::string FieldByMemchr(std::string_view text, char delimiter, int index) {
  const char* at = text.data();
  const char* const end = at + text.size();
  for (; index > 0; --index) {
    at = static_cast<const char*>(std::memchr(at, delimiter, static_cast<std::size_t>(end - at)));
    if (at == nullptr) return "";
    ++at;
  }
  const void* const last = std::memchr(at, delimiter, static_cast<std::size_t>(end - at));
  return std::string(at, last == nullptr ? end : static_cast<const char*>(last));
}

void BenchFields(const std::string& density, std::size_t distance) {
  const std::string source = Text(";", distance);
  const CDQString text(source);
  bench::Ratio("GetFieldCount, " + density, "memchr loop", 1.2)
      .Run([&] { bench::Keep(text.GetFieldCount(";")); },
           [&] { bench::Keep(CountByMemchr(source, ';')); });
  Require(CountByMemchr(source, ';') == static_cast<std::size_t>(text.GetFieldCount(';')),
          "GetFieldCount");

  const auto split = [&](const std::string& what, const char* delimiters, auto absl_delimiters) {
    CDQString ours;
    auto tokens = std::make_unique<dq::CStringArray>();
    auto peer = std::make_unique<std::vector<std::string>>();
    const auto run_ours = [&] { ours.Split(delimiters, *tokens); };
    const auto run_peer = [&] {
      *peer = absl::StrSplit(source, absl_delimiters, absl::SkipEmpty());
    };
    const auto prepare = [&] {
      ours = source;
      tokens = std::make_unique<dq::CStringArray>();
      peer = std::make_unique<std::vector<std::string>>();
    };
    prepare();
    run_ours();
    run_peer();
    Require(static_cast<std::size_t>(tokens->GetSize()) == peer->size(), what);
    bench::Ratio(what + ", " + density, "absl::StrSplit into vector", 1.0)
        .Run(run_ours, run_peer, prepare, 7);
  };
  split("Split", ";", ';');
  split("Split at any of four", " ,;\t", absl::ByAnyChar(" ,;\t"));
}

void BenchLastField(std::string_view delimiter, std::size_t distance, double goal) {
  std::string source;
  for (int i = 0; i < 99'999; ++i) source.append(distance - 1, 'x').append(delimiter);
  source += "last";
  const CDQString text(source);
  const std::string wanted(delimiter);
  bench::Ratio("GetField, last of 100,000, " + std::to_string(distance) + " bytes each",
               "memchr loop", goal)
      .Run([&] { bench::Keep(text.GetField(wanted.c_str(), 99'999)); },
           [&] { bench::Keep(FieldByMemchr(source, delimiter[0], 99'999)); }, 50);
  bench::Ratio("GetField by char, last of 100,000, " + std::to_string(distance) + " bytes each",
               "memchr loop", goal)
      .Run([&] { bench::Keep(text.GetField(delimiter[0], 99'999)); },
           [&] { bench::Keep(FieldByMemchr(source, delimiter[0], 99'999)); }, 50);
  Require(
      FieldByMemchr(source, delimiter[0], 99'999) == text.GetField(wanted.c_str(), 99'999).View(),
      "GetField");
}

void BenchTrim(const std::string& density, std::size_t distance) {
  const std::string source = Text(" ", distance);
  CDQString ours;
  std::string peer;
  const auto run_ours = [&] { ours.TrimWhiteSpace(); };
  const auto run_peer = [&] {
    std::string copy;
    copy.reserve(peer.size());
    for (const char character : peer) {
      if (std::isspace(static_cast<unsigned char>(character)) == 0) copy += character;
    }
    peer = std::move(copy);
  };
  const auto prepare = [&] {
    ours = source;
    peer = source;
  };
  prepare();
  run_ours();
  run_peer();
  Require(ours.View() == peer, "TrimWhiteSpace");
  bench::Ratio("TrimWhiteSpace, " + density, "one-pass copy by hand", 1.0)
      .Run(run_ours, run_peer, prepare, 7);
}

}  // namespace

int main() {
  BenchWalks();
  const std::string dense = "dense";
  const std::string sparse = "sparse";
  BenchReplace(dense, 16);
  BenchReplace(sparse, 16'384);
  BenchFields(dense, 16);
  BenchFields(sparse, 16'384);
  BenchLastField(";", 16, 1.2);
  BenchLastField(";", 160, 1.2);
  BenchTrim(dense, 16);
  BenchTrim(sparse, 16'384);
  return bench::Finish();
}
