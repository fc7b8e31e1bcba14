#include "console/windows/NameColumn.h"

#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/LetterBox.h"
#include "ui/ListTable.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"
#include "ui/Tabular.h"
#include "ui/Theme.h"

#include <QAbstractTableModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <functional>

namespace kelvo {
namespace {

const QColor kYellow(255, 255, 0);
const QColor kGreen(0, 255, 0);

struct StageWords {
  // Object names, and beside them the fixed ones (see SetNames).
  QString list;
  QString fixedList;
  QString chosen;
  QString fixedChosen;
  QString letters;
  QString head;
  QString accessible;
  QString empty;
  QString profile;
  QString fixedProfile;
  QString profileTip;
  QString noProfile;
};

StageWords WordsOf(Stage stage) {
  switch (stage) {
    case Stage::Genre:
      return {.list = QStringLiteral("GenreList"),
              .fixedList = QStringLiteral("Lstcatname"),
              .chosen = QStringLiteral("LblChosenGenre"),
              .fixedChosen = QStringLiteral("Lbn1_1"),
              .letters = QStringLiteral("CboGenreLetter"),
              .head = QStringLiteral("GENRE"),
              .accessible = NameColumn::tr("Genres"),
              .empty = NameColumn::tr("No genres yet"),
              .profile = QStringLiteral("CmdGenreProfile"),
              .fixedProfile = QStringLiteral("Image2"),
              .profileTip = NameColumn::tr("What is written about the chosen genre"),
              .noProfile = NameColumn::tr("No genre is chosen")};
    case Stage::Artist:
      return {.list = QStringLiteral("ArtistList"),
              .fixedList = QStringLiteral("Lstartname"),
              .chosen = QStringLiteral("LblChosenArtist"),
              .fixedChosen = QStringLiteral("Lbn2_1"),
              .letters = QStringLiteral("CboArtistLetter"),
              .head = QStringLiteral("ARTISTS"),
              .accessible = NameColumn::tr("Artists"),
              .empty = NameColumn::tr("Choose a genre"),
              .profile = QStringLiteral("CmdArtistProfile"),
              .fixedProfile = QStringLiteral("Image3"),
              .profileTip = NameColumn::tr("What is written about the chosen artist"),
              .noProfile = NameColumn::tr("No artist is chosen")};
    case Stage::Album:
      return {.list = QStringLiteral("AlbumList"),
              .fixedList = QStringLiteral("Lstalbname"),
              .chosen = QStringLiteral("LblChosenAlbum"),
              .fixedChosen = QStringLiteral("Lbn3_1"),
              .letters = QStringLiteral("CboAlbumLetter"),
              .head = QStringLiteral("ALBUMS"),
              .accessible = NameColumn::tr("Albums"),
              .empty = NameColumn::tr("Choose an artist"),
              .profile = QStringLiteral("CmdAlbumProfile"),
              .fixedProfile = QStringLiteral("Image4"),
              .profileTip = NameColumn::tr("What is written about the chosen album"),
              .noProfile = NameColumn::tr("No album is chosen")};
  }
  return {};
}

class NameModel : public QAbstractTableModel {
 public:
  NameModel(const LibraryBrowser& browser, Stage stage, QObject* parent)
      : QAbstractTableModel(parent), browser_(browser), stage_(stage), rows_(browser.Count(stage)) {
    connect(&browser, &LibraryBrowser::NamesReset, this, [this](Stage changed) {
      if (changed != stage_) return;
      beginResetModel();
      rows_ = browser_.Count(stage_);
      endResetModel();
    });
    connect(&browser, &LibraryBrowser::NamesAdded, this, [this](Stage changed) {
      if (changed != stage_ || browser_.Count(stage_) <= rows_) return;
      beginInsertRows({}, rows_, browser_.Count(stage_) - 1);
      rows_ = browser_.Count(stage_);
      endInsertRows();
    });
  }

  [[nodiscard]] int rowCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : rows_;
  }
  [[nodiscard]] int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : 1; }
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
    if (role == Qt::ForegroundRole) return browser_.Yellow(stage_) ? kYellow : kGreen;
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
    return browser_.Name(stage_, index.row());
  }
  [[nodiscard]] QVariant headerData(int, Qt::Orientation orientation, int role) const override {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return WordsOf(stage_).head;
  }
  [[nodiscard]] QModelIndexList match(const QModelIndex& start, int, const QVariant& value, int,
                                      Qt::MatchFlags) const override {
    const int row = browser_.RowStarting(stage_, value.toString(), std::max(start.row(), 0));
    return row < 0 ? QModelIndexList() : QModelIndexList{index(row, 0)};
  }

 private:
  const LibraryBrowser& browser_;
  Stage stage_;
  int rows_;
};

/// Frames the row of the keyboard's cursor: it is not always the one that is selected.
class CursorDelegate : public TabularDelegate {
 public:
  using TabularDelegate::TabularDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    TabularDelegate::paint(painter, option, index);
    if (!option.state.testFlag(QStyle::State_HasFocus)) return;
    painter->setPen(Theme::Palette().accent);
    painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
  }
};

/// Moves a cursor only; what is selected is the browser's to say.
class NameTable : public ListTable {
 public:
  using ListTable::ListTable;
  std::function<void(int row)> OnPress;

