#include "platform/FileSteps.h"
#include "playlists/GroupEditor.h"
#include "playlists/GroupLists.h"
#include "playlists/StoreFixture.h"

#include <QFile>

namespace kelvo::testing {
namespace {

class GroupDeskInMemory final : public GroupEditDesk {
 public:
  [[nodiscard]] bool HoldsGroup() const override { return !lines.empty(); }
  [[nodiscard]] int Revision() const override { return revision; }
  [[nodiscard]] QString Name() const override { return name; }
  [[nodiscard]] QString Folder() const override { return folder; }
  [[nodiscard]] std::vector<QueuedLine> Lines() const override { return lines; }
  void SetLines(const std::vector<QueuedLine>& fresh) override { Change(fresh); }
  [[nodiscard]] std::optional<double> Playhead() const override { return playhead; }
  void Left() override { ++left; }

  void Change(const std::vector<QueuedLine>& fresh) {
    lines = fresh;
    ++revision;
    if (OnChanged) OnChanged();
  }
  void Queue(const QStringList& texts) {
    std::vector<QueuedLine> fresh;
    for (const QString& text : texts) {
      const auto elements = ParseGroupLine(text);
      fresh.push_back({elements ? elements->front().track : Mref::None, text});
    }
    Change(fresh);
  }
  [[nodiscard]] QStringList Texts() const {
    QStringList texts;
    for (const QueuedLine& line : lines) texts.append(line.text);
    return texts;
  }

  std::vector<QueuedLine> lines;
  QString name = u"Mix(Grp)"_s;
  QString folder;
  int revision = 0;
  std::optional<double> playhead;
  int left = 0;
};

/// The editor on the playlist "Rock/Mix(Grp)" of the tracks "ann - one" and "bob - two", in simulated time.
class GroupEditorTest : public StoreTest {
 protected:
  void SetUp() override {
    for (int line = 0; line < 2; ++line) Store(line + 1, kNames[line], MixLines()[line]);
    desk_->folder = Place(u"Rock/Mix(Grp)"_s);
    desk_->Queue(MixLines());
    editor_.emplace(GroupEditor::Services{
        .loop = loop_, .disks = disks_, .prompter = prompter_, .catalogue = catalogue_, .desk = desk_});
  }
  void Store(int number, const QString& name, const QString& line) const {
    AddEntry(u"Rock/Mix(Grp)"_s, u" %1~%2.lnk"_s.arg(number).arg(name), MusicPath(name), u""_s);
    AddText(u"Rock/Mix(Grp)"_s, name + u"%1.txt"_s.arg(number), line.toLatin1() + "\r\n");
  }
  [[nodiscard]] QByteArray Companion(const QString& file) const {
    return database_.tree.Read(Paths::FolderName(Paths::Playlists) + u"/Rock/Mix(Grp)/"_s + file);
  }
  [[nodiscard]] PlaylistLink Link(const QString& file) const {
    return PlaylistLink::Read(Place(u"Rock/Mix(Grp)/"_s + file));
  }
  void Open() {
    editor_->Enter();
    loop_.RunFor(1s);
  }
  void Save() {
    editor_->Save();
    loop_.RunFor(1s);
  }
  [[nodiscard]] int TimeOf(int row) const { return editor_->Rows()[row].element.seconds; }

