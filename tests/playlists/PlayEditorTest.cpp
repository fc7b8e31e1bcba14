#include "audio/ClockAudio.h"
#include "database/CatalogueLoader.h"
#include "platform/FileSteps.h"
#include "playlists/PlayEditor.h"
#include "playlists/StoreFixture.h"

#include <QFile>

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::ElementsAre;

namespace {

class DeskInMemory final : public PlayEditDesk {
 public:
  [[nodiscard]] QString TrackBefore(const QString& path) const override {
    return before.isEmpty() ? path : before;
  }
  [[nodiscard]] QString WhyNoTrial() const override { return whyNot; }
  void Try(const PlayTrial& trial) override { tried = trial; }
  void StopTrial() override { tried.reset(); }
  [[nodiscard]] bool Trying() const override { return tried.has_value(); }
  [[nodiscard]] QString TrialWords() const override { return {}; }
  void Left() override { ++left; }

  QString before;
  QString whyNot;
  std::optional<PlayTrial> tried;
  int left = 0;
};

/// The editor over a database of three tracks, in simulated time.
class PlayEditorTest : public StoreTest {
 protected:
  void SetUp() override {
    editor_.emplace(PlayEditor::Services{.loop = loop_,
                                         .disks = disks_,
                                         .prompter = prompter_,
                                         .audio = audio_,
                                         .catalogue = catalogue_,
                                         .paths = database_.paths,
                                         .settings = program_,
                                         .title = u"Kelvo"_s,
                                         .desk = desk_});
  }
  void Open(const QString& name = u"ann - one"_s) {
    editor_->Open(MusicPath(name));
    loop_.RunFor(10ms);
  }
  void Save() {
    editor_->Save();
    loop_.RunFor(10ms);
  }
  void Change(const std::function<void(PlayEdit&)>& change) { editor_->Change(change); }
  [[nodiscard]] QStringList Lines(const QString& name = u"ann - one"_s) const {
    return QString::fromUtf8(database_.Info(name)).split(u"\r\n"_s);
  }
  [[nodiscard]] bool HasFolder(const QString& name) const {
    return QFileInfo(database_.paths(Paths::Categories) + u'/' + name).isDir();
  }

  ClockAudio audio_{loop_};
  std::shared_ptr<DeskInMemory> desk_ = std::make_shared<DeskInMemory>();
  std::optional<PlayEditor> editor_;
};

TEST_F(PlayEditorTest, WhatIsSavedIsInTheFileTheFoldersAndTheCatalogueAtOnce) {
  Open();
  ASSERT_TRUE(editor_->Ready());
  EXPECT_EQ(editor_->Edit().names[0], (QStringList{u"Rock"_s, u"Pop"_s}));
  EXPECT_EQ(editor_->Edit().Fade(FadePanel::In), (FadeEdit{TransitionKind::PartFade, 10, 20}));
  EXPECT_EQ(editor_->Edit().Fade(FadePanel::Out), (FadeEdit{TransitionKind::Pan, 5, 30}));
  EXPECT_EQ(editor_->AddName(0, u" Acid: Jazz "_s), u"Acid_ Jazz"_s);
  EXPECT_EQ(editor_->AddName(0, u"rOCK"_s), std::nullopt);
  EXPECT_EQ(editor_->MoveName(0, 0, 1), 1);
  Change([](PlayEdit& edit) {
    edit.ownFades = true;
    edit.Fade(FadePanel::Out) = {TransitionKind::Dub, 7, 44};
    edit.startStrong = true;
    edit.bpm = u" 99.5 "_s;
    edit.hi.clear();
    edit.year = u"2001"_s;
  });
  int told = 0;
  const QObject listener;
  catalogue_.Listen(&listener, [&](const TrackInfoSaved& saved) {
    ++told;
    EXPECT_EQ(saved.track, ToMref(1));
    EXPECT_EQ(QString::fromUtf8(saved.info.ToBytes()), QString::fromUtf8(database_.Info(u"ann - one"_s)))
        << "the file comes first";
    EXPECT_EQ(catalogue_.TrackBpm[saved.track], u"99.5"_s);
  });
  Save();
  EXPECT_EQ(told, 1);
  EXPECT_THAT(Lines(), ElementsAre(u"~ALL CATEGORIES,Pop,Rock,Acid_ Jazz"_s, u"~ALL ARTISTS,The Band"_s,
                                   u"~ALL ALBUMS"_s, u"2001-Dec"_s, u"99.5"_s, u"0"_s, u"1,2,1"_s, u"10,7"_s,
                                   u"20,44"_s, u"1"_s, u"1"_s, u"-3.5,0.2"_s, u"180"_s, u"First comment"_s,
                                   u"Second comment"_s, QString()));
  EXPECT_TRUE(HasFolder(u"Acid_ Jazz"_s));
  EXPECT_TRUE(catalogue_.GenreList.contains(u"Acid_ Jazz"_s));
  EXPECT_EQ(catalogue_.TrackGenres[ToMref(1)], u"~ALL CATEGORIES,Pop,Rock,Acid_ Jazz"_s);
  EXPECT_EQ(catalogue_.TrackStartEnd[ToMref(1)], u"1,1"_s);
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(1)), 180);
  EXPECT_FALSE(editor_->Dirty());
}

