// How a BurnList writes a disc.

#include "burning/BurnList.h"
#include "platform/BesideFile.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFileInfo>

namespace kelvo {

namespace {

constexpr double kSectorBytesOfData = 2048;
constexpr double kMegabyte = 1048576;
/// What an image takes beside its files.
constexpr std::int64_t kImageSpare = 4 << 20;

/// The share of the whole that the writing is; the rest is the reading back, or the sound before it.
constexpr double kWriting = 0.7;

QString Megabytes(std::int64_t sectors) {
  return Format000(static_cast<double>(sectors) * kSectorBytesOfData / kMegabyte);
}

DiscTrack TrackOf(const BurnRow& row) {
  const QString name = BaseName(row.name).trimmed();
  const QString between = QStringLiteral(" - ");
  const qsizetype at = name.indexOf(between);
  if (at < 0) return {row.path, {}, name};
  return {row.path, name.left(at).trimmed(), name.mid(at + between.size()).trimmed()};
}

/// The file of the sectors that a sheet tells of.
QString SectorsFileOf(const QString& sheet) {
  const QFileInfo facts(sheet);
  return facts.path() + QLatin1Char('/') + BaseName(facts.fileName()) + QStringLiteral(".bin");
}

/// Files that go when the work is over.
class Scratch {
 public:
  explicit Scratch(QStringList paths) : paths_(std::move(paths)) {}
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() {
    for (const QString& path : paths_) QFile::remove(path);
  }

