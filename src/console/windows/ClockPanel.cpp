#include "console/windows/ClockPanel.h"

#include "console/status/StatusTick.h"
#include "console/windows/ClockDial.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"
#include "ui/Tabular.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QResizeEvent>
#include <QVBoxLayout>

#include <algorithm>

namespace kelvo {
namespace {

/// A line as large as its place, whose digits keep their places while they count.
class GrowingLine : public QLabel {
 public:
  /// `caption` is shown before the text, dimmed; `widest` is the text that has to fit behind it; `scale` the
  /// smallest letter, in sizes of the program's font.
  GrowingLine(const QString& caption, const QString& widest, double scale, QFont::Weight weight,
              QWidget* parent)
      : QLabel(parent), caption_(caption), widest_(caption + widest), smallest_(Theme::Font(scale, weight)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  }

  [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }
  [[nodiscard]] QSize minimumSizeHint() const override {
    const QFontMetricsF metrics(smallest_);
    return {static_cast<int>(TabularWidth(metrics, widest_)) + 2, static_cast<int>(metrics.height())};
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    const QFontMetricsF metrics(smallest_);
    const double growth =
        std::max(1.0, std::min(height() / metrics.height(), width() / (TabularWidth(metrics, widest_) + 2)));
    QFont font = smallest_;
    font.setPointSizeF(smallest_.pointSizeF() * growth);
    QPainter painter(this);
    painter.setFont(font);
    painter.setPen(Theme::Palette().muted);
    DrawTabular(painter, rect(), alignment(), caption_);
    painter.setPen(palette().color(foregroundRole()));
    const int behind = static_cast<int>(TabularWidth(QFontMetricsF(font), caption_));
    DrawTabular(painter, rect().adjusted(behind, 0, 0, 0), alignment(), text());
  }

 private:
  QString caption_;
  QString widest_;
  QFont smallest_;
};

}  // namespace

ClockPanel::ClockPanel(const StatusTick& tick, QWidget* parent)
    : QWidget(parent),
      tick_(tick),
      dial_(new ClockDial(this)),
      time_(new GrowingLine(QString(), QStringLiteral("00:00:00"), 1.5, QFont::Bold, this)),
      date_(new GrowingLine(QString(), QStringLiteral("Wed 30 May 2000"), 0.95, QFont::DemiBold, this)),
      session_(new GrowingLine(tr("Session") + QStringLiteral("  "), QStringLiteral("00:00:00"), 0.9,
                               QFont::DemiBold, this)) {
  setObjectName(QStringLiteral("ClockPanel"));
  dial_->setObjectName(QStringLiteral("Clock"));
  SetNames(*time_, QStringLiteral("TxtTimeOfDay"), QStringLiteral("Text7"));
  SetNames(*date_, QStringLiteral("TxtDate"), QStringLiteral("Text10"));
  SetNames(*session_, QStringLiteral("LblSession"), QStringLiteral("Label18"));
  session_->setToolTip(tr("Time since the session began"));

  auto* words = new QVBoxLayout;
  words->setSpacing(0);
  words->addStretch();
  words->addWidget(time_, 8);
  words->addWidget(date_, 5);
  words->addWidget(session_, 5);
  words->addStretch();
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(fontMetrics().height() * 2 / 3);
  layout->addWidget(dial_, 2);
  layout->addLayout(words, 3);
  connect(&tick_, &StatusTick::Ticked, this, [this] { Show(); });
  Show();
}

// The three lines stay together and the face stays a square beside them, however tall the place is.
void ClockPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const int words = event->size().width() * 3 / 5;
  const auto limit = [](QWidget* line, int height) {
    line->setMaximumHeight(std::max(height, line->minimumSizeHint().height()));
  };
  limit(time_, words * 24 / 100);
  limit(date_, words * 14 / 100);
  limit(session_, words * 14 / 100);
  dial_->setMaximumWidth(std::max(event->size().height(), dial_->minimumSizeHint().width()));
}

void ClockPanel::Show() {
  const DeskStatus& status = tick_.Status();
  dial_->SetHands(status.hands);
  SetSpokenText(*time_, tr("Time of day"), status.time);
  SetSpokenText(*date_, tr("Date"), status.date);
  SetSpokenText(*session_, tr("Length of the session"), status.sessionTime);
  dial_->setAccessibleDescription(status.time);
}

}  // namespace kelvo
