#include "console/windows/ScopeView.h"

#include "console/windows/ScopePictures.h"
#include "ui/Naming.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace kelvo {

ScopeView::ScopeView(Scope& scope, QWidget* parent)
    : QWidget(parent), scope_(scope), pages_(new QStackedLayout(this)) {
  SetNames(*this, QStringLiteral("ScopeView"), QStringLiteral("Scope3"));
  setAccessibleName(tr("Scope"));
  setFocusPolicy(Qt::TabFocus);
  auto* traces = new QWidget(this);
  auto* both = new QVBoxLayout(traces);
  both->setContentsMargins(0, 0, 0, 0);
  both->setSpacing(2);
  for (const int index : {0, 1}) both->addWidget(new TracePicture(scope_, index, traces));
  pages_->addWidget(traces);
  pages_->addWidget(new SpectrumPicture(scope_, this));
  connect(&scope_, &Scope::ChoiceChanged, this, [this] { ShowChoice(); });
  ShowChoice();
}

void ScopeView::ShowChoice() {
  pages_->setCurrentIndex(scope_.ShowsSpectrum() ? 1 : 0);
  const QString what = scope_.ShowsSpectrum() ? tr("Spectrum of %1") : tr("Left and right side of %1");
  setAccessibleDescription(what.arg(scope_.SourceWords()));
  setToolTip(accessibleDescription() + QLatin1Char('\n') +
             tr("Right button or Enter: the picture, and the sound that it shows"));
}

void ScopeView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  watch_ = scope_.Watch();
  ShowChoice();
}

void ScopeView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  watch_ = nullptr;
}

// The inputs are looked for from the first question on: they are known when the menu opens.
void ScopeView::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  static_cast<void>(scope_.Inputs());
}

void ScopeView::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  static_cast<void>(scope_.Inputs());
}

void ScopeView::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    QWidget::keyPressEvent(event);
    return;
  }
  OpenMenu(mapToGlobal(rect().center()));
}

void ScopeView::contextMenuEvent(QContextMenuEvent* event) {
  OpenMenu(event->globalPos());
}

void ScopeView::OpenMenu(const QPoint& place) {
  auto* menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("ScopeMenu"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  auto* kinds = new QActionGroup(menu);
  const auto addKind = [&](const QString& words, bool spectrum) {
    QAction* entry = menu->addAction(words, this, [this, spectrum] { scope_.ShowSpectrum(spectrum); });
    entry->setCheckable(true);
    entry->setChecked(scope_.ShowsSpectrum() == spectrum);
    kinds->addAction(entry);
  };
  addKind(tr("&Traces"), false);
  addKind(tr("&Spectrum"), true);
  menu->addSeparator();
  AddSources(*menu);
  menu->popup(place);
}

void ScopeView::AddSources(QMenu& menu) {
  auto* sources = new QActionGroup(&menu);
  const auto add = [&](const QString& words, const QString& id) {
    QString plain = words;
    QAction* entry = menu.addAction(plain.replace(QLatin1Char('&'), QStringLiteral("&&")), this,
                                    [this, id] { scope_.ChooseInput(id); });
    entry->setCheckable(true);
    entry->setChecked(scope_.Input() == id);
    sources->addAction(entry);
  };
  add(tr("Programme"), {});
  const std::vector<SoundInput::Device> inputs = scope_.Inputs();
  const bool there = std::any_of(inputs.begin(), inputs.end(),
                                 [this](const auto& each) { return each.id == scope_.Input(); });
  for (const SoundInput::Device& each : inputs) add(each.words, each.id);
  if (!there && !scope_.Input().isEmpty()) add(scope_.SourceWords(), scope_.Input());
  if (inputs.empty()) menu.addAction(tr("No sound input is there"))->setEnabled(false);
}

}  // namespace kelvo
