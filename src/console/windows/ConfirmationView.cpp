#include "console/windows/ConfirmationView.h"

#include "ui/Naming.h"

#include <QAccessible>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace kelvo {

ConfirmationView::ConfirmationView(ConfirmationPanel& panel, QWidget* parent)
    : Panel(Group::Console, QString(), parent),
      panel_(panel),
      caution_(new QLabel(QStringLiteral("CAUTION!"), this)),
      text_(new QLabel(this)),
      act_(new QPushButton(this)),
      cancel_(new QPushButton(QStringLiteral("Cancel"), this)) {
  SetNames(*this, QStringLiteral("ConfirmationPanel"), QStringLiteral("Picture3"));
  SetNames(*caution_, QStringLiteral("LblCaution"), QStringLiteral("Label21_0"));
  caution_->setAlignment(Qt::AlignCenter);
  caution_->setFont(Theme::Font(1.3, QFont::Bold));
  QPalette amber = caution_->palette();
  amber.setColor(QPalette::WindowText, Theme::Palette().amber);
  caution_->setPalette(amber);
  SetNames(*text_, QStringLiteral("LblQuestion"), QStringLiteral("Label21_1"));
  text_->setAlignment(Qt::AlignCenter);
  text_->setFont(Theme::Font(1.1, QFont::DemiBold));
  SetNames(*act_, QStringLiteral("CmdConfirmAction"), QStringLiteral("Command35"));
  SetNames(*cancel_, QStringLiteral("CmdConfirmCancel"), QStringLiteral("CmdConfirm"));
  Theme::SetRole(*act_, QStringLiteral("stop"));
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(caution_, 0, 0, 1, 2);
  layout->addWidget(text_, 1, 0, 1, 2);
  act_->setToolTip(tr("Does it  (Enter)"));
  cancel_->setToolTip(tr("Leaves all as it is  (Esc)"));
  int column = 0;
  for (const auto& [button, key] : {std::pair(act_, tr("Enter")), std::pair(cancel_, tr("Esc"))}) {
    // The keys answer wherever the focus is: it stays where the operator works.
    button->setFocusPolicy(Qt::NoFocus);
    auto* hint = new QLabel(key, this);
    hint->setAlignment(Qt::AlignCenter);
    hint->setFont(Theme::Font(0.85));
    QPalette quiet = hint->palette();
    quiet.setColor(QPalette::WindowText, Theme::Palette().muted);
    hint->setPalette(quiet);
    layout->addWidget(button, 2, column);
    layout->addWidget(hint, 3, column);
    layout->setColumnStretch(column++, 1);
  }
  connect(act_, &QPushButton::clicked, this, [this] { panel_.Confirm(); });
  connect(cancel_, &QPushButton::clicked, this, [this] { panel_.Cancel(); });
  hide();
}

void ConfirmationView::SetCaution(const QString& words) {
  if (caution_->text() != words) caution_->setText(words);
}

void ConfirmationView::ShowOver(const QRect& place) {
  text_->setText(panel_.Question().text.trimmed());
  setAccessibleName(text_->text());
  act_->setText(panel_.Question().button);
  layout()->activate();
  QSize size = sizeHint();
  size.setWidth(std::max(size.width(), place.width() * 4 / 5));
  QRect spot(QPoint(), size);
  spot.moveCenter(place.center());
  setGeometry(spot);
  raise();
  if (isVisible()) return;
  show();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

}  // namespace kelvo