TEST_F(PlayEditorTest, ShortAndHostileFilesAreShownAndSavedInTheirFullForm) {
  struct Case {
    QByteArray lines;  ///< 7 to 13
    QByteArray saved;
  };
  const std::vector<Case> cases{
      {"0\r\n3\r\n25\r\n1\r\n0\r\n?\r\n8", "0,1,1\r\n3,3\r\n25,25\r\n1\r\n0\r\n?\r\n8"},
      {"1,3\r\n99999,-4\r\n700\r\n\r\n\r\n?\r\nabc", "1,3,1\r\n32767,0\r\n50,50\r\n0\r\n0\r\n?\r\n0"},
      {"x,9,y\r\n,\r\n,,,\r\n7\r\n-1\r\n\x80\r\n1e300",
       "0,1,1\r\n0,0\r\n0,0\r\n1\r\n1\r\n\x80\r\n2147483647"},
  };
  for (const Case& each : cases) {
    const QByteArray head = "~ALL CATEGORIES,~X,Rock,,Rock\r\nThe Band\r\n\r\n2005\r\n?\r\nx\r\n";
    database_.Add(Paths::Info, u"ann - one.kif"_s, head + each.lines);
    Open();
    Save();
    EXPECT_EQ(database_.Info(u"ann - one"_s),
              "~ALL CATEGORIES,Rock,Rock\r\n~ALL ARTISTS,The Band\r\n~ALL ALBUMS\r\n2005-xxx\r\n?\r\nx\r\n" +
                  each.saved);
  }
  // What the operator types is looked at.
  Open();
  Change([](PlayEdit& edit) { edit.bpm = u"12\r\n13"_s; });
  Save();
  Change([](PlayEdit& edit) { edit.bpm = u"1"_s, edit.year = u"19-5"_s; });
  Save();
  for (const QString& name : {u"~Own"_s, QString(300, u'x')}) EXPECT_FALSE(editor_->AddName(0, name));
  for (int more = 0; editor_->Edit().names[0].size() < 10; ++more)
    EXPECT_TRUE(editor_->AddName(0, u"n%1"_s.arg(more)));
  EXPECT_FALSE(editor_->AddName(0, u".."_s));
  EXPECT_THAT(
      prompter_.Told(),
      ElementsAre(u"Bpm And Hi Pos Must Be Numbers !"_s,
                  u"Dates Must Be Entered in the form YYYY-mmm (Eg: 2005-Dec)"_s, u"Reserved Name !"_s,
                  u"The Name Is Too Long !"_s,
                  u"Cannot Add More References !\r\nann - one - Max 10 References per track Exceeded"_s));
  EXPECT_EQ(Lines()[4], u"?"_s) << "nothing of it was saved";
  for (int row = 9; row >= 0; --row) editor_->RemoveName(0, row);
  EXPECT_EQ(editor_->Edit().names[0].size(), 1) << "a genre is left";
}

