#include "ui/FocusRing.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QSplitter>

namespace kelvo {
namespace {

/// Pixels; as much room lies around a control on the desk.
constexpr int kThick = 4;

/// The drawn line. It takes no mouse, and only its own pixels are painted over what is below.
class RingLine : public QWidget {
 public:
  explicit RingLine(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("FocusRing"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
  }

 protected:
  void resizeEvent(QResizeEvent* /*event*/) override {
    setMask(QRegion(rect()) - QRegion(rect().adjusted(kThick, kThick, -kThick, -kThick)));
  }
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    const QRectF middle = QRectF(rect()).adjusted(kThick / 2.0, kThick / 2.0, -kThick / 2.0, -kThick / 2.0);
    painter.setPen(QPen(Qt::black, kThick));
    painter.drawRect(middle);
    painter.setPen(QPen(Qt::white, kThick / 2.0));
    painter.drawRect(middle);
  }
};

/// Whose child the line becomes. A splitter would make a part of its own of it.
QWidget* GroundOf(const QWidget& control) {
  QWidget* ground = control.parentWidget();
  while (qobject_cast<QSplitter*>(ground) != nullptr) ground = ground->parentWidget();
  return ground;
}

}  // namespace

void FocusRing::Install(QApplication& application) {
  if (application.findChild<FocusRing*>() == nullptr) new FocusRing(application);
}

FocusRing::FocusRing(QApplication& application) : QObject(&application) {
  connect(&application, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { Follow(now); });
}

void FocusRing::Follow(QWidget* control) {
  if (control_) control_->removeEventFilter(this);
  // Of what is open for a moment, a menu or a list of choices, the whole has the keyboard.
  const bool shown =
      control != nullptr && !control->isWindow() && control->window()->windowType() != Qt::Popup;
  control_ = shown ? control : nullptr;
  if (control_) control_->installEventFilter(this);
  Place();
}

void FocusRing::Place() {
  QWidget* const ground = control_ && control_->isVisible() ? GroundOf(*control_) : nullptr;
  if (ground == nullptr) {
    if (line_) line_->hide();
    return;
  }
  if (!line_) line_ = new RingLine(ground);
  if (line_->parentWidget() != ground) line_->setParent(ground);
  const QRect place(control_->mapTo(ground, QPoint()), control_->size());
  line_->setGeometry(place.adjusted(-kThick, -kThick, kThick, kThick) & ground->rect());
  line_->raise();
  line_->show();
}

bool FocusRing::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::ParentChange:
      Place();
      break;
    default:
      break;
  }
  return false;
}

}  // namespace kelvo
