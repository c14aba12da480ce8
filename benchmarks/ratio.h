// Speed against a peer: both do the same work in the same run, in turn, and the ratio is printed.
//
//   int main() {
//     bench::Ratio("FindReplace of all hits, 16 MiB", "abseil StrReplaceAll", 1.5)
//         .Run([&] { ... our work ... }, [&] { ... the peer's ... });
//     return bench::Finish();
//   }

#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <utility>

namespace bench {

/// Keeps the optimiser from dropping a result.
template <typename T>
inline void Keep(const T& value) {
  asm volatile("" : : "g"(&value) : "memory");
}

inline int& Misses() {
  static int misses = 0;
  return misses;
}

/// One comparison. `goal` is the highest ratio of our time to the peer's that is asked for; 0 asks
/// for nothing and just prints.
class Ratio {
 public:
  Ratio(std::string name, std::string peer, double goal)
      : name_(std::move(name)), peer_(std::move(peer)), goal_(goal) {}

  /// Runs both in turn until each has had `rounds` rounds and at least half a second, and compares
  /// the best round of each. `prepare`, if given, runs untimed before each round.
  template <typename Ours, typename Peer>
  void Run(Ours ours, Peer peer, int rounds = 5) const {
    Run(
        ours, peer, [] {}, rounds);
  }
  template <typename Ours, typename Peer, typename Prepare>
  void Run(Ours ours, Peer peer, Prepare prepare, int rounds) const {
    using Clock = std::chrono::steady_clock;
    const auto time = [&](auto& work) {
      prepare();
      const auto start = Clock::now();
      work();
      return std::chrono::duration<double>(Clock::now() - start).count();
    };
    double best_ours = 1e300;
    double best_peer = 1e300;
    double total = 0;
    for (int round = 0; round < rounds || total < 1.0; ++round) {
      const double mine = time(ours);
      const double theirs = time(peer);
      best_ours = std::min(best_ours, mine);
      best_peer = std::min(best_peer, theirs);
      total += mine + theirs;
    }
    const double ratio = best_ours / best_peer;
    const bool met = goal_ == 0 || ratio <= goal_;
    if (!met) ++Misses();
    std::printf("%-58s %10.3f ms  %-32s %10.3f ms  ratio %6.2f  ", name_.c_str(), best_ours * 1e3,
                peer_.c_str(), best_peer * 1e3, ratio);
    if (goal_ == 0) {
      std::printf("(no goal)\n");
    } else {
      std::printf("goal %.2f  %s\n", goal_, met ? "met" : "MISSED");
    }
    std::fflush(stdout);
  }

 private:
  std::string name_;
  std::string peer_;
  double goal_;
};

/// The program's exit status: 1 if a goal was missed.
inline int Finish() { return Misses() == 0 ? 0 : 1; }

}  // namespace bench
