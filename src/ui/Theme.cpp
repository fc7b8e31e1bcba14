#include "ui/Theme.h"

#include "ui/ControlKeys.h"
#include "ui/FocusRing.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QVariant>
#include <QWidget>

#include <array>
#include <cmath>
#include <utility>

// A static library's resources are dropped by the linker unless somebody asks for them, outside any
// namespace.
static void RegisterLook() {
  Q_INIT_RESOURCE(KelvoLook);
}

namespace kelvo {
namespace {

std::array<QColor, 4>& GroupColours() {
  static std::array<QColor, 4> colours{QColor(164, 117, 56), QColor(44, 166, 211), QColor(66, 189, 166),
                                       QColor(44, 166, 211)};
  return colours;
}

double Linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) + 0.0722 * Linear(colour.blueF());
}

QPalette DarkPalette() {
  const Theme::Colours& c = Theme::Palette();
  QPalette palette;
  palette.setColor(QPalette::Window, c.window);
  palette.setColor(QPalette::WindowText, c.text);
  palette.setColor(QPalette::Base, c.well);
  palette.setColor(QPalette::AlternateBase, Theme::Mix(c.well, c.text, 0.03));
  palette.setColor(QPalette::Text, c.text);
  palette.setColor(QPalette::PlaceholderText, c.muted);
  palette.setColor(QPalette::Button, c.raised);
  palette.setColor(QPalette::ButtonText, c.text);
  palette.setColor(QPalette::BrightText, Qt::white);
  palette.setColor(QPalette::ToolTipBase, c.raised);
  palette.setColor(QPalette::ToolTipText, c.text);
  palette.setColor(QPalette::Highlight, Theme::Mix(c.well, c.accent, 0.45));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, c.accent);
  palette.setColor(QPalette::LinkVisited, c.accent);
  palette.setColor(QPalette::Light, Theme::Mix(c.raised, c.text, 0.1));
  palette.setColor(QPalette::Midlight, c.raised);
  palette.setColor(QPalette::Mid, c.line);
  palette.setColor(QPalette::Dark, c.well);
  palette.setColor(QPalette::Shadow, Qt::black);
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
    palette.setColor(QPalette::Disabled, role, c.dim);
  }
  palette.setColor(QPalette::Disabled, QPalette::Highlight, c.raised);
  return palette;
}

QString StyleSheet() {
  QFile file(QStringLiteral(":/ui/style/kelvo.qss"));
  if (!file.open(QIODevice::ReadOnly)) return {};
  QString sheet = QString::fromUtf8(file.readAll());
  const Theme::Colours& c = Theme::Palette();
  const std::initializer_list<std::pair<const char*, QColor>> words{
      {"window", c.window},
      {"surface", c.surface},
      {"well", c.well},
      {"wellAlternate", Theme::Mix(c.well, c.text, 0.03)},
      {"raised", c.raised},
      {"raisedHover", Theme::Mix(c.raised, c.text, 0.10)},
      {"raisedDown", Theme::Mix(c.raised, Qt::black, 0.35)},
      {"raisedEdge", Theme::Mix(c.raised, c.text, 0.14)},
      {"line", c.line},
      {"text", c.text},
      {"muted", c.muted},
      {"dim", c.dim},
      {"accent", c.accent},
      {"accentDeep", Theme::Mix(c.well, c.accent, 0.45)},
      {"accentText", Theme::TextOn(c.accent)},
      {"primaryEdge", Theme::Mix(c.raised, c.accent, 0.35)},
      {"selected", Theme::Mix(c.well, c.accent, 0.32)},
      {"hover", Theme::Mix(c.well, c.text, 0.07)},
      {"go", Theme::Mix(c.raised, c.ready, 0.30)},
      {"goHover", Theme::Mix(c.raised, c.ready, 0.42)},
      {"goEdge", Theme::Mix(c.raised, c.ready, 0.70)},
      {"stop", Theme::Mix(c.raised, c.onAir, 0.30)},
      {"stopHover", Theme::Mix(c.raised, c.onAir, 0.45)},
      {"stopEdge", Theme::Mix(c.raised, c.onAir, 0.75)},
  };
  for (const auto& [word, colour] : words) {
    sheet.replace(QLatin1StringView("{{") + QLatin1StringView(word) + QLatin1StringView("}}"), colour.name());
  }
  return sheet;
}

}  // namespace

