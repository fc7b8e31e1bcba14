// The joined desk for those who can't see it, and for hands that bring something along: names and values of
// all controls, the keys, files that are dropped.

#include "app/BesideTheDesk.h"
#include "database/windows/ScanWindow.h"
#include "support/Lookup.h"
#include "ui/ListTable.h"

#include <QAccessible>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QSet>
#include <QShortcut>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

bool TakesAHand(const QAccessibleInterface& each) {
  switch (each.role()) {
    case QAccessible::Button:
    case QAccessible::ButtonDropDown:
    case QAccessible::ButtonMenu:
    case QAccessible::CheckBox:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::List:
    case QAccessible::MenuItem:
    case QAccessible::ProgressBar:
    case QAccessible::RadioButton:
    case QAccessible::Slider:
    case QAccessible::SpinBox:
    case QAccessible::Table:
    case QAccessible::Tree:
      return true;
    default:
      return each.state().focusable;
  }
}

class AccessibleDesk : public BesideTheDesk {
 protected:
  /// Looks at all that a screen reader finds under `each`; a list is one thing, whatever its rows are.
  void Look(QAccessibleInterface* each) {
    if (each == nullptr || each->state().invisible) return;
    const bool separator = each->role() == QAccessible::Separator;
    const bool window = each->parent() != nullptr && each->parent()->role() == QAccessible::Application;
    if (TakesAHand(*each) && !separator && !window) {
      ++controls_;
      if (each->text(QAccessible::Name).isEmpty()) {
        const QObject* object = each->object();
        unnamed_.append(u"%1 %2 in %3"_s.arg(
            QString::number(each->role()), object != nullptr ? object->metaObject()->className() : "?",
            object != nullptr && object->parent() != nullptr ? object->parent()->objectName() : QString()));
      }
    }
    const QAccessible::Role role = each->role();
    if (role == QAccessible::Table || role == QAccessible::List || role == QAccessible::Tree) return;
    for (int child = 0; child < each->childCount(); ++child) Look(each->child(child));
  }
  QString Told(const QString& name, QAccessible::Text text = QAccessible::Name) {
    return QAccessible::queryAccessibleInterface(FindNamed<QWidget>(*window_, name))->text(text);
  }

  int controls_ = 0;
  QStringList unnamed_;
};

TEST_F(AccessibleDesk, NoControlOfTheDeskOrOfAnyWindowIsWithoutANameOrOffWithoutAReason) {
  OpenDesk();
  EnqueueAll();
  Load(Deck::One, 1);
  FindNamed<QLineEdit>(*window_, u"TrackFilter"_s)->setText(u"a"_s);
  QStringList ids;
  for (const QMenu* menu : window_->findChildren<QMenu*>()) {
    // Those of the table belong to no menu.
    for (const QAction* entry : menu->actions()) {
      if (entry->parent() == nullptr && !entry->isSeparator()) ids.append(entry->objectName());
    }
  }
  // The forms of the console are open one at a time: each is looked at when it comes up.
  QSet<QWidget*> seen;
  const auto look = [&] {
    loop_.RunFor(1s);
    for (QWidget* each : QApplication::topLevelWidgets()) {
      if (!each->isVisible() || seen.contains(each)) continue;
      seen.insert(each);
      EXPECT_FALSE(each->windowTitle().isEmpty()) << each->objectName().toStdString();
      Look(QAccessible::queryAccessibleInterface(each));
      for (const QAbstractButton* button : each->findChildren<QAbstractButton*>()) {
        const bool off = button->isVisible() && button->testAttribute(Qt::WA_ForceDisabled);
        EXPECT_FALSE(off && button->property("whyOff").toString().isEmpty())
            << button->objectName().toStdString();
      }
    }
  };
  for (const QString& id : ids) {
    Press(id);
    look();
  }
  FindNamed<QPushButton>(*window_, u"CmdSetTimer"_s)->click();
  look();
  EXPECT_EQ(seen.size(), ids.size() + 2) << "the console and the timer beside them";
  EXPECT_GE(ids.size(), 6);
  EXPECT_GT(controls_, 100);
  EXPECT_EQ(unnamed_.size(), 0) << unnamed_.join(u'\n').toStdString();
}

TEST_F(AccessibleDesk, TheDecksTellNumberTitleStateAndTimeLeft) {
  OpenDesk();
  EXPECT_EQ(Told(u"Deck2"_s, QAccessible::Description), u"Deck 2: No track, EMPTY, 00:00 left"_s);
  EnqueueAll();
  Load(Deck::One, 1);
  EXPECT_EQ(Told(u"Deck1"_s, QAccessible::Description), u"Deck 1: Alpha, LOADED, 01:00 left"_s);
  EXPECT_EQ(Told(u"CmdMan2"_s), u"Start deck 1"_s);
  EXPECT_EQ(Told(u"CmdMan3"_s), u"Start deck 2"_s);
  EXPECT_EQ(Told(u"CmdAutoPlay"_s), u"Start automatic play"_s);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(10100ms);
  EXPECT_EQ(Told(u"Deck1"_s, QAccessible::Description), u"Deck 1: Alpha, ON AIR, 00:50 left"_s);
  EXPECT_TRUE(Told(u"CmdMan2"_s, QAccessible::Description).endsWith(u"It plays already"_s));
}

