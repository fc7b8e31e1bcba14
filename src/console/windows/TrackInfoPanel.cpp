#include "console/windows/TrackInfoPanel.h"

#include "ui/Naming.h"

#include <QLabel>
#include <QListWidget>
#include <QShortcut>
#include <QVBoxLayout>

namespace kelvo {

TrackInfoPanel::TrackInfoPanel(LibraryBrowser& browser, QWidget* parent)
    : Panel(Group::Lists, QString(), parent), browser_(browser), genres_(new QListWidget(this)) {
  SetNames(*this, QStringLiteral("TrackDetails"), QStringLiteral("Picture9"));
  setAccessibleName(tr("Track details"));
  for (std::size_t line = 0; line < lines_.size(); ++line) {
    lines_[line] = new QLabel(this);
    SetNames(*lines_[line], QStringLiteral("TrackDetailLine%1").arg(line),
             QStringLiteral("Label25_%1").arg(line));
    lines_[line]->setTextFormat(Qt::PlainText);
  }
  lines_[0]->setFont(Theme::Font(1.1, QFont::DemiBold));
  lines_[0]->setWordWrap(true);
  SetNames(*genres_, QStringLiteral("TrackGenres"), QStringLiteral("List1"));
  genres_->setAccessibleName(tr("Genres of the track"));
  genres_->setToolTip(QStringLiteral("Double Click To Select Genre"));
  auto* hint = new QLabel(genres_->toolTip(), this);
  hint->setFont(Theme::Font(0.85));
  QPalette quiet = hint->palette();
  quiet.setColor(QPalette::WindowText, Theme::Palette().muted);
  hint->setPalette(quiet);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(lines_[0]);
  layout->addWidget(genres_);
  layout->addWidget(hint);
  layout->addWidget(lines_[1]);
  layout->addWidget(lines_[2]);
  connect(genres_, &QListWidget::itemDoubleClicked, this,
          [this](const QListWidgetItem* item) { browser_.ChooseGenreOfInfo(genres_->row(item)); });
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* choose = new QShortcut(QKeySequence(key), genres_, nullptr, nullptr, Qt::WidgetShortcut);
    connect(choose, &QShortcut::activated, this,
            [this] { browser_.ChooseGenreOfInfo(genres_->currentRow()); });
  }
  hide();
}

void TrackInfoPanel::ShowAt(const QPoint& spot) {
  const std::optional<TrackDetails>& info = browser_.Info();
  genres_->clear();
  if (!info) {
    hide();
    return;
  }
  lines_[0]->setText(info->title);
  lines_[1]->setText(info->starts);
  lines_[2]->setText(info->ends);
  genres_->addItems(info->genres);
  const QWidget& room = *parentWidget();
  genres_->setFixedHeight(fontMetrics().height() * 6);
  const int width = std::min(room.width(), fontMetrics().averageCharWidth() * 34);
  setFixedWidth(width);
  layout()->activate();
  const int height = std::max(sizeHint().height(), heightForWidth(width));
  setGeometry(std::clamp(spot.x(), 0, std::max(room.width() - width, 0)),
              std::clamp(spot.y(), 0, std::max(room.height() - height, 0)), width, height);
  raise();
  show();
}

void TrackInfoPanel::TakeKeys() {
  genres_->setFocus();
  genres_->setCurrentRow(0);
}

}  // namespace kelvo
