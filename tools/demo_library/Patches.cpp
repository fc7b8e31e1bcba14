#include "demo_library/Patches.h"

namespace kelvo::demo {

namespace {

Patch Analogue(Wave wave, const EnvelopeShape& loudness, double cutoff) {
  Patch patch;
  patch.wave = wave;
  patch.loudness = loudness;
  patch.cutoff = cutoff;
  return patch;
}

Patch Spread(Patch patch, int copies, double detuneCents) {
  patch.copies = copies;
  patch.detuneCents = detuneCents;
  return patch;
}

Patch Swept(Patch patch, double octaves, double seconds, double resonance) {
  patch.sweep = octaves;
  patch.sweepTime = seconds;
  patch.resonance = resonance;
  return patch;
}

Patch Vibrato(Patch patch, double cents) {
  patch.vibratoCents = cents;
  return patch;
}

Patch Sub(Patch patch, double level) {
  patch.sub = level;
  return patch;
}

Patch String(double ring, double brightness, double release) {
  Patch patch;
  patch.voice = Voice::Plucked;
  patch.loudness = {0.001, 4.0, 1.0, release};
  patch.ring = ring;
  patch.brightness = brightness;
  return patch;
}

Patch Struck(const EnvelopeShape& loudness, double ratio, double bend, double bendTime) {
  Patch patch;
  patch.voice = Voice::Bell;
  patch.loudness = loudness;
  patch.ratio = ratio;
  patch.bend = bend;
  patch.bendTime = bendTime;
  return patch;
}

}  // namespace

Patch WarmPad() {
  return Spread(Analogue(Wave::Saw, {0.5, 0.6, 0.85, 0.9}, 950.0), 3, 11.0);
}
Patch Strings() {
  return Vibrato(Spread(Analogue(Wave::Saw, {0.18, 0.4, 0.85, 0.4}, 2400.0), 3, 8.0), 5.0);
}
Patch Choir() {
  return Vibrato(Spread(Analogue(Wave::Pulse, {0.6, 0.5, 0.9, 1.1}, 1100.0), 3, 9.0), 9.0);
}
Patch WideSaw() {
  return Spread(Analogue(Wave::Saw, {0.004, 0.35, 0.55, 0.16}, 5200.0), 5, 16.0);
}
Patch PluckSynth() {
  return Swept(Spread(Analogue(Wave::Saw, {0.002, 0.28, 0.0, 0.2}, 700.0), 2, 7.0), 2.6, 0.16, 0.25);
}

Patch SawBass() {
  return Sub(Swept(Analogue(Wave::Saw, {0.003, 0.3, 0.65, 0.05}, 620.0), 1.9, 0.15, 0.3), 0.45);
}
Patch RoundBass() {
  return Swept(Analogue(Wave::Square, {0.004, 0.5, 0.6, 0.06}, 560.0), 1.3, 0.12, 0.1);
}
Patch DeepBass() {
  return Analogue(Wave::Triangle, {0.006, 0.4, 0.85, 0.09}, 900.0);
}
Patch GrowlBass() {
  return Sub(Spread(Analogue(Wave::Saw, {0.006, 0.3, 0.85, 0.08}, 760.0), 3, 21.0), 0.6);
}
Patch UprightBass() {
  return String(1.6, 0.22, 0.09);
}
Patch Tuba() {
  return Swept(Analogue(Wave::Saw, {0.025, 0.2, 0.75, 0.08}, 640.0), 0.8, 0.1, 0.05);
}

Patch NylonGuitar() {
  return String(2.2, 0.4, 0.18);
}
Patch SteelGuitar() {
  return String(3.4, 0.72, 0.22);
}
Patch MutedGuitar() {
  return String(0.45, 0.6, 0.05);
}
Patch TornGuitar() {
  Patch patch = Spread(Analogue(Wave::Saw, {0.004, 0.6, 0.85, 0.08}, 2300.0), 2, 8.0);
  patch.drive = 0.7;
  return patch;
}

Patch ElectricPiano() {
  return Struck({0.002, 1.9, 0.12, 0.18}, 1.0, 1.7, 0.8);
}
Patch GlassBell() {
  return Struck({0.002, 2.4, 0.0, 1.2}, 3.5, 1.6, 1.0);
}
Patch Marimba() {
  return Struck({0.001, 0.42, 0.0, 0.2}, 3.93, 1.2, 0.06);
}
Patch DrawbarOrgan() {
  Patch patch;
  patch.voice = Voice::Organ;
  patch.loudness = {0.006, 0.1, 1.0, 0.06};
  return patch;
}
Patch Accordion() {
  return Spread(Analogue(Wave::Square, {0.03, 0.2, 0.92, 0.07}, 2600.0), 2, 11.0);
}

Patch Brass() {
  return Swept(Spread(Analogue(Wave::Saw, {0.03, 0.25, 0.8, 0.1}, 1500.0), 3, 7.0), 1.2, 0.25, 0.1);
}
Patch Clarinet() {
  return Vibrato(Analogue(Wave::Square, {0.035, 0.2, 0.9, 0.09}, 1700.0), 8.0);
}
Patch Flute() {
  return Vibrato(Analogue(Wave::Triangle, {0.06, 0.2, 0.9, 0.16}, 3000.0), 14.0);
}
Patch SawLead() {
  return Vibrato(Swept(Spread(Analogue(Wave::Saw, {0.01, 0.3, 0.75, 0.18}, 2300.0), 2, 6.0), 0.9, 0.3, 0.2),
                 11.0);
}
Patch SquareLead() {
  return Vibrato(Analogue(Wave::Square, {0.012, 0.3, 0.8, 0.14}, 2600.0), 12.0);
}
Patch ChipLead() {
  return Vibrato(Analogue(Wave::Pulse, {0.001, 0.25, 0.6, 0.04}, 14000.0), 10.0);
}
Patch ChipBass() {
  return Analogue(Wave::Triangle, {0.001, 0.3, 0.9, 0.03}, 12000.0);
}

}  // namespace kelvo::demo
