// Draws the volume law, as the program computes it: law_picture FILE.svg

#include "console/decks/VolumeLaw.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using kelvo::Deck;
using kelvo::DeckLosses;
using kelvo::PanPosition;
using kelvo::TransitionKind;

constexpr int kWidth = 400;  // of a panel's axes
constexpr int kHeight = 200;
constexpr int kLeftMargin = 60;
constexpr int kGap = 60;
constexpr int kTop = 72;
constexpr int kMostLoss = 2000;

struct PanelOfLaw {
  std::string title;
  std::string note;
  TransitionKind kind;
  Deck deck;
};

/// Full level is at the top.
int Height(int loss) {
  return loss * kHeight / kMostLoss;
}
int Across(int x) {
  return (x - kelvo::kDeckOneAlone) * kWidth / (kelvo::kDeckTwoAlone - kelvo::kDeckOneAlone);
}

std::string Text(int x, int y, const std::string& style, const std::string& words) {
  std::ostringstream out;
  out << "<text x=\"" << x << "\" y=\"" << y << "\" class=\"" << style << "\">" << words << "</text>\n";
  return out.str();
}

std::string Line(int x1, int y1, int x2, int y2, const std::string& style) {
  std::ostringstream out;
  out << "<line x1=\"" << x1 << "\" y1=\"" << y1 << "\" x2=\"" << x2 << "\" y2=\"" << y2 << "\" class=\""
      << style << "\"/>\n";
  return out.str();
}

std::string Curve(const PanelOfLaw& panel, int DeckLosses::*side, const std::string& style) {
  std::ostringstream out;
  out << "<polyline class=\"" << style << "\" points=\"";
  for (int x = kelvo::kDeckOneAlone; x <= kelvo::kDeckTwoAlone; ++x) {
    PanPosition position;
    position.x = x;
    position.kind = panel.kind;
    position.transitionDeck = panel.deck;
    const DeckLosses losses = VolumeLaw(position);
    out << Across(x) << ',' << losses.*side / (1.0 * kMostLoss / kHeight) << ' ';
  }
  out << "\"/>\n";
  return out.str();
}

std::string Drawn(const PanelOfLaw& panel, int left, bool withLossScale) {
  std::ostringstream out;
  out << "<g transform=\"translate(" << left << ' ' << kTop << ")\">\n";
  out << Text(0, -32, "title", panel.title) << Text(0, -12, "note", panel.note);
  for (int loss = 0; loss <= kMostLoss; loss += 500) {
    out << Line(0, Height(loss), kWidth, Height(loss), "grid");
    if (withLossScale) {
      out << Text(-10, Height(loss) + 4, "scale end", std::to_string(loss));
      out << Text(-56, Height(loss) + 4, "faint end",
                  loss == 0 ? "0 dB" : "\u2212" + std::to_string(loss / 50) + " dB");
    }
  }
  for (int x = kelvo::kDeckOneAlone; x <= kelvo::kDeckTwoAlone; x += 100) {
    out << Line(Across(x), 0, Across(x), kHeight, x == 0 ? "centre" : "grid");
    const std::string words = x < 0 ? "\u2212" + std::to_string(-x) : std::to_string(x);
    out << Text(Across(x), kHeight + 20, "scale middle", words);
  }
  out << Text(0, kHeight + 40, "faint", "Deck 1 alone")
      << Text(kWidth, kHeight + 40, "faint end", "Deck 2 alone");
  out << Curve(panel, &DeckLosses::left, "left") << Curve(panel, &DeckLosses::right, "right") << "</g>\n";
  return out.str();
}

std::string Picture() {
  const std::vector<PanelOfLaw> panels{
      {"By hand, dub and part fade", "the same for both decks", TransitionKind::PartFade, Deck::One},
      {"Pan to Deck 2", "read from left to right", TransitionKind::Pan, Deck::Two},
      {"Pan to Deck 1", "read from right to left", TransitionKind::Pan, Deck::One}};
  constexpr int kStep = kWidth + kGap;
  const int first = kLeftMargin + kGap;
  const int width = first + static_cast<int>(panels.size()) * kStep;
  constexpr int kWhole = kTop + kHeight + 100;
  std::ostringstream out;
  out << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " << width << ' ' << kWhole
      << "\" font-family=\"DejaVu Sans, Helvetica, Arial, sans-serif\" font-size=\"13\">\n"
         "<title>Losses of the decks over the position of the cross-pan slider</title>\n"
         "<style>\n"
         ".title{font-size:17px;font-weight:bold;fill:#1c2430}.note,.faint{fill:#667080}.scale{fill:#1c2430}"
         "\n"
         ".middle{text-anchor:middle}.end{text-anchor:end}\n"
         ".grid{stroke:#d9dde3;stroke-width:1}.centre{stroke:#a3abb8;stroke-width:1.5}\n"
         ".left,.right{fill:none;stroke-width:3;stroke-linejoin:round}\n"
         ".left{stroke:#0b63ce}.right{stroke:#d9480f;stroke-dasharray:9 5}\n"
         "</style>\n"
         "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
  for (std::size_t place = 0; place < panels.size(); ++place)
    out << Drawn(panels[place], first + static_cast<int>(place) * kStep, place == 0);
  const int foot = kTop + kHeight + 76;
  out << Text(first, foot, "faint",
              "Loss on the level sliders, full level at the top, over the cross-pan slider:");
  out << Line(first + 520, foot - 4, first + 570, foot - 4, "left")
      << Text(first + 580, foot, "scale", "Deck 1");
  out << Line(first + 660, foot - 4, first + 710, foot - 4, "right")
      << Text(first + 720, foot, "scale", "Deck 2");
  out << "</svg>\n";
  return out.str();
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "law_picture FILE.svg\n";
    return EXIT_FAILURE;
  }
  std::ofstream file(arguments[1], std::ios::binary);
  file << Picture();
  file.close();
  if (file) return EXIT_SUCCESS;
  std::cerr << "law_picture: cannot write " << arguments[1] << '\n';
  return EXIT_FAILURE;
}
