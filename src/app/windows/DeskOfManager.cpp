#include "app/windows/DeskOfManager.h"

namespace kelvo {
namespace {

/// Hundredths of a decibel of one step of the monitor's level.
constexpr int kLevelStep = -1000;

}  // namespace

DeskOfManager::DeskOfManager(Console& desk) : desk_(desk), output_(desk.Pfl().Output()) {
  QObject::connect(&desk_.Pfl(), &Monitor::Changed, &listener_, [this] {
    const QString before = std::exchange(output_, desk_.Pfl().Output());
    const bool taken = desk_.Pfl().Shown() || output_ != before || !WhyNoPreview().isEmpty();
    if (OnDevice) OnDevice(taken);
  });
}

int DeskOfManager::Volume() const {
  return desk_.Pfl().Level() * kLevelStep;
}

}  // namespace kelvo
