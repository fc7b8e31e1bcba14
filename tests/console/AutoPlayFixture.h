#pragma once

#include "console/AutoDesk.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"

#include <gmock/gmock.h>

#include <optional>

namespace kelvo::testing {

/// Info files whose tracks begin and end strongly, and softly.
inline const QByteArray kStrong = AutoDesk::Info("0,1,1", "3,3", "25,25", 1, 1);
inline const QByteArray kSoft = AutoDesk::Info("0,1,1", "3,3", "25,25", 0, 0);

/// Automatic play at a desk in simulated time.
class AutoPlayFixture : public ::testing::Test {
 protected:
  void Make(AutoSeconds settings = {}) { desk_.emplace(tree_.Path(), prompter_, 2007, settings); }
  /// A queue of tracks "A", "B", ... of `seconds` each.
  void MakeQueue(int tracks, double seconds, const QByteArray& info, AutoSeconds settings = {}) {
    Make(settings);
    for (int each = 0; each < tracks; ++each) {
      desk_->Enqueue(desk_->AddTrack(QString(QChar(u'A' + each)), seconds, info));
    }
  }
  void On() {
    Play().ToggleAutoPlay();
    desk_->Run(0.9);
  }
  [[nodiscard]] AutoPlay& Play() { return desk_->play; }
  [[nodiscard]] const DeckRecord& Record(Deck deck) { return desk_->decks.Record(deck); }
  [[nodiscard]] QString Path(int row) { return desk_->queue.Row(row).Text(PathColumn); }
  /// Titles that went on air.
  [[nodiscard]] QString Heard() { return desk_->logged.join(QString()); }
  [[nodiscard]] bool Sounds() {
    return desk_->decks.Player(Deck::One).State() == PlayState::Playing ||
           desk_->decks.Player(Deck::Two).State() == PlayState::Playing;
  }
  [[nodiscard]] FaultyPlayer& Disk(Deck deck) { return desk_->Disk(deck); }
  /// Runs until the fade of start number `starts` has walked for half a second.
  void RunIntoFade(int starts) {
    for (int tenth = 0; tenth < 3000 && (desk_->starts < starts || !desk_->state.TransitionActive); ++tenth)
      desk_->Run(0.1);
    ASSERT_TRUE(desk_->state.TransitionActive);
    desk_->Run(0.5);
  }

  TemporaryTree tree_;
  ScriptedPrompter prompter_;
  std::optional<AutoDesk> desk_;
};

}  // namespace kelvo::testing