 protected:
  [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex&,
                                                                     const QEvent*) const override {
    return QItemSelectionModel::NoUpdate;
  }
  void mousePressEvent(QMouseEvent* event) override {
    ListTable::mousePressEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index.isValid()) OnPress(index.row());
  }
  void keyPressEvent(QKeyEvent* event) override {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter || event->modifiers().testAnyFlags(Qt::ControlModifier | Qt::AltModifier)) {
      ListTable::keyPressEvent(event);
    } else if (currentIndex().isValid()) {
      OnPress(currentIndex().row());
    }
  }
};

}  // namespace

NameColumn::NameColumn(LibraryBrowser& browser, Stage stage, QWidget* parent)
    : QWidget(parent),
      browser_(browser),
      stage_(stage),
      list_(nullptr),
      words_(new ElidedLabel(QStringLiteral("FILTERED LIST"), this)),
      letters_(new LetterBox(WordsOf(stage).accessible, this)),
      chosen_(new ElidedLabel(this)) {
  const StageWords words = WordsOf(stage);
  auto* table = new NameTable(this);
  table->OnPress = [this](int row) { browser_.PressName(stage_, row); };
  list_ = table;
  SetNames(*list_, words.list, words.fixedList);
  list_->setAccessibleName(words.accessible);
  list_->setModel(new NameModel(browser, stage, this));
  list_->setItemDelegate(new CursorDelegate(this));
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->horizontalHeader()->setSectionsClickable(false);
  list_->SetColumns(0, 1, {});
  list_->SetEmptyText(words.empty);
  list_->setMinimumHeight(fontMetrics().height() * 4);

  words_->setWordWrap(true);
  words_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  QPalette amber = words_->palette();
  amber.setColor(QPalette::WindowText, Theme::Palette().amber);
  words_->setPalette(amber);
  QSizePolicy keeps(QSizePolicy::Ignored, QSizePolicy::Preferred);
  keeps.setRetainSizeWhenHidden(true);
  words_->setSizePolicy(keeps);
  SetNames(*letters_, words.letters, QStringLiteral("Combo1_%1").arg(static_cast<int>(stage)));
  SetNames(*chosen_, words.chosen, words.fixedChosen);
  chosen_->setFont(Theme::Font(0.9, QFont::DemiBold));

  profile_ = AddCommand(*this, {.name = words.profile,
                                .fixedName = words.fixedProfile,
                                .tooltip = words.profileTip,
                                .icon = Icon::Information,
                                .run = [this] { browser_.ShowProfile(stage_); }});
  profile_->setAccessibleName(words.profileTip);
  const int side = fontMetrics().height() + 4;
  profile_->setFixedWidth(side + 4);
  profile_->setIconSize({side * 2 / 3, side * 2 / 3});

  auto* head = new QHBoxLayout;
  head->setSpacing(4);
  head->addWidget(words_, 1);
  head->addWidget(profile_);
  head->addWidget(letters_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(3);
  layout->addLayout(head);
  layout->addWidget(list_, 1);
  layout->addWidget(chosen_);

  connect(letters_, &LetterBox::Chosen, this, &NameColumn::Jump);
  connect(&browser, &LibraryBrowser::ChoiceChanged, this, [this] { ShowChoice(); });
  connect(&browser, &LibraryBrowser::CentreSelections, this, [this] { Centre(); });
  ShowChoice();
}

void NameColumn::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  // In a narrow column the words take two small lines beside the letters.
  const QFont roomy = Theme::Font(0.8, QFont::Bold);
  const int room = width() - letters_->width() - profile_->width() - 8;
  const bool oneLine = QFontMetrics(roomy).horizontalAdvance(words_->text()) <= room;
  words_->setFont(oneLine ? roomy : Theme::Font(0.64, QFont::Bold));
}

void NameColumn::ShowChoice() {
  const QModelIndex selected = list_->model()->index(browser_.Selected(stage_), 0);
  const QModelIndexList shown = list_->selectionModel()->selectedIndexes();
  if (!selected.isValid()) {
    list_->clearSelection();
  } else if (!shown.contains(selected)) {
    list_->selectionModel()->setCurrentIndex(selected, QItemSelectionModel::ClearAndSelect);
  }
  const QString what = browser_.Chosen(stage_).isEmpty() ? tr("%1: none is chosen") : tr("%1: chosen");
  SetSpokenText(*chosen_, what.arg(WordsOf(stage_).accessible), browser_.Chosen(stage_));
  chosen_->setToolTip(browser_.Chosen(stage_));
  words_->setVisible(browser_.FilterWordsShown(stage_));
  Offer(*profile_, browser_.Chosen(stage_).isEmpty() ? WordsOf(stage_).noProfile : QString());
}

void NameColumn::Centre() {
  const int rows = list_->viewport()->height() / (list_->fontMetrics().height() + 4);
  if (browser_.Selected(stage_) < 0) return;
  if (const auto top = LibraryBrowser::CentredTopRow(browser_.Selected(stage_), rows))
    list_->scrollTo(list_->model()->index(*top, 0), QAbstractItemView::PositionAtTop);
}

void NameColumn::Jump(QChar letter) {
  const int row = browser_.LetterRow(stage_, letter);
  if (row < 0) return;
  const QModelIndex index = list_->model()->index(row, 0);
  list_->setCurrentIndex(index);
  list_->scrollTo(index, QAbstractItemView::PositionAtTop);
}

}  // namespace kelvo
