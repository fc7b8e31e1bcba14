#include "discs/CdioDrive.h"

#include "platform/TextFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cdio/cdio.h>
#include <cdio/cdtext.h>
#include <cdio/logging.h>
#include <cdio/paranoia/cdda.h>
#include <cdio/paranoia/paranoia.h>

#include <algorithm>
#include <mutex>
#include <utility>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(CdioDrive)
};

/// What a second session of data puts between the last audio track and itself.
constexpr int kSessionGap = 11400;
/// How often paranoia tries a stretch anew before it takes what it has.
constexpr int kRetries = 20;
constexpr qint64 kMostSheetBytes = 1 << 20;

/// What the library said last on this thread.
thread_local std::string said;

void InitLibrary() {
  static std::once_flag once;
  std::call_once(once, [] {
    // The library's own handler ends the process.
    cdio_log_set_handler([](cdio_log_level_t level, const char* message) {
      if (level >= CDIO_LOG_WARN) said = message;
    });
    cdio_init();
  });
}

QString Said() {
  const std::string words = std::exchange(said, {});
  return words.empty() ? QString() : QStringLiteral(" (") + QString::fromStdString(words) + QLatin1Char(')');
}

/// The library takes one data file to an image, and names no cause when there are more or none.
QString WrongWithSheet(const QString& place) {
  QFile sheet(place);
  if (!sheet.open(QIODevice::ReadOnly)) return Text::tr("%1 cannot be opened.").arg(place);
  if (!place.endsWith(QLatin1StringView(".cue"), Qt::CaseInsensitive)) return {};
  static const QRegularExpression fileLine(
      QStringLiteral("^\\s*FILE\\s+(?:\"([^\"]*)\"|(\\S+))"),
      QRegularExpression::MultilineOption | QRegularExpression::CaseInsensitiveOption);
  const QString text = TextFile::FromBytes(sheet.read(kMostSheetBytes)).Lines().join(QLatin1Char('\n'));
  QStringList files;
  for (auto found = fileLine.globalMatch(text); found.hasNext();) {
    const QRegularExpressionMatch match = found.next();
    files.append(match.captured(match.lastCapturedIndex()));
  }
  if (files.size() > 1)
    return Text::tr("%1 names several files: only images of one file can be read.").arg(place);
  if (files.isEmpty()) return Text::tr("%1 names no file.").arg(place);
  const QFileInfo data(QFileInfo(place).dir(), files.front());
  if (!data.isFile()) return Text::tr("The file %1 of the image is not there.").arg(data.filePath());
  return {};
}

/// The library takes the letters of every sheet for Latin-1.
QString InItsLetters(const QString& words) {
  const QByteArray bytes = words.toLatin1();
  if (QString::fromLatin1(bytes) != words) return words;
  const QString asUtf8 = QString::fromUtf8(bytes);
  return asUtf8.contains(QChar::ReplacementCharacter) ? FromWindows1252(bytes) : asUtf8;
}

QString TextOf(const cdtext_t* text, cdtext_field_t field, int track) {
  const char* words = cdtext_get_const(text, field, static_cast<track_t>(track));
  return QString::fromUtf8(words).simplified();
}

// Paranoia reports to a function without an argument of the caller's.
thread_local DriveBeat* reading = nullptr;
thread_local int skipped = 0;

void HearParanoia(long /*place*/, paranoia_cb_mode_t what) {
  if (reading != nullptr) reading->steps.fetch_add(1, std::memory_order_relaxed);
  if (what == PARANOIA_CB_SKIP) ++skipped;
}

}  // namespace

void CdioDrive::Closer::operator()(CdIo_t* disc) const {
  cdio_destroy(disc);
}

void CdioDrive::Closer::operator()(cdrom_drive_s* sound) const {
  cdio_cddap_close_no_free_cdio(sound);
}

