#include "database/TrackTags.h"

#include "database/GenreNames.h"
#include "platform/Words.h"

#include <QFile>
#include <QFileInfo>

#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/mpegfile.h>
#include <taglib/textidentificationframe.h>
#include <taglib/tfilestream.h>
#include <taglib/wavfile.h>

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

constexpr qint64 kId3v1Bytes = 128;
constexpr double kMostBeats = 999;

enum class Content { Mpeg, Wave, Other };

/// By the first bytes: a reader that is given what it doesn't know looks through the whole file.
Content ContentOf(const QByteArray& head) {
  if (head.startsWith("RIFF") && head.mid(8, 4) == "WAVE") return Content::Wave;
  const bool sync =
      head.size() > 1 && static_cast<unsigned char>(head[0]) == 0xFF && (head[1] & 0xE0) == 0xE0;
  return sync || head.startsWith("ID3") ? Content::Mpeg : Content::Other;
}

QString Text(const TagLib::String& text) {
  QString clean = QString::fromStdString(text.to8Bit(true));
  for (QChar& character : clean) {
    if (character.category() == QChar::Other_Control) character = QLatin1Char(' ');
  }
  return clean.trimmed();
}

void TakeGenre(TrackTags& tags, const QString& words) {
  if (tags.genre >= 0 || !tags.genreText.isEmpty()) return;
  tags.genre = GenreNumber(words);
  if (tags.genre < 0) tags.genreText = words;
}

/// Fills what no earlier tag gave; the genre apart, which each kind keeps in its own way.
void Take(TrackTags& tags, const TagLib::Tag& tag) {
  const auto fill = [](QString& field, const QString& text) {
    if (field.isEmpty()) field = text;
  };
  tags.found = tags.found || !tag.isEmpty();
  fill(tags.artist, Text(tag.artist()));
  fill(tags.title, Text(tag.title()));
  fill(tags.album, Text(tag.album()));
  const unsigned year = tag.year();
  if (year >= 1 && year <= 9999) fill(tags.year, QStringLiteral("%1").arg(year, 4, 10, QLatin1Char('0')));
}

/// The first text of the first frame of this kind, as it is written.
QString FrameText(const TagLib::ID3v2::Tag& tag, const char* kind) {
  const TagLib::ID3v2::FrameList frames = tag.frameList(kind);
  if (frames.isEmpty()) return {};
  const auto* frame = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frames.front());
  return frame == nullptr || frame->fieldList().isEmpty() ? QString() : Text(frame->fieldList().front());
}

void TakeId3v2(TrackTags& tags, const TagLib::ID3v2::Tag& tag) {
  Take(tags, tag);
  // The library would put names of its own in place of the numbers.
  const QString genre = FrameText(tag, "TCON");
  if (!genre.isEmpty()) TakeGenre(tags, genre);
  const double beats = Val(FrameText(tag, "TBPM"));
  if (beats >= 1 && beats < kMostBeats) tags.bpm = static_cast<int>(std::lround(beats));
}

/// `block`: the last bytes of the file, whatever else it is.
void TakeId3v1(TrackTags& tags, const TagLib::ByteVector& block) {
  class Block : public TagLib::ID3v1::Tag {
   public:
    explicit Block(const TagLib::ByteVector& bytes) { parse(bytes); }
  };
  const Block tag(block);
  Take(tags, tag);
  const int number = static_cast<int>(tag.genreNumber());
  if (number != 255 && tags.genre < 0 && tags.genreText.isEmpty()) tags.genre = number;
}

void TakeMpeg(TrackTags& tags, TagLib::FileStream& stream) {
  TagLib::MPEG::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
  if (file.isValid() && file.hasID3v2Tag()) TakeId3v2(tags, *file.ID3v2Tag());
}

void TakeWave(TrackTags& tags, TagLib::FileStream& stream) {
  const TagLib::RIFF::WAV::File file(&stream, false);
  if (!file.isValid()) return;
  if (file.hasID3v2Tag()) TakeId3v2(tags, *file.ID3v2Tag());
  if (!file.hasInfoTag()) return;
  Take(tags, *file.InfoTag());
  TakeGenre(tags, Text(file.InfoTag()->fieldText("IGNR")));
}

TrackTags ReadTags(const QString& path) {
  TrackTags tags;
  QFile file(path);
  // A pipe would hold its reader for ever.
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return tags;
  const Content content = ContentOf(file.read(12));
  QByteArray tail;
  if (content != Content::Wave && file.seek(std::max<qint64>(0, file.size() - kId3v1Bytes))) {
    tail = file.read(kId3v1Bytes);
  }
  file.close();

  if (content != Content::Other) {
    TagLib::FileStream stream(QFile::encodeName(path).constData(), true);
    if (!stream.isOpen()) return tags;
    if (content == Content::Wave) {
      TakeWave(tags, stream);
    } else {
      TakeMpeg(tags, stream);
    }
  }
  if (tail.size() == kId3v1Bytes && tail.startsWith("TAG")) {
    TakeId3v1(tags, TagLib::ByteVector(tail.constData(), static_cast<unsigned>(tail.size())));
  }
  return tags;
}

}  // namespace

TrackTags ReadTrackTags(const QString& path) {
  try {
    return ReadTags(path);
  } catch (...) {
    return {};
  }
}

}  // namespace kelvo
