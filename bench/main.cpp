// Runs every benchmark and prints, for each thing measured, ours beside the plain ways as ratios.
// A benchmark is named "<thing>:ours" or "<thing>:<plain way>"; counters named "bytes" are
// compared like times.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

struct Figure {
  std::string way;
  double nanoseconds;
  double bytes;
};

class RatioReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
      const std::string name = run.run_name.function_name;
      const std::size_t colon = name.rfind(':');
      const auto bytes = run.counters.find("bytes");
      const double iterations = static_cast<double>(run.iterations);
      figures_[name.substr(0, colon)].push_back(
          {name.substr(colon + 1), run.real_accumulated_time / iterations * 1e9,
           bytes != run.counters.end() ? static_cast<double>(bytes->second) : 0});
    }
  }

  void Finalize() override {
    std::printf("%-52s %-28s %14s %14s %8s\n", "measured", "plain way", "plain", "ours", "ratio");
    for (const auto& [thing, figures] : figures_) {
      for (const Figure& ours : figures) {
        if (ours.way == "ours") print_against(thing, ours, figures);
      }
    }
  }

 private:
  static void print_against(const std::string& thing, const Figure& ours,
                            const std::vector<Figure>& figures) {
    for (const Figure& plain : figures) {
      if (plain.way == "ours") continue;
      print_row(thing, plain.way, plain.nanoseconds, ours.nanoseconds, "ns");
      if (ours.bytes > 0) print_row(thing, plain.way, plain.bytes, ours.bytes, "B");
    }
  }

  static void print_row(const std::string& thing, const std::string& way, double plain, double ours,
                        const char* unit) {
    std::printf("%-52s %-28s %11.0f %-2s %11.0f %-2s %8.2f\n", thing.c_str(), way.c_str(), plain,
                unit, ours, unit, plain / ours);
  }

  std::map<std::string, std::vector<Figure>> figures_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
}
