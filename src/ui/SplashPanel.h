#pragma once

#include <QWidget>

namespace kelvo {

/// The face of the program while it starts: artwork, title, version, and what the start-up found, line by
/// line. The whole face is its background: a click anywhere is reported. GUI thread.
class SplashPanel : public QWidget {
  Q_OBJECT
 public:
  explicit SplashPanel(QWidget* parent = nullptr);

  void SetTitle(const QString& title);
  /// "Version 1.1.4 - comments".
  void SetVersionLine(const QString& line);
  /// Shown at first: "Windows XP Version."
  void SetWordsLine(const QString& line);
  /// The latest lines are shown, as many as fit.
  void AppendStatus(const QString& line);

  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  void BackgroundClicked();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  QString title_ = QStringLiteral("Kelvo 2007");
  QString versionLine_;
  QString wordsLine_ = QStringLiteral("Windows XP Version.");
  QStringList status_;
};

}  // namespace kelvo
