#include "console/AutoSoak.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTemporaryDir>

#include <malloc.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <map>
#include <string>

/// Days of automatic play on the joined desk in simulated time with faults by chance, compared ten times a
/// second with what the rules of automatic play say. The figures come last; it fails on anything that must
/// not be.
namespace kelvo {
namespace {

using testing::RunSoak;
using testing::SoakMode;
using testing::SoakOptions;
using testing::SoakResult;

constexpr int kDay = 24 * 3600;

const std::map<std::string, SoakMode>& Modes() {
  static const std::map<std::string, SoakMode> modes{{"kelvo", SoakMode::Kelvo},
                                                     {"jukebox", SoakMode::Jukebox},
                                                     {"preview", SoakMode::Preview},
                                                     {"random", SoakMode::Random}};
  return modes;
}

double KilobytesInUse() {
  return static_cast<double>(mallinfo2().uordblks) / 1024;
}

struct Totals {
  SoakResult sums;
  double growth = 0;  ///< kilobytes, the most of all runs
  double simulated = 0;
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
  std::cout << name << ", seed " << options.seed << ": " << result.starts << " starts, "
            << result.startsCompared << " compared, " << result.startsExcused << " excused (";
  for (const auto& [reason, starts] : result.excuses)
    std::cout << reason.toStdString() << ' ' << starts << ", ";
  std::cout << "), " << result.faults << " faults, " << result.skipped
            << " skipped, longest unexplained silence " << result.longestSilence << " s, excused "
            << result.ExcusedSeconds() << " s, memory " << late - early << " kB\n";
  for (const QString& violation : result.violations) {
    std::cout << name << ", seed " << options.seed << ": VIOLATION: " << violation.toStdString() << '\n';
  }
  SoakResult& sums = totals.sums;
  sums.faults += result.faults;
  sums.starts += result.starts;
  sums.startsCompared += result.startsCompared;
  sums.startsExcused += result.startsExcused;
  sums.skipped += result.skipped;
  sums.violationCount += result.violationCount;
  sums.longestSilence = std::max(sums.longestSilence, result.longestSilence);
  for (const auto& [reason, seconds] : result.silences) sums.silences[reason] += seconds;
  totals.growth = std::max(totals.growth, late - early);
  totals.simulated += options.seconds;
}

void Print(const Totals& totals, double days, const QString& seed, double passed) {
  const SoakResult& sums = totals.sums;
  std::cout << "soak.days: " << days << "\nsoak.seed: " << seed.toStdString()
            << "\nsoak.faults: " << sums.faults << "\nsoak.starts: " << sums.starts
            << "\nsoak.starts_compared: " << sums.startsCompared
            << "\nsoak.starts_excused: " << sums.startsExcused << "\nsoak.skipped: " << sums.skipped
            << "\nsoak.violations: " << sums.violationCount
            << "\nsoak.longest_silence_s: " << sums.longestSilence << "\nsoak.longest_unplanned_silence_s: "
            << std::max(sums.longestSilence - testing::kSilenceBound, 0.0)
            << "\nsoak.silence_bound_s: " << testing::kSilenceBound
            << "\nsoak.excused_s: " << std::llround(sums.ExcusedSeconds()) << '\n';
  for (const auto& [reason, seconds] : sums.silences) {
    const QString name = QString(reason).replace(QLatin1Char(' '), QLatin1Char('_'));
    std::cout << "soak.excused_s." << name.toStdString() << ": " << std::llround(seconds) << '\n';
  }
  std::cout << "soak.sim_s_per_s: " << static_cast<long long>(totals.simulated / passed)
            << "\nsoak.memory_growth_kb: " << totals.growth << '\n';
}

int Run(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.addHelpOption();
  parser.addOption({QStringLiteral("days"), QStringLiteral("Simulated days a mode."), QStringLiteral("days"),
                    QStringLiteral("7")});
  parser.addOption({QStringLiteral("seed"), QStringLiteral("Of all that happens by chance."),
                    QStringLiteral("seed"), QStringLiteral("1")});
  parser.addOption({QStringLiteral("seeds"), QStringLiteral("So many seeds, from that one on."),
                    QStringLiteral("seeds"), QStringLiteral("1")});
  parser.addOption({QStringLiteral("mode"), QStringLiteral("kelvo, jukebox, preview, random or all."),
                    QStringLiteral("mode"), QStringLiteral("all")});
  parser.process(arguments);
  const double days = parser.value(QStringLiteral("days")).toDouble();
  const auto seed = parser.value(QStringLiteral("seed")).toULongLong();
  const auto seeds = parser.value(QStringLiteral("seeds")).toULongLong();
  const std::string wanted = parser.value(QStringLiteral("mode")).toStdString();

  Totals totals;
  const auto start = std::chrono::steady_clock::now();
  for (std::uint64_t each = seed; each < seed + seeds; ++each) {
    for (const auto& [name, mode] : Modes()) {
      if (wanted != "all" && wanted != name) continue;
      SoakOptions options;
      options.seconds = static_cast<int>(days * kDay);
      options.seed = each;
      options.mode = mode;
      Soak(name, options, totals);
    }
  }
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
  Print(totals, days, parser.value(QStringLiteral("seed")), passed.count());
  return totals.simulated > 0 && totals.sums.violationCount == 0 ? 0 : 1;
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  qputenv("QT_LOGGING_RULES", "kelvo.*=false");
  return kelvo::Run(QCoreApplication::arguments());
}
