#include "database/TaggedSound.h"
#include "database/TrackTags.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using testing::Frame;
using testing::Id3v2;
using testing::TemporaryTree;

QByteArray Field(const QByteArray& text, qsizetype size) {
  return text.leftJustified(size, '\0', true);
}

QByteArray Id3v1(const QByteArray& title, const QByteArray& artist, const QByteArray& year, char genre) {
  return "TAG" + Field(title, 30) + Field(artist, 30) + Field("Old Album", 30) + Field(year, 4) +
         Field("", 30) + genre;
}

QByteArray Little(quint32 number) {
  QByteArray bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift & 0xFF);
  return bytes;
}

QByteArray Chunk(const QByteArray& name, const QByteArray& body) {
  return name + Little(static_cast<quint32>(body.size())) + body + QByteArray(body.size() % 2, '\0');
}

const QByteArray kMpeg = QByteArray("\xFF\xFB\x90\x64", 4) + QByteArray(413, '\0');

class TrackTagsTest : public ::testing::Test {
 protected:
  TrackTags Tags(const QByteArray& bytes) { return ReadTrackTags(tree_.Write(u"song.mp3"_s, bytes)); }
  TemporaryTree tree_;
};

TEST_F(TrackTagsTest, AreReadFromTheEndOfTheFile) {
  const TrackTags tags = Tags(kMpeg + Id3v1("Song", "Queen  ", "1981", 17));
  EXPECT_TRUE(tags.found);
  EXPECT_EQ(tags.artist, u"Queen"_s);
  EXPECT_EQ(tags.title, u"Song"_s);
  EXPECT_EQ(tags.album, u"Old Album"_s);
  EXPECT_EQ(tags.year, u"1981"_s);
  EXPECT_EQ(tags.genre, 17);
  EXPECT_EQ(Tags(kMpeg + Id3v1("Song", "Queen", "", '\xFF')).genre, -1);
}

TEST_F(TrackTagsTest, FromTheStartGoBeforeThoseFromTheEnd) {
  const QByteArray artist = QByteArray("\x01\xFF\xFE", 3) + QByteArray("B\0j\0\xF6\0r\0k\0", 10);
  const QByteArray genre = Frame("TCON", QByteArray("\0(17)", 5));
  const QByteArray title = Frame("TIT2", QByteArray("\0Two\nLines", 10));
  const TrackTags tags =
      Tags(Id3v2(Frame("TPE1", artist) + title + genre) + kMpeg + Id3v1("Old", "Old", "1999", 3));
  EXPECT_EQ(tags.artist, u"Bj\u00F6rk"_s);
  EXPECT_EQ(tags.title, u"Two Lines"_s);
  EXPECT_EQ(tags.year, u"1999"_s) << "what the first has not comes from the second";
  EXPECT_EQ(tags.genre, 17);
  const TrackTags words = Tags(Id3v2(Frame("TCON", QByteArray("\0Zydeco", 7))) + kMpeg);
  EXPECT_EQ(words.genre, -1);
  EXPECT_EQ(words.genreText, u"Zydeco"_s);
}

TEST_F(TrackTagsTest, OfAWaveFileAreFoundWhateverItIsCalled) {
  const QByteArray info =
      "INFO" + Chunk("IART", QByteArray("Ann\0", 4)) + Chunk("INAM", QByteArray("Tune\0", 5));
  const QByteArray format = Chunk("fmt ", QByteArray("\1\0\2\0\x44\xAC\0\0\x10\xB1\2\0\4\0\x10\0", 16));
  const QByteArray chunks = "WAVE" + format + Chunk("data", QByteArray(4000, '\0')) + Chunk("LIST", info);
  const TrackTags tags = Tags("RIFF" + Little(static_cast<quint32>(chunks.size())) + chunks);
  EXPECT_EQ(tags.artist, u"Ann"_s);
  EXPECT_EQ(tags.title, u"Tune"_s);
}

TEST_F(TrackTagsTest, OfWhatIsDamagedOrNoFileAreNone) {
  EXPECT_FALSE(Tags("").found);
  EXPECT_FALSE(Tags("ID3").found);
  EXPECT_FALSE(Tags("RIFF\xFF\xFF\xFF\xFFWAVELIST\xFF\xFF\xFF\x7FINFO").found);
  EXPECT_FALSE(Tags(QByteArray("ID3\x03\x00\x00\x7F\x7F\x7F\x7F", 10) + "TPE1").artist.size() > 0);
  EXPECT_FALSE(ReadTrackTags(tree_.Path()).found);
  EXPECT_FALSE(ReadTrackTags(tree_.Path(u"gone.mp3"_s)).found);
  ASSERT_EQ(::mkfifo(tree_.Path(u"pipe.mp3"_s).toUtf8().constData(), 0600), 0);
  EXPECT_FALSE(ReadTrackTags(tree_.Path(u"pipe.mp3"_s)).found);
}

}  // namespace
}  // namespace kelvo