 private:
  QStringList paths_;
};

}  // namespace

QString BurnList::WhyNoBurn() const {
  if (busy_) return tr("The burner is at work");
  if (kind_ == BurnKind::Audio && rows_.Count() == 0) return tr("The list is empty");
  if (ToImage() && !QFileInfo(image_).isAbsolute()) return tr("The image needs a folder and a name");
  return {};
}

void BurnList::Burn() {
  if (!WhyNoBurn().isEmpty()) return;
  if (kind_ == BurnKind::Data && StagedBytes() == 0) {
    services_.prompter.Tell(
        {QStringLiteral("No Files Selected To Burn ! "), {}, Buttons::Ok, PromptIcon::Exclamation});
    return;
  }
  work_ = RunBurn();
}

void BurnList::Stop() {
  if (!busy_ || stopping_) return;
  stopping_ = true;
  if (copy_) copy_->stop = true;
  if (disc_) disc_->stop = true;
  burner_.Stop();
  Say(tr("Stopping..."));
}

Job<> BurnList::RunBurn() {
  Begin(tr("Looking at the disc..."));
  try {
    if (kind_ == BurnKind::Data) {
      co_await BurnData();
    } else {
      co_await BurnMusic();
    }
  } catch (const std::exception& failure) {
    if (!stopping_) Fail(QString::fromUtf8(failure.what()));
  }
  if (busy_) Finish(stopping_ ? tr("Stopped") : QString());
}

Job<std::optional<BurnMedium>> BurnList::UsableMedium(QString device) {
  const BurnMedium medium = co_await burner_.LookAt(device);
  if (!medium.there) {
    Fail(tr("No disc that can be written is in the drive."));
    co_return std::nullopt;
  }
  if (!medium.writable) {
    Fail(tr("The disc in the drive is written and can't be written again."));
    co_return std::nullopt;
  }
  if (!medium.blank) {
    Prompt question{tr("The Disc Is Not Blank : All That It Holds Will Be Lost !\r\nContinue ?"),
                    {},
                    Buttons::YesNo,
                    PromptIcon::Exclamation,
                    Answer::No};
    const Answer answer = co_await services_.prompter.Ask(std::move(question));
    if (answer != Answer::Yes) {
      Finish(tr("The disc was not written"));
      co_return std::nullopt;
    }
  }
  co_return medium;
}

Job<bool> BurnList::MayWriteImage() {
  const auto look = [path = image_, audio = kind_ == BurnKind::Audio] {
    return QFileInfo::exists(path) || (audio && QFileInfo::exists(SectorsFileOf(path)));
  };
  const bool there = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  if (!there) co_return true;
  Prompt question{tr("The File %1 Already Exists !\r\nReplace It ?").arg(image_),
                  {},
                  Buttons::YesNo,
                  PromptIcon::Question,
                  Answer::No};
  const Answer answer = co_await services_.prompter.Ask(std::move(question));
  if (answer != Answer::Yes) Finish(tr("The image was not written"));
  co_return answer == Answer::Yes;
}

Job<> BurnList::BurnData() {
  const bool image = ToImage();
  const QString folder = services_.stagingFolder;
  const QString target = image_;
  std::optional<BesideFile> beside;
  QString device;
  if (image) {
    const bool may = co_await MayWriteImage();
    if (!may) co_return;
    const bool fits = co_await HasRoom(QFileInfo(target).path(), StagedBytes() + kImageSpare);
    if (!fits) co_return;
    beside.emplace(target);
    device = QStringLiteral("stdio:") + beside->Path();
  } else {
    device = Device();
    const std::optional<BurnMedium> medium = co_await UsableMedium(device);
    if (!medium) co_return;
    const std::int64_t sectors = co_await burner_.ImageSectors(device, folder);
    if (medium->blank && medium->freeSectors > 0 && sectors > medium->freeSectors) {
      Fail(tr("The files need %1 MB, the disc holds %2 MB.")
               .arg(Megabytes(sectors), Megabytes(medium->freeSectors)));
      co_return;
    }
  }
  if (stopping_) co_return;
  burner_.OnShare = [this](double share) {
    share_ = share * kWriting;
    Q_EMIT Changed();
  };
  Say(tr("Writing the disc..."));
  const cSimpleCDBurner::End burnt = co_await burner_.Burn(device, folder);
  if (stopping_) co_return;
  if (!burnt.done) {
    Fail(burnt.why);
    co_return;
  }
  share_ = kWriting;
  burner_.OnShare = nullptr;
  Say(tr("Reading it back..."));
  const cSimpleCDBurner::End equal = co_await burner_.Compare(device, folder);
  if (stopping_) co_return;
  if (!equal.done) {
    Fail(tr("What was read back is not what was written:\r\n%1").arg(equal.why));
    co_return;
  }
  if (image) {
    const auto take = [made = beside->Path(), target] { BesideFile::Take(made, target); };
    co_await services_.loop.Offload(EventLoop::Lane::Apart, take);
  }
  Note(image ? tr("%1 - written and read back").arg(target) : tr("Disc written and read back"));
  Finish(tr("Burn Done : written, read back and equal"));
}

Job<> BurnList::BurnMusic() {
  const bool image = ToImage();
  AudioDiscOrder order;
  for (const BurnRow& row : rows_.All()) order.tracks.push_back(TrackOf(row));
  order.title = services_.title;
  QString device;
  if (image) {
    const bool may = co_await MayWriteImage();
    if (!may) co_return;
    order.cueFile = image_;
  } else {
    device = Device();
    const std::optional<BurnMedium> medium = co_await UsableMedium(device);
    if (!medium) co_return;
    if (medium->blank && medium->freeSectors > 0) order.mostSectors = medium->freeSectors;
    order.forDrive = true;
    order.cueFile = services_.stagingFolder + QStringLiteral("-audio.cue");
  }
  order.binFile = SectorsFileOf(order.cueFile);
  const Scratch scratch(image ? QStringList() : QStringList{order.binFile, order.cueFile});
  Say(tr("Preparing the sound..."));
  disc_ = std::make_shared<AudioDiscControl>();
  const auto write = [order, control = disc_] {
    AudioDisc disc = WriteAudioDisc(order, *control);
    if (!disc.stopped) ProveAudioDisc(order.binFile, disc);
    return disc;
  };
  const AudioDisc disc = co_await services_.loop.Offload(EventLoop::Lane::Apart, write);
  disc_.reset();
  if (disc.stopped || stopping_) co_return;
  const QString length = SectorsText(disc.sectors);
  if (image) {
    Note(tr("%1 - %2 of music, written and read back").arg(order.cueFile, length));
    Finish(tr("Burn Done : written, read back and equal"));
    co_return;
  }
  share_ = 0;
  burner_.OnShare = [this](double share) {
    share_ = share;
    Q_EMIT Changed();
  };
  Say(tr("Writing the disc..."));
  const cSimpleCDBurner::End burnt = co_await burner_.BurnAudioDisc(device, order.cueFile);
  burner_.OnShare = nullptr;
  if (stopping_) co_return;
  if (!burnt.done) {
    Fail(burnt.why);
    co_return;
  }
  Say(tr("Reading it back..."));
  std::vector<std::int64_t> starts = co_await burner_.TrackStarts(device);
  starts.resize(std::min(starts.size(), disc.starts.size()));
  if (starts != disc.starts) {
    Fail(tr("The disc's table of contents is not what was written."));
    co_return;
  }
  if (services_.reader) {
    disc_ = std::make_shared<AudioDiscControl>();
    const auto compare = [open = services_.reader, device, bin = order.binFile, disc, control = disc_] {
      CompareAudioDisc(bin, disc, open(device), *control);
    };
    co_await services_.loop.Offload(EventLoop::Lane::Apart, compare);
    if (stopping_) co_return;
  }
  Note(tr("Audio CD written and read back, %1 of music").arg(length));
  Finish(tr("Burn Done : written, read back and equal"));
}

}  // namespace kelvo
