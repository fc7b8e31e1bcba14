#pragma once

#include "audio/engine/OutputBackend.h"

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

namespace kelvo::testing {

/// Devices that a test plugs in, pulls and lets call. Threads and their pace are the test's.
class FakeBackend : public OutputBackend {
 public:
  /// Shared with the test, which outlives the backend that the engine owns.
  struct Bench {
    QStringList names{QStringLiteral("Main"), QStringLiteral("Headphones")};
    bool threaded = false;
    std::vector<std::shared_ptr<DeviceLink>> open;
    std::map<QString, int> tries;  ///< opens asked for, by name; empty is the default output

    /// The device that plays the output that was asked for as `name`; null when there is none.
    [[nodiscard]] DeviceLink* Device(const QString& name = {}) const {
      const auto found = std::find_if(open.begin(), open.end(), [&](const auto& link) {
        return link->Name() == name && !link->Detached() && link->GetState() == DeviceLink::State::Running;
      });
      return found == open.end() ? nullptr : found->get();
    }
    /// Takes the device away; whatever plays on it is gone.
    void Pull(const QString& name) {
      const bool isDefault = names.value(0) == name;
      names.removeOne(name);
      for (const auto& link : open) {
        if (link->Name() == name || (link->Name().isEmpty() && isDefault))
          link->SetState(DeviceLink::State::Gone);
      }
    }
  };

  explicit FakeBackend(std::shared_ptr<Bench> bench) : bench_(std::move(bench)) {}

  [[nodiscard]] QStringList Names() const override { return bench_->names; }
  void Open(std::shared_ptr<DeviceLink> link) override {
    ++bench_->tries[link->Name()];
    std::erase_if(bench_->open, [](const auto& each) { return each->Detached(); });
    const bool exists =
        link->Name().isEmpty() ? !bench_->names.isEmpty() : bench_->names.contains(link->Name());
    link->SetState(exists ? DeviceLink::State::Running : DeviceLink::State::Gone);
    if (exists) bench_->open.push_back(std::move(link));
  }
  [[nodiscard]] bool Threaded() const override { return bench_->threaded; }

 private:
  std::shared_ptr<Bench> bench_;
};

}  // namespace kelvo::testing
