#include "console/windows/DeskNotices.h"

#include "console/Console.h"
#include "ui/NoticeBar.h"

namespace kelvo {

namespace {

/// The fact of `key` is `words`, or is over when they are empty.
void Tell(NoticeBar& bar, const QString& key, NoticeBar::Severity severity, const QString& words) {
  if (words.isEmpty()) {
    bar.Clear(key);
  } else {
    bar.Show(key, severity, words);
  }
}

}  // namespace

DeskNotices::DeskNotices(Console& console, NoticeBar& bar) : QObject(&bar), console_(console), bar_(bar) {
  connect(&console_, &Console::StatusChanged, this, &DeskNotices::ShowSound);
  connect(&console_.AirRecorder(), &ProgrammeRecorder::Changed, this, &DeskNotices::ShowRecorder);
  ShowSound();
  ShowRecorder();
}

void DeskNotices::ShowSound() {
  Tell(bar_, QStringLiteral("device"), NoticeBar::Severity::Critical, console_.DeviceNotice());
  const bool good = console_.Reserve().Now() == ReserveWatch::State::Back;
  Tell(bar_, QStringLiteral("reserve"), good ? NoticeBar::Severity::Good : NoticeBar::Severity::Warning,
       console_.ReserveNotice());
}

void DeskNotices::ShowRecorder() {
  const ProgrammeRecorder& recorder = console_.AirRecorder();
  Tell(bar_, QStringLiteral("recording"), NoticeBar::Severity::Warning, recorder.Warning());
  Tell(bar_, QStringLiteral("recorder"), NoticeBar::Severity::Critical, recorder.Trouble());
}

}  // namespace kelvo