TEST_F(AccessibleDesk, WhatTheDeskShowsIsToldWithWhatItIs) {
  database_.tree.MakeFolder(Paths::FolderName(Paths::Categories) + u"/Rock"_s);
  OpenDesk();
  loop_.RunFor(2s);
  EXPECT_EQ(Told(u"StatusLine"_s), u"Status: Total Tracks :3"_s);
  EXPECT_TRUE(Told(u"TxtTimeOfDay"_s).startsWith(u"Time of day: 09:00:"_s));
  EXPECT_TRUE(Told(u"LblSession"_s).startsWith(u"Length of the session: 00:00:0"_s));
  EXPECT_EQ(Told(u"LblChosenGenre"_s), u"Genres: none is chosen"_s);
  desk_->Browser().PressName(Stage::Genre, 0);
  loop_.RunFor(1s);
  EXPECT_EQ(Told(u"LblChosenGenre"_s), u"Genres: chosen: ROCK"_s);
  EXPECT_EQ(Told(u"LblTrackCount"_s), u"Tracks listed: 3"_s);
  EXPECT_TRUE(Told(u"LblListed"_s).startsWith(u"What is listed: ROCK"_s));
  EXPECT_EQ(Told(u"CboArtistLetter"_s, QAccessible::Description), u"Artists: jump to a letter"_s);
}

TEST_F(AccessibleDesk, EachKeyOfTheConsoleDoesOneThingAndIsInTheListOfKeys) {
  OpenDesk();
  Press(u"Keys"_s);
  const auto* list = [] {
    for (QWidget* each : QApplication::topLevelWidgets()) {
      if (each->objectName() == u"Keys"_s) return each->findChild<ListTable*>();
    }
    return static_cast<ListTable*>(nullptr);
  }();
  ASSERT_NE(list, nullptr);
  QStringList listed;
  for (int row = 0; row < list->model()->rowCount(); ++row) {
    EXPECT_FALSE(list->model()->index(row, 0).data().toString().isEmpty()) << row;
    listed.append(list->model()->index(row, 1).data().toString());
  }
  for (const QString& key :
       {u"Ctrl+I"_s, u"F1"_s, u"F7"_s, u"Alt+1"_s, u"Ctrl+Del"_s, u"space bar"_s, u"Ctrl+Shift+F"_s})
    EXPECT_EQ(listed.count(key), 1) << key.toStdString();
  std::map<QString, int> keys;
  for (const QAction* each : window_->findChildren<QAction*>()) ++keys[each->shortcut().toString()];
  for (QMenu* menu : window_->findChildren<QMenu*>()) {
    std::set<QString> letters;
    for (const QAction* each : menu->actions()) {
      if (each->parent() == nullptr) ++keys[each->shortcut().toString()];
      const qsizetype place = each->text().indexOf(u'&');
      if (each->isSeparator()) continue;
      ASSERT_GE(place, 0) << each->text().toStdString();
      EXPECT_TRUE(letters.insert(each->text().mid(place + 1, 1).toLower()).second)
          << each->text().toStdString();
    }
  }
  for (const QShortcut* each : window_->findChildren<QShortcut*>()) {
    if (each->context() == Qt::WindowShortcut) ++keys[each->key().toString()];
  }
  keys.erase(QString());
  for (const auto& [key, uses] : keys) EXPECT_EQ(uses, 1) << key.toStdString();
}

TEST_F(AccessibleDesk, AboutTellsWhoTheProgramIs) {
  OpenDesk();
  for (QAction* each : window_->menuBar()->actions().last()->menu()->actions()) {
    if (each->text().contains(u"About"_s)) each->trigger();
  }
  loop_.RunFor(10ms);
  ASSERT_EQ(prompter_.asked.size(), 1U);
  EXPECT_EQ(prompter_.asked.front().text, u"About Kelvo"_s);
}

TEST_F(AccessibleDesk, MusicThatIsDroppedOnTheConsoleIsCopiedInByTheImport) {
  OpenDesk();
  const QString folder = database_.tree.MakeFolder(u"stick"_s);
  database_.tree.Write(u"stick/One - First.mp3"_s, "sound");
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile(folder)});
  const auto offer = [&] {
    QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, {});
    enter.setDropAction(Qt::MoveAction);
    enter.setAccepted(false);
    QApplication::sendEvent(&*window_, &enter);
    return std::pair(enter.isAccepted(), enter.dropAction());
  };
  EXPECT_EQ(offer(), std::pair(true, Qt::CopyAction));
  QDropEvent drop(QPointF(300, 300), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, {});
  QApplication::sendEvent(&*window_, &drop);
  EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
  ASSERT_NE(Opened<ScanWindow>(), nullptr);
  const auto* found = Opened<ScanWindow>()->findChild<ListTable*>();
  ASSERT_TRUE(loop_.RunUntil([&] { return found->model()->rowCount() == 1; }));

  prompter_.texts = {u"4711"_s};
  PressLock();
  EXPECT_FALSE(offer().first) << "a locked desk takes nothing";
}

TEST_F(AccessibleDesk, AnEmptyLibraryOffersItsImport) {
  OpenDesk();
  auto* import = FindNamed<QPushButton>(*window_, u"CmdImportMusic"_s);
  EXPECT_FALSE(import->isVisible());
  for (int track = 3; track >= 1; --track) catalogue_.Remove(ToMref(track));
  loop_.RunFor(1s);
  ASSERT_TRUE(import->isVisible());
  QTest::mouseClick(import, Qt::LeftButton);
  loop_.RunFor(10ms);
  ASSERT_NE(Opened<ScanWindow>(), nullptr);
  EXPECT_TRUE(Opened<ScanWindow>()->isVisible());
}

}  // namespace
