#pragma once

#include "platform/Job.h"

#include <QImage>
#include <QStringList>
#include <QWidget>

namespace kelvo {

class EventLoop;

/// The picture of a page, as large as there is room, or words in its place. It is read and decoded off the
/// thread. A double click asks for another, and one can be dropped. GUI thread.
class PictureView : public QWidget {
  Q_OBJECT
 public:
  PictureView(EventLoop& loop, QWidget* parent);

  /// Shows the picture of this path; `turn` tells two of the same path apart.
  void ShowPicture(const QString& path, int turn);
  /// Whether pictures are taken; why not, is said by the window.
  void SetTakes(bool takes);
  /// In the place of a picture.
  void SetHint(const QString& words);

  [[nodiscard]] const QImage& Shown() const { return image_; }
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  void PictureWanted();
  void FilesDropped(const QStringList& files);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  [[nodiscard]] Job<> Read(QString path);

  EventLoop& loop_;
  QString path_;
  int turn_ = -1;
  bool takes_ = false;
  QString hint_;
  QString trouble_;
  QImage image_;
  Job<> reading_;
};

}  // namespace kelvo
