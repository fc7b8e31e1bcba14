#pragma once

#include <QTextBrowser>

namespace kelvo {

struct ManualPage;

/// A page of the manual, with its pictures as wide as there is room. GUI thread.
class ManualView : public QTextBrowser {
  Q_OBJECT
 public:
  /// `folder` holds the pictures.
  ManualView(const QString& folder, QWidget* parent);

  /// `heading`: a slug; empty: the top.
  void ShowPage(const ManualPage& page, const QString& heading);
  /// Marks these words wherever they are.
  void Mark(const QString& words);

 Q_SIGNALS:
  /// A link, as it is written.
  void LinkFollowed(const QString& link);

 protected:
  [[nodiscard]] QVariant loadResource(int type, const QUrl& name) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Lay();
  [[nodiscard]] QImage Picture(const QString& name);
  [[nodiscard]] int RoomForPictures() const;

  QString folder_;
  QString text_;
  QStringList pictures_;  ///< those of the page
  QString words_;
  int laidFor_ = 0;      ///< the room for pictures when the page was laid out
  bool narrow_ = false;  ///< a picture had to be made smaller
};

}  // namespace kelvo
