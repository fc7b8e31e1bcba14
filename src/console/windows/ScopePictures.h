#pragma once

#include "console/scope/Scope.h"

#include <QPixmap>
#include <QWidget>

namespace kelvo {

/// One trace of the scope. Owned by its ScopeView; GUI thread.
class TracePicture : public QWidget {
  Q_OBJECT
 public:
  /// `index` as in Scope::TraceOf.
  TracePicture(const Scope& scope, int index, QWidget* parent = nullptr);

  /// The pen's way through the picture: it starts one step before the left edge, on the zero line.
  [[nodiscard]] std::array<QPointF, Scope::kFrames + 1> Points() const;
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Scope& scope_;
  const int index_;
};

/// The spectrum: pitch from 20 Hz to 20 kHz as the ear has it, level from -80 to 0 dB. Owned by its
/// ScopeView; GUI thread.
class SpectrumPicture : public QWidget {
  Q_OBJECT
 public:
  explicit SpectrumPicture(const Scope& scope, QWidget* parent = nullptr);

  /// The bar of a band.
  [[nodiscard]] QRect BarOf(std::size_t band) const;
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  /// Where the bars are: above the words of the axis.
  [[nodiscard]] QRect Plot() const;
  void DrawGround();

  const Scope& scope_;
  QPixmap ground_;
};

}  // namespace kelvo
