#include "console/ChildWindows.h"
#include "platform/SimulatedEventLoop.h"

#include <QStringList>

#include <gmock/gmock.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

class Form : public ChildForm {
 public:
  Form(QString name, QStringList& told) : name_(std::move(name)), told_(told) {}
  [[nodiscard]] QString Name() const override { return name_; }
  void Show() override { told_.append(u"show "_s + name_); }
  void Hide() override { told_.append(u"hide "_s + name_); }

 private:
  QString name_;
  QStringList& told_;
};

class ChildWindowsTest : public ::testing::Test {
 protected:
  void Show(Form& form) {
    children_.ShowChild(form);
    loop_.RunFor(1ms);
  }
  /// What was done since the last call.
  [[nodiscard]] QStringList Told() { return std::exchange(told_, {}); }

  SimulatedEventLoop loop_;
  ChildWindows children_{loop_};
  QStringList told_;
  Form session_{u"Session"_s, told_};
  Form editor_{u"Playedit"_s, told_};
  Form player_{u"frmCdPlayer"_s, told_};
  Form ripper_{u"frmVBCDRip"_s, told_};
};

TEST_F(ChildWindowsTest, ANewFormTakesThePlaceOfTheOneThatIsOpen) {
  Show(session_);
  EXPECT_TRUE(children_.ChildOpen());
  Show(session_);
  EXPECT_THAT(Told(), ElementsAre(u"show Session"_s, u"show Session"_s));
  children_.ShowChild(editor_);
  EXPECT_THAT(Told(), ElementsAre(u"hide Session"_s)) << "the loop has a turn between";
  loop_.RunFor(1ms);
  EXPECT_THAT(Told(), ElementsAre(u"show Playedit"_s));
  EXPECT_EQ(children_.CurrentChild(), &editor_);
  children_.Closed(session_);
  EXPECT_TRUE(children_.ChildOpen()) << "a hidden form that closes is not the one that is open";
  children_.Closed(editor_);
  EXPECT_FALSE(children_.ChildOpen());
  Show(session_);
  EXPECT_THAT(Told(), ElementsAre(u"show Session"_s));
}

TEST_F(ChildWindowsTest, PlayerAndRipperStandSideBySideAndLeaveTogether) {
  Show(player_);
  Show(ripper_);
  Show(player_);
  EXPECT_THAT(Told(), ElementsAre(u"show frmCdPlayer"_s, u"show frmVBCDRip"_s, u"show frmCdPlayer"_s));
  children_.Closed(player_);
  EXPECT_TRUE(children_.ChildOpen());
  Show(player_);
  Show(session_);
  EXPECT_THAT(Told(), ElementsAre(u"show frmCdPlayer"_s, u"hide frmVBCDRip"_s, u"hide frmCdPlayer"_s,
                                  u"show Session"_s));
}

TEST_F(ChildWindowsTest, AFormThatClosesOrIsOvertakenOnItsWayDoesNotComeUp) {
  Show(session_);
  {
    Form shortLived(u"short"_s, told_);
    children_.ShowChild(shortLived);
    children_.Closed(shortLived);
  }
  loop_.RunFor(1ms);
  EXPECT_FALSE(children_.ChildOpen());
  Show(session_);
  children_.ShowChild(editor_);
  children_.ShowChild(player_);
  loop_.RunFor(1ms);
  EXPECT_FALSE(Told().contains(u"show Playedit"_s));
  EXPECT_EQ(children_.CurrentChild(), &player_);
}

}  // namespace
}  // namespace kelvo
