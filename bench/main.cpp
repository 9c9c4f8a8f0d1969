// Runs every benchmark and prints, for each thing measured, ours beside the plain ways as ratios.
// A benchmark is named "<thing>:ours" or "<thing>:<plain way>"; counters named "bytes" are
// compared like times. A plain way's counters "goal" and "bytes goal" are printed beside its rows:
// the ratio that is to be reached, and the bytes that ours may take.
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
  double goal;
  double bytes_goal;
};

class RatioReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
      const std::string name = run.run_name.function_name;
      const std::size_t colon = name.rfind(':');
      const auto counter = [&run](const char* counter_name) {
        const auto found = run.counters.find(counter_name);
        return found != run.counters.end() ? static_cast<double>(found->second) : 0;
      };
      const double iterations = static_cast<double>(run.iterations);
      figures_[name.substr(0, colon)].push_back(
          {name.substr(colon + 1), run.real_accumulated_time / iterations * 1e9, counter("bytes"),
           counter("goal"), counter("bytes goal")});
    }
  }

  void Finalize() override {
    std::printf("%-52s %-28s %14s %14s %8s %8s\n", "measured", "plain way", "plain", "ours",
                "ratio", "goal");
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
      print_row(thing, plain.way, plain.nanoseconds, ours.nanoseconds, "ns", plain.goal);
      if (ours.bytes == 0 || plain.bytes == 0) continue;
      print_row(thing, plain.way, plain.bytes, ours.bytes, "B", plain.bytes_goal);
    }
  }

  static void print_row(const std::string& thing, const std::string& way, double plain, double ours,
                        const char* unit, double goal) {
    std::printf("%-52s %-28s %11.0f %-2s %11.0f %-2s %8.2f", thing.c_str(), way.c_str(), plain,
                unit, ours, unit, plain / ours);
    if (goal > 0) std::printf(" %8.2f", goal);
    std::printf("\n");
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
