#pragma once

#include <QHeaderView>

namespace kelvo {

/// The heading of a list. Where a click on it does something, the keyboard can do it too: Tab comes here, the
/// arrows choose a column, Enter clicks it. GUI thread.
class ListHead : public QHeaderView {
  Q_OBJECT
 public:
  explicit ListHead(QWidget* parent);

  /// It is clicked, and so it takes the keyboard.
  void LetClick(const QString& name, const QString& accessible);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  /// A heading that has no room ends in "...": under a style sheet Qt only cuts it.
  void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override;
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;

 private:
  /// Chooses the next column that is shown, from this place on, in steps of `step`.
  void ChooseFrom(int place, int step);

  int chosen_ = -1;  ///< column; none before the keyboard first came here
};

}  // namespace kelvo
