#include "console/session/SessionToPlaylist.h"

#include <gtest/gtest.h>

#include <numeric>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;

SessionEvent Event(SessionCode code, int track, double time, Deck deck,
                   TransitionKind fade = TransitionKind::None, int speed = -1) {
  SessionEvent event;
  event.Code = code;
  event.Track = ToMref(track);
  event.Time = time;
  event.OnDeck = deck;
  event.FadeType = fade;
  event.Speed = speed;
  event.Length = 100 + track;
  return event;
}

/// Two tracks that are faded into one another, then the first one again.
std::vector<SessionEvent> Mix() {
  using enum SessionCode;
  return {Event(TrackStopped, 9, 1, Deck::One),
          Event(Loaded, 4, 5.9, Deck::One),
          Event(TrackStarted, 4, 8, Deck::One),
          Event(Loaded, 7, 40, Deck::Two),
          Event(TrackStarted, 7, 61, Deck::Two),
          Event(FadeStarted, 7, 61, Deck::Two, TransitionKind::Pan, 26),
          Event(FadeEnded, 7, 71, Deck::Two, TransitionKind::Pan, 26),
          Event(EndOfTrack, 4, 80, Deck::One),
          Event(Loaded, 4, 90, Deck::One),
          Event(FadeStarted, 4, 95, Deck::One, TransitionKind::PartFade, 12)};
}

std::vector<int> From(int first, int last) {
  std::vector<int> rows(static_cast<std::size_t>(last - first + 1));
  std::iota(rows.begin(), rows.end(), first);
  return rows;
}

TEST(SessionToPlaylist, AGroupKeepsEachTracksOwnEventsAndItsNumbersRunOn) {
  const auto arguments = ArgumentsOf(Mix(), From(1, 9), SessionSave::Group, 3);
  ASSERT_EQ(arguments.size(), 3U);
  EXPECT_EQ(arguments[0].row, 1);
  EXPECT_EQ(arguments[0].text,
            u"1,00:00:05,4,2,0,-1,1,-1,104#2,00:00:08,4,2,0,-1,3,-1,104#3,00:01:20,4,2,0,-1,19,-1,104"_s);
  EXPECT_EQ(arguments[1].row, 3);
  EXPECT_EQ(arguments[1].text,
            u"4,00:00:40,7,3,0,-1,1,-1,107#5,00:01:01,7,3,0,-1,3,-1,107#"
            "6,00:01:01,7,3,3,26,9,-1,107#7,00:01:11,7,3,3,26,11,-1,107"_s);
  EXPECT_EQ(arguments[2].text, u"8,00:01:30,4,2,0,-1,1,-1,104#9,00:01:35,4,2,2,12,9,-1,104"_s)
      << "loaded again, it begins a line of its own";
}

TEST(SessionToPlaylist, AStandardSaveKeepsEachTracksFirstFade) {
  const auto arguments = ArgumentsOf(Mix(), {1, 3, 5, 8}, SessionSave::Standard, 9);
  ASSERT_EQ(arguments.size(), 3U);
  EXPECT_EQ(arguments[0].text, QString()) << "no fade of it is among the picked rows";
  EXPECT_EQ(arguments[1].text, u"3,26,9"_s);
  const auto all = ArgumentsOf(Mix(), From(1, 9), SessionSave::Standard, 9);
  EXPECT_EQ(all[0].text, u"2,12,9"_s) << "also behind a second load";
}

TEST(SessionToPlaylist, WhatIsNoStretchIsRefused) {
  const std::vector<SessionEvent> rows = Mix();
  const QString few = u"A Minimum Of 3 Tracks Are Required to Create A Playlist !"_s;
  EXPECT_EQ(WhyNotSaved(rows, {}, SessionSave::Standard), few);
  EXPECT_EQ(WhyNotSaved(rows, {1, 2}, SessionSave::Group), few);
  EXPECT_EQ(WhyNotSaved(rows, {2, 4, 9}, SessionSave::Standard), QString());
  EXPECT_EQ(WhyNotSaved(rows, {2, 3, 5}, SessionSave::Group),
            u"The First Element of Your Selections Must be LOAD Track !"_s);
  EXPECT_EQ(WhyNotSaved(rows, {1, 2, 4}, SessionSave::Group),
            u"Group Playlists Can Only Be Saved In Consecutive Blocks\r\n"
            " Please Reselect, Ensuring There are No Gaps in your Selections !"_s);
  EXPECT_EQ(WhyNotSaved(rows, From(1, 9), SessionSave::Group), QString());
}

}  // namespace
}  // namespace kelvo
