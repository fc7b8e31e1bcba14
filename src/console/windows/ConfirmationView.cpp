#include "console/windows/ConfirmationView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kelvo {

ConfirmationView::ConfirmationView(ConfirmationPanel& panel, QWidget* parent)
    : Panel(Group::Console, QString(), parent),
      panel_(panel),
      caution_(new QLabel(QStringLiteral("CAUTION!"), this)),
      text_(new QLabel(this)),
      act_(new QPushButton(this)),
      cancel_(new QPushButton(QStringLiteral("Cancel"), this)) {
  setObjectName(QStringLiteral("Picture3"));
  caution_->setObjectName(QStringLiteral("Label21_0"));
  caution_->setAlignment(Qt::AlignCenter);
  caution_->setFont(Theme::Font(1.3, QFont::Bold));
  QPalette amber = caution_->palette();
  amber.setColor(QPalette::WindowText, Theme::Palette().amber);
  caution_->setPalette(amber);
  text_->setObjectName(QStringLiteral("Label21_1"));
  text_->setAlignment(Qt::AlignCenter);
  text_->setFont(Theme::Font(1.1, QFont::DemiBold));
  act_->setObjectName(QStringLiteral("Command35"));
  cancel_->setObjectName(QStringLiteral("CmdConfirm"));
  Theme::SetRole(*act_, QStringLiteral("stop"));
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(act_, 1);
  buttons->addWidget(cancel_, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(caution_);
  layout->addWidget(text_);
  layout->addLayout(buttons);
  connect(act_, &QPushButton::clicked, this, [this] { panel_.Confirm(); });
  connect(cancel_, &QPushButton::clicked, this, [this] { panel_.Cancel(); });
  hide();
}

void ConfirmationView::SetCaution(const QString& words) {
  if (caution_->text() != words) caution_->setText(words);
}

void ConfirmationView::ShowOver(const QRect& place) {
  text_->setText(panel_.Question().text.trimmed());
  act_->setText(panel_.Question().button);
  layout()->activate();
  QSize size = sizeHint();
  size.setWidth(std::max(size.width(), place.width() * 4 / 5));
  QRect spot(QPoint(), size);
  spot.moveCenter(place.center());
  setGeometry(spot);
  raise();
  show();
  cancel_->setFocus();
}

}  // namespace kelvo