CdioDrive::CdioDrive(const QString& place, DriveBeatPtr beat) : place_(place), beat_(std::move(beat)) {
  InitLibrary();
  const bool image = IsDiscImage(place);
  if (const QString wrong = image ? WrongWithSheet(place) : QString(); !wrong.isEmpty())
    throw DriveFailure(DriveFailure::Kind::NoDrive, wrong, place);
  disc_.reset(cdio_open(QFile::encodeName(place).constData(), image ? DRIVER_UNKNOWN : DRIVER_DEVICE));
  if (!disc_) {
    const QString words =
        image ? Text::tr("%1 is no disc image that can be read.") : Text::tr("%1 cannot be opened.");
    throw DriveFailure(DriveFailure::Kind::NoDrive, words.arg(place) + Said(), place);
  }
  toc_ = ReadToc();
}

CdioDrive::~CdioDrive() = default;

void CdioDrive::Count() const {
  beat_->steps.fetch_add(1, std::memory_order_relaxed);
  if (beat_->stop.load(std::memory_order_relaxed))
    throw DriveFailure(DriveFailure::Kind::Stopped, Text::tr("Stopped."), place_);
}

void CdioDrive::FailUnread(int sector) const {
  if (LookAtDisc(place_) == DiscState::NoDisc)
    throw DriveFailure(DriveFailure::Kind::NoDisc, Text::tr("The disc was taken out of %1.").arg(place_),
                       place_);
  throw DriveFailure(DriveFailure::Kind::Unread,
                     Text::tr("Sector %1 of %2 cannot be read.").arg(sector).arg(place_) + Said(), place_);
}

int CdioDrive::EndOf(int number, bool audio) const {
  const auto track = static_cast<track_t>(number);
  const int next = cdio_get_track_lsn(disc_.get(), static_cast<track_t>(number + 1));
  const int end = next != CDIO_INVALID_LSN ? next : cdio_get_track_last_lsn(disc_.get(), track) + 1;
  const bool dataFollows =
      number < cdio_get_last_track_num(disc_.get()) &&
      cdio_get_track_format(disc_.get(), static_cast<track_t>(number + 1)) != TRACK_FORMAT_AUDIO;
  lsn_t session = 0;
  if (!audio || !dataFollows || cdio_get_last_session(disc_.get(), &session) != DRIVER_OP_SUCCESS) return end;
  return session == end && end > kSessionGap ? end - kSessionGap : end;
}

void CdioDrive::TakeText(DiscToc& toc) const {
  const cdtext_t* text = cdio_get_cdtext(disc_.get());
  if (text == nullptr) return;
  const auto words = [this, text](cdtext_field_t field, int track) {
    const QString told = TextOf(text, field, track);
    return IsDiscImage(place_) ? InItsLetters(told) : told;
  };
  toc.title = words(CDTEXT_FIELD_TITLE, 0);
  toc.performer = words(CDTEXT_FIELD_PERFORMER, 0);
  for (TocTrack& track : toc.tracks) {
    track.title = words(CDTEXT_FIELD_TITLE, track.number);
    track.performer = words(CDTEXT_FIELD_PERFORMER, track.number);
  }
}

DiscToc CdioDrive::ReadToc() {
  Count();
  // A drive without a disc, and a device that is none, count no tracks.
  const track_t count = cdio_get_num_tracks(disc_.get());
  const track_t first = cdio_get_first_track_num(disc_.get());
  if (count == 0 || count > CDIO_CD_MAX_TRACKS || first == CDIO_INVALID_TRACK) {
    (void)Said();
    throw DriveFailure(DriveFailure::Kind::NoDisc, QStringLiteral("No CD In Drive"), place_);
  }
  DiscToc toc;
  for (int number = first; number < first + count; ++number) {
    const auto track = static_cast<track_t>(number);
    TocTrack row;
    row.number = number;
    row.first = cdio_get_track_lsn(disc_.get(), track);
    row.audio = cdio_get_track_format(disc_.get(), track) == TRACK_FORMAT_AUDIO;
    row.sectors = std::max(EndOf(number, row.audio) - row.first, 0);
    row.preEmphasis = row.audio && cdio_get_track_preemphasis(disc_.get(), track) == CDIO_TRACK_FLAG_TRUE;
    toc.tracks.push_back(row);
  }
  TakeText(toc);
  return toc;
}

