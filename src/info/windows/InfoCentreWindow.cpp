#include "info/windows/InfoCentreWindow.h"

#include "info/windows/NoteEdit.h"
#include "info/windows/PictureView.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"
#include "ui/Theme.h"
#include "ui/WhyOff.h"

#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace kelvo {
namespace {

/// What the controls of a level are called.
struct LevelLook {
  QString list;
  QString head;
  QString title;
  QString accessible;
  QString one;  ///< behind the name of a command
};

LevelLook LookOf(InfoLevel level) {
  switch (level) {
    case InfoLevel::Category:
      return {QStringLiteral("LstInfoCategories"), InfoCentreWindow::tr("Category"),
              QStringLiteral("Categories"), InfoCentreWindow::tr("Categories"), QStringLiteral("Category")};
    case InfoLevel::Topic:
      return {QStringLiteral("LstInfoTopics"), InfoCentreWindow::tr("Topic"), QStringLiteral("Topics"),
              InfoCentreWindow::tr("Topics of the category"), QStringLiteral("Topic")};
    case InfoLevel::Title:
      break;
  }
  return {QStringLiteral("LstInfoTitles"), InfoCentreWindow::tr("Title"), QStringLiteral("Titles"),
          InfoCentreWindow::tr("Titles of the topic"), QStringLiteral("Title")};
}

std::size_t PlaceOf(InfoLevel level) {
  return static_cast<std::size_t>(level);
}

QString Numbered(const QString& name, InfoLevel level) {
  return name + QLatin1Char('_') + QString::number(static_cast<int>(level));
}

RowModel<InfoName>::Columns NameColumn(InfoLevel level) {
  return {{{.head = LookOf(level).head, .letters = 20}, &InfoName::name}};
}

ListPanel::Look PanelLook(InfoLevel level) {
  const LevelLook look = LookOf(level);
  return {.name = look.list,
          .fixedName = Numbered(QStringLiteral("List1"), level),
          .title = look.title,
          .accessible = look.accessible,
          .many = false};
}

}  // namespace

InfoCentreWindow::InfoCentreWindow(EventLoop& loop, InfoCentre& centre)
    : ToolWindow({.name = QStringLiteral("InfoCentre"),
                  .title = QStringLiteral("Info Centre"),
                  .letters = 124,
                  .lines = 36}),
      centre_(centre),
      models_{{{centre.Names(InfoLevel::Category), NameColumn(InfoLevel::Category)},
               {centre.Names(InfoLevel::Topic), NameColumn(InfoLevel::Topic)},
               {centre.Names(InfoLevel::Title), NameColumn(InfoLevel::Title)}}},
      hitModel_(
          centre.Hits(),
          {{{.head = tr("Title"), .letters = 24}, [](const InfoHit& hit) { return hit.path.title; }},
           {{.head = tr("Where"), .letters = 24, .rank = 2},
            [](const InfoHit& hit) { return hit.path.category + QStringLiteral(" / ") + hit.path.topic; }},
           {{.head = tr("Text"), .letters = 44, .rank = 1}, &InfoHit::excerpt}}),
      lists_{{{PanelLook(InfoLevel::Category), models_[0], this},
              {PanelLook(InfoLevel::Topic), models_[1], this},
              {PanelLook(InfoLevel::Title), models_[2], this}}},
      hits_({.name = QStringLiteral("LstInfoHits"),
             .title = tr("FOUND"),
             .accessible = tr("Titles that were found"),
             .many = false},
            hitModel_, this),
      find_(new QLineEdit(this)),
      pages_(new QStackedWidget(this)),
      name_(new ElidedLabel(this)),
      text_(new NoteEdit(InfoPage::kMostLetters, this)),
      picture_(new PictureView(loop, this)),
      hint_(new QLabel(this)) {
  BuildCommands();
  for (const InfoLevel level : kInfoLevels) BuildLevelCommands(level);
  BuildFields();
  BuildLayout();
  Join();
  ShowPage();
  Show();
}

