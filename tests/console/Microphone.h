#pragma once

#include "audio/SoundInput.h"

namespace kelvo::testing {

using namespace Qt::StringLiterals;

/// One microphone, which a test plugs and unplugs.
class Microphone : public SoundInput {
 public:
  std::shared_ptr<Tap> tap;
  QString chosen;

  [[nodiscard]] std::vector<Device> Devices() override {
    return tap ? std::vector<Device>{{u"mic.1"_s, u"Studio Microphone"_s}} : std::vector<Device>();
  }
  void Choose(const QString& id) override { chosen = id; }
  [[nodiscard]] std::shared_ptr<const Tap> Sound() const override {
    return chosen == u"mic.1"_s ? tap : nullptr;
  }
};

}  // namespace kelvo::testing
