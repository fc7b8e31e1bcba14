#include "discs/windows/RipLook.h"

#include "ui/ScalableIcon.h"
#include "ui/Theme.h"

#include <QComboBox>
#include <QCompleter>
#include <QListView>
#include <QStringListModel>

namespace kelvo {
namespace {

const QColor kYellow(0xF0, 0xC8, 0x1E);
const QColor kRed(0xB4, 0x1E, 0x28);

QVariant GroundOf(RipMark mark) {
  if (mark == RipMark::InDatabase) return kYellow;
  if (mark == RipMark::InUtility) return kRed;
  return {};
}

QVariant InkOf(RipMark mark) {
  if (mark == RipMark::Done) return Theme::Palette().ready;
  const QVariant ground = GroundOf(mark);
  return ground.isValid() ? Theme::TextOn(ground.value<QColor>()) : QVariant();
}

/// A shape beside the colour, for those who can't tell red from yellow.
QVariant SignOf(RipMark mark) {
  static const QIcon database = ScalableIcon(Icon::Warning, Theme::TextOn(kYellow));
  static const QIcon utility = ScalableIcon(Icon::Critical, Theme::TextOn(kRed));
  static const QIcon done = ScalableIcon(Icon::Check, Theme::Palette().ready);
  switch (mark) {
    case RipMark::None:
      return {};
    case RipMark::InDatabase:
      return database;
    case RipMark::InUtility:
      return utility;
    case RipMark::Done:
      return done;
  }
  return {};
}

QString MarkWords(RipMark mark) {
  switch (mark) {
    case RipMark::None:
      return {};
    case RipMark::InDatabase:
      return QStringLiteral("Already in the main data base");
    case RipMark::InUtility:
      return QStringLiteral("Already in the utilities folder");
    case RipMark::Done:
      return QStringLiteral("Ripped");
  }
  return {};
}

}  // namespace

QStringList DatesOf(const QString& year) {
  QStringList dates;
  for (const QString& month : RipMonths()) dates.append(year + QLatin1Char('-') + month);
  return dates;
}

RowModel<cTrack>::Columns RipColumns(Ripper& ripper) {
  const auto column = [&ripper](RipRows::Column number, const ColumnLook& look) {
    RowColumn<cTrack> made(look, [number](const cTrack& row) { return RipRows::Text(row, number); });
    if (RipRows::Editable(number)) {
      made.set = [&ripper, number](int row, const QString& text) {
        return ripper.Rows().SetText(row, number, text);
      };
    }
    return made;
  };
  RowColumn<cTrack> tick =
      column(RipRows::Selected, {.head = QStringLiteral("Selected"), .letters = 11, .rank = 1});
  tick.ticked = [](const cTrack& row) { return row.selected; };
  tick.tick = [&ripper](int row, bool on) { ripper.Rows().Tick(row, on); };
  // In the order of RipRows::Column.
  return {
      std::move(tick),
      column(RipRows::Name, {.head = QStringLiteral("Track Name"), .letters = 30}),
      column(RipRows::Artist, {.head = QStringLiteral("Artist"), .letters = 20, .rank = 2}),
      column(RipRows::Year, {.head = QStringLiteral("Date"), .letters = 11, .rank = 3}),
      column(RipRows::Track, {.head = QStringLiteral("Track"), .letters = 7, .rank = 4, .number = true}),
      column(RipRows::StartTime,
             {.head = QStringLiteral("Start Time"), .letters = 13, .rank = 7, .number = true}),
      column(RipRows::Length, {.head = QStringLiteral("Length"), .letters = 9, .rank = 5, .number = true}),
      column(RipRows::Size, {.head = QStringLiteral("Size (Mb)"), .letters = 11, .rank = 6, .number = true})};
}

QVariant DressRipRow(const cTrack& row, int column, int role) {
  switch (role) {
    case Qt::BackgroundRole:
      return GroundOf(row.mark);
    case Qt::ForegroundRole:
      return InkOf(row.mark);
    case Qt::DecorationRole:
      return column == RipRows::Name ? SignOf(row.mark) : QVariant();
    case Qt::AccessibleDescriptionRole:
      return MarkWords(row.mark);
    default:
      return {};
  }
}

QWidget* RipDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const {
  const bool artist = index.column() == RipRows::Artist;
  if (!artist && index.column() != RipRows::Year) return MarkDelegate::createEditor(parent, option, index);
  const QString typed = index.data().toString().left(4);
  const QStringList choice =
      artist ? ripper_.Artists() : DatesOf(typed.isEmpty() ? QStringLiteral("0000") : typed);
  auto* combo = new QComboBox(parent);
  combo->setEditable(true);
  combo->setInsertPolicy(QComboBox::NoInsert);
  // Else each of the names is measured before the box appears.
  combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  combo->setMinimumContentsLength(8);
  auto* names = new QListView(combo);
  names->setUniformItemSizes(true);
  combo->setView(names);
  combo->setModel(new QStringListModel(choice, combo));
  combo->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal).toString());
  auto* self = const_cast<RipDelegate*>(this);
  connect(combo, &QComboBox::activated, self, [self, combo] {
    Q_EMIT self->commitData(combo);
    Q_EMIT self->closeEditor(combo);
  });
  return combo;
}

}  // namespace kelvo
