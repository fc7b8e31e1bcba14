#include "ui/LetterBox.h"

#include "ui/Theme.h"

#include <QListView>
#include <QScreen>

namespace kelvo {

LetterBox::LetterBox(const QString& list, QWidget* parent) : QComboBox(parent) {
  addItems(QStringLiteral("A,B,C,D,E,F,G,H,I,J,K,L,M,N,O,P,Q,R,S,T,U,V,W,X,Y,Z,0,1,2,3,4,5,6,7,8,9")
               .split(QLatin1Char(',')));
  setToolTip(tr("Jumps to a letter; typing letters in the list does too"));
  setAccessibleName(tr("%1: jump to a letter").arg(list));
  // A box of choices is named by its choice: what it is for is told behind that.
  setAccessibleDescription(accessibleName());
  setFocusPolicy(Qt::TabFocus);
  setView(new QListView(this));
  Theme::SetRole(*this, QStringLiteral("letters"));
  setFixedWidth(fontMetrics().horizontalAdvance(QLatin1Char('W')) + fontMetrics().height() * 5 / 4);
  connect(this, &QComboBox::activated, this, [this] {
    Q_EMIT Chosen(currentText().front());
    update();
  });
}

void LetterBox::showPopup() {
  constexpr int kColumns = 6;
  const int side = fontMetrics().height() * 7 / 4;
  auto* letters = qobject_cast<QListView*>(view());
  letters->setFlow(QListView::LeftToRight);
  letters->setWrapping(true);
  letters->setUniformItemSizes(true);
  letters->setGridSize(QSize(side, side));
  letters->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  letters->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // With some pixels more than six columns need, and less than seven.
  constexpr int kEdges = 6;
  const int lines = (count() + kColumns - 1) / kColumns;
  letters->setFixedSize(side * kColumns + kEdges, side * lines + kEdges);
  QComboBox::showPopup();
  QWidget& popup = *letters->window();
  popup.adjustSize();
  const QRect screen = this->screen()->availableGeometry();
  QRect place(mapToGlobal(QPoint(0, height())), popup.size());
  if (place.bottom() > screen.bottom()) place.moveBottom(mapToGlobal(QPoint()).y());
  if (place.right() > screen.right()) place.moveRight(screen.right());
  popup.move(place.topLeft());
}

}  // namespace kelvo
