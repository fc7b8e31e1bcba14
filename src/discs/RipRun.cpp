#include "discs/RipRun.h"

#include "database/FileRun.h"
#include "database/FolderListing.h"
#include "platform/AtomicFile.h"
#include "platform/TextFile.h"
#include "platform/Words.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace kelvo {
namespace {

const QString kNewLine = QStringLiteral("\r\n");
/// The largest bit rate of an encoded file, in bytes a second.
constexpr int kMostEncoded = 40000;

/// Whether the folder holds a file of that name, in any case of its letters.
bool IsTaken(const QString& path) {
  const QFileInfo file(path);
  if (!QFileInfo(file.path()).isDir()) return false;
  const QStringList names = ListFolder(file.path(), EntryKind::Files).names;
  return names.contains(file.fileName(), Qt::CaseInsensitive);
}

QString ModeWords(ReadMode mode) {
  switch (mode) {
    case ReadMode::Once:
      return QStringLiteral("one pass");
    case ReadMode::Twice:
      return QStringLiteral("two passes, careful reading where they differ");
    case ReadMode::Full:
      break;
  }
  return QStringLiteral("careful reading of everything");
}

QString ReadWords(const ReadFacts& facts, ReadMode mode) {
  QString words = QStringLiteral("CRC-32 %1").arg(facts.checksum, 8, 16, QLatin1Char('0')).toUpper();
  if (facts.careful > 0) {
    words += QStringLiteral(", ") +
             Counted(facts.careful, QStringLiteral("sector"), QStringLiteral("sectors")) +
             QStringLiteral(" read carefully");
  } else if (mode == ReadMode::Twice) {
    words += QStringLiteral(", both passes agree");
  }
  if (facts.unsure > 0) words += QStringLiteral(", %1 OF THEM UNSURE").arg(facts.unsure);
  return words;
}

}  // namespace

/// A track at work, off the logic's thread.
struct RipRun::Work {
  Work(std::shared_ptr<DiscDrive> disc, const RipOrder& order, const TocTrack& track, const WriterOrder& file)
      : drive(std::move(disc)),
        reading(*drive, order.toc, track, order.how.offset, order.how.mode),
        writer(order.writer.make(file)) {}

  std::shared_ptr<DiscDrive> drive;
  TrackReading reading;
  std::unique_ptr<IWaveDataWriter> writer;
};

RipRun::~RipRun() {
  if (beat_) beat_->stop = true;
  if (running_) services_.shelf->SetRipping(order_.place, false);
}

QString RipRun::Title() const {
  return QStringLiteral("CD Rip Progress ") + name_;
}

QString RipRun::PercentWords() const {
  return QLatin1Char('(') + Format0(share_ * 100) + QStringLiteral("%)");
}

void RipRun::Say(const QString& line) {
  lines_.Append({Line{line}});
  Q_EMIT Changed();
}

void RipRun::Start(RipOrder order) {
  if (running_) return;
  order_ = std::move(order);
  beat_ = std::make_shared<DriveBeat>();
  running_ = true;
  share_ = 0;
  unsure_ = 0;
  name_.clear();
  lines_.Replace({});
  const QDateTime now = services_.loop.Now();
  const QString when = now.toString(QStringLiteral("yyyy-MM-dd HH-mm-ss"));
  logPath_ = order_.utility + QLatin1Char('/') +
             FittingName(QStringLiteral("Rip ") + when + QLatin1Char(' ') + CleanPart(order_.album),
                         QStringLiteral(".log"));
  log_ = {QStringLiteral("Rip of ") + order_.place + QStringLiteral(", ") + now.toString(Qt::ISODate),
          QStringLiteral("Album: ") + order_.album,
          QStringLiteral("Read offset: %1 frames").arg(order_.how.offset),
          QStringLiteral("Reading: ") + ModeWords(order_.how.mode),
          {}};
  services_.shelf->SetRipping(order_.place, true);
  info_ = QStringLiteral("Preparing to rip ") + QString::number(order_.tracks.size()) +
          QStringLiteral(" tracks...");
  Q_EMIT Changed();
  job_ = Run();
}

void RipRun::Stop() {
  if (!running_) return;
  // The read that is under way ends by this, if its drive answers; nobody waits for it.
  beat_->stop = true;
  job_.Cancel();
  Say(QStringLiteral("Cancelled"));
  End(false);
}

void RipRun::End(bool completed) {
  running_ = false;
  services_.shelf->SetRipping(order_.place, false);
  Q_EMIT Changed();
  Q_EMIT Ended(completed);
}

Job<> RipRun::Run() {
  bool completed = false;
  QString trouble;
  try {
    const std::shared_ptr<DiscDrive> drive = co_await OpenDisc();
    for (std::size_t index = 0; index < order_.tracks.size(); ++index) co_await RipTrack(drive, index);
    completed = true;
  } catch (const std::exception& failure) {
    trouble = QStringLiteral("An error occurred during ripping; ") + QString::fromUtf8(failure.what());
    NoteInLog(trouble);
  }
  if (!completed) {
    Say(trouble);
    Prompt message;
    message.text = trouble;
    message.icon = PromptIcon::Critical;
    services_.prompter.Tell(message);
  }
  End(completed);
}

Job<std::shared_ptr<DiscDrive>> RipRun::OpenDisc() {
  const auto open = [drives = services_.shelf->Drives(), place = order_.place, listed = order_.toc,
                     speed = order_.how.speed, beat = beat_]() -> std::shared_ptr<DiscDrive> {
    std::shared_ptr<DiscDrive> drive = drives->Open(place, beat);
    if (drive->ReadToc() != listed) {
      throw DriveFailure(DriveFailure::Kind::Refused,
                         tr("Another disc is in the drive than the one that is listed."), place);
    }
    drive->SetSpeed(speed);
    return drive;
  };
  std::shared_ptr<DiscDrive> drive = co_await services_.shelf->Calls().Do(order_.place, open);
  co_return drive;
}

