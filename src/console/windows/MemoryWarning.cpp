#include "console/windows/MemoryWarning.h"

#include "console/status/StatusTick.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

namespace kelvo {

MemoryWarning::MemoryWarning(const StatusTick& tick, QWidget* parent)
    : QLabel(QStringLiteral("* * WARNING * * SYSTEM MEMORY  LOW ! * *"), parent) {
  SetNames(*this, QStringLiteral("MemoryWarning"), QStringLiteral("Picture7"));
  setAlignment(Qt::AlignCenter);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  setFont(Theme::Font(1.05, QFont::Bold));
  const QColor ground = Theme::Mix(Theme::Palette().onAir, Qt::black, 0.25);
  setStyleSheet(QStringLiteral("background: %1; color: %2; border-radius: 5px; padding: 0.25em 0.9em;")
                    .arg(ground.name(), Theme::TextOn(ground).name()));
  const auto show = [this, &tick] { setVisible(tick.Status().memoryLow); };
  connect(&tick, &StatusTick::Ticked, this, show);
  hide();
}

}  // namespace kelvo
