#include "info/windows/PictureView.h"

#include "platform/EventLoop.h"
#include "ui/DroppedFiles.h"
#include "ui/Theme.h"

#include <QImageReader>
#include <QMouseEvent>
#include <QPainter>

namespace kelvo {
namespace {

/// No side of a decoded picture is longer, in pixels: enough for the window on a large screen.
constexpr int kMostPixels = 1600;

struct Decoded {
  QImage image;
  QString trouble;
};

Decoded Decode(const QString& path) {
  QImageReader reader(path);
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  const QSize size = reader.size();
  if (size.width() > kMostPixels || size.height() > kMostPixels)
    reader.setScaledSize(size.scaled(kMostPixels, kMostPixels, Qt::KeepAspectRatio));
  Decoded decoded;
  decoded.image = reader.read();
  if (decoded.image.isNull()) decoded.trouble = reader.errorString();
  return decoded;
}

}  // namespace

PictureView::PictureView(EventLoop& loop, QWidget* parent) : QWidget(parent), loop_(loop) {
  setMinimumSize(fontMetrics().averageCharWidth() * 22, fontMetrics().height() * 8);
}

QSize PictureView::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 36, fontMetrics().height() * 14};
}

void PictureView::SetTakes(bool takes) {
  takes_ = takes;
  setAcceptDrops(takes);
}

void PictureView::SetHint(const QString& words) {
  if (hint_ == words) return;
  hint_ = words;
  update();
}

void PictureView::ShowPicture(const QString& path, int turn) {
  if (path == path_ && turn == turn_) return;
  path_ = path;
  turn_ = turn;
  reading_ = {};
  if (path.isEmpty()) {
    image_ = {};
    trouble_.clear();
  } else {
    reading_ = Read(path);
  }
  update();
}

Job<> PictureView::Read(QString path) {
  const auto decode = [path] { return Decode(path); };
  Decoded decoded = co_await loop_.Offload(EventLoop::Lane::Apart, decode);
  image_ = std::move(decoded.image);
  trouble_ =
      decoded.trouble.isEmpty() ? QString() : tr("The picture cannot be shown:\n%1").arg(decoded.trouble);
  update();
}

void PictureView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Theme::Palette().line);
  painter.setBrush(Theme::Palette().well);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
  const QRect room = rect().adjusted(5, 5, -5, -5);
  if (image_.isNull()) {
    painter.setPen(Theme::Palette().muted);
    painter.drawText(room, static_cast<int>(Qt::AlignCenter) | Qt::TextWordWrap,
                     trouble_.isEmpty() ? hint_ : trouble_);
    return;
  }
  // Small ones are not blown up.
  const QSize size = image_.size().width() <= room.width() && image_.size().height() <= room.height()
                         ? image_.size()
                         : image_.size().scaled(room.size(), Qt::KeepAspectRatio);
  QRect place(QPoint(), size);
  place.moveCenter(room.center());
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(place, image_);
}

void PictureView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && takes_) Q_EMIT PictureWanted();
}

void PictureView::dragEnterEvent(QDragEnterEvent* event) {
  TakeAsCopy(*event, takes_);
}

void PictureView::dropEvent(QDropEvent* event) {
  TakeAsCopy(*event, takes_);
  if (takes_) Q_EMIT FilesDropped(DroppedFiles(*event->mimeData()));
}

}  // namespace kelvo