void InfoCentreWindow::BuildLevelCommands(InfoLevel level) {
  const std::size_t place = PlaceOf(level);
  const QString one = LookOf(level).one;
  const QString what = LookOf(level).head.toLower();
  new_[place] = AddCommand(*this, {.name = QStringLiteral("CmdNew") + one,
                                   .fixedName = Numbered(QStringLiteral("Command1"), level),
                                   .words = QStringLiteral("New"),
                                   .tooltip = tr("Makes a %1").arg(what),
                                   .keyWords = tr("Ctrl+N in this list"),
                                   .icon = Icon::Add,
                                   .run = [this, level] { centre_.New(level); }});
  delete_[place] = AddCommand(*this, {.name = QStringLiteral("CmdDelete") + one,
                                      .fixedName = Numbered(QStringLiteral("Command2"), level),
                                      .words = QStringLiteral("Delete"),
                                      .tooltip = tr("Deletes the chosen %1 with all that is in it").arg(what),
                                      .keyWords = tr("Delete in this list"),
                                      .icon = Icon::Clear,
                                      .run = [this, level] { centre_.Delete(level); }});
  rename_[place] = AddCommand(*this, {.name = QStringLiteral("CmdRename") + one,
                                      .fixedName = Numbered(QStringLiteral("Command3"), level),
                                      .words = QStringLiteral("Rename"),
                                      .tooltip = tr("Renames the chosen %1").arg(what),
                                      .keyWords = tr("F2 in this list"),
                                      .icon = Icon::Edit,
                                      .run = [this, level] { centre_.Rename(level); }});
  ListTable& table = lists_[place].Table();
  connect(new QShortcut(QKeySequence(Qt::Key_Delete), &table, nullptr, nullptr, Qt::WidgetShortcut),
          &QShortcut::activated, this, [this, level] { centre_.Delete(level); });
  connect(new QShortcut(QKeySequence(Qt::Key_F2), &table, nullptr, nullptr, Qt::WidgetShortcut),
          &QShortcut::activated, this, [this, level] { centre_.Rename(level); });
}

void InfoCentreWindow::BuildCommands() {
  addPicture_ =
      AddCommand(*this, {.name = QStringLiteral("CmdAddPicture"),
                         .words = tr("&Picture..."),
                         .tooltip = tr("Adds a picture to the title, or replaces it; one can be dropped too"),
                         .key = QKeySequence(Qt::CTRL | Qt::Key_G),
                         .icon = Icon::Folder,
                         .run = [this] { centre_.PickPicture(); }});
  removePicture_ = AddCommand(*this, {.name = QStringLiteral("CmdRemovePicture"),
                                      .words = tr("Remo&ve Picture"),
                                      .tooltip = tr("Takes the picture away from the title"),
                                      .icon = Icon::Clear,
                                      .run = [this] { centre_.RemovePicture(); }});
  save_ = AddCommand(*this, {.name = QStringLiteral("CmdSaveAndClose"),
                             .fixedName = QStringLiteral("Command5"),
                             .words = QStringLiteral("Save And Close"),
                             .tooltip = tr("Saves the text of the title and closes the window"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                             .icon = Icon::Save,
                             .role = QStringLiteral("primary"),
                             .run = [this] { centre_.SaveAndClose(); }});
  close_ = AddCommand(*this, {.name = QStringLiteral("CmdClose"),
                              .fixedName = QStringLiteral("Command4"),
                              .words = QStringLiteral("Close"),
                              .tooltip = tr("Closes the window; asks when the text was changed"),
                              .keyWords = tr("Esc"),
                              .icon = Icon::Close,
                              .run = [this] { close(); }});
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_N), this), &QShortcut::activated, this,
          [this] { centre_.New(LevelWithKeys()); });
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_F), this), &QShortcut::activated, this, [this] {
    find_->setFocus();
    find_->selectAll();
  });
}

