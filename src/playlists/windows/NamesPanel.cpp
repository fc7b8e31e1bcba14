#include "playlists/windows/NamesPanel.h"

#include "ui/Command.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/WhyOff.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QSignalBlocker>
#include <QStringListModel>
#include <QVBoxLayout>

namespace kelvo {

namespace {

struct SetWords {
  const char* id;
  const char* title;
  const char* add;
};
constexpr std::array<SetWords, kNameSets> kWords{{{"Genre", "GENRES", "Add Genre"},
                                                  {"Artist", "ARTISTS", "Add Artist"},
                                                  {"Album", "ALBUMS", "Add Album"}}};

}  // namespace

NamesPanel::NamesPanel(PlayEditor& editor, std::size_t set, QWidget* parent)
    : Panel(Group::Lists, QString::fromLatin1(kWords[set].title), parent),
      editor_(editor),
      set_(set),
      known_(new QStringListModel(this)),
      list_(new QListWidget(this)),
      name_(new QComboBox(this)) {
  const QString id = QString::fromLatin1(kWords[set].id);
  const QString add = QString::fromLatin1(kWords[set].add);
  const auto fixed = [set](const char* name) {
    return QStringLiteral("%1_%2").arg(QString::fromLatin1(name)).arg(set);
  };
  SetNames(*list_, QStringLiteral("LstTrack") + id + QLatin1Char('s'), fixed("List1"));
  list_->setAccessibleName(Title());
  list_->setMinimumHeight(fontMetrics().height() * 5);
  SetNames(*name_, QStringLiteral("CboTrack") + id, fixed("Combo4"));
  name_->setAccessibleName(add);
  name_->setToolTip(tr("A known name, or a new one"));
  name_->setEditable(true);
  name_->setInsertPolicy(QComboBox::NoInsert);
  name_->lineEdit()->setAccessibleName(add);
  // There may be many thousand names: none is measured before it is shown.
  name_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  name_->setMinimumContentsLength(8);
  name_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  if (auto* view = qobject_cast<QListView*>(name_->view())) view->setUniformItemSizes(true);
  name_->setModel(known_);
  add_ = AddCommand(*this, {.name = QStringLiteral("CmdAdd") + id,
                            .fixedName = fixed("Command4"),
                            .words = add,
                            .tooltip = tr("Adds the name above"),
                            .keyWords = tr("Enter in the name"),
                            .icon = Icon::Add,
                            .run = [this] { Add(); }});
  remove_ = AddCommand(*this, {.name = QStringLiteral("CmdDel") + id,
                               .fixedName = fixed("Command3"),
                               .words = QStringLiteral("Del"),
                               .tooltip = tr("Takes the selected name away"),
                               .run = [this] { editor_.RemoveName(set_, list_->currentRow()); }});
  up_ = AddCommand(*this, {.name = QStringLiteral("CmdUp") + id,
                           .fixedName = fixed("Command8"),
                           .tooltip = tr("Moves the selected name up"),
                           .icon = Icon::Up,
                           .run = [this] { Move(-1); }});
  down_ = AddCommand(*this, {.name = QStringLiteral("CmdDown") + id,
                             .fixedName = fixed("Command9"),
                             .tooltip = tr("Moves the selected name down"),
                             .icon = Icon::Down,
                             .run = [this] { Move(1); }});
  for (QPushButton* button : {up_, down_}) button->setAccessibleName(button->toolTip());
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(list_, 1);
  layout->addWidget(name_);
  auto* commands = Line({{add_, 1}, remove_, up_, down_});
  commands->setSpacing(4);
  layout->addLayout(commands);
  connect(name_->lineEdit(), &QLineEdit::returnPressed, this, [this] { Add(); });
  connect(list_, &QListWidget::currentRowChanged, this, [this] { Show(); });
}

void NamesPanel::Add() {
  if (const std::optional<QString> name = editor_.AddName(set_, name_->currentText()))
    name_->setEditText(*name);
}

void NamesPanel::Move(int step) {
  const int row = editor_.MoveName(set_, list_->currentRow(), step);
  list_->setCurrentRow(row);
}

void NamesPanel::TakeKeys() {
  list_->setFocus();
}

void NamesPanel::ShowKnown() {
  known_->setStringList(editor_.KnownNames(set_));
  name_->setCurrentIndex(-1);
  name_->clearEditText();
}

void NamesPanel::Show() {
  const QStringList& names = editor_.Edit().names[set_];
  QStringList shown;
  for (int row = 0; row < list_->count(); ++row) shown.append(list_->item(row)->text());
  const int row = list_->currentRow();
  if (shown != names) {
    const QSignalBlocker quiet(list_);
    list_->clear();
    list_->addItems(names);
    list_->setCurrentRow(std::min(row, static_cast<int>(names.size()) - 1));
  }
  const int current = list_->currentRow();
  const QString why = editor_.WhyNoEdit();
  const QString none = why.isEmpty() && current < 0 ? tr("No name is selected") : why;
  SetNote(QString::number(names.size()));
  for (QWidget* each : std::initializer_list<QWidget*>{list_, name_, add_}) Offer(*each, why);
  Offer(*remove_, editor_.WhyNoRemove(set_, current));
  Offer(*up_, WhyOff({{!none.isEmpty(), none}, {current == 0, tr("It is the first")}}));
  Offer(*down_, WhyOff({{!none.isEmpty(), none}, {current == names.size() - 1, tr("It is the last")}}));
}

}  // namespace kelvo
