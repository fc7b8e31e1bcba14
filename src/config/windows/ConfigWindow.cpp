#include "config/windows/ConfigWindow.h"

#include "config/windows/ColourPage.h"
#include "config/windows/DevicePage.h"
#include "config/windows/ValuePages.h"
#include "ui/Command.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QLabel>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace kelvo {

ConfigWindow::ConfigWindow(Configuration& work)
    : ToolWindow({.name = QStringLiteral("Configuration"),
                  .fixedName = QStringLiteral("KelvoConfig"),
                  .title = QStringLiteral("Configuration"),
                  .letters = 118,
                  .lines = 24}),
      work_(work),
      tabs_(new QTabWidget(this)),
      colours_(new ColourPage(work)),
      restore_(new RestorePage(work)),
      unsaved_(new QLabel(this)) {
  SetNames(*tabs_, QStringLiteral("Tabs"), QStringLiteral("TabStrip1"));
  tabs_->setAccessibleName(tr("Groups of settings"));
  tabs_->tabBar()->setObjectName(QStringLiteral("TabBar"));
  tabs_->tabBar()->setAccessibleName(tr("Groups of settings"));
  AddPage(new GeneralPage(work), QStringLiteral("&General"));
  AddPage(colours_, QStringLiteral("&Colour Settings"));
  AddPage(new EncodingPage(work), QStringLiteral("&Mp3 Settings"));
  AddPage(new DevicePage(work), QStringLiteral("P&FL Device Setting"));
  AddPage(new AutoPlayPage(work), QStringLiteral("&Auto Play Settings"));
  AddPage(restore_, QStringLiteral("&Restore Defaults"));
  unsaved_->setObjectName(QStringLiteral("LblUnsaved"));
  unsaved_->setStyleSheet(QStringLiteral("color: ") + Theme::Palette().amber.name());
  auto* save = AddCommand(*this, {.name = QStringLiteral("CmdSave"),
                                  .fixedName = QStringLiteral("Command1"),
                                  .words = QStringLiteral("&Save And Close"),
                                  .tooltip = tr("Keeps the settings: they count at once"),
                                  .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                                  .icon = Icon::Save,
                                  .role = QStringLiteral("primary"),
                                  .run = [this] { work_.Save(); }});
  auto* close = AddCommand(*this, {.name = QStringLiteral("CmdClose"),
                                   .words = tr("C&lose"),
                                   .tooltip = tr("Closes; asks for what was changed"),
                                   .keyWords = tr("Escape"),
                                   .run = [this] { this->close(); }});
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tabs_, 1);
  layout->addLayout(Line({{unsaved_, 1}, save, close}));
  connect(&work_, &Configuration::Changed, this, [this] { Show(); });
  connect(&work_, &Configuration::Written, colours_, &ColourPage::Remember);
  connect(&work_, &Configuration::Saved, this, &QWidget::close);
  Show();
}

void ConfigWindow::AddPage(ConfigPage* page, const QString& words) {
  pages_.push_back(page);
  tabs_->addTab(page, words);
}

void ConfigWindow::TakeKeys() {
  tabs_->tabBar()->setFocus();
}

void ConfigWindow::Enter() {
  colours_->Remember();
  restore_->ClearTicks();
  work_.Begin();
}

void ConfigWindow::Leave() {
  colours_->TakeBack();
  work_.End();
}

void ConfigWindow::Show() {
  for (ConfigPage* page : pages_) page->Show();
  unsaved_->setText(work_.Dirty() ? tr("Not saved yet") : QString());
}

}  // namespace kelvo