void InfoCentreWindow::BuildFields() {
  find_->setObjectName(QStringLiteral("TxtFindInfo"));
  find_->setAccessibleName(tr("Search all titles"));
  find_->setToolTip(tr("Finds the titles with all these words in their names or texts  (Ctrl+F)"));
  find_->setPlaceholderText(tr("Search all titles  (Ctrl+F)"));
  find_->setClearButtonEnabled(true);
  find_->addAction(ScalableIcon(Icon::Search), QLineEdit::LeadingPosition);
  NameLineSigns(*find_);
  name_->setObjectName(QStringLiteral("LblInfoTitle"));
  name_->setTextFormat(Qt::PlainText);
  name_->setFont(Theme::Font(1.1, QFont::DemiBold));
  SetNames(*text_, QStringLiteral("TxtInfo"), QStringLiteral("Text1"));
  text_->setAccessibleName(tr("Text of the title"));
  SetNames(*picture_, QStringLiteral("InfoPicture"), QStringLiteral("Image1"));
  picture_->setAccessibleName(tr("Picture of the title"));
  SetNames(*hint_, QStringLiteral("LblPictureHint"), QStringLiteral("Label2"));
  hint_->setWordWrap(true);
  hint_->setText(QStringLiteral("Please Double Click Or Drag And Drop To Add A Graphic For This Title."));
}

QWidget* InfoCentreWindow::Levels() {
  auto* page = new QWidget(this);
  auto* columns = new QHBoxLayout(page);
  columns->setContentsMargins(0, 0, 0, 0);
  for (const InfoLevel level : kInfoLevels) {
    const std::size_t place = PlaceOf(level);
    auto* column = new QVBoxLayout;
    column->addWidget(&lists_[place], 1);
    column->addLayout(Line({new_[place], delete_[place], rename_[place], kRoom}));
    columns->addLayout(column, 1);
  }
  return page;
}

QWidget* InfoCentreWindow::PagePart() {
  auto* page = new QWidget(this);
  auto* writing = new QVBoxLayout;
  writing->addWidget(name_);
  writing->addWidget(text_, 1);
  auto* looking = new QVBoxLayout;
  looking->addWidget(picture_, 1);
  looking->addWidget(hint_);
  looking->addLayout(Line({addPicture_, removePicture_, kRoom}));
  auto* columns = new QHBoxLayout(page);
  columns->setContentsMargins(0, 0, 0, 0);
  columns->addLayout(writing, 5);
  columns->addLayout(looking, 3);
  return page;
}

void InfoCentreWindow::BuildLayout() {
  pages_->addWidget(Levels());
  pages_->addWidget(&hits_);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(find_);
  layout->addWidget(pages_, 4);
  layout->addWidget(PagePart(), 5);
  layout->addLayout(Line({kRoom, save_, close_}));
}

void InfoCentreWindow::Join() {
  for (const InfoLevel level : kInfoLevels) {
    ListPanel& list = lists_[PlaceOf(level)];
    connect(&list, &ListPanel::PickedChanged, this, [this, &list, level] {
      if (list.AnyPicked()) centre_.Choose(level, centre_.Names(level)[list.Picked().front()].name);
    });
    connect(&list, &ListPanel::RowActivated, this, [this, level] {
      if (level == InfoLevel::Title) {
        text_->setFocus();
      } else {
        lists_[PlaceOf(level) + 1].Table().setFocus();
      }
    });
  }
  connect(&hits_, &ListPanel::PickedChanged, this, [this] {
    if (hits_.AnyPicked()) centre_.ChooseHit(hits_.Picked().front());
  });
  connect(&hits_, &ListPanel::RowActivated, this, [this] { text_->setFocus(); });
  connect(find_, &QLineEdit::textChanged, this, [this](const QString& words) { centre_.Find(words); });
  connect(find_, &QLineEdit::returnPressed, this, [this] {
    if (!centre_.Words().isEmpty()) hits_.Table().setFocus();
  });
  connect(text_, &NoteEdit::Edited, this, [this] { centre_.Page().SetText(text_->toPlainText()); });
  connect(text_, &NoteEdit::TooLong, this, [this] { centre_.Page().RefuseLength(); });
  connect(text_, &NoteEdit::FilesDropped, this,
          [this](const QStringList& files) { centre_.DropPicture(files); });
  connect(picture_, &PictureView::PictureWanted, this, [this] { centre_.PickPicture(); });
  connect(picture_, &PictureView::FilesDropped, this,
          [this](const QStringList& files) { centre_.DropPicture(files); });
  connect(&centre_, &InfoCentre::Changed, this, [this] { Show(); });
  connect(&centre_, &InfoCentre::Done, this, &QWidget::close);
  connect(&centre_.Page(), &InfoPage::TextReplaced, this, [this] { ShowPage(); });
}

