// The Info Centre, the profiles and the manual, worked from the joined desk.

#include "app/BesideTheDesk.h"
#include "app/windows/KeysWindow.h"
#include "app/windows/WindowLines.h"
#include "database/windows/ScanWindow.h"
#include "database/windows/TransferWindow.h"
#include "datamanager/windows/DataManagerWindow.h"
#include "help/Manual.h"
#include "help/windows/HelpWindow.h"
#include "help/windows/ManualView.h"
#include "info/windows/InfoCentreWindow.h"
#include "info/windows/NoteEdit.h"
#include "info/windows/PictureView.h"
#include "info/windows/ProfileWindow.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"

#include <QDir>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class InformationBesideTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    database_.tree.MakeFolder(Paths::FolderName(Paths::Categories) + u"/Rock"_s);
  }
  template <typename Window>
  Window& Shown() {
    Window* window = Opened<Window>();
    window->activateWindow();
    EXPECT_TRUE(TurnUntil([window] { return window->isActiveWindow(); }));
    return *window;
  }
  void Click(const QWidget& window, const QString& button) {
    auto& found = *FindNamed<QPushButton>(window, button);
    EXPECT_TRUE(found.isEnabled()) << button.toStdString();
    QTest::mouseClick(&found, Qt::LeftButton);
    loop_.RunFor(1s);
  }
  static void Drop(QWidget& target, const QMimeData& data) {
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &enter);
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &drop);
  }
  static void Drop(QWidget& target, const QStringList& files) {
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& file : files) urls.append(QUrl::fromLocalFile(file));
    data.setUrls(urls);
    Drop(target, data);
  }
  /// Drops where the operator would see it: on what scrolls in the text.
  void DropOnText(const QWidget& window, const QStringList& files) {
    Drop(*FindNamed<NoteEdit>(window, u"Text1"_s)->viewport(), files);
    loop_.RunFor(1s);
  }
  [[nodiscard]] QString Picture() const {
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QString path = database_.tree.Path(u"photo.png"_s);
    EXPECT_TRUE(image.save(path));
    return path;
  }
  void Choose(Stage stage, int row) {
    desk_->Browser().PressName(stage, row);
    loop_.RunFor(1s);
  }
  static void ExpectFits(const QWidget& window) {
    ExpectWellLaidOut(window);
    EXPECT_LE(window.minimumSizeHint().width(), 1024);
    EXPECT_LE(window.minimumSizeHint().height(), 680);
  }
};

