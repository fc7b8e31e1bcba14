#include "encoding/EncodeWork.h"

#include "database/TrackInfo.h"
#include "database/TrackNames.h"
#include "platform/NewFile.h"
#include "platform/Words.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <unistd.h>

#include <cerrno>

namespace kelvo {

namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(EncodeWork)
};

constexpr qsizetype kEnding = 4;

/// What part of the work the encoding is where the result is read back too, which is the faster one.
constexpr double kEncodingShare = 0.8;

std::optional<struct ::stat> FactsOf(const QString& path) {
  struct ::stat facts {};
  if (::stat(EncodedPath(path).constData(), &facts) != 0) return std::nullopt;
  return facts;
}

bool SameState(const struct ::stat& a, const struct ::stat& b) {
  return a.st_ino == b.st_ino && a.st_dev == b.st_dev && a.st_size == b.st_size &&
         a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

}  // namespace

EncodeWork::EncodeWork(QString source, const EncodingPresets& presets, bool prove)
    : source_(std::move(source)), prove_(prove) {
  encoder_.SetPresets(presets);
  encoder_.Progress = [this](std::int64_t total, std::int64_t done, bool& /*cancel*/) {
    const double share = total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 1;
    share_.store(prove_ ? share * kEncodingShare : share, std::memory_order_relaxed);
  };
}

QString EncodeWork::TargetOf(const QString& source) {
  return source.left(source.size() - kEnding) + QStringLiteral(".Mp3");
}

EncodeWork::Result EncodeWork::Do() {
  Result result;
  try {
    Encode(result);
  } catch (const EncodeFailure& failure) {
    switch (failure.What()) {
      case EncodeFailure::Kind::NoSource:
        result.outcome = Outcome::Missing;
        break;
      case EncodeFailure::Kind::BadSource:
        result.outcome = Outcome::BadFormat;
        break;
      case EncodeFailure::Kind::Other:
        break;
    }
    result.why = QString::fromUtf8(failure.what());
  } catch (const std::exception& failure) {
    result.why = QString::fromUtf8(failure.what());
  }
  return result;
}

void EncodeWork::Encode(Result& result) {
  if (UpperExtension(QFileInfo(source_).fileName()) != QStringLiteral("WAV")) {
    result.outcome = Outcome::NotWave;
    return;
  }
  facts_ = FactsOf(source_);
  if (!facts_ || !CheckMediaFile(source_)) {
    result.outcome = facts_ ? Outcome::BadFormat : Outcome::Missing;
    result.why = facts_ ? Text::tr("It is too small for music") : QString();
    return;
  }
  // A file that has the name in another case is the one that is replaced.
  const QString target = TargetOf(source_);
  const QString standing = FindFile(target);
  result.target = standing.isEmpty() ? target : standing;
  encoder_.WavFile = source_;
  encoder_.Mp3File = result.target;
  if (encoder_.Encode() == cLameEncoder::End::Cancelled) {
    result.outcome = Outcome::Cancelled;
    return;
  }
  result.outcome = Outcome::Encoded;
  result.seconds = static_cast<double>(encoder_.Frames()) / encoder_.SampleRate();
  if (prove_) {
    try {
      ProveWhole(result.target, encoder_.Frames());
      CheckSource();
      result.proven = true;
    } catch (const std::exception& failure) {
      result.why = QString::fromUtf8(failure.what());
    }
  }
  share_ = 1;
}

void EncodeWork::CheckSource() const {
  const std::optional<struct ::stat> now = FactsOf(source_);
  if (!now || !facts_ || !SameState(*now, *facts_))
    throw Failure(Text::tr("It has changed since it was encoded"), 0, source_);
}

void EncodeWork::DeleteSource() const {
  CheckSource();
  const QByteArray path = EncodedPath(source_);
  if (::unlink(path.constData()) != 0) FailOn("delete", path, errno);
}

}  // namespace kelvo
