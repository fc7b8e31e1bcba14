#include "database/GenreNames.h"

#include <QHash>

#include <array>

namespace kelvo {
namespace {

constexpr std::array<const char*, kGenreCount> kGenreNames = {
    "Blues",
    "Classic Rock",
    "Country",
    "Dance",
    "Disco",
    "Funk",
    "Grunge",
    "Hip - Hop",
    "Jazz",
    "Metal",
    "New Age",
    "Oldies",
    "Other",
    "Pop",
    "R&B",
    "Rap",
    "Reggae",
    "Rock",
    "Techno",
    "Industrial",
    "Alternative",
    "Ska",
    "Death Metal",
    "Pranks",
    "Soundtrack",
    "Euro - Techno",
    "Ambient",
    "Trip - Hop",
    "Vocal",
    "Jazz + Funk",
    "Fusion",
    "Trance",
    "Classical",
    "Instrumental",
    "Acid",
    "House",
    "Game",
    "Sound Clip",
    "Gospel",
    "Noise",
    "AlternRock",
    "Bass",
    "Soul",
    "Punk",
    "Space",
    "Meditative",
    "Instrumental Pop",
    "Instrumental Rock",
    "Ethnic",
    "Gothic",
    "Darkwave",
    "Techno - Industrial",
    "Electronic",
    "Pop - Folk",
    "Eurodance",
    "Dream",
    "Southern Rock",
    "Comedy",
    "Cult",
    "Gangsta",
    "Top 40",
    "Christian Rap",
    "Pop - Funk",
    "Jungle",
    "Native American",
    "Cabaret",
    "New Wave",
    "Psychadelic",
    "Rave",
    "Showtunes",
    "Trailer",
    "Lo - Fi",
    "Tribal",
    "Acid Punk",
    "Acid Jazz",
    "Polka",
    "Retro",
    "Musical",
    "Rock & Roll",
    "Hard Rock",
    "Folk",
    "Folk - Rock",
    "National Folk",
    "Swing",
    "Fast Fusion",
    "Bebob",
    "Latin",
    "Revival",
    "Celtic",
    "Bluegrass",
    "Avantgarde",
    "Gothic Rock",
    "Progressive Rock",
    "Psychedelic Rock",
    "Symphonic Rock",
    "Slow Rock",
    "Big Band",
    "Chorus",
    "Easy Listening",
    "Acoustic",
    "Humour",
    "Speech",
    "Chanson",
    "Opera",
    "Chamber Music",
    "Sonata",
    "Symphony",
    "Booty Bass",
    "Primus",
    "Porn Groove",
    "Satire",
    "Slow Jam",
    "Club",
    "Tango",
    "Samba",
    "Folklore",
    "Ballad",
    "Power Ballad",
    "Rhythmic Soul",
    "Freestyle",
    "Duet",
    "Punk Rock",
    "Drum Solo",
    "Acapella",
    "Euro - House",
    "Euro - Pop",
    "Euro - Rock",
    "Dance Hall",
    "Uk - Reggae",
    "Melodic Rock",
    "Guitar Rif",
    "Saxophone Rif",
};

/// What of a name is compared: its letters, without regard to case, blanks and hyphens.
QString Essence(const QString& name) {
  QString essence = name.toUpper();
  essence.removeIf([](QChar each) { return each.isSpace() || each == QLatin1Char('-'); });
  return essence;
}

QHash<QString, int> NumbersByName() {
  QHash<QString, int> numbers;
  for (int number = 0; number < kGenreCount; ++number) numbers.insert(Essence(GenreName(number)), number);
  return numbers;
}

}  // namespace

QString GenreName(int number) {
  if (number < 0 || number >= kGenreCount) return QStringLiteral("Unknown");
  return QString::fromLatin1(kGenreNames[static_cast<std::size_t>(number)]);
}

int GenreNumber(const QString& text) {
  static const QHash<QString, int> numbers = NumbersByName();
  QString word = text.trimmed();
  // "(17)" may be followed by the same genre in words, or by a finer one.
  if (const qsizetype end = word.indexOf(QLatin1Char(')')); word.startsWith(QLatin1Char('(')) && end > 0) {
    word = word.mid(1, end - 1);
  }
  bool isNumber = false;
  const int number = word.toInt(&isNumber);
  if (isNumber) return number >= 0 && number < kGenreCount ? number : -1;
  return numbers.value(Essence(word), -1);
}

}  // namespace kelvo