cdrom_drive_s& CdioDrive::Sound() {
  if (sound_) return *sound_;
  char* messages = nullptr;
  sound_.reset(cdio_cddap_identify_cdio(disc_.get(), CDDA_MESSAGE_LOGIT, &messages));
  if (messages != nullptr) cdio_cddap_free_messages(messages);
  if (sound_) {
    cdio_cddap_verbose_set(sound_.get(), CDDA_MESSAGE_LOGIT, CDDA_MESSAGE_LOGIT);
    // The library guesses the order of the bytes from what is on the disc, and noise deceives it. Every drive
    // of today gives them in this order, and an image has them so.
    sound_->bigendianp = 0;
    if (cdio_cddap_open(sound_.get()) == 0) {
      sound_->bigendianp = 0;
      return *sound_;
    }
  }
  sound_.reset();
  throw DriveFailure(DriveFailure::Kind::Refused,
                     Text::tr("The sound of %1 cannot be read.").arg(place_) + Said(), place_);
}

void CdioDrive::Read(int first, std::span<std::int16_t> target) {
  cdrom_drive_s& sound = Sound();
  const int atOnce = std::max(sound.nsectors, 1);
  int left = static_cast<int>(target.size()) / kCdSectorSamples;
  int sector = first;
  while (left > 0) {
    Count();
    std::int16_t* place = target.data() + static_cast<std::ptrdiff_t>(sector - first) * kCdSectorSamples;
    const long got = cdio_cddap_read(&sound, place, sector, std::min(left, atOnce));
    if (got <= 0) FailUnread(sector);
    sector += static_cast<int>(got);
    left -= static_cast<int>(got);
  }
}

int CdioDrive::ReadCarefully(int first, std::span<std::int16_t> target) {
  cdrom_drive_s& sound = Sound();
  const std::unique_ptr<cdrom_paranoia_t, decltype(&cdio_paranoia_free)> careful(cdio_paranoia_init(&sound),
                                                                                 &cdio_paranoia_free);
  cdio_paranoia_modeset(careful.get(), PARANOIA_MODE_FULL ^ PARANOIA_MODE_NEVERSKIP);
  const DiscToc::Zone zone = toc_.AudioZone(first);
  cdio_paranoia_set_range(careful.get(), zone.first, zone.end - 1);
  cdio_paranoia_seek(careful.get(), first, SEEK_SET);
  const int sectors = static_cast<int>(target.size()) / kCdSectorSamples;
  int unsure = 0;
  for (int sector = 0; sector < sectors; ++sector) {
    Count();
    reading = beat_.get();
    skipped = 0;
    const std::int16_t* samples = cdio_paranoia_read_limited(careful.get(), &HearParanoia, kRetries);
    reading = nullptr;
    const auto place = target.subspan(static_cast<std::size_t>(sector) * kCdSectorSamples, kCdSectorSamples);
    if (samples != nullptr) {
      std::copy_n(samples, kCdSectorSamples, place.begin());
    } else {
      std::fill(place.begin(), place.end(), std::int16_t{0});
    }
    if (samples != nullptr && skipped == 0) continue;
    if (LookAtDisc(place_) == DiscState::NoDisc) FailUnread(first + sector);
    ++unsure;
  }
  return unsure;
}

void CdioDrive::SetSpeed(int times) {
  if (times > 0 && !IsDiscImage(place_)) (void)cdio_set_speed(disc_.get(), times);
}

void CdioDrive::InjectFaults(int flags) {
  Sound().i_test_flags = flags;
}

}  // namespace kelvo
