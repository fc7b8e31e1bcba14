#include "console/windows/ListingPanel.h"

#include "ui/CommandButton.h"
#include "ui/ElidedLabel.h"
#include "ui/Naming.h"
#include "ui/ScalableIcon.h"

#include <QGridLayout>

namespace kelvo {

ListingPanel::ListingPanel(LibraryBrowser& browser, QWidget* parent)
    : Panel(Group::Lists, QString(), parent), browser_(browser) {
  SetNames(*this, QStringLiteral("ListingPanel"), QStringLiteral("Picture2"));
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  const QStringList heads{QStringLiteral("Genre"), QStringLiteral("Artist"), QStringLiteral("Album")};
  for (int row = 0; row < heads.size(); ++row) {
    auto*& name = names_[static_cast<std::size_t>(row)];
    name = new ElidedLabel(this);
    name->setFont(Theme::Font(1.0, QFont::DemiBold));
    grid->addWidget(new QLabel(heads[row], this), row, 0);
    grid->addWidget(name, row, 1);
  }
  auto* stop = new CommandButton(ScalableIcon(Icon::Stop), QStringLiteral("Stop Listing"), this);
  SetNames(*stop, QStringLiteral("CmdStopListing"), QStringLiteral("Command33"));
  stop->setToolTip(tr("What is listed so far stays  (Esc)"));
  grid->addWidget(stop, static_cast<int>(heads.size()), 0, 1, 2);
  grid->setColumnStretch(1, 1);
  connect(stop, &QPushButton::clicked, this, [this] { browser_.StopListing(); });
  hide();
}

void ListingPanel::ShowChoices() {
  for (const Stage stage : kStages) names_[static_cast<std::size_t>(stage)]->setText(browser_.Chosen(stage));
  const QWidget& room = *parentWidget();
  QRect spot(QPoint(),
             QSize(std::min(room.width(), fontMetrics().averageCharWidth() * 34), sizeHint().height()));
  spot.moveCenter(room.rect().center());
  setGeometry(spot);
  raise();
  show();
}

}  // namespace kelvo