void Theme::Apply(QApplication& app) {
  RegisterLook();
  app.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  app.setPalette(DarkPalette());
  QFont font;
  font.setFamilies({QStringLiteral("Inter"), QStringLiteral("DejaVu Sans"), QStringLiteral("sans-serif")});
  // A user who set a larger font for the whole system gets it here too.
  font.setPointSizeF(std::max(10.0, app.font().pointSizeF()));
  app.setFont(font);
  app.setStyleSheet(StyleSheet());
  ControlKeys::Install(app);
  FocusRing::Install(app);
}

const Theme::Colours& Theme::Palette() {
  static const Colours colours{
      .window = QColor(0x0e, 0x11, 0x15),
      .surface = QColor(0x17, 0x1b, 0x21),
      .well = QColor(0x0c, 0x0f, 0x13),
      .raised = QColor(0x2a, 0x31, 0x3b),
      .line = QColor(0x33, 0x3c, 0x47),
      .text = QColor(0xea, 0xee, 0xf3),
      .muted = QColor(0xa9, 0xb4, 0xc1),
      .dim = QColor(0x6b, 0x76, 0x84),
      .accent = QColor(0x4c, 0xa6, 0xff),
      .onAir = QColor(0xf0, 0x2b, 0x2b),
      .amber = QColor(0xff, 0xc8, 0x00),
      .title = QColor(0xff, 0xf1, 0x4d),
      .ready = QColor(0x35, 0xc9, 0x7c),
      .blue = QColor(0x26, 0x6c, 0xcb),
  };
  return colours;
}

void Theme::SetGroupColour(Group group, const QColor& colour) {
  if (!colour.isValid()) return;
  GroupColours().at(static_cast<std::size_t>(group)) = colour;
  for (QWidget* each : QApplication::allWidgets()) each->update();
}

QColor Theme::GroupColour(Group group) {
  return GroupColours().at(static_cast<std::size_t>(group));
}

QColor Theme::GroupGround(Group group) {
  return Mix(Palette().surface, GroupColour(group), 0.11);
}

QColor Theme::GroupEdge(Group group) {
  return Mix(Palette().surface, GroupColour(group), 0.45);
}

QColor Theme::TextOn(const QColor& background) {
  return Contrast(background, Qt::white) >= Contrast(background, Qt::black) ? QColor(Qt::white)
                                                                            : QColor(Qt::black);
}

double Theme::Contrast(const QColor& one, const QColor& other) {
  const double a = Luminance(one) + 0.05;
  const double b = Luminance(other) + 0.05;
  return std::max(a, b) / std::min(a, b);
}

QColor Theme::Mix(const QColor& under, const QColor& over, double share) {
  const auto part = [share](float from, float to) {
    return static_cast<float>(static_cast<double>(from) +
                              (static_cast<double>(to) - static_cast<double>(from)) * share);
  };
  return QColor::fromRgbF(part(under.redF(), over.redF()), part(under.greenF(), over.greenF()),
                          part(under.blueF(), over.blueF()));
}

QFont Theme::Font(double scale, QFont::Weight weight) {
  QFont font = QApplication::font();
  font.setPointSizeF(font.pointSizeF() * scale);
  font.setWeight(weight);
  return font;
}

void Theme::SetRole(QWidget& button, const QString& role) {
  button.setProperty("role", role);
  button.style()->unpolish(&button);
  button.style()->polish(&button);
}

}  // namespace kelvo
