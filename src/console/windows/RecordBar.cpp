#include "console/windows/RecordBar.h"

#include "console/ScreenLock.h"
#include "console/recorder/ProgrammeRecorder.h"
#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/CommandButton.h"
#include "ui/Naming.h"
#include "ui/Theme.h"
#include "ui/WhyOff.h"

#include <QAction>
#include <QHBoxLayout>

namespace kelvo {

RecordBar::RecordBar(ProgrammeRecorder& recorder, ScreenLock& lock, QWidget* parent)
    : QWidget(parent),
      recorder_(recorder),
      lock_(lock),
      command_(new QAction(this)),
      button_(new CommandButton(this)) {
  SetNames(*button_, QStringLiteral("CmdRecord"));
  button_->setFocusPolicy(Qt::NoFocus);
  const QFontMetrics letters(Theme::Font(1.0, QFont::DemiBold));
  width_ =
      letters.horizontalAdvance(tr("\u25cf REC 00:00:00   9999 MB   999.9 GB left")) + 3 * letters.height();
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 2, letters.height() / 2, 2);
  layout->addStretch();
  layout->addWidget(button_);
  command_->setObjectName(QStringLiteral("mnuRecord"));
  command_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F9));
  connect(button_, &QPushButton::clicked, this, [this] { recorder_.Press(); });
  connect(command_, &QAction::triggered, this, [this] { recorder_.Press(); });
  connect(&recorder_, &ProgrammeRecorder::Changed, this, &RecordBar::Show);
  connect(&lock_, &ScreenLock::Changed, this, &RecordBar::Show);
  Show();
}

QSize RecordBar::sizeHint() const {
  return {width_, QWidget::sizeHint().height()};
}

QString RecordBar::Words() const {
  switch (recorder_.Now()) {
    case ProgrammeRecorder::State::Idle:
      break;
    case ProgrammeRecorder::State::Starting:
      return tr("\u25cf Starting...");
    case ProgrammeRecorder::State::Closing:
      return tr("\u25cf Closing the file...");
    case ProgrammeRecorder::State::Recording: {
      const QString words =
          tr("\u25cf REC %1   %2")
              .arg(HoursMinutesSeconds(Int(recorder_.Seconds())), SizeText(recorder_.Bytes()));
      const std::optional<std::int64_t> left = recorder_.BytesLeft();
      return left ? words + tr("   %1 left").arg(SizeText(*left)) : words;
    }
  }
  return tr("\u25cf Record");
}

void RecordBar::Show() {
  const QString words = Words();
  button_->setText(words);
  const bool runs = recorder_.Runs();
  const QString warning = recorder_.Warning();
  const QString closed =
      WhyOff({{lock_.Locked(), tr("The screen is locked")},
              {recorder_.Now() == ProgrammeRecorder::State::Closing, tr("The recording is being closed")}});
  button_->setAccessibleName(warning.isEmpty() ? words.mid(2)
                                               : words.mid(2) + QStringLiteral(". ") + warning);
  const QString key = command_->shortcut().toString(QKeySequence::NativeText);
  button_->setToolTip(!warning.isEmpty() ? warning
                      : runs             ? tr("Stops the recording; asks first (%1)").arg(key)
                                         : tr("Records what goes on air into a file (%1)").arg(key));
  Offer(*button_, closed);
  command_->setText(runs ? tr("Stop the &recording...") : tr("&Record what goes on air"));
  Offer(*command_, closed);
  const Theme::Colours& colours = Theme::Palette();
  if (!runs) {
    SetColours(colours.window, colours.line);
  } else if (warning.isEmpty()) {
    SetColours(Theme::Mix(colours.onAir, Qt::black, 0.45), colours.onAir);
  } else {
    SetColours(colours.amber, colours.amber);
  }
}

void RecordBar::SetColours(const QColor& ground, const QColor& edge) {
  // Also while it is off: a locked screen goes on showing it.
  const QString look =
      QStringLiteral(
          "QPushButton, QPushButton:disabled { background: %1; border: 1px solid %2; color: %3; "
          "padding: 0.05em 0.7em; min-height: 0; font-weight: 600; }")
          .arg(ground.name(), edge.name(), Theme::TextOn(ground).name());
  if (button_->styleSheet() != look) button_->setStyleSheet(look);
}

}  // namespace kelvo