TEST_F(PlayEditorTest, AFileThatVanishedIsNotMadeAndOneThatWasNeverThereChangesTheCatalogueAlone) {
  Open();
  Change([](PlayEdit& edit) { edit.hi = u"3"_s; });
  EXPECT_EQ(editor_->AddName(0, u"New"_s), u"New"_s);
  ASSERT_TRUE(QFile::remove(TrackInfoPath(database_.paths, u"ann - one"_s)));
  Save();
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"Could Not Save info File !"_s));
  EXPECT_FALSE(database_.Holds(Paths::Info, u"ann - one.kif"_s));
  EXPECT_FALSE(HasFolder(u"New"_s));
  EXPECT_NE(catalogue_.TrackHi[ToMref(1)], u"3"_s);
  EXPECT_TRUE(editor_->Dirty()) << "nothing typed is lost";

  prompter_.answers = {Answer::No};
  Open(u"bob - two"_s);
  ASSERT_TRUE(QFile::remove(TrackInfoPath(database_.paths, u"bob - two"_s)));
  Open(u"bob - two"_s);
  EXPECT_EQ(editor_->Edit().comments, u"Defaults Loaded !"_s);
  EXPECT_FALSE(editor_->Notice().isEmpty());
  Change([](PlayEdit& edit) { edit.hi = u"4"_s; });
  Save();
  EXPECT_EQ(catalogue_.TrackHi[ToMref(2)], u"4"_s);
  EXPECT_FALSE(database_.Holds(Paths::Info, u"bob - two.kif"_s));
}

TEST_F(PlayEditorTest, AKillAtAnyStepLeavesTheOldFileOrTheNewAndNeverANameWithoutItsFolder) {
  const QByteArray before = database_.Info(u"ann - one"_s);
  const auto save = [this] {
    Open();
    static_cast<void>(editor_->AddName(0, u"New"_s));
    Save();
  };
  int kills = 0;
  int old = 0;
  for (; KilledBefore(kills, save); ++kills) {
    const QByteArray now = database_.Info(u"ann - one"_s);
    if (now == before) {
      ++old;
    } else {
      EXPECT_TRUE(now.startsWith("~ALL CATEGORIES,Rock,Pop,New\r\n")) << kills;
      EXPECT_TRUE(HasFolder(u"New"_s)) << kills;
      database_.Add(Paths::Info, u"ann - one.kif"_s, before);
    }
    QDir().rmdir(database_.paths(Paths::Categories) + u"/New"_s);
  }
  EXPECT_GT(kills, 3);
  EXPECT_GT(old, 0);
}

TEST_F(PlayEditorTest, WhatOthersWroteMeanwhileStaysAndTheEditFollowsItsTrack) {
  Open();
  Change([](PlayEdit& edit) { edit.hi = u"3"_s; });
  QByteArray changed = database_.Info(u"ann - one"_s);
  changed.replace("180.5", "77").replace("120\r\n", "133\r\n").replace("-3.5,0.2", "9.0,1.0");
  database_.Add(Paths::Info, u"ann - one.kif"_s, changed);
  const QString renamed = database_.paths(Paths::Info) + u"/bob - one.kif"_s;
  ASSERT_TRUE(QFile::rename(TrackInfoPath(database_.paths, u"ann - one"_s), renamed));
  catalogue_.Rename(ToMref(1), u"bob - one.mp3"_s);
  Save();
  const QStringList lines = Lines(u"bob - one"_s);
  EXPECT_EQ(lines.mid(4, 2), (QStringList{u"133"_s, u"3"_s}));
  EXPECT_EQ(lines.mid(11, 2), (QStringList{u"9.0,1.0"_s, u"77"_s}));
  catalogue_.Remove(ToMref(1));
  EXPECT_FALSE(editor_->Ready());
  EXPECT_EQ(editor_->WhyNoEdit(), u"The track is no longer in the library"_s);
}

TEST_F(PlayEditorTest, TheDurationIsReadAnewSetAndSaved) {
  Open();
  editor_->OpenDuration();
  EXPECT_FALSE(editor_->WhyNoEdit().isEmpty()) << "the form waits";
  audio_.SetDuration(MusicPath(u"ann - one"_s), 200.9);
  prompter_.answers = {Answer::Yes, Answer::No};
  editor_->Reread();
  loop_.RunFor(1s);
  EXPECT_EQ(editor_->RereadDuration(), 200);
  editor_->ApplyDuration(150);
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.asked.back().text, u"Change the Duration \r\nFrom 03:00\r\nTo 02:30"_s);
  EXPECT_FALSE(editor_->DurationOpen());
  EXPECT_EQ(editor_->Edit().duration, 180) << "No leaves it";
  editor_->OpenDuration();
  prompter_.answers = {Answer::Yes};
  editor_->ApplyDuration(200);
  loop_.RunFor(1s);
  Save();
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(1)), 200);
  EXPECT_EQ(Lines()[12], u"200"_s);

  ASSERT_TRUE(QFile::rename(MusicPath(u"ann - one"_s), database_.paths(Paths::Music) + u"/ann - one.MP3"_s));
  editor_->OpenDuration();
  prompter_.answers = {Answer::Yes};
  editor_->Reread();
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.asked.back().text, u"Could Not Access file"_s);
}

