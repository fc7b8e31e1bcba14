#pragma once

#include <QColor>
#include <QFont>
#include <QString>

class QApplication;

namespace kelvo {

/// The four colour groups of the settings: every panel of the console belongs to one.
enum class Group { Console, Decks, Lists, Bites };

/// The look of the whole program: one palette, one style sheet, the fonts, and the operator's four group
/// colours. The surfaces are dark and stay so; a group's colour shows on the headers and edges of its panels
/// and as a tint of their ground, so that text keeps its contrast whatever colour the operator takes. State
/// of the process; GUI thread.
///
/// Push buttons take a `role` property (see SetRole): "go", "stop", "primary", "quiet".
class Theme {
 public:
  /// The fixed colours that widgets paint with.
  struct Colours {
    QColor window;   ///< behind the panels
    QColor surface;  ///< ground of a panel before its tint
    QColor well;     ///< ground of lists and input fields
    QColor raised;   ///< buttons, handles
    QColor line;     ///< edges between them
    QColor text;
    QColor muted;  ///< secondary words, still readable at arm's length
    QColor dim;    ///< what is over or absent
    QColor accent;
    QColor onAir;  ///< red: sound goes out
    QColor amber;  ///< soon over; the colour of a bar that needs looking at
    QColor title;  ///< yellow: the names of the tracks in the decks
    QColor ready;  ///< green: loaded, can be started
    QColor blue;   ///< a bar at work
  };

  /// Sets style, palette, font and style sheet, and how the keyboard works a control and is seen on it. Once,
  /// before the first window.
  static void Apply(QApplication& app);

  [[nodiscard]] static const Colours& Palette();

  /// Panels repaint at once. An invalid colour changes nothing.
  static void SetGroupColour(Group group, const QColor& colour);
  [[nodiscard]] static QColor GroupColour(Group group);
  /// The ground and the edge of a panel of the group: its colour, calmed down.
  [[nodiscard]] static QColor GroupGround(Group group);
  [[nodiscard]] static QColor GroupEdge(Group group);

  /// Black or white, whichever reads better on `background`: a contrast of 4.5 : 1 or more on any colour.
  [[nodiscard]] static QColor TextOn(const QColor& background);
  /// WCAG contrast ratio of two opaque colours, 1 to 21.
  [[nodiscard]] static double Contrast(const QColor& one, const QColor& other);
  /// `share` (0 to 1) of `over` on `under`.
  [[nodiscard]] static QColor Mix(const QColor& under, const QColor& over, double share);

  /// The program's font, `scale` times its size.
  [[nodiscard]] static QFont Font(double scale = 1.0, QFont::Weight weight = QFont::Normal);

  /// Gives a push button its role in the style sheet.
  static void SetRole(QWidget& button, const QString& role);
};

}  // namespace kelvo
