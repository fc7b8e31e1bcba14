#include "console/windows/LoadPanel.h"

#include "database/CatalogueLoader.h"
#include "ui/Naming.h"
#include "ui/ProgressStrip.h"

#include <QLabel>
#include <QVBoxLayout>

namespace kelvo {

LoadPanel::LoadPanel(const QString& program, QWidget* parent)
    : Panel(Group::Console, QStringLiteral("Initialising System, Please Wait...."), parent),
      references_(new ProgressStrip(this)),
      tracks_(new ProgressStrip(this)) {
  SetNames(*this, QStringLiteral("LoadPanel"), QStringLiteral("FrmMap"));
  auto* title = new QLabel(program + QLatin1Char(' ') + QStringLiteral(KELVO_VERSION), this);
  title->setObjectName(QStringLiteral("LblProgram"));
  title->setFont(Theme::Font(1.5, QFont::DemiBold));
  title->setAlignment(Qt::AlignCenter);
  references_->setObjectName(QStringLiteral("PrgReferences"));
  references_->setAccessibleName(tr("Reference lists"));
  tracks_->setObjectName(QStringLiteral("PrgTracks"));
  tracks_->setAccessibleName(tr("Tracks"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(title);
  layout->addWidget(references_);
  layout->addWidget(tracks_);
  setMinimumWidth(fontMetrics().averageCharWidth() * 70);
  adjustSize();
}

void LoadPanel::Show(const CatalogueLoader& load) {
  const auto show = [](ProgressStrip& strip, const LoadBar& bar) {
    strip.setRange(0, bar.maximum);
    strip.setValue(bar.value);
    strip.SetWords(bar.words);
  };
  show(*references_, load.references);
  show(*tracks_, load.tracks);
}

}  // namespace kelvo
