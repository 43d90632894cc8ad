// Runs the benchmarks and prints the figures next to their limits.
//
//     kio_bench [--figures=FILE] [options of Google Benchmark]
//
// Ends with status 1 when a limit is missed.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "figures.h"
#include "kioapp/log.h"

namespace {

constexpr char kFiguresOption[] = "--figures=";

// The log of the exchanges, in a directory of this run's own.
class LogDirectory {
 public:
  LogDirectory() : path_(std::filesystem::temp_directory_path() / "kio_bench.XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr || path_.size() >= sizeof(daemon_log_path)) {
      std::perror("kio_bench");
      std::exit(1);
    }
    std::snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", path_.c_str());
    // So large that the log file is not rotated within a measurement.
    daemon_log_file_size_k = 1024 * 1024;
  }
  ~LogDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  LogDirectory(const LogDirectory&) = delete;
  LogDirectory& operator=(const LogDirectory&) = delete;

 private:
  std::string path_;
};

}  // namespace

int main(int argc, char** argv) {
  const LogDirectory log;
  const char* figures_file = nullptr;
  for (int i = 1; i < argc; ++i) {
    if (std::strncmp(argv[i], kFiguresOption, sizeof(kFiguresOption) - 1) == 0) {
      figures_file = argv[i] + sizeof(kFiguresOption) - 1;
      std::rotate(argv + i, argv + i + 1, argv + argc);
      --argc;
      break;
    }
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 2;
  }
  kio::bench::RegisterReading();
  kio::bench::RegisterSearch();
  kio::bench::RegisterExchange();
  kio::bench::RegisterLog();
  kio::bench::RegisterVariables();
  kio::bench::RegisterFirmware();
  kio::bench::RegisterAuth();
  benchmark::RunSpecifiedBenchmarks();
  kio::bench::PrintFigures();
  if (figures_file != nullptr && !kio::bench::WriteFigures(figures_file)) {
    std::fprintf(stderr, "cannot write %s\n", figures_file);
    return 2;
  }
  const auto& figures = kio::bench::Figures();
  return std::any_of(figures.begin(), figures.end(),
                     [](const kio::bench::Figure& figure) { return figure.IsMissed(); })
             ? 1
             : 0;
}
