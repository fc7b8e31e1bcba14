#include "datamanager/windows/ReferencePanel.h"

#include "datamanager/windows/ToolButtons.h"
#include "ui/Command.h"
#include "ui/LetterBox.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/WhyOff.h"

#include <QGridLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace kelvo {
namespace {

constexpr std::array kSets{ReferenceSet::Genres, ReferenceSet::Artists, ReferenceSet::Albums,
                           ReferenceSet::Playlists};

QString WordOf(ReferenceSet set) {
  switch (set) {
    case ReferenceSet::Genres:
      return QStringLiteral("Genre");
    case ReferenceSet::Artists:
      return QStringLiteral("Artists");
    case ReferenceSet::Albums:
      return QStringLiteral("Albums");
    case ReferenceSet::Playlists:
      return QStringLiteral("Playlists");
  }
  return {};
}

QString TracksText(const ReferenceRow& row) {
  return row.tracks ? QString::number(*row.tracks) : QString();
}

}  // namespace

ReferencePanel::ReferencePanel(DataManager& manager, ToolButtons& tools, QWidget* parent)
    : QWidget(parent),
      manager_(manager),
      nameModel_(manager.References().Names(),
                 {{{.head = QStringLiteral("Name"), .letters = 14}, &ReferenceRow::name},
                  {{.head = QStringLiteral("Tracks"), .letters = 9, .rank = 1, .number = true}, TracksText}}),
      names_({.name = QStringLiteral("LstNames"),
              .fixedName = QStringLiteral("List1"),
              .title = tr("REFERENCES"),
              .accessible = tr("Names of the chosen set"),
              .many = false},
             nameModel_, this),
      filterModel_(manager.References().Filter(),
                   {{{.head = QStringLiteral("Name"), .letters = 14}, &Reference::name},
                    {{.head = QStringLiteral("Set"), .letters = 8, .rank = 1},
                     [](const Reference& row) { return WordOf(row.set); }}}),
      filter_({.name = QStringLiteral("LstFilter"),
               .fixedName = QStringLiteral("List2"),
               .title = tr("FILTER"),
               .accessible = tr("References of the filter")},
              filterModel_, this) {
  filter_.SetHint(tr("Double click a name above"));
  BuildSets();
  BuildCommands();
  BuildLayout(tools);
  connect(&names_, &ListPanel::CurrentChanged, this, [this] { ChooseRow(); });
  connect(&names_, &ListPanel::RowActivated, this, [this] { manager_.References().AddToFilter(); });
  connect(&filter_, &ListPanel::PickedChanged, this, [this] { Show(); });
  connect(&filter_, &ListPanel::RowActivated, this,
          [this](int row) { manager_.References().RemoveFromFilter({row}); });
  connect(&nameModel_, &QAbstractItemModel::modelReset, this, [this] { ShowChosen(); });
}

void ReferencePanel::BuildSets() {
  for (std::size_t place = 0; place < kSets.size(); ++place) {
    const QString word = WordOf(kSets[place]);
    sets_[place] =
        AddCommand(*this, {.name = QStringLiteral("CmdSet") + word,
                           .fixedName = QStringLiteral("Command1_%1").arg(place),
                           .words = word,
                           .tooltip = tr("Lists these names below"),
                           .key = QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + place)),
                           .run = [this, place] { manager_.References().ChooseSet(kSets[place]); }});
    sets_[place]->setCheckable(true);
  }
}

