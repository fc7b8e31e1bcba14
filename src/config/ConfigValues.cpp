#include "config/ConfigValues.h"

#include <type_traits>

namespace kelvo {
namespace {

template <auto Member>
void Copy(const ConfigValues& from, ConfigValues& to) {
  to.*Member = from.*Member;
}

}  // namespace

ConfigValues ReadConfig(const ProgramSettings& settings) {
  ConfigValues values;
  ForEachSetting([&](const auto& declared, auto member) {
    const auto stored = settings.Get(declared);
    if constexpr (std::is_assignable_v<decltype(values.*member), decltype(stored)>) {
      values.*member = stored;
    } else if (stored) {
      values.*member = *stored;
    }
  });
  return values;
}

void WriteConfig(const ProgramSettings& settings, const ConfigValues& values) {
  ForEachSetting([&](const auto& declared, auto member) { settings.Set(declared, values.*member); });
}

const std::array<ResetRow, 13>& ResetRows() {
  static constexpr std::array<ResetRow, 13> kRows{{
      {"Auto Play Fade Speed", &Copy<&ConfigValues::DefaultFadeSpeed>},
      {"Auto Play Delta Value", &Copy<&ConfigValues::DefaultDelta>},
      {"Audio Warnings", &Copy<&ConfigValues::AudioWarnings>},
      {"Spectral Display Resolution ", &Copy<&ConfigValues::SpectralDisplay>},
      {"Mp3 Encoding Presets", &Copy<&ConfigValues::Presets>},
      {"Console Back Colour", &Copy<&ConfigValues::ConBackCol>},
      {"Decks Back Colour", &Copy<&ConfigValues::DeckBackCol>},
      {"Selection Lists Back Colour", &Copy<&ConfigValues::SlistsBackCol>},
      {"Sound Bites Deck Back Colour", &Copy<&ConfigValues::SbitesBackCol>},
      {"Fast Forward/Reverse Incr", &Copy<&ConfigValues::FFwFRev>},
      {"Auto Play Preview Seconds", &Copy<&ConfigValues::PrevSecs>},
      {"Pan Fade Bias", &Copy<&ConfigValues::PanFadeBias>},
      {"Fix Duration Errors", &Copy<&ConfigValues::FixTrackDurErrors>},
  }};
  return kRows;
}

}  // namespace kelvo
