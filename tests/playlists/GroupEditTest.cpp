#include "playlists/GroupClips.h"
#include "playlists/GroupLists.h"

#include <gmock/gmock.h>

namespace kelvo::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<int> Times(const GroupEdit& edit) {
  std::vector<int> times;
  for (const GroupRow& row : edit.Rows()) times.push_back(row.element.seconds);
  return times;
}

QStringList Texts(const GroupEdit& edit) {
  QStringList texts;
  for (const GroupEdit::Line& line : edit.Lines()) texts.append(line.text);
  return texts;
}

TEST(GroupEdit, AMovedElementTakesAllLaterOnesOfBothDecksAlongAndNeverPassesAnother) {
  GroupEdit edit(MixLines());
  ASSERT_THAT(Times(edit), ElementsAre(10, 12, 50, 60, 60, 64, 64, 120));
  EXPECT_EQ(Texts(edit), MixLines()) << "what was read is written as it was";
  edit.Move(2, 55);
  EXPECT_THAT(Times(edit), ElementsAre(10, 12, 55, 65, 65, 69, 69, 125));
  EXPECT_EQ(Texts(edit)[0],
            u"1,00:00:10,1,2,0,-1,1,-1,60#2,00:00:12,1,2,0,-1,3,-1,60#"
            u"7,00:01:09,1,2,0,-1,13,-1,60"_s);
  edit.Move(2, 0);
  EXPECT_THAT(Times(edit), ElementsAre(10, 12, 12, 22, 22, 26, 26, 82)) << "not before the one above";
  const GroupEdit before = edit;
  for (const int row : {-1, 0, 8, 1000}) edit.Move(row, 500);
  EXPECT_EQ(edit, before) << "the first one, and none";
  edit.Move(7, 2'000'000'000);
  EXPECT_EQ(Times(edit)[6], 26);
  EXPECT_EQ(GroupEdit(Texts(edit)), edit) << "a time can be as late as a line can say";
  edit.Move(1, 2'000'000'000);
  EXPECT_EQ(GroupEdit(Texts(edit)), edit);
}

TEST(GroupEdit, AFadeIsAsLongAsItsSpeedSaysAndItsEndFollows) {
  EXPECT_EQ(FadeSeconds(25, TransitionKind::PartFade), 4);
  EXPECT_EQ(FadeSeconds(25, TransitionKind::Pan), 9);
  for (const TransitionKind kind : {TransitionKind::PartFade, TransitionKind::Pan}) {
    for (int seconds = 0; seconds <= FadeSeconds(49, kind); ++seconds)
      EXPECT_EQ(FadeSeconds(50 - SpeedOfFade(seconds, kind), kind), seconds);
    EXPECT_EQ(FadeSeconds(50 - SpeedOfFade(1000, kind), kind), FadeSeconds(49, kind)) << "the longest";
  }
  GroupEdit edit(MixLines());
  StepEdit fade = edit.Begin(4);
  EXPECT_EQ(fade.endSeconds, 64);
  edit.SetFade(fade, TransitionKind::Dub);
  EXPECT_EQ(fade.fade, TransitionKind::PartFade) << "a fade is no dub";
  edit.SetFade(fade, TransitionKind::Pan);
  edit.SetSpeed(fade, 50);
  EXPECT_EQ(fade.endSeconds, 69) << "the speed follows from the times";
  edit.Apply(fade);
  EXPECT_THAT(Times(edit), ElementsAre(10, 12, 50, 60, 60, 64, 69, 125)) << "what is in the fade stays";
  EXPECT_EQ(edit.At(6).fade, TransitionKind::Pan);
  fade = edit.Begin(4);
  edit.SetEnd(fade, 0);
  EXPECT_EQ(fade.endSeconds, 61) << "a second is the least";
  edit.Apply(fade);
  EXPECT_EQ(Times(edit)[6], 64) << "not before what is in the fade";

  edit = GroupEdit(MixLines());
  StepEdit end = edit.Begin(6);
  EXPECT_EQ(end.fade, TransitionKind::PartFade);
  edit.SetSeconds(end, 66);
  edit.Apply(end);
  EXPECT_THAT(Times(edit), ElementsAre(10, 12, 50, 60, 60, 64, 66, 122));
  EXPECT_EQ(edit.At(4).speed, SpeedOfFade(6, TransitionKind::PartFade)) << "its start has the speed too";
  EXPECT_EQ(edit.At(6).speed, edit.At(4).speed);
  end = edit.Begin(6);
  end.byHand = true;
  edit.SetSpeed(end, 99);
  edit.SetSeconds(end, 70);
  edit.Apply(end);
  EXPECT_EQ(edit.At(4).speed, 50) << "by hand it is free of the times";
  EXPECT_EQ(Times(edit)[6], 70);
}

TEST(GroupEdit, TheRepeatMarkIsThereOnceOrNotAndHostileLinesAreKept) {
  GroupEdit edit(MixLines());
  edit.SetRepeats(true);
  edit.SetRepeats(true);
  ASSERT_EQ(edit.Count(), 9);
  EXPECT_TRUE(Texts(edit)[1].endsWith(u"#Repeat,00:02:00,2,3,0,-1,21,60,60"_s)) << "behind the last element";
  EXPECT_EQ(edit.KindOf(8), GroupEdit::Kind::Fixed);
  edit.Move(7, 121);
  EXPECT_EQ(Times(edit)[8], 121);
  EXPECT_TRUE(GroupEdit(Texts(edit)).Repeats());
  edit.SetRepeats(false);
  edit.SetRepeats(false);
  EXPECT_EQ(edit.Count(), 8);
  EXPECT_FALSE(GroupEdit(Texts(edit)).Repeats());

  const QString load = u"1,00:00:01,3,2,0,-1,1,-1,9"_s;
  GroupEdit hostile({u"junk"_s, load, QString(), u"1,00:00:01,3,2,0,-1,3,-1,9"_s});
  EXPECT_EQ(hostile.Count(), 1);
  EXPECT_EQ(hostile.StrangeLines(), 3);
  hostile.SetRepeats(false);
  EXPECT_EQ(Texts(hostile), (QStringList{load, u"junk"_s, QString(), u"1,00:00:01,3,2,0,-1,3,-1,9"_s}));
  // A load that comes late, ends without starts, two marks: what moves does not fail.
  GroupEdit odd(
      {u"1,00:00:09,3,2,0,-1,1,-1,9#2,00:00:01,3,2,2,-1,11,-1,9#3,00:00:02,3,2,0,-1,9,-1,9#"
       u"Repeat,00:00:02,3,2,0,-1,21,-1,9#Repeat,00:00:01,3,2,0,-1,21,-1,9"_s});
  for (int row = 0; row < odd.Count(); ++row) {
    StepEdit step = odd.Begin(row);
    odd.SetEnd(step, 99);
    odd.SetFade(step, TransitionKind::Pan);
    odd.SetSeconds(step, step.seconds + 7);
    odd.Apply(step);
    EXPECT_TRUE(ParseGroupLine(Texts(odd)[0])) << row;
  }
  odd.SetRepeats(false);
  EXPECT_FALSE(odd.Repeats());
  GroupEdit none;
  none.SetRepeats(true);
  none.Move(1, 1);
  EXPECT_EQ(none.Count(), 0);
}

TEST(GroupClips, TracksAreHeardFromTheirStartUntilTheyAreFadedOutStoppedOrOver) {
  EXPECT_THAT(DeckClips(GroupEdit(MixLines())),
              ElementsAre(DeckClip{2, ToMref(1), 12, 12, 60, 64}, DeckClip{3, ToMref(2), 60, 60, 120, 120}));
  GroupEdit pan(MixLines());
  StepEdit fade = pan.Begin(4);
  pan.SetFade(fade, TransitionKind::Pan);
  pan.Apply(fade);
  EXPECT_EQ(DeckClips(pan)[1], (DeckClip{3, ToMref(2), 60, 69, 120, 120})) << "a pan rises";
  // Never ended: as long as the track is, from where it was set to.
  const GroupEdit alone(
      {u"1,00:00:00,1,2,0,-1,1,-1,60#2,00:00:10,1,2,0,-1,3,-1,60#"
       u"3,00:00:20,1,2,0,-1,15,50,60"_s});
  EXPECT_THAT(DeckClips(alone), ElementsAre(DeckClip{2, ToMref(1), 10, 10, 30, 30}));
  EXPECT_THAT(DeckClips(GroupEdit({u"1,00:00:00,1,2,0,-1,1,-1,60"_s})), IsEmpty()) << "loaded, not heard";
}

}  // namespace
}  // namespace kelvo::testing
