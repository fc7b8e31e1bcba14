#include "datamanager/windows/BulkForm.h"

#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/Line.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QLocale>
#include <QStringListModel>

namespace kelvo {
namespace {

constexpr int kFirstYear = 1950;
constexpr int kMonths = 12;

QStringList YearChoices(int now) {
  QStringList years{QString(), QStringLiteral("0000")};
  for (int year = now; year >= kFirstYear; --year) years.append(QString::number(year));
  return years;
}

QStringList MonthChoices() {
  QStringList months{QString(), QStringLiteral("xxx")};
  for (int month = 1; month <= kMonths; ++month)
    months.append(QLocale::c().monthName(month, QLocale::ShortFormat));
  return months;
}

}  // namespace

BulkForm::BulkForm(DataManager& manager, QWidget* parent)
    : Panel(Group::Lists, tr("CHANGE ALL SELECTED TRACKS"), parent),
      manager_(manager),
      artists_(new QStringListModel(this)),
      genres_(new QStringListModel(this)),
      year_(AddChoice(QStringLiteral("CboBulkYear"), tr("Year, empty: as it is"))),
      month_(AddChoice(QStringLiteral("CboBulkMonth"), tr("Month, empty: as it is"))),
      artist_(AddNames(QStringLiteral("CboBulkArtist"), tr("Artist, empty: as it is"), *artists_)),
      genre_(AddNames(QStringLiteral("CboBulkGenre"), tr("Genre, empty: as it is"), *genres_)),
      replace_(new QCheckBox(tr("In place of those that they have"), this)),
      apply_(
          AddCommand(*this, {.name = QStringLiteral("CmdBulkApply"),
                             .words = tr("Change"),
                             .tooltip = tr("Changes what is filled in, in all selected tracks"),
                             .icon = Icon::Check,
                             .role = QStringLiteral("primary"),
                             .run = [this] { manager_.Bulk().Apply(manager_.PickedTracks(), Change()); }})) {
  year_->addItems(YearChoices(manager_.Today().year()));
  month_->addItems(MonthChoices());
  replace_->setObjectName(QStringLiteral("ChkBulkReplace"));
  replace_->setToolTip(tr("Artist and genre replace those of the tracks; otherwise they are added to them"));
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  int column = 0;
  const std::initializer_list<std::pair<QString, QComboBox*>> fields{
      {tr("Year"), year_}, {tr("Month"), month_}, {tr("Artist"), artist_}, {tr("Genre"), genre_}};
  for (const auto& [words, field] : fields) {
    layout->addWidget(new QLabel(words, this), 0, column++);
    layout->addWidget(field, 0, column++);
  }
  for (const int wide : {5, 7}) layout->setColumnStretch(wide, 1);
  layout->addLayout(Line({replace_, kRoom, apply_}), 1, 0, 1, column);
  for (QComboBox* each : {year_, month_, artist_, genre_})
    connect(each, &QComboBox::currentTextChanged, this, [this] { Show(); });
}

QComboBox* BulkForm::AddChoice(const QString& name, const QString& accessible) {
  auto* box = new QComboBox(this);
  box->setObjectName(name);
  box->setAccessibleName(accessible);
  box->setToolTip(accessible);
  return box;
}

QComboBox* BulkForm::AddNames(const QString& name, const QString& accessible, QStringListModel& names) {
  QComboBox* box = AddChoice(name, accessible);
  box->setEditable(true);
  box->setInsertPolicy(QComboBox::NoInsert);
  box->lineEdit()->setAccessibleName(accessible);
  // There may be many thousand names: none is measured before it is shown.
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->setMinimumContentsLength(8);
  if (auto* view = qobject_cast<QListView*>(box->view())) view->setUniformItemSizes(true);
  box->setModel(&names);
  return box;
}

void BulkForm::TakeKeys() {
  for (const auto& [box, model, set] : {std::tuple{artist_, artists_, ReferenceSet::Artists},
                                        std::tuple{genre_, genres_, ReferenceSet::Genres}}) {
    const QString typed = box->currentText();
    model->setStringList(ReferenceChoice::ShownNames(manager_.Tracks(), set));
    box->setCurrentIndex(-1);
    box->setEditText(typed);
  }
  year_->setFocus();
}

BulkChange BulkForm::Change() const {
  BulkChange change;
  if (!year_->currentText().isEmpty()) change.year = year_->currentText();
  if (!month_->currentText().isEmpty()) change.month = month_->currentText();
  change.artist = artist_->currentText().trimmed();
  change.genre = genre_->currentText().trimmed();
  change.replace = replace_->isChecked();
  return change;
}

void BulkForm::Show() {
  const std::size_t tracks = manager_.List().Mode() == DispMode::Jingles ? 0 : manager_.PickedRows().size();
  SetNote(tracks == 0 ? QString()
                      : Counted(static_cast<qint64>(tracks), tr("row selected"), tr("rows selected")));
  Offer(*apply_, manager_.Bulk().WhyNot(Change(), tracks));
}

}  // namespace kelvo
