#include "database/windows/ScanLook.h"

#include "database/windows/FileLook.h"
#include "ui/ScalableIcon.h"
#include "ui/Theme.h"

#include <QCoreApplication>
#include <QPainter>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(ScanLook)
};

const QColor kYellow(0xF0, 0xC8, 0x1E);
const QColor kRed(0xB4, 0x1E, 0x28);
constexpr double kSelectedShare = 0.4;

QVariant GroundOf(ScanMark mark) {
  if (mark == ScanMark::InDatabase) return kYellow;
  if (mark == ScanMark::InUtility) return kRed;
  return {};
}

QVariant InkOf(ScanMark mark) {
  if (mark == ScanMark::Copied) return Theme::Palette().ready;
  const QVariant ground = GroundOf(mark);
  return ground.isValid() ? Theme::TextOn(ground.value<QColor>()) : QVariant();
}

/// A shape beside the colour, for those who can't tell red from yellow.
QVariant IconOf(ScanMark mark) {
  static const QIcon database = ScalableIcon(Icon::Warning, Theme::TextOn(kYellow));
  static const QIcon utility = ScalableIcon(Icon::Critical, Theme::TextOn(kRed));
  static const QIcon copied = ScalableIcon(Icon::Check, Theme::Palette().ready);
  switch (mark) {
    case ScanMark::None:
      return {};
    case ScanMark::InDatabase:
      return database;
    case ScanMark::InUtility:
      return utility;
    case ScanMark::Copied:
      return copied;
  }
  return {};
}

}  // namespace

RowModel<ScanRow>::Columns ScanColumns(ScanRows& rows) {
  const auto column = [&rows](ScanColumn number, int letters, int rank) {
    RowColumn<ScanRow> made({.head = HeadOf(number), .letters = letters, .rank = rank},
                            [number](const ScanRow& row) { return row.Text(number); });
    if (ScanRows::Editable(number)) {
      made.set = [&rows, number](int row, const QString& text) { return rows.SetText(row, number, text); };
    }
    return made;
  };
  // In the order of ScanColumn.
  return {column(ScanTitleColumn, 26, 0),    column(ScanArtistColumn, 20, 2), column(ScanDateColumn, 11, 3),
          column(ScanCommentsColumn, 14, 5), column(ScanFolderColumn, 16, 4), column(ScanPathColumn, 30, 1)};
}

QVariant DressScanRow(const ScanRow& row, int column, int role) {
  const bool colourless = !GroundOf(row.mark).isValid();
  const bool isSign = role == Qt::ForegroundRole || role == Qt::DecorationRole;
  if (!row.trouble.isEmpty() && colourless && isSign)
    return DressFile(row.Text(ScanPathColumn), row.trouble, column == ScanTitleColumn, role);
  switch (role) {
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
      return DressFile(row.Text(ScanPathColumn), WordsOf(row), false, role);
    case Qt::BackgroundRole:
      return GroundOf(row.mark);
    case Qt::ForegroundRole:
      return InkOf(row.mark);
    case Qt::DecorationRole:
      return column == ScanTitleColumn ? IconOf(row.mark) : QVariant();
    default:
      return {};
  }
}

QString HeadOf(ScanColumn column) {
  switch (column) {
    case ScanTitleColumn:
      return QStringLiteral("Track Title");
    case ScanArtistColumn:
      return QStringLiteral("Artist");
    case ScanDateColumn:
      return QStringLiteral("Date");
    case ScanCommentsColumn:
      return QStringLiteral("Comments");
    case ScanFolderColumn:
      return QStringLiteral("From Folder");
    case ScanPathColumn:
      return QStringLiteral("Path");
    case ScanColumnCount:
      break;
  }
  return {};
}

QString WordsOf(const ScanRow& row) {
  QStringList words;
  switch (row.mark) {
    case ScanMark::None:
      break;
    case ScanMark::InDatabase:
      words.append(Text::tr(
          "Yellow: a track of this name is in the main data base. Import it again to replace that one."));
      break;
    case ScanMark::InUtility:
      words.append(
          Text::tr("Red: a track of this name waits in the utilities folder. Rename this one to import it."));
      break;
    case ScanMark::Copied:
      words.append(Text::tr("Copied to the utilities folder."));
      break;
  }
  if (!row.trouble.isEmpty()) words.append(Text::tr("It cannot be played: %1").arg(row.trouble));
  return words.join(QLatin1Char(' '));
}

void MarkDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (index.column() == ScanPathColumn) option->textElideMode = Qt::ElideLeft;
}

void MarkDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const QVariant ground = index.data(Qt::BackgroundRole);
  QStyleOptionViewItem item(option);
  if (ground.isValid()) {
    const bool selected = item.state & QStyle::State_Selected;
    const QColor colour = ground.value<QColor>();
    const QColor chosen = Theme::Mix(colour, option.palette.color(QPalette::Highlight), kSelectedShare);
    painter->fillRect(option.rect, selected ? chosen : colour);
    // The style would paint its own ground over it.
    item.state &= ~(QStyle::State_Selected | QStyle::State_MouseOver);
  }
  QStyledItemDelegate::paint(painter, item, index);
}

}  // namespace kelvo
