#include "discs/CdAudio.h"

#include "platform/Words.h"

#include <algorithm>
#include <array>

namespace kelvo {
namespace {

constexpr int kThousand = 1000;

QString MinutesSecondsFrames(int sectors) {
  return QStringLiteral("%1:%2:%3")
      .arg(Format00(sectors / kCdSectorsPerSecond / 60), Format00(sectors / kCdSectorsPerSecond % 60),
           Format00(sectors % kCdSectorsPerSecond));
}

}  // namespace

CdAudio::CdAudio(Services services)
    : services_(std::move(services)), scheme_(ServeDiscs(services_.shelf->Drives())) {}

CdAudio::~CdAudio() {
  CloseAll();
}

void CdAudio::SetOutput(const QString& output) {
  if (output_ == output) return;
  output_ = output;
  sector_ = Sector();
  Rest();
  player_.reset();
}

bool CdAudio::Playing() const {
  return player_ && player_->State() == PlayState::Playing;
}

Job<QString> CdAudio::Send(QString command) {
  const QStringList words = command.simplified().split(QLatin1Char(' '));
  const QString begin = words.mid(0, 2).join(QLatin1Char(' '));
  const QString rest = words.mid(2).join(QLatin1Char(' '));
  if (command == QLatin1StringView("close all")) {
    CloseAll();
  } else if (begin == QLatin1StringView("open cdaudio")) {
    co_await OpenDrive();
  } else if (!open_) {
    throw Failure(tr("The CD player is not open."), 0, place_);
  } else if (rest.startsWith(QLatin1StringView("time format "))) {
    milliseconds_ = rest.contains(QLatin1StringView("milliseconds"));
  } else if (rest == QLatin1StringView("door open")) {
    const QString place = place_;
    Rest();
    player_.reset();
    co_await services_.shelf->Eject(place);
  } else if (rest == QLatin1StringView("door closed")) {
    co_await services_.shelf->CloseTray(place_);
  } else if (begin == QLatin1StringView("status cd") && rest == QLatin1StringView("media present")) {
    const bool present = co_await LookForDisc();
    co_return present ? QStringLiteral("true") : QStringLiteral("false");
  } else if (begin == QLatin1StringView("status cd")) {
    co_return Status(rest);
  } else if (begin == QLatin1StringView("play cd")) {
    NeedDisc();
    const bool from = rest.startsWith(QLatin1StringView("from "));
    if (from) GoTo(SectorOf(words.last()));
    if (from || !Playing()) co_await Play();
  } else if (begin == QLatin1StringView("stop cd")) {
    Rest();
  } else if (begin == QLatin1StringView("pause cd")) {
    const bool playing = Playing();
    Rest();
    paused_ = playing;
  } else if (begin == QLatin1StringView("seek cd")) {
    NeedDisc();
    Rest();
    GoTo(SectorOf(words.last()));
  } else {
    throw Failure(tr("The CD player does not know the command \"%1\".").arg(command));
  }
  co_return QString();
}

Job<> CdAudio::OpenDrive() {
  CloseAll();
  if (place_.isEmpty()) throw Failure(QStringLiteral("No CD Selected"));
  open_ = true;
  (void)co_await LookForDisc();
}

void CdAudio::CloseAll() {
  Rest();
  player_.reset();
  open_ = present_ = milliseconds_ = false;
  toc_ = {};
  sector_ = 0;
}

Job<bool> CdAudio::LookForDisc() {
  const QString place = place_;
  const DiscState state = co_await services_.shelf->Look(place);
  // A drive that is being looked at by another is as it was.
  if (state == DiscState::NotReady) co_return present_;
  const bool sound = state == DiscState::Audio || state == DiscState::Mixed;
  if (sound && !present_) {
    const auto read = [drives = services_.shelf->Drives(), place] {
      return drives->Open(place, std::make_shared<DriveBeat>())->ReadToc();
    };
    toc_ = co_await services_.shelf->Calls().Do(place, read);
  } else if (!sound && present_) {
    Rest();
    player_.reset();
    toc_ = {};
    sector_ = 0;
  }
  present_ = sound;
  co_return present_;
}

void CdAudio::NeedDisc() const {
  if (toc_.AudioTracks() == 0) throw Failure(QStringLiteral("No CD In Drive"), 0, place_);
}

Job<> CdAudio::Play() {
  if (services_.shelf->Ripping(place_))
    throw Failure(QStringLiteral("Please Wait For Ripper To Finish!"), 0, place_);
  if (!player_ || player_->FileName().isEmpty()) co_await OpenPlayer();
  player_->SetCurrentPosition(static_cast<double>(sector_) / kCdSectorsPerSecond);
  paused_ = false;
  player_->Play();
  services_.shelf->SetPlaying(place_, true);
}

Job<> CdAudio::OpenPlayer() {
  player_ = services_.audio.MakePlayer(output_);
  player_->OnEndOfStream = [this] {
    services_.shelf->SetPlaying(place_, false);
    sector_ = toc_.tracks.empty() ? 0 : toc_.tracks.front().first;
  };
  // A drive that hangs: with its player goes the wait for it.
  const Timer limit = services_.loop.After(DriveCalls::kLimit, [this] { player_.reset(); });
  const OpenResult result = co_await player_->Open(DiscSource(place_));
  if (result.Ok()) co_return;
  player_.reset();
  throw Failure(result.error.isEmpty() ? tr("The drive %1 does not answer.").arg(place_) : result.error, 0,
                place_);
}

void CdAudio::Rest() {
  sector_ = Sector();
  if (player_) player_->Stop();
  paused_ = false;
  services_.shelf->SetPlaying(place_, false);
}

int CdAudio::Sector() const {
  if (!Playing()) return sector_;
  // A place is whole frames: seconds alone may fall short of it by a rounding.
  const double sectors = player_->CurrentPosition() * kCdSectorsPerSecond + 0.5 / kCdSectorFrames;
  return std::clamp(static_cast<int>(sectors), 0, toc_.End());
}

void CdAudio::GoTo(int sector) {
  sector_ = std::clamp(sector, 0, std::max(toc_.End() - 1, 0));
}

int CdAudio::SectorOf(const QString& place) const {
  bool isNumber = false;
  const QStringList fields = place.split(QLatin1Char(':'));
  std::array<int, 4> values{};
  for (qsizetype field = 0; field < std::min<qsizetype>(fields.size(), 4); ++field) {
    values[static_cast<std::size_t>(field)] = fields[field].toInt(&isNumber);
    if (!isNumber) throw Failure(tr("\"%1\" is no place on a disc.").arg(place));
  }
  if (milliseconds_) return static_cast<int>(std::int64_t{values[0]} * kCdSectorsPerSecond / kThousand);
  const TocTrack* track = toc_.Track(values[0]);
  if (track == nullptr) throw Failure(tr("The disc has no track %1.").arg(values[0]));
  return track->first + (values[1] * 60 + values[2]) * kCdSectorsPerSecond + values[3];
}

QString CdAudio::PlaceText(int sector) const {
  if (milliseconds_) return QString::number(std::int64_t{sector} * kThousand / kCdSectorsPerSecond);
  const TocTrack* track = toc_.TrackAt(sector);
  return Format00(track != nullptr ? track->number : 0) + QLatin1Char(':') +
         MinutesSecondsFrames(sector - (track != nullptr ? track->first : 0));
}

QString CdAudio::LengthText(int sectors) const {
  if (milliseconds_) return QString::number(std::int64_t{sectors} * kThousand / kCdSectorsPerSecond);
  return MinutesSecondsFrames(sectors);
}

QString CdAudio::Status(const QString& what) const {
  if (what.startsWith(QLatin1StringView("mode"))) {
    if (!present_) return QStringLiteral("open");
    return Playing() ? QStringLiteral("playing")
           : paused_ ? QStringLiteral("paused")
                     : QStringLiteral("stopped");
  }
  NeedDisc();
  if (what.startsWith(QLatin1StringView("number of tracks"))) return QString::number(toc_.tracks.size());
  if (what.startsWith(QLatin1StringView("position"))) return PlaceText(Sector());
  if (what.startsWith(QLatin1StringView("length track "))) {
    const TocTrack* track = toc_.Track(what.section(QLatin1Char(' '), 2, 2).toInt());
    if (track == nullptr) throw Failure(tr("The disc has no such track."));
    return LengthText(track->sectors);
  }
  if (what.startsWith(QLatin1StringView("length"))) return LengthText(toc_.End());
  throw Failure(tr("The CD player does not know its \"%1\".").arg(what));
}

}  // namespace kelvo
