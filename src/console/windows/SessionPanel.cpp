#include "console/windows/SessionPanel.h"

#include "console/status/StatusTick.h"
#include "ui/Command.h"
#include "ui/KeyList.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>

namespace kelvo {

SessionPanel::SessionPanel(const StatusTick& tick, std::function<QString()> whyClosed, QWidget* parent)
    : QWidget(parent), show_(new CommandButton(this)) {
  setObjectName(QStringLiteral("SessionPanel"));
  SetNames(*show_, QStringLiteral("CmdSession"), QStringLiteral("Command15"));
  show_->setText(QStringLiteral("Show"));
  show_->setAccessibleName(tr("Show the session list"));
  show_->setToolTip(QStringLiteral("Records On The Fly Track Play Info"));
  // The key is bound with its entry in the menu.
  TellKey(*show_, QStringLiteral("Ctrl+H"));
  auto* heading = new QLabel(QStringLiteral("SESSION LIST"), this);
  heading->setFont(Theme::Font(0.88, QFont::Bold));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(heading);
  layout->addWidget(show_, 1);
  connect(show_, &QPushButton::clicked, this, &SessionPanel::Wanted);
  connect(&tick, &StatusTick::Ticked, this, [this, whyClosed] { Offer(*show_, whyClosed()); });
}

}  // namespace kelvo
