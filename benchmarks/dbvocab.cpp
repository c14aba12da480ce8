// Speed of quoting names and of comparing versions, against careful code by hand. Each platform has
// a process of its own, since the first one of a process sets the reserved words of all.

#include <absl/container/flat_hash_set.h>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "benchmarks/ratio.h"
#include "dqlib/dbvocab/quote_name.h"
#include "dqlib/dbvocab/version_string.h"
#include "dqlib/resources/string_table.h"
#include "siblings/options/options_server.h"

namespace {

std::size_t allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

constexpr std::size_t kNames = 1'000'000;

/// Ends the program if it doesn't hold.
void Require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(2);
}

/// What a programmer with a good hash set writes: a loop over the characters and a look at the
/// words with an upper-case copy.
class ByHand {
 public:
  ByHand(std::string first, std::string other, dq::UINT words, bool upper_only, const char* quotes)
      : first_(std::move(first)),
        other_(std::move(other)),
        upper_only_(upper_only),
        open_(quotes[0]),
        close_(quotes[1]) {
    std::string_view list = dq::LibraryResources().String(words).value_or("");
    while (!list.empty()) {
      const std::size_t comma = std::min(list.find(','), list.size());
      if (comma > 0) words_.emplace(list.substr(0, comma));
      list.remove_prefix(std::min(comma + 1, list.size()));
    }
  }

  bool NeedsQuotes(const std::string& name) const {
    bool is_first = true;
    for (const char each : name) {
      const auto byte = static_cast<unsigned char>(each);
      if (std::isalpha(byte) != 0) {
        if (upper_only_ && std::islower(byte) != 0) return true;
      } else if ((is_first || std::isdigit(byte) == 0) &&
                 (is_first ? first_ : other_).find(each) == std::string::npos) {
        return true;
      }
      is_first = false;
    }
    if (words_.empty()) return false;
    std::string upper = name;
    for (char& each : upper) {
      each = static_cast<char>(std::toupper(static_cast<unsigned char>(each)));
    }
    return words_.contains(upper);
  }

  void Quote(std::string& name) const {
    if (!NeedsQuotes(name)) return;
    name.reserve(name.size() + 2);
    name.insert(name.begin(), open_);
    name += close_;
  }

 private:
  std::string first_;
  std::string other_;
  bool upper_only_;
  char open_;
  char close_;
  absl::flat_hash_set<std::string> words_;
};

/// Names as catalogues have them: of words, some with numbers; one in 33 is reserved, one in 25 has
/// a blank or a hyphen, and one in 10 is in lower case, or all but one in 10 where `lower`.
std::vector<std::string> Names(bool lower, dq::UINT words) {
  const char* const parts[] = {"ORDER", "LINE",  "CUSTOMER", "ID",   "ADDRESS", "INVOICE", "ITEM",
                               "PRICE", "EMP",   "DEPT",     "CODE", "STATUS",  "HIST",    "LOG",
                               "USR",   "STOCK", "TYPE",     "NAME", "QTY",     "REGION"};
  std::vector<std::string> reserved;
  std::string word;
  for (const char each : dq::LibraryResources().String(words).value_or("")) {
    if (each != ',') {
      word += each;
    } else {
      reserved.push_back(std::exchange(word, {}));
    }
  }
  unsigned state = 1;
  const auto random = [&](std::size_t below) {
    state = state * 214013 + 2531011;
    return (state >> 16) % below;
  };
  std::vector<std::string> names;
  names.reserve(kNames);
  while (names.size() < kNames) {
    std::string name = parts[random(std::size(parts))];
    for (std::size_t more = random(3); more > 0; --more) {
      name.append("_").append(parts[random(std::size(parts))]);
    }
    if (random(4) == 0) name += std::to_string(random(1000));
    if (random(25) == 0) name[name.size() / 2] = random(2) == 0 ? ' ' : '-';
    if (random(33) == 0) name = reserved[random(reserved.size())];
    if ((random(10) == 0) != lower) {
      for (char& each : name) {
        each = static_cast<char>(std::tolower(static_cast<unsigned char>(each)));
      }
    }
    names.push_back(std::move(name));
  }
  return names;
}

