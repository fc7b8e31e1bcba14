#include "datamanager/windows/UpkeepStrip.h"

#include "datamanager/LibraryChanges.h"
#include "ui/Command.h"
#include "ui/JobStrip.h"
#include "ui/Line.h"
#include "ui/WhyOff.h"

#include <QPushButton>

namespace kelvo {

UpkeepStrip::UpkeepStrip(EventLoop& loop, LibraryChanges& changes, QWidget* parent)
    : QWidget(parent),
      changes_(changes),
      strip_(new JobStrip(loop, QStringLiteral("UpkeepProgress"), tr("Progress of the change"), this)),
      undo_(AddCommand(*this, {.name = QStringLiteral("CmdUndo"),
                               .words = tr("Undo"),
                               .tooltip = tr("Takes back the last rename, delete or change of many tracks"),
                               .key = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z),
                               .icon = Icon::Undo,
                               .run = [this] { changes_.Undo(); }})) {
  strip_->OfferStop(QStringLiteral("CmdStopChange"), tr("Takes back what was done so far"),
                    [this] { changes_.Stop(); });
  auto* line = Line({{strip_, 1}, undo_});
  line->setContentsMargins(0, 0, 0, 0);
  setLayout(line);
  connect(&changes_, &LibraryChanges::Changed, this, [this] { Show(); });
  Show();
}

void UpkeepStrip::Show() {
  const QString last = changes_.LastChange();
  const QString idle = last.isEmpty() ? tr("Nothing to undo") : tr("Done: %1").arg(last);
  JobState state{.running = changes_.Shows(), .words = changes_.Shows() ? changes_.Words() : idle};
  if (state.running) {
    state.share = changes_.Share();
    state.percentInWords = true;
  }
  strip_->Show(state);
  Offer(*undo_,
        WhyOff({{changes_.Running(), changes_.WhyNot()}, {last.isEmpty(), tr("There is nothing to undo")}}));
}

}  // namespace kelvo
