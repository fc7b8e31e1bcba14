#include "datamanager/windows/TrackNamesPanel.h"

#include "datamanager/windows/ToolButtons.h"
#include "ui/Naming.h"
#include "ui/Panel.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace kelvo {
namespace {

struct SetLook {
  const char* name;
  const char* fixedName;
  const char* title;
  const char* tool;
};
constexpr std::array<SetLook, ReferenceChoice::kTrackSets.size()> kLooks{
    {{"LstTrackGenres", "LstCats", "ITS GENRES", "Command21"},
     {"LstTrackArtists", "LstArts", "ITS ARTISTS", "Command24"},
     {"LstTrackAlbums", "LstAlbs", "ITS ALBUMS", "Command23"}}};

}  // namespace

TrackNamesPanel::TrackNamesPanel(DataManager& manager, ToolButtons& tools, QWidget* parent)
    : QWidget(parent), manager_(manager) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  for (std::size_t place = 0; place < parts_.size(); ++place) {
    const SetLook& look = kLooks[place];
    const ReferenceSet set = ReferenceChoice::kTrackSets[place];
    auto* panel = new Panel(Group::Lists, QString::fromLatin1(look.title), this);
    auto* list = new QListWidget(panel);
    SetNames(*list, QString::fromLatin1(look.name), QString::fromLatin1(look.fixedName));
    list->setAccessibleName(panel->Title());
    list->setFixedHeight(fontMetrics().height() * 5);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setTextElideMode(Qt::ElideRight);
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    column->addWidget(list, 1);
    if (QPushButton* button = tools.Make(*panel, QString::fromLatin1(look.tool))) column->addWidget(button);
    layout->addWidget(panel, 1);
    connect(list, &QListWidget::currentTextChanged, this,
            [this, set](const QString& name) { manager_.References().ChooseOfTrack(set, name); });
    parts_[place] = {panel, list};
  }
}

void TrackNamesPanel::Show() {
  for (std::size_t place = 0; place < parts_.size(); ++place) {
    const auto& [panel, list] = parts_[place];
    const ReferenceSet set = ReferenceChoice::kTrackSets[place];
    const QStringList names = manager_.References().OfTrack(set);
    QStringList shown;
    for (int row = 0; row < list->count(); ++row) shown.append(list->item(row)->text());
    if (shown == names) continue;
    const QSignalBlocker quiet(list);
    list->clear();
    list->addItems(names);
    const qsizetype chosen = names.indexOf(manager_.References().ChosenOfTrack(set));
    list->setCurrentRow(static_cast<int>(chosen));
    panel->SetNote(names.isEmpty() ? QString() : QString::number(names.size()));
  }
}

}  // namespace kelvo