template <typename Quoting>
void BenchQuoting(const std::string& platform, const std::vector<std::string>& names,
                  const ByHand& peer) {
  Quoting quoting;
  std::vector<std::string> ours;
  std::vector<std::string> theirs;
  std::size_t needing = 0;
  // Once, so that the registry is open.
  bench::Keep(quoting.NeedsQuotes("order lines"));
  const auto run = [&](auto& quoter, std::vector<std::string>& texts) {
    for (std::string& each : texts) {
      needing += quoter.NeedsQuotes(each) ? 1 : 0;
      quoter.Quote(each);
    }
  };
  const auto run_ours = [&] { run(quoting, ours); };
  const auto run_peer = [&] { run(peer, theirs); };
  const auto prepare = [&] {
    ours = names;
    theirs = names;
  };
  prepare();
  run_ours();
  run_peer();
  Require(ours == theirs, platform + ": the results differ");
  std::size_t most = 0;
  for (const std::string& each : names) {
    std::string* const text = &ours.front();
    *text = each;
    const std::size_t copied = allocations;
    quoting.Quote(*text);
    if (text->size() == each.size()) most = std::max(most, allocations - copied);
  }
  Require(most == 0, platform + ": a name without quotes took memory");
  const std::string share = std::to_string(needing / 2 * 100 / kNames);
  bench::Ratio("1,000,000 names, " + platform + ", " + share + " % quoted", "absl::flat_hash_set",
               1.0)
      .Run(run_ours, run_peer, prepare, 5);
}

/// Runs the work in a process of its own and counts its misses.
template <typename Work>
void InOwnProcess(Work work) {
  std::fflush(stdout);
  const pid_t child = ::fork();
  if (child == 0) {
    work();
    std::exit(bench::Finish());
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child || status != 0) ++bench::Misses();
}

void BenchVersions() {
  constexpr int kTimes = 1'000'000;
  const char* const texts[] = {"8.1.7.0.0", "9.2.0.1.0", "10.2.0.4.0", "7.3.4.0.0"};
  const double numbers[] = {8.1, 9.0, 10.2, 8.17};
  const auto run_ours = [&] {
    int count = 0;
    for (std::size_t i = 0; i < kTimes; ++i) {
      const auto& version = dq::GetCachedDBMSVersion(texts[i % 4], dq::DBMS_ORACLE);
      count += version >= numbers[i / 4 % 4] ? 1 : 0;
    }
    return count;
  };
  // The same without a cache: the text is cut and read each time.
  const auto run_peer = [&] {
    int count = 0;
    for (std::size_t i = 0; i < kTimes; ++i) {
      const std::string_view text = texts[i % 4];
      const double number = numbers[i / 4 % 4];
      char digits[64];
      const auto end = std::to_chars(digits, digits + 32, number, std::chars_format::fixed, 6).ptr;
      std::size_t length =
          std::string_view(digits, static_cast<std::size_t>(end - digits)).find_last_not_of('0') +
          1;
      if (digits[length - 1] == '.') ++length;
      const std::size_t dot = text.find('.');
      char cut[64];
      std::size_t size = text.copy(cut, dot + 1);
      for (const char each : text.substr(dot)) {
        if (each != '.' && size < dot + 4) cut[size++] = each;
      }
      double version = 0;
      std::from_chars(cut, cut + std::min(size, length), version);
      count += version >= number ? 1 : 0;
    }
    return count;
  };
  Require(run_ours() == run_peer(), "versions: the results differ");
  const std::size_t before = allocations;
  bench::Keep(run_ours());
  const bool took_none = allocations == before;
  Require(took_none, "versions: a comparison took memory");
  bench::Ratio("1,000,000 cached versions, each compared", "parsed anew each time", 1.0)
      .Run([&] { bench::Keep(run_ours()); }, [&] { bench::Keep(run_peer()); });
}

}  // namespace

int main() {
  const auto directory =
      std::filesystem::temp_directory_path() / ("dbvocab_bench." + std::to_string(::getpid()));
  ::setenv("XDG_CONFIG_HOME", directory.c_str(), 1);
  constexpr dq::UINT kSqlServer = 43989;
  constexpr dq::UINT kSybase = 43991;
  constexpr dq::UINT kOracle = 43985;
  InOwnProcess([] {
    BenchQuoting<dq::SS7QuoteName>("SQL Server", Names(true, kSqlServer),
                                   ByHand("_@#", "_@#$", kSqlServer, false, "[]"));
  });
  InOwnProcess([] {
    BenchQuoting<dq::SybaseQuoteName>("Sybase", Names(true, kSybase),
                                      ByHand("_@#", "_@#$\xA5\xA3", kSybase, false, "\"\""));
  });
  InOwnProcess([] {
    BenchQuoting<dq::OracleQuoteName>("Oracle", Names(false, kOracle),
                                      ByHand("", "_$#()", kOracle, false, "\"\""));
  });
  InOwnProcess([] {
    BenchQuoting<dq::DB2QuoteName>("DB2", Names(false, kOracle), ByHand("", "_.", 0, true, "\"\""));
  });
  InOwnProcess([] {
    BenchQuoting<dq::DB2OS390QuoteName>("DB2 OS/390", Names(false, kOracle),
                                        ByHand("", "_.", 0, true, "\"\""));
  });
  InOwnProcess(BenchVersions);
  std::error_code ignored;
  std::filesystem::remove_all(directory, ignored);
  return bench::Finish();
}