InfoLevel InfoCentreWindow::LevelWithKeys() {
  for (const InfoLevel level : kInfoLevels) {
    if (lists_[PlaceOf(level)].Table().hasFocus()) return level;
  }
  return level_;
}

void InfoCentreWindow::TakeKeys() {
  lists_[PlaceOf(LevelWithKeys())].Table().setFocus();
}

void InfoCentreWindow::ShowPage() {
  const InfoPage& page = centre_.Page();
  text_->ShowText(page.Missing() && !page.Dirty() ? QStringLiteral("not found") : page.Text());
}

void InfoCentreWindow::ShowLevel(InfoLevel level) {
  const RowStore<InfoName>& names = centre_.Names(level);
  ListPanel& list = lists_[PlaceOf(level)];
  const QString& chosen = centre_.Chosen()[level];
  const std::vector<int> picked = list.Picked();
  if ((picked.empty() ? QString() : names[picked.front()].name) != chosen) {
    list.Table().clearSelection();
    for (int row = 0; row < names.Count() && !chosen.isEmpty(); ++row) {
      if (names[row].name == chosen) list.Table().selectRow(row);
    }
  }
  const bool first = level == InfoLevel::Category;
  const InfoLevel above = level == InfoLevel::Title ? InfoLevel::Topic : InfoLevel::Category;
  if (!centre_.Trouble().isEmpty()) {
    list.SetHint(centre_.Trouble());
  } else if (first || !centre_.Chosen()[above].isEmpty()) {
    list.SetHint(centre_.ReadOnly() ? tr("Nothing here yet.")
                                    : tr("Nothing here yet.\nMake one with \"New\"."));
  } else {
    list.SetHint(above == InfoLevel::Category ? tr("Choose a category.") : tr("Choose a topic."));
  }
  const OffReason readOnly{centre_.ReadOnly(), tr("The Info Centre was opened to read")};
  const OffReason atWork{centre_.AtWork(), tr("It is at work")};
  const OffReason none{chosen.isEmpty(), tr("Nothing is chosen in this list")};
  Offer(*new_[PlaceOf(level)], WhyOff({readOnly, atWork}));
  Offer(*delete_[PlaceOf(level)], WhyOff({readOnly, atWork, none}));
  Offer(*rename_[PlaceOf(level)], WhyOff({readOnly, atWork, none}));
}

QString InfoCentreWindow::HitsHint() const {
  if (!centre_.Trouble().isEmpty()) return centre_.Trouble();
  return centre_.Finding() ? tr("Searching...") : tr("No title has all these words.");
}

void InfoCentreWindow::Show() {
  const InfoPage& page = centre_.Page();
  setWindowTitle(QStringLiteral("Info Centre") +
                 (centre_.ReadOnly() ? QStringLiteral(" (Read Only)") : QString()));
  level_ = LevelWithKeys();
  pages_->setCurrentIndex(centre_.Words().isEmpty() ? 0 : 1);
  for (const InfoLevel level : kInfoLevels) ShowLevel(level);
  hits_.SetHint(HitsHint());
  const InfoPath& chosen = centre_.Chosen();
  SetSpokenText(*name_, tr("Title"),
                chosen.title.isEmpty() ? tr("No title is chosen")
                                       : chosen.category + QStringLiteral(" / ") + chosen.topic +
                                             QStringLiteral(" / ") + chosen.title);
  const bool edits = page.Editable() && !centre_.ReadOnly();
  text_->setReadOnly(!edits);
  picture_->SetTakes(edits);
  picture_->ShowPicture(page.Picture(), page.PictureTurn());
  hint_->setVisible(edits);
  picture_->SetHint(tr("No picture"));
  const OffReason readOnly{centre_.ReadOnly(), tr("The Info Centre was opened to read")};
  const OffReason atWork{centre_.AtWork(), tr("It is at work")};
  const OffReason noTitle{!page.Editable(), tr("No title is chosen")};
  Offer(*addPicture_, WhyOff({readOnly, atWork, noTitle}));
  Offer(*removePicture_, WhyOff({readOnly, atWork, {page.Picture().isEmpty(), tr("There is no picture")}}));
  Offer(*save_, WhyOff({readOnly, atWork}));
}

}  // namespace kelvo
