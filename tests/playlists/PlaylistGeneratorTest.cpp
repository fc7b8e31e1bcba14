#include "playlists/PlaylistGenerator.h"
#include "playlists/StoreFixture.h"

namespace kelvo::testing {
namespace {

class TheGenerator : public StoreTest {
 protected:
  TheGenerator() {
    CatalogueTables tables(database_.paths(Paths::Music));
    tables.GenreList = {u"Jazz"_s, u"Pop"_s, u"Polka"_s, u"Rock"_s};
    catalogue_.Replace(std::move(tables));
    Add(u"Ann - One"_s, u"Pop,Rock"_s, 100.9);
    Add(u"Bob - Two"_s, u"ROCK"_s, 200);
    Add(u"Cat - Three"_s, u"Pop Music"_s, 300);
    Add(u"Dan - Four"_s, u"pop"_s, -1);
    Add(u"Eve - Five"_s, u"Pop,Jazz"_s, 150);
    generator_.emplace(PlaylistGenerator::Services{
        .playlists = ForPlaylists(), .played = [this](Nanoseconds within) { return Played(within); }});
  }
  void Add(const QString& name, const QString& genres, double seconds) {
    database_.AddTrack(name);
    CatalogueRow row;
    row.name = name;
    row.extension = u".mp3"_s;
    row.genres += u',' + genres;
    row.duration = seconds;
    row.bpm = u"120"_s;
    catalogue_.Append(row);
  }
  std::vector<Mref> Played(Nanoseconds within) {
    return within >= playedAgo_ ? played_ : std::vector<Mref>();
  }
  /// Chooses genres by name, in this order.
  void Choose(const QStringList& names) {
    for (const QString& name : names) {
      for (int row = 0; row < generator_->Genres().Count(); ++row) {
        if (generator_->Genres()[row].name != name) continue;
        generator_->Choose({row});
        break;
      }
    }
  }
  void Wait() {
    ASSERT_TRUE(loop_.RunUntil([this] { return !generator_->Busy(); }, 5min));
    loop_.RunFor(1ms);
  }
  void Generate() {
    generator_->Generate();
    Wait();
  }
  void Fit() {
    generator_->Fit();
    Wait();
  }
  template <typename Change>
  void Wish(Change change) {
    GeneratorWishes wishes = generator_->Wishes();
    change(wishes);
    generator_->SetWishes(wishes);
  }
  /// The list with "=" and the genre for each head, and the number of each track.
  [[nodiscard]] QStringList Listed() const {
    QStringList rows;
    for (const GeneratedRow& row : generator_->List().All())
      rows.append(row.track == Mref::None ? u"="_s + generator_->GenreOf(row.genre)
                                          : QString::number(ToInt(row.track)));
    return rows;
  }
  [[nodiscard]] std::vector<int> Sequence() const {
    std::vector<int> tracks;
    for (const SequenceRow& row : generator_->Sequence().All()) tracks.push_back(ToInt(row.track));
    return tracks;
  }

