#include "playlists/windows/RequestsPanel.h"

#include "playlists/PlaylistManager.h"
#include "ui/Command.h"
#include "ui/Line.h"
#include "ui/WhyOff.h"

#include <QVBoxLayout>

namespace kelvo {

RequestsPanel::RequestsPanel(PlaylistManager& manager, QWidget* parent)
    : QWidget(parent),
      manager_(manager),
      model_(manager.Requests().Rows(),
             {{{.head = QStringLiteral("Track Name"), .letters = 30}, &RequestedTrack::name},
              {{.head = QStringLiteral("Requests"), .letters = 11, .rank = 1, .number = true},
               &RequestedTrack::count},
              {{.head = QStringLiteral("Path"), .letters = 40, .rank = 2}, &RequestedTrack::path}}),
      tracks_({.name = QStringLiteral("LstRequested"),
               .fixedName = QStringLiteral("ListView1"),
               .title = tr("REQUESTED TRACKS"),
               .accessible = tr("Requested tracks")},
              model_, this),
      selectAll_(AddCommand(*this, {.name = QStringLiteral("CmdReqSel"),
                                    .words = QStringLiteral("Select All"),
                                    .tooltip = tr("Selects all requested tracks, or none"),
                                    .key = QKeySequence(Qt::ALT | Qt::Key_A),
                                    .icon = Icon::Check,
                                    .run = [this] { tracks_.PickAllOrNone(); }})),
      add_(AddCommand(*this, {.name = QStringLiteral("CmdReqAdQu"),
                              .words = QStringLiteral("Add To Queue"),
                              .tooltip = tr("Adds the selected tracks to the play queue"),
                              .key = QKeySequence(Qt::ALT | Qt::Key_Q),
                              .icon = Icon::Add,
                              .role = QStringLiteral("primary"),
                              .run = [this] { manager_.AddRequests(tracks_.Picked()); }})),
      delete_(AddCommand(*this, {.name = QStringLiteral("CmdReqDelete"),
                                 .fixedName = QStringLiteral("Command3"),
                                 .words = QStringLiteral("Delete"),
                                 .tooltip = tr("Deletes the selected tracks from the list of requests"),
                                 .key = QKeySequence(Qt::ALT | Qt::Key_Delete),
                                 .icon = Icon::Clear,
                                 .run = [this] { manager_.DeleteRequests(tracks_.Picked()); }})),
      close_(AddCommand(*this, {.name = QStringLiteral("CmdReqEx"),
                                .words = QStringLiteral("Close"),
                                .tooltip = tr("Shows the playlists again"),
                                .key = QKeySequence(Qt::ALT | Qt::Key_C),
                                .icon = Icon::Close,
                                .run = [this] { Q_EMIT Closed(); }})) {
  model_.Dress = [](const RequestedTrack& row, int, int role) {
    return role == Qt::ToolTipRole ? QVariant(row.path) : QVariant();
  };
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(&tracks_, 1);
  layout->addLayout(Line({selectAll_, add_, delete_, kRoom, close_}));
  connect(&tracks_, &ListPanel::PickedChanged, this, [this] { Show(); });
  Show();
}

void RequestsPanel::TakeKeys() {
  tracks_.Table().setFocus();
}

void RequestsPanel::Show() {
  const bool free = !manager_.Busy();
  const bool any = model_.rowCount() > 0;
  tracks_.SetHint(manager_.Busy() ? manager_.Requests().Words()
                                  : tr("No track was requested yet, or none of those is in the database."));
  selectAll_->setText(tracks_.AllPicked() ? QStringLiteral("Clear All") : QStringLiteral("Select All"));
  const OffReason atWork{!free, tr("It is at work: stop it first, or wait")};
  const OffReason empty{!any, tr("The list is empty")};
  Offer(*selectAll_, WhyOff({atWork, empty}));
  Offer(*add_, WhyOff({atWork, empty, {!manager_.MayAddRequests(), tr("The window was opened to save")}}));
  Offer(*delete_, WhyOff({atWork,
                          {!manager_.MayUpkeep(), tr("The Data Manager's password is needed for this")},
                          {!tracks_.AnyPicked(), tr("No track is selected")}}));
}

}  // namespace kelvo
