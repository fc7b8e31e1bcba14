#pragma once

#include <QColor>
#include <QProgressBar>

namespace kelvo {

/// A progress bar with its words, and its per cent if wanted, on it: of a deck's track, of a load, of any
/// long job. The words keep their contrast where the bar passes under them. setRange and setValue as usual; a
/// range of 0 to 0 shows words without a bar. GUI thread.
class ProgressStrip : public QProgressBar {
  Q_OBJECT
 public:
  explicit ProgressStrip(QWidget* parent = nullptr);

  /// The colour of the bar; Theme::Palette().blue at first, amber for what needs a look.
  void SetColour(const QColor& colour);
  [[nodiscard]] const QColor& Colour() const { return colour_; }
  void SetWords(const QString& words);
  [[nodiscard]] const QString& Words() const { return words_; }
  /// Shows "45 %" at the right end. Off at first: many words carry their own.
  void SetPercentShown(bool shown);

  [[nodiscard]] QString text() const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] double Share() const;

  QColor colour_;
  QString words_;
  bool percentShown_ = false;
};

}  // namespace kelvo
