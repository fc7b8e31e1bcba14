#include "quiz/windows/AudienceWindow.h"

#include "ui/Theme.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <algorithm>

namespace kelvo {
namespace {

/// Draws words as large as they fit into the place, `largest` pixels high at most.
void DrawFitting(QPainter& painter, QRect place, int flags, const QString& words, int largest,
                 QFont::Weight weight = QFont::Normal) {
  if (words.isEmpty() || place.isEmpty()) return;
  QFont font = painter.font();
  font.setWeight(weight);
  const auto fits = [&](int size) {
    font.setPixelSize(size);
    const QRect needed = QFontMetrics(font).boundingRect(place, flags, words);
    return needed.height() <= place.height() && needed.width() <= place.width();
  };
  constexpr int kSmallest = 9;
  int low = kSmallest;
  int high = std::max(largest, kSmallest);
  while (low < high) {
    const int middle = (low + high + 1) / 2;
    if (fits(middle)) {
      low = middle;
    } else {
      high = middle - 1;
    }
  }
  font.setPixelSize(low);
  painter.setFont(font);
  painter.drawText(place, flags, words);
}

constexpr int kCentred = Qt::AlignCenter | Qt::TextWordWrap;

}  // namespace

AudienceWindow::AudienceWindow() : QWidget(nullptr, Qt::Window | Qt::WindowDoesNotAcceptFocus) {
  setObjectName(QStringLiteral("QuizAudience"));
  setWindowTitle(tr("Pop Quiz"));
  setAccessibleName(tr("Pop Quiz, for the audience"));
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(320, 200);
  resize(960, 600);
}

AudienceWindow::~AudienceWindow() = default;

void AudienceWindow::KeepPlace(SettingsStore& settings, const PlaceKeys& keys) {
  place_ = std::make_unique<WindowPlace>(*this, settings, keys);
}

void AudienceWindow::SetView(const AudienceView& view) {
  if (view == view_) return;
  const bool wordsChanged = view.text != view_.text || view.answers != view_.answers;
  view_ = view;
  if (wordsChanged) {
    setAccessibleDescription((QStringList{view_.text} + view_.answers).join(QStringLiteral(". ")));
  }
  update();
}

void AudienceWindow::ShowBeside(const QWidget& operatorWindow) {
  const QList<QScreen*> screens = QGuiApplication::screens();
  const auto other = std::find_if(screens.begin(), screens.end(), [&operatorWindow](const QScreen* each) {
    return each != operatorWindow.screen();
  });
  if (other == screens.end()) {
    show();
    return;
  }
  setGeometry((*other)->geometry());
  showFullScreen();
}

void AudienceWindow::SetFullScreen(bool full) {
  if (full) {
    showFullScreen();
  } else {
    showNormal();
  }
}

void AudienceWindow::mouseDoubleClickEvent(QMouseEvent*) {
  SetFullScreen(!isFullScreen());
}

void AudienceWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) Q_EMIT Changed();
}

void AudienceWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Q_EMIT Changed();
}

void AudienceWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  Q_EMIT Changed();
}

void AudienceWindow::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.fillRect(rect(), colours.window);
  const int edge = std::max(height() / 30, 8);
  QRect room = rect().adjusted(edge, edge, -edge, -edge);
  const auto cutTop = [&room](int high) {
    const QRect part(room.topLeft(), QSize(room.width(), high));
    room.setTop(room.top() + high);
    return part;
  };
  const auto cutBottom = [&room](int high) {
    const QRect part(QPoint(room.left(), room.bottom() - high + 1), QSize(room.width(), high));
    room.setBottom(room.bottom() - high);
    return part;
  };
  painter.setPen(colours.accent);
  DrawFitting(painter, cutTop(height() / 12), kCentred, view_.heading, height() / 18, QFont::DemiBold);
  if (!view_.teams.empty()) {
    PaintScores(painter, cutBottom(height() / 5));
    cutBottom(edge);
  }
  if (!view_.snippet.isEmpty()) {
    PaintSnippet(painter, cutBottom(height() / 7));
    cutBottom(edge);
  }
  if (!view_.answers.isEmpty()) {
    const QRect place = cutBottom(room.height() / 2);
    painter.setPen(colours.ready);
    DrawFitting(painter, place, kCentred, view_.answers.join(QLatin1Char('\n')), height() / 9, QFont::Bold);
  }
  painter.setPen(colours.text);
  DrawFitting(painter, room, kCentred, view_.text, height() / 8, QFont::DemiBold);
}

void AudienceWindow::PaintSnippet(QPainter& painter, QRect place) const {
  const Theme::Colours& colours = Theme::Palette();
  QRect words = place;
  words.setHeight(place.height() * 3 / 5);
  painter.setPen(colours.text);
  DrawFitting(painter, words, kCentred, view_.snippet, words.height() * 3 / 4);
  QRect bar(place.left() + place.width() / 8, words.bottom() + place.height() / 10, place.width() * 3 / 4,
            place.height() / 5);
  painter.fillRect(bar, colours.well);
  QRect done = bar;
  done.setWidth(static_cast<int>(bar.width() * view_.share));
  painter.fillRect(done, colours.accent);
}

void AudienceWindow::PaintScores(QPainter& painter, QRect place) const {
  const Theme::Colours& colours = Theme::Palette();
  const auto count = static_cast<int>(view_.teams.size());
  const int gap = std::max(place.width() / 100, 4);
  const int width = (place.width() - gap * (count - 1)) / count;
  int best = 1;
  for (const QuizTeam& each : view_.teams) best = std::max(best, each.points);
  int left = place.left();
  for (const QuizTeam& each : view_.teams) {
    const QRect card(left, place.top(), width, place.height());
    left += width + gap;
    painter.fillRect(card, colours.surface);
    QRect inner = card.adjusted(gap, gap, -gap, -gap);
    QRect name = inner;
    name.setHeight(inner.height() * 2 / 5);
    inner.setTop(name.bottom());
    painter.setPen(colours.muted);
    DrawFitting(painter, name, kCentred, each.name, name.height() * 2 / 3);
    painter.setPen(each.points == best ? colours.ready : colours.text);
    DrawFitting(painter, inner, Qt::AlignCenter, QString::number(each.points), inner.height(), QFont::Bold);
  }
}

}  // namespace kelvo
