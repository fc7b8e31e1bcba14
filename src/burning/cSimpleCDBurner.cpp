#include "burning/cSimpleCDBurner.h"

#include "platform/ErrorLog.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <signal.h>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(cSimpleCDBurner)
};

constexpr qsizetype kKept = 64 * 1024;
/// A drive that ends what it does takes its time.
constexpr Nanoseconds kPatience = 30s;

/// What both tools end with when no drive, or none that records, is there.
constexpr int kNothingThere = 32;

QByteArray All(const ChildResult& result) {
  return result.output + '\n' + result.errorOutput;
}

}  // namespace

Job<ChildResult> cSimpleCDBurner::Run(QString tool, QStringList arguments, QString folder) {
  kill_.Stop();
  ChildCommand command;
  command.program = std::move(tool);
  command.arguments = std::move(arguments);
  command.workingFolder = std::move(folder);
  // Else names with other letters are refused.
  command.environment = QStringList{QStringLiteral("LC_ALL=C.UTF-8")};
  command.keep = kKept;
  command.control = control_;
  const auto cutter = std::make_shared<LineCutter>([this](const QByteArray& line) {
    const std::optional<double> share = ShareIn(line);
    if (share && OnShare) OnShare(*share);
  });
  const auto listen = [this, cutter](const QByteArray& piece) {
    cutter->Take(piece);
    if (OnNews) OnNews();
  };
  ChildResult result = co_await RunChild(loop_, std::move(command), listen, listen);
  kill_.Stop();
  co_return result;
}

void cSimpleCDBurner::Stop() {
  control_->Send(SIGINT);
  kill_ = loop_.After(kPatience, [control = control_] { control->Send(SIGKILL); });
}

Job<std::vector<BurnDrive>> cSimpleCDBurner::Drives() {
  const ChildResult result = co_await Run(tools_.xorriso, ListDrives());
  const bool answered =
      result.started && !result.crashed && (result.exitCode == 0 || result.exitCode == kNothingThere);
  if (!answered) {
    throw Failure(QStringLiteral("Failed to instantiate CDBurn implementation"), result.exitCode,
                  QStringLiteral(".cSimpleCDBurner"));
  }
  co_return DrivesIn(All(result));
}

Job<BurnMedium> cSimpleCDBurner::LookAt(QString device) {
  const ChildResult result = co_await Run(tools_.xorriso, LookAtMedium(device));
  BurnMedium medium = MediumIn(All(result));
  medium.there = medium.there && result.exitCode == 0;
  co_return medium;
}

Job<std::int64_t> cSimpleCDBurner::ImageSectors(QString device, QString folder) {
  const ChildResult result = co_await Run(tools_.xorriso, MeasureImage(device, folder));
  co_return ImageSectorsIn(All(result)).value_or(-1);
}

Job<cSimpleCDBurner::End> cSimpleCDBurner::RunToEnd(QString tool, QStringList arguments, QString folder) {
  const QString name = tool;
  const ChildResult result = co_await Run(std::move(tool), std::move(arguments), std::move(folder));
  End end;
  end.done = result.started && !result.crashed && result.exitCode == 0;
  if (!result.started) end.why = Text::tr("%1 can't be started: %2").arg(name, result.error);
  if (result.started && !end.done) end.why = TroubleIn(All(result));
  if (!end.done && end.why.isEmpty()) end.why = Text::tr("%1 ended with %2").arg(name).arg(result.exitCode);
  co_return end;
}

Job<cSimpleCDBurner::End> cSimpleCDBurner::Burn(QString device, QString folder) {
  co_return co_await RunToEnd(tools_.xorriso, BurnFolder(device, folder));
}

Job<cSimpleCDBurner::End> cSimpleCDBurner::Compare(QString device, QString folder) {
  const ChildResult result = co_await Run(tools_.xorriso, CompareFolder(device, folder));
  End end;
  end.done = result.started && !result.crashed && result.exitCode == 0 && SaysEqual(All(result));
  if (!end.done) end.why = TroubleIn(All(result));
  co_return end;
}

Job<cSimpleCDBurner::End> cSimpleCDBurner::BurnAudioDisc(QString device, QString cueSheet) {
  // The sheet names its file without a folder.
  const QString folder = QFileInfo(cueSheet).path();
  co_return co_await RunToEnd(tools_.cdrskin, BurnAudio(device, cueSheet), folder);
}

Job<std::vector<std::int64_t>> cSimpleCDBurner::TrackStarts(QString device) {
  const ChildResult result = co_await Run(tools_.cdrskin, ReadContents(device));
  co_return TrackStartsIn(All(result));
}

}  // namespace kelvo
