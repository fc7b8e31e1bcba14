#include "demo_library/Styles.h"

#include "demo_library/Patches.h"

namespace kelvo::demo {

namespace {

Style House() {
  Style style;
  style.sevenths = true;
  style.beat = {{Drum::Kick, "X...X...X...X..."},
                {Drum::Clap, "....x.......x..."},
                {Drum::OpenHat, "..x...x...x...x."},
                {Drum::Shaker, "x.oxx.oxx.oxx.ox"}};
  style.secondBeat = {{Drum::Kick, "X...X...X...X..."},
                      {Drum::Clap, "....x.......x..x"},
                      {Drum::OpenHat, "..x...x...x...x."},
                      {Drum::Hat, "xoxoxoxoxoxoxoxo"},
                      {Drum::Conga, "...x..x....x.x.."}};
  style.bass = {SawBass(), "..1-..1-..1-..8.", "1..1..8...5..1a.", 36, 0.5, 0.0, 0.0, 0.0};
  style.chords = {ElectricPiano(), "x..x..x...x..x..", "x..x..x...x.x.x.", 62, 0.17, -0.2, 0.25, 0.15};
  style.pad = {WarmPad(), "", "", 64, 0.16, 0.0, 0.4, 0.0};
  style.arpeggio = {PluckSynth(), "0.2.4.2.1.3.5.3.", "0324032403240352", 69, 0.32, 0.35, 0.2, 0.35};
  style.lead = {SawLead(), "", "", 74, 0.38, 0.1, 0.3, 0.3};
  style.leadRhythms = {"x--x--x---x-x---", "x-----x--x--x---", "..x-x-x-x---x-x-"};
  style.duck = 0.6;
  return style;
}

Style Disco() {
  Style style;
  style.sevenths = true;
  style.beat = {{Drum::Kick, "X...X...X...X..."},
                {Drum::Snare, "....X.......X..."},
                {Drum::Hat, "x.o.x.o.x.o.x.o."},
                {Drum::OpenHat, "..x...x...x...x."}};
  style.bass = {RoundBass(), "1.8.1.8.1.8.1.8.", "1..81.8.5..81.a.", 36, 0.33, 0.0, 0.0, 0.0};
  style.chords = {MutedGuitar(), "..x.x.xo..x.xxo.", "x.xox.xox.xox.xo", 64, 0.29, -0.45, 0.1, 0.0};
  style.pad = {Strings(), "", "", 67, 0.12, 0.1, 0.35, 0.0};
  style.arpeggio = {Brass(), "0...............4.0.....2.4.....", "0.2.4...........", 67, 0.21, 0.3, 0.2, 0.0};
  style.lead = {Strings(), "", "", 79, 0.33, 0.15, 0.35, 0.1};
  style.leadRhythms = {"x-------x-x-x---", "x---x---x-------", "x-x-x-x-x-------"};
  style.kit.snareHertz = 200.0;
  return style;
}

Style Trance() {
  Style style;
  style.beat = {{Drum::Kick, "X...X...X...X..."},
                {Drum::OpenHat, "..x...x...x...x."},
                {Drum::Clap, "....x.......x..."},
                {Drum::Hat, "ooooooooooooooxo"}};
  style.bass = {SawBass(), ".111.111.111.111", ".118.118.115.11a", 38, 0.42, 0.0, 0.0, 0.0};
  style.chords = {WideSaw(), "x--x--x-x--x--x-", "x--x--x--x--x-x-", 64, 0.13, 0.0, 0.3, 0.2};
  style.pad = {WarmPad(), "", "", 60, 0.15, 0.0, 0.5, 0.0};
  style.arpeggio = {PluckSynth(), "0241024102410245", "0425042504250427", 72, 0.32, -0.25, 0.25, 0.4};
  style.lead = {WideSaw(), "", "", 76, 0.33, 0.0, 0.35, 0.3};
  style.leadRhythms = {"x--x--x--x--x-x-", "x-----x-x-----x-", "x--x--x-x-------"};
  style.kit.kickHertz = 46.0;
  style.duck = 0.7;
  style.roomSize = 0.75;
  return style;
}

Style DrumAndBass() {
  Style style;
  style.sevenths = true;
  style.beat = {{Drum::Kick, "X.........x....."},
                {Drum::Snare, "....X..o.o..X..."},
                {Drum::Hat, "x.x.x.x.x.x.x.x."},
                {Drum::Ride, "x...x...x...x..."}};
  style.secondBeat = {
      {Drum::Kick, "X..x......x..x.."}, {Drum::Snare, "....X..o.oo.X..o"}, {Drum::Hat, "xoxoxoxoxoxoxoxo"}};
  style.bass = {
      GrowlBass(), "1-----------3-5-1-------8---5-a-", "1--1--5-....8-7-1--1--5-1-----a-", 33, 0.4, 0.0, 0.0,
      0.0};
  style.chords = {ElectricPiano(), "x-----------....", "x-----x---------", 62, 0.2, 0.15, 0.35, 0.3};
  style.pad = {Choir(), "", "", 65, 0.11, 0.0, 0.5, 0.0};
  style.arpeggio = {Marimba(), "0...2...4...3...", "0.2.4.5.4.2.3.2.", 72, 0.22, -0.4, 0.25, 0.4};
  style.lead = {SquareLead(), "", "", 74, 0.14, 0.2, 0.35, 0.4};
  style.leadRhythms = {"x-------x-------", "x-----x-----x---", "..x---x-x-------"};
  style.kit = {52.0, 0.22, 205.0, 0.16, 1.1};
  style.roomSize = 0.7;
  return style;
}

Style Reggae() {
  Style style;
  style.swing = 0.35;
  style.beat = {
      {Drum::Kick, "........X......."}, {Drum::Rim, "........x......x"}, {Drum::Hat, "x.o.x.o.x.o.x.xo"}};
  style.secondBeat = {{Drum::Kick, "X.......X......."},
                      {Drum::Snare, "........x......."},
                      {Drum::Hat, "x.o.x.o.x.o.x.xo"},
                      {Drum::Conga, "....x.x.....x..x"}};
  style.bass = {DeepBass(), "1---1-3-5---....", "1--1--5---3-1-a-", 34, 0.62, 0.0, 0.0, 0.0};
  style.chords = {DrawbarOrgan(), "....x-......x-..", "..o.x-o...o.x-o.", 62, 0.17, -0.3, 0.2, 0.3};
  style.arpeggio = {MutedGuitar(), "0...0.0.0...0.2.", "", 55, 0.36, 0.4, 0.15, 0.25};
  style.lead = {Clarinet(), "", "", 70, 0.14, 0.15, 0.3, 0.35};
  style.leadRhythms = {"x---x-x-x-----..", "....x-x-x---x---", "x-----x-x-------"};
  style.kit = {55.0, 0.28, 210.0, 0.16, 0.85};
  style.echoBeats = 0.75;
  style.roomSize = 0.6;
  return style;
}

Style Ballad() {
  Style style;
  style.sevenths = true;
  style.beat = {
      {Drum::Kick, "x.......o.x....."}, {Drum::Rim, "....x.......x..."}, {Drum::Shaker, "o.o.o.o.o.o.o.o."}};
  style.secondBeat = {
      {Drum::Kick, "x......xo.x....."}, {Drum::Snare, "....o.......o..."}, {Drum::Ride, "x.o.x.o.x.o.x.o."}};
  style.bass = {UprightBass(), "1-------5---1-a-", "1-----1-5-----a-", 36, 0.6, 0.0, 0.05, 0.0};
  style.chords = {ElectricPiano(), "x---o---x---o-o-", "x-o-x-o-x-o-x-o-", 60, 0.18, -0.15, 0.35, 0.0};
  style.pad = {Strings(), "", "", 64, 0.09, 0.1, 0.5, 0.0};
  style.arpeggio = {NylonGuitar(), "0-2-4-5-4-2-3-2-", "", 67, 0.42, 0.35, 0.3, 0.1};
  style.lead = {Flute(), "", "", 76, 0.26, 0.0, 0.45, 0.15};
  style.leadRhythms = {"x-----x-x-------", "x---x-x-x---x---", "x-------x---x-x-"};
  style.kit.brightness = 0.75;
  style.kitLevel = 0.75;
  style.kitReverb = 0.15;
  style.roomSize = 0.8;
  return style;
}

Style Rock() {
  Style style;
  style.beat = {
      {Drum::Kick, "X.....x.X.x....."}, {Drum::Snare, "....X.......X..."}, {Drum::Hat, "x.x.x.x.x.x.x.x."}};
  style.secondBeat = {
      {Drum::Kick, "X..x..x.X.x..x.."}, {Drum::Snare, "....X.......X..o"}, {Drum::Ride, "X.x.x.x.X.x.x.x."}};
  style.bass = {RoundBass(), "1.1.1.1.1.1.1.1.", "1.1.1.5.8.8.5.a.", 34, 0.48, 0.0, 0.0, 0.0};
  style.chords = {TornGuitar(), "x-x.x-x-x-x.x-x-", "x-------x---x-x-", 55, 0.17, -0.5, 0.12, 0.0};
  style.pad = {DrawbarOrgan(), "", "", 62, 0.07, 0.3, 0.25, 0.0};
  style.arpeggio = {TornGuitar(), "0-..0-..0-4-2-..", "0-2-4-2-5-4-2-..", 60, 0.15, 0.5, 0.15, 0.1};
  style.lead = {SawLead(), "", "", 74, 0.4, 0.05, 0.25, 0.2};
  style.leadRhythms = {"x---x-x---x-x---", "x-x-x---x-x-x---", "x-----x-x-x-----"};
  style.kit = {56.0, 0.24, 190.0, 0.22, 1.0};
  style.kitReverb = 0.12;
  return style;
}

Style Ambient() {
  Style style;
  style.sevenths = true;
  style.beat = {{Drum::Shaker, "o.......o......."}};
  style.bass = {DeepBass(), "1---------------", "1-------5-------", 38, 0.42, 0.0, 0.2, 0.0};
  style.chords = {Choir(), "x---------------", "", 60, 0.13, -0.2, 0.6, 0.0};
  style.pad = {WarmPad(), "", "", 67, 0.17, 0.2, 0.7, 0.0};
  style.arpeggio = {GlassBell(), "0.....2...4.....3.....5.........", "0...2...4...5...", 74, 0.14, 0.4, 0.6,
                    0.5};
  style.lead = {Flute(), "", "", 72, 0.18, -0.1, 0.6, 0.3};
  style.leadRhythms = {"x---------x-----", "x-----x---------", "....x-------x---"};
  style.kitLevel = 0.5;
  style.kitReverb = 0.4;
  style.echoBeats = 1.5;
  style.roomSize = 1.0;
  return style;
}

Style Bossa() {
  Style style;
  style.sevenths = true;
  style.beat = {
      {Drum::Kick, "x.....ox......o."}, {Drum::Rim, "x..x..x...x..x.."}, {Drum::Shaker, "xoxoxoxoxoxoxoxo"}};
  style.secondBeat = {{Drum::Kick, "x.....ox......o."},
                      {Drum::Rim, "..x..x..x..x..x."},
                      {Drum::Shaker, "xoxoxoxoxoxoxoxo"},
                      {Drum::Conga, "..o.x...o.x.x..."}};
  style.bass = {UprightBass(), "1-----51-----5a-", "1-----58-----5a-", 38, 0.6, 0.0, 0.05, 0.0};
  style.chords = {NylonGuitar(), "x--x--x---x--x--", "x--x--x---x-x-x-", 62, 0.26, -0.3, 0.2, 0.0};
  style.pad = {Strings(), "", "", 69, 0.05, 0.2, 0.4, 0.0};
  style.arpeggio = {Marimba(), "....0.2.....4.3.", "0.2.4...3.2.....", 72, 0.2, 0.45, 0.25, 0.1};
  style.lead = {Clarinet(), "", "", 72, 0.14, 0.1, 0.3, 0.1};
  style.leadRhythms = {"x--x--x---x-----", "..x---x-x--x----", "x-----x--x--x---"};
  style.kit = {58.0, 0.2, 220.0, 0.15, 0.9};
  style.kitLevel = 0.8;
  return style;
}

Style TripHop() {
  Style style;
  style.swing = 0.4;
  style.swingSixteenths = true;
  style.sevenths = true;
  style.beat = {
      {Drum::Kick, "X..x......x....."}, {Drum::Snare, "....X..o....X..."}, {Drum::Hat, "x.x.x.xox.x.x.x."}};
  style.secondBeat = {{Drum::Kick, "X..x...x..x....."},
                      {Drum::Snare, "....X..o.o..X..."},
                      {Drum::Hat, "xoxox.xoxoxox.xo"},
                      {Drum::Cowbell, "..............x."}};
  style.bass = {DeepBass(), "1--1......5-1---", "1--1--3-..5---a-", 33, 0.6, 0.0, 0.0, 0.0};
  style.chords = {ElectricPiano(), "x-------....x---", "x-----x---x-----", 60, 0.24, -0.2, 0.3, 0.25};
  style.pad = {Choir(), "", "", 65, 0.08, 0.0, 0.5, 0.0};
  style.arpeggio = {GlassBell(), "......4.....2...", "0...4...2...5...", 72, 0.15, 0.4, 0.4, 0.5};
  style.lead = {SquareLead(), "", "", 67, 0.14, 0.15, 0.3, 0.35};
  style.leadRhythms = {"x--x----x-------", "..x-x-----x-x---", "x-----x-x-------"};
  style.kit = {50.0, 0.3, 175.0, 0.24, 0.7};
  return style;
}

Style NewWave() {
  Style style;
  style.beat = {
      {Drum::Kick, "X...x...X...x..."}, {Drum::Snare, "....X.......X..."}, {Drum::Hat, "x.xox.xox.xox.xo"}};
  style.secondBeat = {{Drum::Kick, "X...x...X.x.x..."},
                      {Drum::Snare, "....X.......X..."},
                      {Drum::OpenHat, "..x...x...x...x."},
                      {Drum::HighTom, "..............x."},
                      {Drum::LowTom, "...............x"}};
  style.bass = {SawBass(), "1.1.1.1.1.1.8.1.", "1181118111811185", 36, 0.42, 0.0, 0.0, 0.0};
  style.chords = {WideSaw(), "x-----x---x-----", "x---------x-x---", 62, 0.14, 0.0, 0.3, 0.1};
  style.pad = {WarmPad(), "", "", 67, 0.16, 0.0, 0.4, 0.0};
  style.arpeggio = {PluckSynth(), "0.2.4.5.4.2.4.2.", "0245424502454245", 72, 0.38, -0.4, 0.2, 0.35};
  style.lead = {SawLead(), "", "", 76, 0.42, 0.15, 0.35, 0.3};
  style.leadRhythms = {"x-----x-x---x---", "x---x---x-x-x---", "x-------x-----x-"};
  style.kit = {50.0, 0.3, 180.0, 0.3, 1.0};
  style.kitReverb = 0.2;
  style.duck = 0.25;
  style.roomSize = 0.7;
  return style;
}

Style Waltz() {
  Style style;
  style.beatsPerBar = 3;
  style.beat = {{Drum::Kick, "o..........."}, {Drum::Shaker, "....x...x..."}};
  style.secondBeat = {
      {Drum::Kick, "x..........."}, {Drum::Shaker, "....x.o.x.o."}, {Drum::Rim, "........o..."}};
  style.bass = {UprightBass(), "1-----------", "1-------5-a-", 38, 0.6, 0.0, 0.1, 0.0};
  style.chords = {SteelGuitar(), "....x---x---", "....x-o-x-o-", 60, 0.25, -0.35, 0.25, 0.0};
  style.pad = {Accordion(), "", "", 62, 0.04, 0.2, 0.3, 0.0};
  style.arpeggio = {SteelGuitar(), "0-2-4-5-4-2-", "0-4-2-5-4-7-", 67, 0.28, 0.4, 0.3, 0.0};
  style.lead = {Flute(), "", "", 74, 0.24, 0.0, 0.35, 0.1};
  style.leadRhythms = {"x-------x---", "x---x---x---", "x-----x-x-x-"};
  style.kitLevel = 0.75;
  style.roomSize = 0.6;
  return style;
}

Style Swing() {
  Style style;
  style.swing = 1.0;
  style.sevenths = true;
  style.beat = {
      {Drum::Kick, "o...o...o...o..."}, {Drum::Ride, "x...X.x.x...X.x."}, {Drum::Hat, "....x.......x..."}};
  style.secondBeat = {{Drum::Kick, "o...o...o...o..."},
                      {Drum::Ride, "x...X.x.x...X.x."},
                      {Drum::Hat, "....x.......x..."},
                      {Drum::Snare, "..o.....o.....o."}};
  style.bass = {UprightBass(), "1---3---5---a---", "1---5---8---a---", 38, 0.7, 0.0, 0.05, 0.0};
  style.chords = {Brass(), "..x.........x-..............x...", "X-....x-....x...", 64, 0.15, -0.3, 0.2, 0.0};
  style.arpeggio = {ElectricPiano(), "..2...4.....3...", "0...2.4...2.....", 67, 0.2, 0.4, 0.2, 0.0};
  style.lead = {Clarinet(), "", "", 74, 0.14, 0.1, 0.25, 0.05};
  style.leadRhythms = {"x---x-x---x-x---", "..x-x---x-x-x---", "x-x-x-x-x-------"};
  style.kit = {60.0, 0.2, 210.0, 0.14, 0.9};
  style.kitLevel = 0.95;
  return style;
}

Style Chip() {
  Style style;
  style.beat = {
      {Drum::Kick, "X...X...X...X..."}, {Drum::Snare, "....x.......x..x"}, {Drum::Hat, "x.x.x.x.x.x.x.x."}};
  style.bass = {ChipBass(), "1.8.1.8.1.8.1.8.", "1.1.8.1.5.5.8.a.", 36, 0.4, 0.0, 0.0, 0.0};
  style.chords = {ChipLead(), "..x...x...x...x.", "x..x..x...x..x..", 60, 0.05, -0.4, 0.05, 0.0};
  style.arpeggio = {ChipLead(), "0240240240240245", "0427042704270427", 72, 0.08, 0.35, 0.05, 0.25};
  style.lead = {ChipLead(), "", "", 79, 0.18, 0.0, 0.1, 0.3};
  style.leadRhythms = {"x-x-x--x--x-x---", "x--x--x-x-x-x-x-", "x---x-x-x-------"};
  style.kit = {62.0, 0.16, 240.0, 0.1, 1.2};
  style.kitLevel = 0.6;
  style.roomSize = 0.2;
  return style;
}

Style Techno() {
  Style style;
  style.beat = {{Drum::Kick, "X...X...X...X..."},
                {Drum::OpenHat, "..x...x...x...x."},
                {Drum::Hat, "oxoxoxoxoxoxoxox"},
                {Drum::Rim, "...x......x....."}};
  style.secondBeat = {{Drum::Kick, "X...X...X...X..."},
                      {Drum::OpenHat, "..x...x...x...x."},
                      {Drum::Clap, "....x.......x..."},
                      {Drum::Ride, "..x...x...x...x."},
                      {Drum::LowTom, "......x......x.."}};
  style.bass = {SawBass(), "1.1..1.11.1..8.1", "1.1..1.81.1..5.1", 35, 0.42, 0.0, 0.0, 0.1};
  style.chords = {PluckSynth(), "...x......x.....", "...x..x...x..x..", 62, 0.3, 0.2, 0.35, 0.5};
  style.pad = {WarmPad(), "", "", 57, 0.08, 0.0, 0.6, 0.0};
  style.arpeggio = {PluckSynth(), "0.0.2.0.0.3.0.2.", "0020030020050020", 64, 0.36, -0.3, 0.2, 0.45};
  style.lead = {SquareLead(), "", "", 69, 0.13, 0.0, 0.4, 0.5};
  style.leadRhythms = {"......x-........", "x-....x-....x-..", "..x-......x-...."};
  style.kit = {45.0, 0.34, 180.0, 0.18, 1.0};
  style.duck = 0.65;
  style.roomSize = 0.8;
  return style;
}

Style Polka() {
  Style style;
  style.beat = {
      {Drum::Kick, "X.......X......."}, {Drum::Snare, "....x.......x..."}, {Drum::Hat, "....o.......o..."}};
  style.secondBeat = {{Drum::Kick, "X.......X......."},
                      {Drum::Snare, "....x.oo....x.oo"},
                      {Drum::Cowbell, "x...x...x...x..."}};
  style.bass = {Tuba(), "1-......5-......", "1-......5-..a-..", 36, 0.5, 0.0, 0.1, 0.0};
  style.chords = {Accordion(), "....x-......x-..", "....x-x-....x-x-", 62, 0.11, -0.25, 0.15, 0.0};
  style.arpeggio = {Brass(), "........4-5-4-2-................", "0-..2-..4-..2-..", 60, 0.17, 0.35, 0.2,
                    0.0};
  style.lead = {Clarinet(), "", "", 76, 0.15, 0.1, 0.2, 0.0};
  style.leadRhythms = {"x-x-x-x-x---x---", "x---x-x-x-x-x---", "x-x-x---x-x-x---"};
  style.kit = {58.0, 0.2, 200.0, 0.12, 0.95};
  style.kitLevel = 0.65;
  style.roomSize = 0.35;
  return style;
}

Style Ska() {
  Style style;
  style.beat = {
      {Drum::Kick, "X.......X......."}, {Drum::Snare, "....X.......X..."}, {Drum::Hat, "o.x.o.x.o.x.o.x."}};
  style.bass = {UprightBass(), "1---3---5---3---", "1---5---8---a---", 36, 0.75, 0.0, 0.05, 0.0};
  style.chords = {MutedGuitar(), "..X...X...X...X.", "..X...X...X..xX.", 66, 0.34, -0.35, 0.1, 0.0};
  style.pad = {DrawbarOrgan(), "", "", 62, 0.05, 0.35, 0.2, 0.0};
  style.arpeggio = {Brass(), "0-..0-..4---....................", "0-2-4---....4-2-", 64, 0.18, 0.3, 0.2, 0.0};
  style.lead = {Brass(), "", "", 71, 0.32, 0.1, 0.2, 0.0};
  style.leadRhythms = {"x-x---x-x---....", "..x-x-x-x---x---", "x---x-x-x-------"};
  style.kit = {58.0, 0.2, 215.0, 0.16, 1.05};
  style.roomSize = 0.4;
  return style;
}

Style JazzFunk() {
  Style style;
  style.swing = 0.25;
  style.swingSixteenths = true;
  style.sevenths = true;
  style.beat = {
      {Drum::Kick, "X.x....x..x....."}, {Drum::Snare, "....X..o.o..X..o"}, {Drum::Hat, "xoxoxoxoxoxoxoxo"}};
  style.secondBeat = {{Drum::Kick, "X..x..x...x....."},
                      {Drum::Snare, "....X..o.o..X..o"},
                      {Drum::Ride, "x.x.x.x.x.x.x.x."},
                      {Drum::Cowbell, "x...x...x...x..."}};
  style.bass = {RoundBass(), "1..1.8..5.7.8.a.", "1.18..1.5..7.8a.", 34, 0.33, 0.0, 0.0, 0.0};
  style.chords = {ElectricPiano(), "..x..x-....x..x-", "x..x..x-..x..x..", 62, 0.22, -0.25, 0.2, 0.1};
  style.pad = {DrawbarOrgan(), "", "", 65, 0.04, 0.3, 0.25, 0.0};
  style.arpeggio = {MutedGuitar(), "0.00.00.0.02.0.0", "0.20.20.4.20.20.", 67, 0.38, 0.45, 0.1, 0.0};
  style.lead = {Brass(), "", "", 72, 0.33, 0.1, 0.25, 0.1};
  style.leadRhythms = {"x-x---..x-x-----", "..x--x-x-x------", "x--x--x-x---x-x-"};
  style.kit = {55.0, 0.24, 200.0, 0.16, 1.0};
  return style;
}

}  // namespace

Style StyleOf(StyleName name) {
  switch (name) {
    case StyleName::House:
      return House();
    case StyleName::Disco:
      return Disco();
    case StyleName::Trance:
      return Trance();
    case StyleName::DrumAndBass:
      return DrumAndBass();
    case StyleName::Reggae:
      return Reggae();
    case StyleName::Ballad:
      return Ballad();
    case StyleName::Rock:
      return Rock();
    case StyleName::Ambient:
      return Ambient();
    case StyleName::Bossa:
      return Bossa();
    case StyleName::TripHop:
      return TripHop();
    case StyleName::NewWave:
      return NewWave();
    case StyleName::Waltz:
      return Waltz();
    case StyleName::Swing:
      return Swing();
    case StyleName::Chip:
      return Chip();
    case StyleName::Techno:
      return Techno();
    case StyleName::Polka:
      return Polka();
    case StyleName::Ska:
      return Ska();
    case StyleName::JazzFunk:
      return JazzFunk();
  }
  return {};
}

}  // namespace kelvo::demo