  std::vector<Mref> played_;
  Nanoseconds playedAgo_ = 2h;
  std::optional<PlaylistGenerator> generator_;
};

TEST_F(TheGenerator, ListsGenresAlternatelyDownAndUpAndSaysWhenThatIsNotEnough) {
  Generate();
  EXPECT_TRUE(Listed().isEmpty()) << "no genre is chosen";
  Choose({u"Pop"_s, u"Polka"_s, u"Rock"_s, u"Jazz"_s});
  EXPECT_EQ(generator_->Genres().Count(), 0);
  Wish([](GeneratorWishes& wishes) { wishes.seconds = 100 + 150 + 100 + 200 + 150 + 1; });
  Generate();
  EXPECT_EQ(Listed(), (QStringList{u"=Pop"_s, u"5"_s, u"4"_s, u"1"_s, u"=Polka"_s, u"=Rock"_s, u"1"_s, u"2"_s,
                                   u"=Jazz"_s, u"5"_s}));
  EXPECT_EQ(LastTold(),
            u" Was unable to find enough tracks to fulfill the Specified Play List Duration\r\n\r\n"
            "Required Duration: 701 Seconds ! \r\nTotal Track Times Located: 700 Seconds\r\n\r\n"
            "You May need to define more bpm values and/or add more genres"_s);
  prompter_.asked.clear();
  Wish([](GeneratorWishes& wishes) { wishes.seconds = 700; });
  Generate();
  EXPECT_TRUE(prompter_.asked.empty());

  EXPECT_EQ(generator_->Move(3, -1), 2);
  EXPECT_EQ(generator_->Move(0, -1), 0);
  generator_->GiveBack({0, 1});
  EXPECT_EQ(generator_->Genres()[0].name, u"Pop"_s) << "they come back in the catalogue's order";
  Wish([](GeneratorWishes& wishes) { wishes.seconds = 60; });
  Generate();
  EXPECT_EQ(Listed(), (QStringList{u"=Jazz"_s, u"5"_s, u"=Rock"_s, u"1"_s, u"2"_s}));
}

TEST_F(TheGenerator, ItsListsFollowTheCatalogueAlsoWhileTheyAreMade) {
  for (int track = 0; track < 3000; ++track) Add(u"More - %1"_s.arg(track), u"Rock"_s, 100);
  Choose({u"Rock"_s});
  generator_->Generate();
  ASSERT_TRUE(generator_->Busy()) << "it gives way to the loop";
  catalogue_.Remove(ToMref(2));
  Wait();
  EXPECT_EQ(generator_->List().Count(), 1 + 3001);
  EXPECT_EQ(generator_->TotalSeconds(), 100 + 3000 * 100);
  EXPECT_EQ(generator_->List()[3001].track, ToMref(1));
  Wish([](GeneratorWishes& wishes) { wishes.seconds = 1000; });
  Fit();
  ASSERT_EQ(Sequence().size(), 10U);
  const int first = Sequence().front();
  catalogue_.Remove(ToMref(first));
  EXPECT_EQ(Sequence().size(), 9U);
  EXPECT_EQ(generator_->Sequence()[0].pick.start, 0);
  EXPECT_EQ(generator_->List().Count(), 1 + 3000);
  EXPECT_TRUE(generator_->SequenceWords().contains(u"00:01:40 too short"_s));

  generator_->Generate();
  generator_->Stop();
  Wait();
  EXPECT_LT(generator_->List().Count(), 3000);
  catalogue_.RenameReference(ReferenceSet::Genres, u"Rock"_s, u"Roll"_s);
  EXPECT_EQ(generator_->Chosen()[0].name, u"Roll"_s);
  catalogue_.Replace(CatalogueTables());
  EXPECT_EQ(generator_->List().Count() + generator_->Sequence().Count() + generator_->Chosen().Count(), 0);
}

TEST_F(TheGenerator, LeavesOutWhatPlayedAndNamesWhatItBreaks) {
  Choose({u"Pop"_s, u"Rock"_s});
  Wish([](GeneratorWishes& wishes) {
    wishes.seconds = 450;
    wishes.playedHours = 3;
  });
  Fit();
  EXPECT_THAT(Sequence(), ::testing::UnorderedElementsAre(1, 2, 5)) << "listed twice, and taken once";
  EXPECT_EQ(generator_->SequenceWords().section(u", "_s, 0, 2), u"3 tracks, 00:07:30, to the second"_s);
  EXPECT_TRUE(generator_->SequenceWords().contains(u"of unknown length: 1"_s));
  played_ = {ToMref(2)};
  Fit();
  EXPECT_THAT(Sequence(), ::testing::UnorderedElementsAre(1, 5));
  EXPECT_TRUE(generator_->SequenceWords().contains(u"00:03:20 too short"_s));
  EXPECT_TRUE(generator_->SequenceWords().contains(u"left out, played: 1"_s));
  Wish([](GeneratorWishes& wishes) { wishes.playedHours = 1; });
  Fit();
  EXPECT_EQ(Sequence().size(), 3U) << "that was two hours ago";

  Wish([](GeneratorWishes& wishes) {
    for (int point = 0; point < TempoOutline::kPoints; ++point) wishes.outline.SetBpm(point, 90);
  });
  Fit();
  EXPECT_EQ(PlaylistGenerator::BrokenRules(generator_->Sequence()[0]), u"Tempo, wanted 90"_s);
  EXPECT_TRUE(generator_->SequenceWords().contains(u"rules broken: 3"_s));
  EXPECT_EQ(GeneratorWishes::Read(program_), generator_->Wishes()) << "they are kept";
}

TEST_F(TheGenerator, GivesWhatItMadeToTheQueueAndToTheStore) {
  QFile::remove(MusicPath(u"Bob - Two"_s));
  generator_->AddToQueue({ToMref(5), ToMref(2), ToMref(1)});
  Wait();
  EXPECT_EQ(queue_->Titles(), (QStringList{u"Eve - Five"_s, u"Ann - One"_s}));
  EXPECT_TRUE(LastTold().startsWith(u"1 Of 3 Tracks Were Not Found :"_s)) << LastTold().toStdString();
  EXPECT_EQ(queue_->name, u"(No Name)"_s);
  prompter_.answers = {Answer::Cancel};
  generator_->AddToQueue({ToMref(3)});
  Wait();
  EXPECT_EQ(LastTold(), u"Clear The Play Queue First ?"_s);
  EXPECT_EQ(queue_->Count(), 2);
  prompter_.answers = {Answer::No};
  generator_->AddToQueue({ToMref(3)});
  Wait();
  EXPECT_EQ(queue_->Count(), 3);

  MakeCategory(u"Rock"_s);
  generator_->Shelf().List(u"Rock"_s, {});
  ASSERT_TRUE(loop_.RunUntil([this] { return !generator_->Shelf().Listing(); }));
  generator_->Save(u"made"_s, {ToMref(5), ToMref(1)});
  Wait();
  EXPECT_EQ(Files(u"Rock/Made"_s), (QStringList{u" 1~Eve - Five.lnk"_s, u" 2~Ann - One.lnk"_s}));
  EXPECT_EQ(generator_->SaveName(), u"Made"_s);
  generator_->Save(u"Big"_s, std::vector<Mref>(51, ToMref(1)));
  Wait();
  EXPECT_EQ(LastTold(), u"Playlists Cannot Contain More Than 50 Tracks, Please Reduce By 1 ! "_s);
  generator_->Save(u"Big"_s, std::vector<Mref>(5000, ToMref(1)));
  EXPECT_EQ(LastTold(), u"Playlists Cannot Contain More Than 50 Tracks, Please Reduce By 4950 ! "_s);
}

}  // namespace
}  // namespace kelvo::testing
