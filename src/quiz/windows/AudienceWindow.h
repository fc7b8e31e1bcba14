#pragma once

#include "quiz/AudienceView.h"
#include "ui/WindowPlace.h"

#include <QWidget>

#include <memory>

class QPainter;

namespace kelvo {

/// The quiz for the audience: a window for a second screen or a projector, in letters as large as there is
/// room for. It takes no keys, so nothing that is typed for the desk ends here, and it knows nothing but the
/// view that it shows. Owned by the QuizWindow; GUI thread.
class AudienceWindow : public QWidget {
  Q_OBJECT
 public:
  AudienceWindow();
  ~AudienceWindow() override;

  void KeepPlace(SettingsStore& settings, const PlaceKeys& keys);
  void SetView(const AudienceView& view);
  [[nodiscard]] const AudienceView& View() const { return view_; }
  /// Fills a screen that `operatorWindow` is not on, where there is one; else it is a window.
  void ShowBeside(const QWidget& operatorWindow);
  /// Fills its screen, or is a window again.
  void SetFullScreen(bool full);

 Q_SIGNALS:
  /// It came, went, or changed its form.
  void Changed();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void PaintScores(QPainter& painter, QRect place) const;
  void PaintSnippet(QPainter& painter, QRect place) const;

  AudienceView view_;
  std::unique_ptr<WindowPlace> place_;
};

}  // namespace kelvo
