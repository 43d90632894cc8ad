// The figures that a run of the benchmarks gives, next to their limits.
#ifndef KIO_BENCH_FIGURES_H
#define KIO_BENCH_FIGURES_H

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <vector>

namespace kio::bench {

enum class Bound {
  kNone,  // for information
  kAtMost,
  kAtLeast,
};

struct Figure {
  std::string name;
  double value = 0;
  const char* unit = "";
  Bound bound = Bound::kNone;
  double limit = 0;

  [[nodiscard]] bool IsMissed() const {
    return (bound == Bound::kAtMost && value > limit) ||
           (bound == Bound::kAtLeast && value < limit);
  }
};

void AddFigure(const Figure& figure);
const std::vector<Figure>& Figures();

// Prints a table to standard output.
void PrintFigures();
// Writes the figures as a JSON array. Returns false when the file cannot be written.
bool WriteFigures(const char* path);

double Median(std::vector<double> values);

// Nanoseconds that a function takes, the mean of `repeats` calls.
template <typename Function>
double MeanTime(int repeats, const Function& function) {
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < repeats; ++i) {
    function();
  }
  const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - begin;
  return time.count() / repeats;
}

// The number of calls, a power of two, that takes at least `nanoseconds`.
template <typename Function>
int RepeatsFor(double nanoseconds, const Function& function) {
  int repeats = 1;
  while (MeanTime(repeats, function) * repeats < nanoseconds && repeats < (1 << 28)) {
    repeats *= 2;
  }
  return repeats;
}

constexpr int kRounds = 51;
constexpr double kRoundTime = 100'000;

// Two functions that take turns: medians over all rounds.
struct Pair {
  double ratio = 0;  // of the first function's time to the second's
  double first = 0;  // nanoseconds of one call
  double second = 0;
};

// Each round is one iteration of `state`, whose time is that of the first function. The functions
// take turns in going first, so that not always the same one runs on the other's cache.
template <typename First, typename Second>
Pair MeasurePair(benchmark::State& state, const First& first, const Second& second) {
  const int first_repeats = RepeatsFor(kRoundTime, first);
  const int second_repeats = RepeatsFor(kRoundTime, second);
  std::vector<double> ratios;
  std::vector<double> first_times;
  std::vector<double> second_times;
  bool first_leads = true;
  for (auto round : state) {
    static_cast<void>(round);
    double first_time = 0;
    if (first_leads) {
      first_time = MeanTime(first_repeats, first);
    }
    const double second_time = MeanTime(second_repeats, second);
    if (!first_leads) {
      first_time = MeanTime(first_repeats, first);
    }
    first_leads = !first_leads;
    state.SetIterationTime(first_time * 1e-9);
    ratios.push_back(first_time / second_time);
    first_times.push_back(first_time);
    second_times.push_back(second_time);
  }
  const Pair pair{Median(ratios), Median(first_times), Median(second_times)};
  state.counters["ratio"] = pair.ratio;
  state.counters["first_ns"] = pair.first;
  state.counters["second_ns"] = pair.second;
  return pair;
}

// Registers a benchmark of paired rounds.
template <typename Function>
void RegisterPaired(const std::string& name, const Function& function) {
  benchmark::RegisterBenchmark(name.c_str(), function)->UseManualTime()->Iterations(kRounds);
}

// Contents of a file; ends the program when it cannot be read.
std::string ReadFile(const std::string& path);

// The groups of benchmarks.
void RegisterReading();
void RegisterSearch();
void RegisterExchange();
void RegisterLog();
void RegisterVariables();
void RegisterFirmware();
void RegisterAuth();

}  // namespace kio::bench

#endif
