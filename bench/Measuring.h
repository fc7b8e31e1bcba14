#pragma once

#include "platform/EventLoop.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <functional>

namespace kelvo {

[[nodiscard]] inline double Milliseconds(Nanoseconds time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

/// Does things on the running loop and takes their time, with a beat that notes how long it had to wait.
class Stopwatch {
 public:
  explicit Stopwatch(EventLoop& loop) : loop_(loop) {}

  /// Milliseconds until `done` says so.
  double Time(const std::function<void()>& work, const std::function<bool()>& done) {
    const Nanoseconds start = loop_.Elapsed();
    Nanoseconds lastBeat = start;
    const auto note = [&] {
      longestHold = std::max(longestHold, Milliseconds(loop_.Elapsed() - lastBeat));
      lastBeat = loop_.Elapsed();
    };
    const Timer beat = loop_.Every(std::chrono::milliseconds(1), note);
    work();
    while (!done()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double taken = Milliseconds(loop_.Elapsed() - start);
    note();
    return taken;
  }

  double longestHold = 0;

 private:
  EventLoop& loop_;
};

/// The entry of a program that measures over a library of `--tracks` tracks, 100,000 when it isn't told.
inline int MeasureTracks(int argc, char** argv, const std::function<void(int tracks)>& run) {
  const QCoreApplication application(argc, argv);
  QCommandLineParser arguments;
  const QCommandLineOption tracks(QStringLiteral("tracks"), QStringLiteral("How many tracks."),
                                  QStringLiteral("number"), QStringLiteral("100000"));
  arguments.addOption(tracks);
  arguments.addHelpOption();
  arguments.process(application);
  run(std::max(arguments.value(tracks).toInt(), 100));
  return 0;
}

}  // namespace kelvo
