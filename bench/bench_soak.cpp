#include "console/AutoSoak.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTemporaryDir>

#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <map>
#include <string>

/// Days of automatic play in simulated time with faults by chance, every second checked. The figures come
/// last; it fails when the desk was in a state that must not be, or silent beyond the bound.
namespace kelvo {
namespace {

using testing::RunSoak;
using testing::SoakOptions;
using testing::SoakResult;

constexpr int kDay = 24 * 3600;

const std::map<std::string, SoakOptions>& Modes() {
  static const std::map<std::string, SoakOptions> modes{
      {"kelvo", {kDay, 1, AutoMode::Kelvo, false, nullptr}},
      {"jukebox", {kDay, 1, AutoMode::Jukebox, false, nullptr}},
      {"preview", {kDay, 1, AutoMode::Preview, false, nullptr}},
      {"random", {kDay, 1, AutoMode::Kelvo, true, nullptr}},
  };
  return modes;
}

double KilobytesInUse() {
  return static_cast<double>(mallinfo2().uordblks) / 1024;
}

struct Totals {
  SoakResult sums;
  double growth = 0;  ///< kilobytes, the most of all modes
};

void Soak(const std::string& name, SoakOptions options, Totals& totals) {
  const QTemporaryDir folder;
  // The first tenth fills what is kept on purpose: marks of bad files, pictures of rows.
  double early = 0;
  double late = 0;
  options.OnSecond = [&early, &late, seconds = options.seconds](int second) {
    if (second == seconds / 10) early = KilobytesInUse();
    if (second == seconds - 1) late = KilobytesInUse();
  };
  const SoakResult result = RunSoak(folder.path(), options);
  std::cout << name << ": " << result.starts << " starts, " << result.faults << " faults, " << result.skipped
            << " skipped, longest unexplained silence " << result.longestSilence << " s, excused "
            << result.excusedSeconds << " s, memory " << late - early << " kB\n";
  for (const QString& violation : result.violations) {
    std::cout << name << ": WRONG: " << violation.toStdString() << '\n';
  }
  totals.growth = std::max(totals.growth, late - early);
  totals.sums.faults += result.faults;
  totals.sums.starts += result.starts;
  totals.sums.skipped += result.skipped;
  totals.sums.longestSilence = std::max(totals.sums.longestSilence, result.longestSilence);
  totals.sums.violations += result.violations;
}

int Run(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.addHelpOption();
  parser.addOption({QStringLiteral("days"), QStringLiteral("Simulated days a mode."), QStringLiteral("days"),
                    QStringLiteral("7")});
  parser.addOption({QStringLiteral("seed"), QStringLiteral("Of all that happens by chance."),
                    QStringLiteral("seed"), QStringLiteral("1")});
  parser.addOption({QStringLiteral("mode"), QStringLiteral("kelvo, jukebox, preview, random or all."),
                    QStringLiteral("mode"), QStringLiteral("all")});
  parser.process(arguments);
  const double days = parser.value(QStringLiteral("days")).toDouble();
  const auto seed = parser.value(QStringLiteral("seed")).toULongLong();
  const std::string mode = parser.value(QStringLiteral("mode")).toStdString();

  Totals totals;
  double simulated = 0;
  const auto start = std::chrono::steady_clock::now();
  for (const auto& [name, standard] : Modes()) {
    if (mode != "all" && mode != name) continue;
    SoakOptions options = standard;
    options.seconds = static_cast<int>(days * kDay);
    options.seed = seed;
    simulated += options.seconds;
    Soak(name, options, totals);
  }
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
  const int beyond = std::max(totals.sums.longestSilence - testing::kSilenceBound, 0);
  std::cout << "soak.days: " << days << "\nsoak.seed: " << seed << "\nsoak.faults: " << totals.sums.faults
            << "\nsoak.starts: " << totals.sums.starts << "\nsoak.skipped: " << totals.sums.skipped
            << "\nsoak.violations: " << totals.sums.violations.size()
            << "\nsoak.longest_silence_s: " << totals.sums.longestSilence
            << "\nsoak.longest_unplanned_silence_s: " << beyond
            << "\nsoak.silence_bound_s: " << testing::kSilenceBound
            << "\nsoak.sim_s_per_s: " << static_cast<long long>(simulated / passed.count())
            << "\nsoak.memory_growth_kb: " << totals.growth << '\n';
  return simulated > 0 && totals.sums.violations.isEmpty() && beyond == 0 ? 0 : 1;
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  qputenv("QT_LOGGING_RULES", "kelvo.*=false");
  return kelvo::Run(QCoreApplication::arguments());
}
