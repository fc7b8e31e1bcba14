#include "help/windows/HelpWindow.h"

#include "help/windows/ManualView.h"
#include "ui/Command.h"
#include "ui/Line.h"
#include "ui/ScalableIcon.h"
#include "ui/SpokenText.h"

#include <QLineEdit>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace kelvo {

HelpWindow::HelpWindow(Help& help)
    : ToolWindow({.name = QStringLiteral("Help"), .title = tr("Help"), .letters = 132, .lines = 38}),
      help_(help),
      model_(help.Rows(), {{{.head = tr("Page"), .letters = 24}, &HelpRow::title}}),
      list_({.name = QStringLiteral("LstPages"),
             .title = tr("PAGES"),
             .accessible = tr("Pages of the manual"),
             .many = false},
            model_, this),
      find_(new QLineEdit(this)),
      page_(new ManualView(help.Book().Folder(), this)) {
  model_.Dress = [](const HelpRow& row, int, int role) {
    return role == Qt::ToolTipRole && !row.excerpt.isEmpty() ? QVariant(row.excerpt) : QVariant();
  };
  list_.SetHint(tr("No page has all these words."));
  find_->setObjectName(QStringLiteral("TxtFindHelp"));
  find_->setAccessibleName(tr("Search the manual"));
  find_->setToolTip(tr("Lists the pages with all these words  (Ctrl+F)"));
  find_->setPlaceholderText(tr("Search  (Ctrl+F)"));
  find_->setClearButtonEnabled(true);
  find_->addAction(ScalableIcon(Icon::Search), QLineEdit::LeadingPosition);
  NameLineSigns(*find_);
  page_->setObjectName(QStringLiteral("ManualPage"));
  page_->setAccessibleName(tr("Page of the manual"));
  BuildCommands();

  auto* side = new QVBoxLayout;
  side->addWidget(find_);
  side->addWidget(&list_, 1);
  auto* columns = new QHBoxLayout;
  columns->addLayout(side, 4);
  columns->addWidget(page_, 9);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({back_, forward_, contents_, keys_, kRoom, close_}));
  layout->addLayout(columns, 1);

  connect(&help_, &Help::Moved, this, &HelpWindow::Move);
  connect(page_, &ManualView::LinkFollowed, this, [this](const QString& link) { help_.Follow(link); });
  connect(&list_, &ListPanel::PickedChanged, this, [this] {
    if (!list_.AnyPicked()) return;
    const HelpRow& row = help_.Rows()[list_.Picked().front()];
    const QString& id = help_.Book().Pages()[static_cast<std::size_t>(row.page)].id;
    if (id != help_.Place().page) help_.Open({id});
  });
  connect(&list_, &ListPanel::RowActivated, this, [this] { page_->setFocus(); });
  connect(find_, &QLineEdit::textChanged, this, [this](const QString& words) {
    help_.Find(words);
    page_->Mark(help_.Words());
    ShowRow();
  });
  connect(find_, &QLineEdit::returnPressed, this, [this] {
    list_.Table().setFocus();
    if (help_.Rows().Count() > 0 && !list_.AnyPicked()) list_.Pick({0});
  });
  Move();
}

void HelpWindow::BuildCommands() {
  back_ = AddCommand(*this, {.name = QStringLiteral("CmdBack"),
                             .words = tr("&Back"),
                             .tooltip = tr("To the page before"),
                             .key = QKeySequence(Qt::ALT | Qt::Key_Left),
                             .run = [this] { help_.Back(); }});
  forward_ = AddCommand(*this, {.name = QStringLiteral("CmdForward"),
                                .words = tr("&Forward"),
                                .tooltip = tr("To the page that was left by going back"),
                                .key = QKeySequence(Qt::ALT | Qt::Key_Right),
                                .run = [this] { help_.Forward(); }});
  contents_ = AddCommand(*this, {.name = QStringLiteral("CmdContents"),
                                 .words = tr("&Contents"),
                                 .tooltip = tr("To the first page"),
                                 .key = QKeySequence(Qt::ALT | Qt::Key_Home),
                                 .run = [this] { help_.Contents(); }});
  keys_ = AddCommand(*this, {.name = QStringLiteral("CmdKeys"),
                             .words = tr("&Keys..."),
                             .tooltip = tr("Lists all keys of the console"),
                             .keyWords = tr("Shift+F1 on the console"),
                             .run = [this] { help_.Follow(QStringLiteral("window:Keys")); }});
  close_ = AddCommand(*this, {.name = QStringLiteral("CmdClose"),
                              .words = tr("Close"),
                              .tooltip = tr("Closes the window"),
                              .keyWords = tr("Esc"),
                              .icon = Icon::Close,
                              .run = [this] { close(); }});
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_F), this), &QShortcut::activated, this, [this] {
    find_->setFocus();
    find_->selectAll();
  });
}

void HelpWindow::TakeKeys() {
  page_->setFocus();
}

void HelpWindow::TakeFiles(const QStringList& wishes) {
  if (wishes.isEmpty()) return;
  find_->clear();
  help_.OpenFor(wishes.first());
}

void HelpWindow::Move() {
  if (const ManualPage* page = help_.Page()) {
    page_->ShowPage(*page, help_.Place().heading);
    setWindowTitle(tr("Help: %1").arg(page->title));
  }
  ShowRow();
  Offer(*back_, help_.CanGoBack() ? QString() : tr("No page was open before"));
  Offer(*forward_, help_.CanGoForward() ? QString() : tr("Nothing was left by going back"));
}

void HelpWindow::ShowRow() {
  const ManualPage* page = help_.Page();
  const QSignalBlocker shown(&list_);
  list_.Table().clearSelection();
  for (int row = 0; page != nullptr && row < help_.Rows().Count(); ++row) {
    if (help_.Book().Pages()[static_cast<std::size_t>(help_.Rows()[row].page)].id == page->id)
      list_.Pick({row});
  }
}

}  // namespace kelvo