TEST_F(InformationBesideTheDesk, ATitleIsMadeWrittenIllustratedAndKept) {
  OpenDesk();
  Press(u"InfoCentre"_s);
  loop_.RunFor(1s);
  auto& window = Shown<InfoCentreWindow>();
  ExpectFits(window);
  prompter_.texts = {u"Station"_s, u"News"_s, u"Morning"_s};
  for (const QString& button : {u"Command1_0"_s, u"Command1_1"_s, u"Command1_2"_s}) Click(window, button);
  auto& text = *FindNamed<NoteEdit>(window, u"Text1"_s);
  EXPECT_TRUE(text.toPlainText().startsWith(u"New Title Morning Created On: "_s));
  text.selectAll();
  QTest::keyClicks(&text, u"Good morning"_s);
  Drop(*FindNamed<PictureView>(window, u"Image1"_s), {Picture()});
  ASSERT_TRUE(TurnUntil([&] {
    loop_.RunFor(10ms);
    return !FindNamed<PictureView>(window, u"Image1"_s)->Shown().isNull();
  }));
  DropOnText(window, {u"/etc/hostname"_s});
  EXPECT_EQ(prompter_.asked.back().text, u"Only Graphics Can Be Dropped ! "_s);
  EXPECT_EQ(text.toPlainText(), u"Good morning"_s) << "a file that is dropped is not typed";
  ExpectFits(window);

  prompter_.answers = {Answer::Cancel};
  Click(window, u"Command4"_s);
  EXPECT_EQ(prompter_.asked.back().text, u"Do you Want to Save Changes to .."_s);
  EXPECT_TRUE(window.isVisible());
  Click(window, u"Command5"_s);
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(database_.tree.Read(u"Info Bank/Station/News/Morning.txt"_s), "Good morning\r\n");

  Press(u"InfoCentre"_s);
  Shown<InfoCentreWindow>();
  auto& find = *FindNamed<QLineEdit>(window, u"TxtFindInfo"_s);
  find.setText(u"good"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(FindNamed<ListTable>(window, u"LstInfoHits"_s)->model()->rowCount(), 1);
  find.clear();
  QFile::remove(database_.tree.Path(u"Info Bank/Station/News/Morning.txt"_s));
  QTest::keyClick(&window, Qt::Key_F5);
  loop_.RunFor(1s);
  EXPECT_EQ(text.toPlainText(), u"not found"_s);
  EXPECT_TRUE(text.isReadOnly());
}

TEST_F(InformationBesideTheDesk, MoreThanATextCanHoldIsRefusedBeforeItIsLaidOut) {
  OpenDesk();
  Press(u"InfoCentre"_s);
  auto& window = Shown<InfoCentreWindow>();
  auto& text = *FindNamed<NoteEdit>(window, u"Text1"_s);
  text.setReadOnly(false);
  QMimeData huge;
  huge.setText(QString(10'000'000, u'x'));
  Drop(*text.viewport(), huge);
  EXPECT_EQ(text.toPlainText(), QString());
  EXPECT_TRUE(prompter_.asked.back().text.startsWith(u"A Text Can Be No Longer"_s));
}

TEST_F(InformationBesideTheDesk, TheSignBelowAListOpensWhatIsWrittenAboutTheChosenName) {
  OpenDesk();
  loop_.RunFor(1s);
  EXPECT_FALSE(FindNamed<QPushButton>(*window_, u"Image2"_s)->isEnabled());
  Choose(Stage::Genre, 0);
  Click(*window_, u"Image2"_s);
  auto& genre = Shown<ProfileWindow>();
  EXPECT_EQ(genre.windowTitle(), u"View / Edit Genre Definition (Drag And Drop Support)"_s);
  EXPECT_EQ(FindNamed<QLabel>(genre, u"LblProfileName"_s)->text(), u"Rock"_s);
  ExpectFits(genre);
  genre.close();

  Choose(Stage::Artist, 0);
  Click(*window_, u"Image3"_s);
  ProfileWindow* artist = nullptr;
  for (QWidget* each : QApplication::topLevelWidgets()) {
    if (each->objectName() == u"ArtistProfile"_s) artist = qobject_cast<ProfileWindow*>(each);
  }
  ASSERT_NE(artist, nullptr);
  EXPECT_EQ(artist->windowTitle(), u"View / Edit Artist Profile (Drag And Drop Supported)"_s);
  ExpectFits(*artist);
  DropOnText(*artist, {database_.tree.Write(u"band.txt"_s, "The Band\n")});
  Drop(*FindNamed<PictureView>(*artist, u"Image1"_s), {Picture()});
  loop_.RunFor(1s);
  const QString folder = Paths::FolderName(Paths::Artists);
  const QString name = FindNamed<QLabel>(*artist, u"LblProfileName"_s)->text();
  EXPECT_EQ(database_.tree.Read(folder + u'/' + name + u".txt"_s), "The Band\r\n");
  EXPECT_TRUE(database_.tree.Exists(folder + u'/' + name + u".png"_s));
}

TEST_F(InformationBesideTheDesk, ShowInfoOfTheDataManagerOpensTheProfileInAPlaceOfItsOwn) {
  OpenDesk();
  Press(u"DataManager"_s);
  loop_.RunFor(2s);
  auto& manager = Shown<DataManagerWindow>();
  const auto& show = *FindNamed<QPushButton>(manager, u"Command29"_s);
  EXPECT_FALSE(show.isEnabled());
  Click(manager, u"Command1_0"_s);
  FindNamed<ListTable>(manager, u"LstNames"_s)->selectRow(0);
  loop_.RunFor(2s);
  Click(manager, u"Command29"_s);
  auto& genre = Shown<ProfileWindow>();
  EXPECT_EQ(FindNamed<QLabel>(genre, u"LblProfileName"_s)->text(), u"Rock"_s);
  genre.move(70, 80);
  genre.close();
  const auto kept = [this](const QString& key) {
    return settings_.GetSetting(u"Kelvo"_s, u"Startup"_s, key, u"none"_s);
  };
  EXPECT_NE(kept(u"DGenInfoPosx"_s), u"none"_s);
  EXPECT_EQ(kept(u"GenInfoPosx"_s), u"none"_s);
}

TEST_F(InformationBesideTheDesk, WhoMayNotChangeTheDatabaseOnlyReads) {
  Set(u"DmanAccess"_s, u"False"_s);
  Set(u"DmanPassWord"_s, u"4711"_s);
  OpenDesk();
  loop_.RunFor(1s);
  Choose(Stage::Genre, 0);
  Click(*window_, u"Image2"_s);
  auto& genre = Shown<ProfileWindow>();
  EXPECT_EQ(genre.windowTitle(), u"View / Edit Genre Definition (Read Only)"_s);
  EXPECT_FALSE(FindNamed<QPushButton>(genre, u"Command3"_s)->isVisible());
  EXPECT_TRUE(FindNamed<NoteEdit>(genre, u"Text1"_s)->isReadOnly());
  genre.close();
  Press(u"InfoCentre"_s);
  loop_.RunFor(1s);
  auto& centre = Shown<InfoCentreWindow>();
  EXPECT_EQ(centre.windowTitle(), u"Info Centre (Read Only)"_s);
  EXPECT_FALSE(FindNamed<QPushButton>(centre, u"Command1_0"_s)->isEnabled());
}

TEST_F(InformationBesideTheDesk, EveryWindowOfTheTableHasItsPageAndEveryWindowOfAPageIsThere) {
  OpenDesk();
  const Manual manual = Manual::OfProgram();
  QStringList ids;
  for (const WindowLine& line : WindowLines(*desk_, *window_, [](const QString&) {})) ids.append(line.id);
  for (const QString& id : ids) EXPECT_TRUE(manual.HasWindow(id)) << id.toStdString();
  EXPECT_TRUE(manual.HasWindow(u"Console"_s));
  for (const ManualPage& page : manual.Pages()) {
    for (const QString& link : Manual::LinksOf(page)) {
      const bool opens = !link.startsWith(u"window:"_s) || ids.contains(link.sliced(7));
      EXPECT_TRUE(opens) << page.id.toStdString() << " opens " << link.toStdString();
    }
  }
}

TEST_F(InformationBesideTheDesk, F1OpensThePageOfTheWindowInFrontAndLinksOpenWindows) {
  OpenDesk();
  QTest::keyClick(&*window_, Qt::Key_F1);
  loop_.RunFor(1s);
  auto& help = Shown<HelpWindow>();
  EXPECT_EQ(help.windowTitle(), u"Help: The console"_s);
  ExpectFits(help);
  auto& page = *FindNamed<ManualView>(help, u"ManualPage"_s);
  Press(u"Import"_s);
  loop_.RunFor(1s);
  QTest::keyClick(&Shown<ScanWindow>(), Qt::Key_F1);
  loop_.RunFor(1s);
  EXPECT_EQ(help.windowTitle(), u"Help: Bring music in"_s);
  EXPECT_TRUE(page.toPlainText().contains(u"utility"_s));
  EXPECT_FALSE(page.toPlainText().contains(u"windows:"_s));

  auto& find = *FindNamed<QLineEdit>(help, u"TxtFindHelp"_s);
  find.setText(u"automatic jukebox"_s);
  auto& pages = *FindNamed<ListTable>(help, u"LstPages"_s);
  ASSERT_GE(pages.model()->rowCount(), 1);
  pages.selectRow(0);
  EXPECT_EQ(help.windowTitle(), u"Help: An unattended night"_s);
  EXPECT_FALSE(page.extraSelections().isEmpty()) << "what was looked for is marked";
  Click(help, u"CmdBack"_s);
  EXPECT_EQ(help.windowTitle(), u"Help: Bring music in"_s);

  Q_EMIT page.anchorClicked(QUrl(u"window:Transfer"_s));
  loop_.RunFor(1s);
  EXPECT_NE(Opened<TransferWindow>(), nullptr);
  Shown<HelpWindow>();
  Click(help, u"CmdKeys"_s);
  EXPECT_NE(Opened<KeysWindow>(), nullptr);
}

TEST_F(InformationBesideTheDesk, TheHelpOfABoxOpensItsTopic) {
  OpenDesk();
  ASSERT_TRUE(prompter_.OnHelp);
  prompter_.OnHelp(23100);
  loop_.RunFor(1s);
  EXPECT_EQ(Shown<HelpWindow>().windowTitle(), u"Help: A mix recorded and replayed"_s);
  prompter_.OnHelp(9100);
  EXPECT_EQ(Shown<HelpWindow>().windowTitle(), u"Help: The Data Manager"_s);
  beside_.reset();
  EXPECT_FALSE(prompter_.OnHelp) << "nobody is left to show it";
}

}  // namespace
