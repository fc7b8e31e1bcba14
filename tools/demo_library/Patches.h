#pragma once

#include "demo_library/Instruments.h"

namespace kelvo::demo {

// The instruments of the house band.

[[nodiscard]] Patch WarmPad();
[[nodiscard]] Patch Strings();
[[nodiscard]] Patch Choir();
[[nodiscard]] Patch WideSaw();
[[nodiscard]] Patch PluckSynth();

[[nodiscard]] Patch SawBass();
[[nodiscard]] Patch RoundBass();
[[nodiscard]] Patch DeepBass();
[[nodiscard]] Patch GrowlBass();
[[nodiscard]] Patch UprightBass();
[[nodiscard]] Patch Tuba();

[[nodiscard]] Patch NylonGuitar();
[[nodiscard]] Patch SteelGuitar();
[[nodiscard]] Patch MutedGuitar();
[[nodiscard]] Patch TornGuitar();

[[nodiscard]] Patch ElectricPiano();
[[nodiscard]] Patch GlassBell();
[[nodiscard]] Patch Marimba();
[[nodiscard]] Patch DrawbarOrgan();
[[nodiscard]] Patch Accordion();

[[nodiscard]] Patch Brass();
[[nodiscard]] Patch Clarinet();
[[nodiscard]] Patch Flute();
[[nodiscard]] Patch SawLead();
[[nodiscard]] Patch SquareLead();
[[nodiscard]] Patch ChipLead();
[[nodiscard]] Patch ChipBass();

}  // namespace kelvo::demo