void RipRun::ShowTrack(std::size_t index, const QString& target) {
  const cTrack& track = order_.tracks[index].named;
  name_ = track.name;
  share_ = 0;
  info_ = QStringLiteral("Ripping To Utility Folder : Track ") + QString::number(index + 1) +
          QStringLiteral(" of ") + QString::number(order_.tracks.size()) + QStringLiteral(" (") +
          RipRows::Text(track, RipRows::Length) + QStringLiteral(") As: ") + QFileInfo(target).fileName() +
          kNewLine + QStringLiteral(" Artist= ") + track.artist + kNewLine + QStringLiteral("Year= ") +
          track.year + kNewLine + QStringLiteral(" Track Name: ") + track.name + kNewLine +
          QStringLiteral(" Into Album ") + order_.album;
  Q_EMIT Changed();
}

Job<> RipRun::MakeRoom(QString target, std::int64_t bytes) {
  const auto make = [target, bytes, utility = order_.utility] {
    const QString folder = QFileInfo(target).path();
    if (!QDir().mkpath(folder)) throw Failure(tr("Cannot make the folder ") + folder, 0, folder);
    return HasRoomFor(utility, bytes);
  };
  const bool fits = co_await services_.loop.Offload(EventLoop::Lane::Apart, make);
  if (fits) co_return;
  const QString room = co_await RoomWords(services_.loop, order_.utility);
  throw Failure(QStringLiteral("Cannot Continue...Not Enough Free Disc Space on Drive ") + order_.utility +
                kNewLine + room);
}

Job<> RipRun::RipTrack(std::shared_ptr<DiscDrive> drive, std::size_t index) {
  const RipOrder::Track& track = order_.tracks[index];
  const cTrack& named = track.named;
  const QString target =
      order_.utility + QLatin1Char('/') + named.FileName(order_.album, order_.fFormat) + order_.writer.ending;
  ShowTrack(index, target);
  const auto look = [target] { return IsTaken(target); };
  const bool taken = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  bool whole = false;
  ReadFacts facts;
  if (!taken) {
    const std::int64_t second =
        order_.writer.ending.compare(QLatin1StringView(".Wav"), Qt::CaseInsensitive) == 0
            ? std::int64_t{kCdSectorBytes} * kCdSectorsPerSecond
            : kMostEncoded;
    co_await MakeRoom(target, second * (named.track.sectors / kCdSectorsPerSecond + 1));
    const WriterOrder file{target, order_.presets};
    const auto begin = [drive, order = order_, track = named.track, file] {
      return std::make_shared<Work>(drive, order, track, file);
    };
    const std::shared_ptr<Work> work = co_await services_.loop.Offload(EventLoop::Lane::Apart, begin);
    facts = co_await ReadAndWrite(work);
    const auto finish = [work] { return work->writer->Finish(); };
    whole = co_await services_.loop.Offload(EventLoop::Lane::Apart, finish);
  }
  const QString number = QStringLiteral("Track %1: ").arg(named.track.number, 2, 10, QLatin1Char('0'));
  if (!whole) {
    Prompt refusal;
    refusal.text = QStringLiteral("Cannot Rip ") + named.name +
                   QStringLiteral("...As It Already Exists, This File Cannot be Processed !") + kNewLine +
                   QStringLiteral("Please Either Rename the Source or the Destination file !");
    refusal.icon = PromptIcon::Exclamation;
    services_.prompter.Tell(refusal);
    Say(refusal.text.section(kNewLine, 0, 0));
    Q_EMIT Through(track.row, RipMark::InUtility, {});
    const QStringList passed{number + target, QStringLiteral("  not ripped: a file of this name was there")};
    co_await Log(passed);
    co_return;
  }
  unsure_ += facts.unsure;
  services_.catalogue.AddStagedFile(target);
  Say(QStringLiteral("Completed track ") + named.name);
  Q_EMIT Through(track.row, RipMark::Done, ReadWords(facts, order_.how.mode));
  QStringList lines{number + target,
                    QStringLiteral("  ") +
                        Counted(named.track.sectors, QStringLiteral("sector"), QStringLiteral("sectors")) +
                        QStringLiteral(", ") + ReadWords(facts, order_.how.mode)};
  if (named.track.preEmphasis)
    lines.append(QStringLiteral("  recorded with pre-emphasis, which the file keeps"));
  co_await Log(lines);
}

Job<ReadFacts> RipRun::ReadAndWrite(std::shared_ptr<Work> work) {
  const auto step = [work] {
    const std::vector<std::int16_t> samples = work->reading.Next();
    if (!samples.empty()) work->writer->Write(samples);
    return work->reading.AtEnd();
  };
  bool atEnd = work->reading.AtEnd();
  while (!atEnd) {
    atEnd = co_await services_.shelf->Calls().Do(order_.place, step, beat_);
    share_ = work->reading.Share();
    Q_EMIT Changed();
  }
  co_return work->reading.Facts();
}

Job<> RipRun::Log(QStringList lines) {
  log_ += lines;
  try {
    const auto write = [path = logPath_, bytes = TextFile(log_).ToBytes()] { ReplaceFile(path, bytes); };
    co_await services_.loop.Offload(EventLoop::Lane::Files, write);
  } catch (const Failure& failure) {
    NoteInLog(tr("The log of the rip could not be written: ") + QString::fromUtf8(failure.what()));
  }
}

}  // namespace kelvo