void ReferencePanel::BuildCommands() {
  add_ = AddCommand(*this, {.name = QStringLiteral("CmdAddToFilter"),
                            .words = tr("Add"),
                            .tooltip = tr("Adds the chosen name to the filter; so does a double click on it"),
                            .keyWords = tr("Enter on the name"),
                            .icon = Icon::Add,
                            .run = [this] { manager_.References().AddToFilter(); }});
  remove_ = AddCommand(*this, {.name = QStringLiteral("CmdRemoveFromFilter"),
                               .words = tr("Remove"),
                               .tooltip = tr("Takes the selected references out of the filter"),
                               .keyWords = tr("Enter on the reference"),
                               .run = [this] { manager_.References().RemoveFromFilter(filter_.Picked()); }});
  select_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectFilter"),
                               .fixedName = QStringLiteral("Command14"),
                               .words = QStringLiteral("Select All"),
                               .tooltip = tr("Selects all references of the filter, or none"),
                               .run = [this] {
                                 if (filter_.AnyPicked()) {
                                   filter_.Table().clearSelection();
                                 } else {
                                   filter_.Table().selectAll();
                                 }
                               }});
  apply_ = AddCommand(*this, {.name = QStringLiteral("CmdFilter"),
                              .fixedName = QStringLiteral("Command22"),
                              .words = QStringLiteral("< Filter >"),
                              .tooltip = tr("Lists the tracks of these references"),
                              .key = QKeySequence(Qt::ALT | Qt::Key_F),
                              .role = QStringLiteral("primary"),
                              .run = [this] { manager_.Filter(); }});
  all_ = AddCommand(*this, {.name = QStringLiteral("CmdDisplayAll"),
                            .fixedName = QStringLiteral("Command28"),
                            .words = QStringLiteral("Display  All"),
                            .tooltip = tr("Empties the filter and lists everything"),
                            .key = QKeySequence(Qt::ALT | Qt::Key_D),
                            .run = [this] { manager_.DisplayAll(); }});
}

void ReferencePanel::BuildLayout(ToolButtons& tools) {
  auto* letters = new LetterBox(tr("Names of the chosen set"), this);
  SetNames(*letters, QStringLiteral("CboNameLetter"), QStringLiteral("Combo2"));
  connect(letters, &LetterBox::Chosen, this, &ReferencePanel::Jump);
  auto* sets = new QGridLayout;
  sets->setSpacing(4);
  for (std::size_t place = 0; place < sets_.size(); ++place)
    sets->addWidget(sets_[place], static_cast<int>(place) / 2, static_cast<int>(place) % 2);
  sets->addWidget(letters, 0, 2);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addLayout(sets);
  layout->addWidget(&names_, 3);
  layout->addLayout(tools.MakeLine(*this, {"Command10", "Command9", "Command2"}));
  layout->addLayout(tools.MakeLine(*this, {"Command12", "Command15"}));
  layout->addLayout(tools.MakeLine(*this, {"Command16", "Command29"}));
  layout->addWidget(&filter_, 2);
  QHBoxLayout* edit = Line({{add_, 1}, {remove_, 1}, {select_, 1}});
  QHBoxLayout* use = Line({{apply_, 1}, {all_, 1}});
  edit->setSpacing(4);
  use->setSpacing(4);
  layout->addLayout(edit);
  layout->addLayout(use);
}

void ReferencePanel::ChooseRow() {
  if (showing_) return;
  const int row = names_.Current();
  const RowStore<ReferenceRow>& names = manager_.References().Names();
  manager_.References().Choose(row >= 0 && row < names.Count() ? names[row].name : QString());
}

void ReferencePanel::ShowChosen() {
  const auto& all = manager_.References().Names().All();
  const QString& chosen = manager_.References().Chosen();
  const auto found =
      std::find_if(all.begin(), all.end(), [&chosen](const ReferenceRow& row) { return row.name == chosen; });
  if (chosen.isEmpty() || found == all.end()) return;
  showing_ = true;
  names_.Table().selectRow(static_cast<int>(found - all.begin()));
  showing_ = false;
}

void ReferencePanel::Jump(QChar letter) {
  const int row = manager_.References().LetterRow(letter);
  if (row >= 0) names_.Table().scrollTo(nameModel_.index(row, 0), QAbstractItemView::PositionAtTop);
}

void ReferencePanel::Show() {
  const ReferenceChoice& references = manager_.References();
  for (std::size_t place = 0; place < sets_.size(); ++place)
    sets_[place]->setChecked(references.Set() == kSets[place]);
  names_.SetTitle(references.Set() ? references.SetWord().toUpper() : tr("REFERENCES"));
  names_.SetHint(references.Set() ? tr("There are no names of this kind yet.")
                                  : tr("Choose genres, artists, albums or playlists above."));
  Offer(*add_, references.WhyNoAdd());
  const OffReason none{!filter_.AnyPicked(), tr("No reference of the filter is selected")};
  const OffReason empty{references.Filter().Count() == 0, tr("The filter is empty")};
  Offer(*remove_, WhyOff({empty, none}));
  Offer(*select_, WhyOff({empty}));
  select_->setText(filter_.AnyPicked() ? QStringLiteral("Clear Selected") : QStringLiteral("Select All"));
  Offer(*apply_, manager_.WhyNoFilter());
}

}  // namespace kelvo