TEST_F(PlayEditorTest, OnlyTheTextOfARightInfoFileIsImported) {
  Open();
  const QString good = database_.Add(Paths::Utility, u"good.kif"_s, InfoBytes().replace("First", "Third"));
  QByteArray lines13 = InfoBytes();
  lines13.truncate(lines13.indexOf("First"));
  const std::vector<std::pair<QByteArray, QString>> bad{
      {lines13, u"Bad File 14"_s},
      {InfoBytes().replace("~ALL ARTISTS", "~OLD"), u"Bad File 2"_s},
      {InfoBytes().replace("1999-Dec", "never"), u"Bad File 4"_s},
      {InfoBytes().replace("\r\n120\r\n", "\r\nfast\r\n"), u"Bad File 5"_s},
      {"", u"Bad File 14"_s}};
  for (const auto& [bytes, words] : bad) {
    prompter_.paths = {database_.Add(Paths::Utility, u"bad.kif"_s, bytes)};
    editor_->ImportText();
    loop_.RunFor(1s);
    EXPECT_EQ(prompter_.asked.back().text,
              u"The File bad.kif\r\nIs Not Of the Correct Kelvo File Format !\r\n"_s + words);
  }
  EXPECT_FALSE(editor_->Dirty());
  const QString own = u"First comment\nSecond comment"_s;
  const QString theirs = u"Third comment\nSecond comment"_s;
  for (const auto& [answer, text] :
       {std::pair{Answer::Cancel, own}, std::pair{Answer::No, own + u'\n' + theirs},
        std::pair{Answer::Yes, theirs}}) {
    prompter_.paths = {good};
    prompter_.answers = {answer};
    editor_->ImportText();
    loop_.RunFor(1s);
    EXPECT_EQ(editor_->Edit().comments, text);
  }
}

TEST_F(PlayEditorTest, ATrialHasTheFadesOfTheFormAndThoseOfTheTrackBefore) {
  Open();
  desk_->whyNot = u"no device"_s;
  editor_->TryOrStop();
  loop_.RunFor(10ms);
  EXPECT_FALSE(desk_->tried);
  EXPECT_EQ(editor_->WhyNoTrial(), u"no device"_s);
  desk_->whyNot.clear();
  desk_->before = MusicPath(u"bob - two"_s);
  Change([](PlayEdit& edit) { edit.Fade(FadePanel::Out).position = 21; });
  editor_->TryOrStop();
  loop_.RunFor(10ms);
  ASSERT_TRUE(desk_->tried);
  EXPECT_EQ(desk_->tried->afterPlay.FadePosition.FadeIn(), 21);
  EXPECT_EQ(desk_->tried->beforePlay.FadePosition.FadeIn(), 5);
  editor_->TryOrStop();
  EXPECT_FALSE(desk_->tried);
  editor_->TryOrStop();
  editor_->Leave();
  loop_.RunFor(10ms);
  EXPECT_FALSE(desk_->tried) << "it ends with the window";
  EXPECT_EQ(desk_->left, 1);
}

TEST_F(PlayEditorTest, APictureThatHangsOrIsBrokenHasWordsInItsPlace) {
  Open();
  EXPECT_TRUE(editor_->Wave().Words().startsWith(u"No picture: "_s)) << "it is no sound";
  loop_.HangDisk(database_.paths(Paths::Music));
  Open(u"bob - two"_s);
  loop_.RunFor(6s);
  EXPECT_EQ(editor_->Wave().Words(), u"Its disk does not answer yet"_s);
  editor_->Leave();
  EXPECT_TRUE(editor_->Wave().Words().isEmpty());
}

}  // namespace
