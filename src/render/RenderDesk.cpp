#include "render/RenderDesk.h"

#include "audio/engine/SimulatedBackend.h"
#include "console/DeskSliders.h"
#include "console/decks/DeckSettings.h"
#include "console/status/StatusTick.h"

namespace kelvo {

namespace {

SettingsText SettingsOf(const RenderDesk::Setup& setup) {
  SettingsText text = setup.settings;
  const auto set = [&](const auto& setting, const auto& value) {
    text.SetValue(setup.title, setting.place.section, setting.place.key, setting.Write(value));
  };
  // Neither the track info files nor the sound that goes out are touched by what the desk does beside
  // playing.
  set(setting::FixTrackDurErrors, false);
  set(setting::AudioWarnings, false);
  set(setting::AutoMode, static_cast<int>(setup.mode));
  set(setting::AutoRandom, setup.random);
  set(setting::PlaySettings, PlaySettings{setup.fadeSpeed, setup.delta, 0});
  return text;
}

}  // namespace

Job<Answer> UnattendedPrompter::Ask(Prompt prompt) {
  Tell(std::move(prompt));
  co_return Answer::No;
}

Job<AnswerForFiles> UnattendedPrompter::AskForFiles(Prompt prompt) {
  Tell(std::move(prompt));
  co_return AnswerForFiles{Answer::No, false};
}

Job<QString> UnattendedPrompter::AskText(QString /*title*/, QString /*prompt*/, QString /*initial*/) {
  co_return QString();
}

Job<QString> UnattendedPrompter::AskSecret(QString /*title*/, QString /*prompt*/) {
  co_return QString();
}

Job<std::optional<QString>> UnattendedPrompter::PickFolder(QString /*title*/, QString /*initial*/) {
  co_return std::nullopt;
}

Job<std::optional<QString>> UnattendedPrompter::PickFile(QString /*title*/, QString /*initial*/,
                                                         QString /*filter*/) {
  co_return std::nullopt;
}

void UnattendedPrompter::Tell(Prompt prompt) {
  told_.append(prompt.text.simplified());
}

std::unique_ptr<OutputBackend> RenderDesk::MakeBackend(SimulatedEventLoop& loop, Sink sink) {
  SimulatedBackend::Sink main;
  if (sink) {
    main = [sink = std::move(sink)](const QString& output, std::span<const float> sound) {
      if (output.isEmpty()) sink(sound);
    };
  }
  auto backend = std::make_unique<SimulatedBackend>(loop, std::move(main));
  backend->SetDecodesAhead();
  return backend;
}

RenderDesk::RenderDesk(const Setup& setup, Sink sink)
    : loop_(setup.start),
      log_(loop_, nobody_, QString()),
      settings_(loop_, SettingsOf(setup)),
      audio_(loop_, MakeBackend(loop_, std::move(sink))),
      desk_({.loop = loop_,
             .prompter = nobody_,
             .audio = audio_,
             .settings = settings_,
             .catalogue = catalogue_,
             .paths = setup.paths,
             .title = setup.title,
             .aboutLine = {},
             .programFolder = setup.programFolder,
             .version = {},
             .seed = setup.seed,
             .documents = {}}) {
  // The machine's memory is not the programme's.
  desk_.Status().hooks.Memory = [] { return MemoryStatus(); };
}

}  // namespace kelvo
