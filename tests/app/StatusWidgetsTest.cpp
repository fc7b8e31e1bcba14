#include "console/DeskFixture.h"
#include "console/status/StatusTick.h"
#include "console/windows/ClockDial.h"
#include "console/windows/ClockPanel.h"
#include "console/windows/MemoryWarning.h"
#include "console/windows/ModeLabel.h"
#include "console/windows/WarningLamp.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

/// The status widgets over a desk that plays, with a beat that is given by hand.
class StatusWidgets : public DeskTest {
 protected:
  void SetUp() override {
    Theme::Apply(*qApp);
    AddThreeTracks();
    Open();
    tick_.emplace(StatusTick::Services{.loop = loop_,
                                       .state = desk_->State(),
                                       .decks = desk_->Decks(),
                                       .queue = desk_->Queue(),
                                       .panel = desk_->Panel(),
                                       .warningPlayer = *warningPlayer_,
                                       .title = u"Kelvo"_s,
                                       .version = u"1.1"_s,
                                       .aboutLine = u"About Kelvo"_s,
                                       .sessionStart = loop_.Now().addSecs(-3723)});
    tick_->hooks.Memory = [this] { return memory_; };
  }
  /// How much of a widget is of about this colour, 0 to 1.
  [[nodiscard]] static double Share(QWidget& widget, const QColor& colour) {
    const QImage image = widget.grab().toImage();
    int hits = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor each = image.pixelColor(x, y);
        const int away = std::abs(each.red() - colour.red()) + std::abs(each.green() - colour.green()) +
                         std::abs(each.blue() - colour.blue());
        if (away < 30) ++hits;
      }
    }
    return static_cast<double>(hits) / (image.width() * image.height());
  }

  MemoryStatus memory_{2048 * 1024, 25000000};
  std::unique_ptr<MediaPlayer> warningPlayer_ = audio_.MakePlayer();
  std::optional<StatusTick> tick_;
};

TEST_F(StatusWidgets, TheClockFollowsTheBeat) {
  ClockPanel clock(*tick_);
  EXPECT_EQ(clock.findChild<QLabel*>(u"LblSession"_s)->text(), u"01:02:03"_s)
      << "right before the first beat";
  loop_.RunFor(63s);
  tick_->Tick();
  EXPECT_EQ(clock.findChild<QLabel*>(u"LblSession"_s)->text(), u"01:03:06"_s);
  EXPECT_EQ(clock.findChild<QLabel*>(u"TxtTimeOfDay"_s)->text(), loop_.Now().toString(u"HH:mm:ss"_s));
  EXPECT_EQ(clock.findChild<QLabel*>(u"TxtDate"_s)->text(), u"Fri 1 Jun 2007"_s);
}

TEST_F(StatusWidgets, TheDialPaintsItsHandsWhereTheyPoint) {
  ClockDial dial;
  dial.resize(201, 201);
  dial.SetHands(HandsAt(QTime(9, 0, 15)));
  const QImage image = dial.grab().toImage();
  const QColor amber = Theme::Palette().amber;
  EXPECT_EQ(image.pixelColor(160, 100), amber) << "the second hand at a quarter";
  EXPECT_EQ(image.pixelColor(100, 60), Theme::Palette().text) << "the minute hand at the hour";
  EXPECT_EQ(image.pixelColor(75, 100), Theme::Palette().text) << "the hour hand at nine";
}

TEST_F(StatusWidgets, MemoryWarningLampAndModeShowTheDesksState) {
  QWidget desk;
  auto* row = new QHBoxLayout(&desk);
  auto* memory = new MemoryWarning(*tick_, &desk);
  auto* lamp = new WarningLamp(*tick_, Deck::One, &desk);
  auto* mode = new ModeLabel(*tick_, &desk);
  for (QWidget* each : std::initializer_list<QWidget*>{memory, lamp, mode}) row->addWidget(each);
  desk.show();
  tick_->Tick();
  EXPECT_FALSE(memory->isVisible());
  EXPECT_FALSE(lamp->Red());
  EXPECT_EQ(Share(*lamp, Theme::Palette().onAir), 0);
  EXPECT_EQ(mode->text(), u"AUTOMATIC PLAY"_s);
  EXPECT_LT(Share(*mode, Theme::Palette().ready), 0.01);

  memory_.available = 1000;
  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  Decks().SetPosition(Deck::One, 55);
  tick_->Tick();
  EXPECT_TRUE(memory->isVisible());
  EXPECT_EQ(memory->text(), u"* * WARNING * * SYSTEM MEMORY  LOW ! * *"_s);
  EXPECT_TRUE(lamp->Red());
  EXPECT_GT(Share(*lamp, Theme::Palette().onAir), 0.04);

  desk_->State().AutoPlayOn = true;
  tick_->Tick();
  EXPECT_FALSE(lamp->Red());
  EXPECT_EQ(mode->text(), u"KELVO MODE"_s);
  EXPECT_GT(Share(*mode, Theme::Palette().ready), 0.1);
}

}  // namespace