  const QStringList kNames{u"ann - one"_s, u"bob - two"_s};
  std::shared_ptr<GroupDeskInMemory> desk_ = std::make_shared<GroupDeskInMemory>();
  std::optional<GroupEditor> editor_;
};

TEST_F(GroupEditorTest, ASaveGoesToTheQueueAndTheLinksAndComesBackFromThereWhenItIsWanted) {
  Open();
  EXPECT_EQ(editor_->Title(), u"Grp Playlist Mix(Grp)"_s);
  EXPECT_EQ(editor_->Details(editor_->Rows()[0]), u"Load ann - one"_s);
  EXPECT_EQ(editor_->WhyNoBringBack(), u"The links hold no edit of this list"_s);
  editor_->MoveBy(1, 5);
  editor_->SetRepeats(true);
  Save();
  EXPECT_FALSE(editor_->Dirty());
  const QStringList edited = desk_->Texts();
  EXPECT_TRUE(edited[0].contains(u"2,00:00:17,1,2"_s)) << edited[0].toStdString();
  EXPECT_TRUE(edited[1].endsWith(u"#Repeat,00:02:05,2,3,0,-1,21,60,60"_s));
  EXPECT_EQ(Link(u" 1~ann - one.lnk"_s).arguments, edited[0]);
  EXPECT_EQ(Link(u" 2~bob - two.lnk"_s).arguments, edited[1]);
  EXPECT_EQ(Link(u" 2~bob - two.lnk"_s).targetPath, MusicPath(u"bob - two"_s));
  EXPECT_EQ(Companion(u"ann - one1.txt"_s), MixLines()[0].toLatin1() + "\r\n");
  EXPECT_EQ(Files(u"Rock/Mix(Grp)"_s).size(), 4);
  editor_->Leave();
  EXPECT_EQ(desk_->left, 1);

  // The queue is loaded anew from the companions; the tracks have other numbers by now.
  AddTrack(u"dan - four"_s);
  const auto other = [](QString line) { return RenumberedLine(line, ToMref(line.startsWith(u'1') ? 4 : 2)); };
  catalogue_.Rename(ToMref(4), u"ann - one.mp3"_s);
  desk_->Queue({other(MixLines()[0]), other(MixLines()[1])});
  Open();
  EXPECT_EQ(TimeOf(1), 12);
  EXPECT_EQ(editor_->WhyNoBringBack(), QString());
  editor_->BringBack();
  EXPECT_EQ(TimeOf(1), 17);
  EXPECT_EQ(editor_->Rows()[0].element.track, ToMref(4));
  EXPECT_TRUE(editor_->Edit().Repeats());
  EXPECT_EQ(editor_->WhyNoBringBack(), u"The list is as its links hold it"_s);
  editor_->Undo();
  EXPECT_EQ(TimeOf(1), 12);
  EXPECT_FALSE(editor_->WhyNoUndo().isEmpty());
  editor_->BringBack();
  Save();
  EXPECT_EQ(desk_->Texts(), (QStringList{other(edited[0]), other(edited[1])}));
}

TEST_F(GroupEditorTest, ThePanelChangesOneElementAndTheFirstAndTheMarkStay) {
  Open();
  editor_->EditSelected();
  EXPECT_EQ(LastTold(), u"Can't Edit First item"_s);
  EXPECT_FALSE(editor_->Panel());
  editor_->Select(4);
  editor_->EditSelected();
  ASSERT_TRUE(editor_->Panel());
  for (const QString& why : {editor_->WhyNoSave(), editor_->WhyNoUndo(), editor_->WhyNoMove(1)})
    EXPECT_EQ(why, u"An element is being edited"_s);
  editor_->SetSpeed(50);
  EXPECT_EQ(editor_->Panel()->speed, 25);
  prompter_.answers = {Answer::No, Answer::Yes};
  editor_->SetByHand();
  loop_.RunFor(1s);
  EXPECT_FALSE(editor_->Panel()->byHand);
  EXPECT_EQ(
      LastTold(),
      u"Manually Setting Fade Values May Result in Upredictable playlist execution !\r\n\r\nContinue ?"_s);
  editor_->SetByHand();
  loop_.RunFor(1s);
  editor_->SetSpeed(50);
  editor_->SetSeconds(62);
  editor_->Apply();
  EXPECT_FALSE(editor_->Panel());
  EXPECT_EQ(TimeOf(4), 62);
  EXPECT_EQ(TimeOf(7), 122);
  EXPECT_EQ(editor_->Rows()[6].element.speed, 50);
  editor_->SetRepeats(true);
  editor_->Select(8);
  editor_->EditSelected();
  EXPECT_FALSE(editor_->Panel());
  EXPECT_EQ(editor_->WhyNoEdit(), u"The repeat mark is set by its box"_s);
  editor_->DragTo(2, 52);
  editor_->DragTo(2, 57);
  EXPECT_EQ(TimeOf(2), 57);
  editor_->CancelDrag();
  EXPECT_EQ(TimeOf(2), 50);
  editor_->DragTo(2, 52);
  editor_->DragTo(2, 55);
  editor_->EndDrag();
  EXPECT_EQ(TimeOf(7), 127);
  for (int step = 0; step < 3; ++step) editor_->Undo();
  EXPECT_FALSE(editor_->Dirty()) << "a drag, the mark and the panel are a step each";
}

TEST_F(GroupEditorTest, ChangesOutliveTheQueueAndTheWindowUntilTheOperatorDecides) {
  Open();
  editor_->MoveBy(7, 10);
  editor_->Leave();
  desk_->Queue({u"1,00:00:01,3,2,0,-1,1,-1,9"_s});
  Open();
  EXPECT_EQ(TimeOf(7), 130);
  EXPECT_TRUE(editor_->Notice().startsWith(u"The play queue holds another list now"_s));
  prompter_.answers = {Answer::Cancel, Answer::Yes};
  Job<bool> close = editor_->MayClose();
  loop_.RunFor(1s);
  EXPECT_FALSE(close.Running());
  EXPECT_TRUE(editor_->Dirty());
  close = editor_->MayClose();
  loop_.RunFor(1s);
  EXPECT_TRUE(Link(u" 2~bob - two.lnk"_s).arguments.contains(u"8,00:02:10,2"_s));
  EXPECT_EQ(desk_->Texts(), QStringList{u"1,00:00:01,3,2,0,-1,1,-1,9"_s}) << "the queue keeps its own";
  editor_->Leave();
  Open();
  EXPECT_EQ(editor_->Rows().Count(), 1);

  editor_->Leave();
  desk_->Queue({u"junk"_s});
  Open();
  EXPECT_EQ(LastTold(), u"Could Not Load Play list !"_s);
  EXPECT_EQ(editor_->WhyNoSave(), u"The list is empty"_s);
  editor_->Leave();
  desk_->folder.clear();
  desk_->Queue(MixLines());
  Open();
  EXPECT_EQ(editor_->WhyNoBringBack(), u"The list is in no playlist's folder"_s);
  editor_->MoveBy(1, 1);
  catalogue_.Remove(ToMref(1));
  EXPECT_EQ(editor_->Details(editor_->Rows()[0]), u"Load (not in the library)"_s);
  EXPECT_EQ(editor_->Rows()[2].element.track, ToMref(1)) << "its number went down";
  desk_->playhead = 33.5;
  loop_.RunFor(1s);
  EXPECT_EQ(editor_->Playhead(), 33.5);
  EXPECT_EQ(editor_->Notice(), u"The list runs: what you save counts from its next start"_s);
  Save();
  EXPECT_TRUE(desk_->Texts()[0].contains(u"00:00:13"_s));
}

TEST_F(GroupEditorTest, ATrackThatIsPlayedTwiceHasItsOwnLinkForEachLineAndAKillLeavesOneStateOfThem) {
  const QString again = u"9,00:03:00,1,2,0,-1,1,-1,60#10,00:03:02,1,2,0,-1,3,-1,60"_s;
  Store(3, u"ann - one"_s, again);
  AddText(u"Rock/Mix(Grp)"_s, u"cover.jpg"_s, "picture");
  const QString folder = Place(u"Rock/Mix(Grp)"_s);
  const QStringList names{u"ann - one"_s, u"BOB - Two"_s, u"ann - one"_s, u"nobody"_s};
  const QStringList lines = MixLines() + QStringList{again, again};
  const auto stored = [&] {
    QStringList found;
    for (const StoredLine& line : ReadStoredLines(folder, names)) found.append(line.edited.value_or(u"-"_s));
    return found;
  };
  int step = 0;
  const QStringList none(4, u"-"_s);
  const QStringList all = MixLines() + QStringList{again, u"-"_s};
  while (KilledBefore(step, [&] { (void)WriteEditedLines(folder, names, lines); })) {
    MendPlaylists(Place(QString()));
    EXPECT_TRUE(stored() == none || stored() == all) << step;
    EXPECT_EQ(Files(u"Rock/Mix(Grp)"_s).size(), 7) << step;
    if (stored() == all) {
      for (int line = 0; line < 3; ++line) Store(line + 1, names[line].toLower(), lines[line]);
    }
    ++step;
  }
  EXPECT_GT(step, 5);
  EXPECT_EQ(WriteEditedLines(folder, names, lines), 1) << "one has no link";
  EXPECT_EQ(stored(), all);
  EXPECT_EQ(ReadStoredLines(folder, names)[2].recorded, again);
  EXPECT_EQ(Companion(u"cover.jpg"_s), "picture");
}

}  // namespace
}  // namespace kelvo::testing
