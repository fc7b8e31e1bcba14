#include "console/windows/SessionPanel.h"

#include "console/status/StatusTick.h"
#include "ui/Command.h"
#include "ui/KeyList.h"
#include "ui/Naming.h"

#include <QVBoxLayout>

namespace kelvo {

SessionPanel::SessionPanel(const StatusTick& tick, std::function<QString()> whyClosed, QWidget* parent)
    : Panel(Group::Console, QStringLiteral("SESSION LIST"), parent), show_(new CommandButton(this)) {
  setObjectName(QStringLiteral("SessionPanel"));
  SetNames(*show_, QStringLiteral("CmdSession"), QStringLiteral("Command15"));
  show_->setText(QStringLiteral("Show"));
  show_->setAccessibleName(tr("Show the session list"));
  show_->setToolTip(QStringLiteral("Records On The Fly Track Play Info"));
  // The key is bound with its entry in the menu.
  TellKey(*show_, QStringLiteral("Ctrl+Shift+S"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addStretch();
  layout->addWidget(show_);
  layout->addStretch();
  connect(show_, &QPushButton::clicked, this, &SessionPanel::Wanted);
  connect(&tick, &StatusTick::Ticked, this, [this, whyClosed] { Offer(*show_, whyClosed()); });
}

}  // namespace kelvo
