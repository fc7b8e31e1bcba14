#include "console/windows/ProgrammePanels.h"

#include "console/desk/ScopeSettings.h"
#include "console/windows/LevelMeter.h"
#include "console/windows/LimiterLamp.h"
#include "console/windows/ScopeView.h"
#include "ui/Command.h"
#include "ui/Line.h"
#include "ui/Panel.h"

#include <QAction>
#include <QEvent>
#include <QMenu>
#include <QVBoxLayout>

namespace kelvo {

ProgrammePanels::ProgrammePanels(ProgrammeView& programme, ProgramSettings settings, QWidget& row)
    : QObject(&row),
      programme_(programme),
      settings_(std::move(settings)),
      row_(row),
      meters_(new QWidget),
      scope_(new Panel(Group::Console, QStringLiteral("SCOPE"), &row)) {
  meters_->setObjectName(QStringLiteral("Meters"));
  auto* line =
      Line({{new LevelMeter(programme_.levels, meters_), 1}, new LimiterLamp(programme_.levels, meters_)});
  line->setContentsMargins(0, 0, 0, 0);
  meters_->setLayout(line);

  scope_->setObjectName(QStringLiteral("ScopePanel"));
  auto* layout = new QVBoxLayout(scope_);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(new ScopeView(programme_.scope, scope_));
  const auto note = [this] {
    const QFontMetrics metrics = scope_->fontMetrics();
    scope_->SetNote(
        metrics.elidedText(programme_.scope.SourceWords(), Qt::ElideMiddle, metrics.height() * 12));
  };
  connect(&programme_.scope, &Scope::ChoiceChanged, scope_, note);
  note();

  settings_.Listen(setting::MetersShown, this, [this](bool) { Arrange(); });
  settings_.Listen(setting::ScopeShown, this, [this](bool) { Arrange(); });
  row_.installEventFilter(this);
}

void ProgrammePanels::AddEntries(QMenu& menu) {
  const auto add = [&](const QString& name, const QString& words, Qt::Key key, const TruthSetting& shown) {
    QAction* entry = menu.addAction(words, this, [this, &shown](bool on) { settings_.Set(shown, on); });
    entry->setObjectName(name);
    entry->setCheckable(true);
    entry->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | key));
    return entry;
  };
  menu.addSeparator();
  showMeters_ = add(QStringLiteral("mnuMeters"), tr("Level &meters"), Qt::Key_L, setting::MetersShown);
  showScope_ = add(QStringLiteral("mnuScope"), tr("&Scope"), Qt::Key_S, setting::ScopeShown);
  Arrange();
}

bool ProgrammePanels::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &row_ && event->type() == QEvent::Resize) Arrange();
  return false;
}

bool ProgrammePanels::HasRoom() const {
  const QLayout* const layout = row_.layout();
  if (layout == nullptr) return false;
  const QMargins margins = layout->contentsMargins();
  int taken = margins.left() + margins.right();
  for (int index = 0; index < layout->count(); ++index) {
    const QWidget* const panel = layout->itemAt(index)->widget();
    if (panel == nullptr) continue;
    taken += std::max(panel->minimumSizeHint().width(), panel->minimumWidth()) +
             (index > 0 ? layout->spacing() : 0);
  }
  return taken <= row_.width();
}

void ProgrammePanels::Arrange() {
  const bool meters = settings_.Get(setting::MetersShown);
  const bool scope = settings_.Get(setting::ScopeShown);
  const bool room = HasRoom();
  meters_->setVisible(meters);
  scope_->setVisible(scope && room);
  if (showMeters_ == nullptr) return;
  showMeters_->setChecked(meters);
  showScope_->setChecked(scope);
  Offer(*showScope_, room ? QString() : tr("The console is too narrow for it: take the scope's window"));
}

}  // namespace kelvo
