#pragma once

#include "audio/AudioEngine.h"
#include "console/Console.h"
#include "platform/ErrorLog.h"
#include "platform/Prompter.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"

#include <QStringList>

#include <functional>
#include <span>

namespace kelvo {

/// Nobody is there to answer: every question is answered by No, and what the desk tells is kept.
class UnattendedPrompter final : public Prompter {
 public:
  [[nodiscard]] Job<Answer> Ask(Prompt prompt) override;
  [[nodiscard]] Job<AnswerForFiles> AskForFiles(Prompt prompt) override;
  [[nodiscard]] Job<QString> AskText(QString title, QString prompt, QString initial) override;
  [[nodiscard]] Job<QString> AskSecret(QString title, QString prompt) override;
  [[nodiscard]] Job<std::optional<QString>> PickFolder(QString title, QString initial) override;
  [[nodiscard]] Job<std::optional<QString>> PickFile(QString title, QString initial, QString filter) override;
  void Tell(Prompt prompt) override;

  /// All that was asked and told, each in one line.
  [[nodiscard]] const QStringList& Told() const { return told_; }

 private:
  QStringList told_;
};

/// The whole desk in simulated time, with its own clock, settings, catalogue and sound: what it plays is the
/// programme of the live desk to the sample, as fast as the machine can. It writes none of the live desk's
/// files: no settings, no session log, no error log, no length of a track. All of it lives on the thread that
/// made it.
class RenderDesk {
 public:
  /// What the desk is made with. A value; any thread.
  struct Setup {
    QString title;          ///< of the program
    SettingsText settings;  ///< as they are now
    Paths paths;
    QString programFolder;
    QDateTime start;  ///< what the desk takes for the present
    AutoMode mode = AutoMode::Kelvo;
    bool random = false;
    int fadeSpeed = 25;  ///< where the sliders are: 0..50
    int delta = 3;       ///< seconds
    std::optional<std::uint64_t> seed = {};
  };
  using Sink = std::function<void(std::span<const float> sound)>;

  /// `sink` gets what goes on air, behind the limiter, interleaved stereo; may be empty.
  explicit RenderDesk(const Setup& setup, Sink sink = {});

  [[nodiscard]] SimulatedEventLoop& Loop() { return loop_; }
  [[nodiscard]] AudioEngine& Audio() { return audio_; }
  [[nodiscard]] Catalogue& Tracks() { return catalogue_; }
  [[nodiscard]] Console& Desk() { return desk_; }
  [[nodiscard]] UnattendedPrompter& Nobody() { return nobody_; }
  [[nodiscard]] const QStringList& Told() const { return nobody_.Told(); }

 private:
  [[nodiscard]] static std::unique_ptr<OutputBackend> MakeBackend(SimulatedEventLoop& loop, Sink sink);

  SimulatedEventLoop loop_;
  UnattendedPrompter nobody_;
  ErrorLog log_;
  SettingsStore settings_;
  AudioEngine audio_;
  Catalogue catalogue_;
  Console desk_;
};

}  // namespace kelvo
