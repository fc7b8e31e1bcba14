#pragma once

#include "audio/AudioEngine.h"
#include "audio/TestSounds.h"
#include "audio/engine/SimulatedBackend.h"
#include "platform/SimulatedEventLoop.h"
#include "support/TemporaryTree.h"

#include <chrono>
#include <memory>
#include <optional>
#include <span>

namespace kelvo::testing {

using namespace std::chrono_literals;

/// An engine in simulated time whose default output is recorded.
struct SimulatedStudio {
  TemporaryTree folder;
  SimulatedEventLoop loop;
  Samples heard;
  AudioEngine engine{loop, std::make_unique<SimulatedBackend>(
                               loop,
                               [this](const QString& output, std::span<const float> sound) {
                                 if (output.isEmpty()) heard.insert(heard.end(), sound.begin(), sound.end());
                               },
                               QStringList{QStringLiteral("Main"), QStringLiteral("Headphones")})};

  QString File(const QString& name, const QByteArray& bytes) { return folder.Write(name, bytes); }

  OpenResult Open(MediaPlayer& player, const QString& path) {
    std::optional<OpenResult> result;
    const auto open = [](MediaPlayer& target, QString file, std::optional<OpenResult>& into) -> Job<> {
      into = co_await target.Open(file);
    };
    const Job<> job = open(player, path, result);
    loop.RunUntil([&] { return result.has_value(); }, 10s);
    return result.value_or(OpenResult{OpenResult::Kind::Failed, QStringLiteral("no answer")});
  }

  /// What was heard since `heard` was last cleared, from the first frame that is not silent on.
  [[nodiscard]] Samples FromFirstSound() const {
    for (std::size_t i = 0; i + 1 < heard.size(); i += 2) {
      if (heard[i] != 0 || heard[i + 1] != 0)
        return {heard.begin() + static_cast<std::ptrdiff_t>(i), heard.end()};
    }
    return {};
  }
};

}  // namespace kelvo::testing
