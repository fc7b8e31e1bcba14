#include "ui/LetterBox.h"

#include "ui/Theme.h"

namespace kelvo {

LetterBox::LetterBox(const QString& list, QWidget* parent) : QComboBox(parent) {
  addItems(QStringLiteral("A,B,C,D,E,F,G,H,I,J,K,L,M,N,O,P,Q,R,S,T,U,V,W,X,Y,Z,0,1,2,3,4,5,6,7,8,9")
               .split(QLatin1Char(',')));
  setToolTip(tr("Jumps to a letter; typing letters in the list does too"));
  setAccessibleName(tr("%1: jump to a letter").arg(list));
  setFocusPolicy(Qt::TabFocus);
  setMaxVisibleItems(18);
  Theme::SetRole(*this, QStringLiteral("letters"));
  setFixedWidth(fontMetrics().horizontalAdvance(QLatin1Char('W')) + fontMetrics().height() * 5 / 4);
  connect(this, &QComboBox::activated, this, [this] {
    Q_EMIT Chosen(currentText().front());
    update();
  });
}

}  // namespace kelvo
