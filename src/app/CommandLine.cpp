#include "app/CommandLine.h"

namespace kelvo {
namespace {

/// Those of Qt that precede a value.
bool TakesValue(const QString& option) {
  static const QStringList options =
      QStringLiteral(
          "display fontengine geometry icon name platform platformpluginpath platformtheme plugin "
          "qwindowgeometry qwindowicon qwindowtitle session style stylesheet title")
          .split(QLatin1Char(' '));
  return options.contains(option);
}

/// An option of Qt without its dashes; empty for anything else.
QString OptionName(const QString& argument) {
  if (!argument.startsWith(QLatin1Char('-'))) return {};
  return argument.mid(argument.startsWith(QStringLiteral("--")) ? 2 : 1);
}

bool IsQtSwitch(const QString& option) {
  static const QStringList alone =
      QStringLiteral("dograb nograb reverse sync widgetcount").split(QLatin1Char(' '));
  const qsizetype equals = option.indexOf(QLatin1Char('='));
  return alone.contains(option) || (equals > 0 && TakesValue(option.left(equals)));
}

}  // namespace

CommandLine ReadCommandLine(const QStringList& arguments) {
  for (qsizetype index = 0; index < arguments.size(); ++index) {
    const QString& argument = arguments[index];
    if (argument == QStringLiteral("--help") || argument == QStringLiteral("-h"))
      return {CommandLine::Wish::Help, {}};
    if (argument == QStringLiteral("--version") || argument == QStringLiteral("-v"))
      return {CommandLine::Wish::Version, {}};
    const QString option = OptionName(argument);
    if (IsQtSwitch(option)) continue;
    if (!TakesValue(option) || index + 1 == arguments.size()) return {CommandLine::Wish::Refused, argument};
    ++index;
  }
  return {};
}

QString HelpText() {
  return QStringLiteral(
      "usage: kelvo [--help | --version]\n"
      "Opens the live desk. Options of Qt, such as -display and -platform, are understood too.\n"
      "\n"
      "  -h, --help     prints this\n"
      "  -v, --version  prints the version\n"
      "\n"
      "Settings lie in $XDG_CONFIG_HOME/kelvo/settings.ini (~/.config), the error log kelvo.log, request\n"
      "lists and quiz files in $XDG_DATA_HOME/kelvo (~/.local/share), session logs in the documents folder.\n"
      "\n"
      "  KELVO_SILENT=1          plays to no device, in real time\n"
      "  SDL_AUDIODRIVER=DRIVER  plays by that driver (alsa...) in place of the sound server\n"
      "\n"
      "Ends with 0, with 1 when the desk could not start or something could not be saved, and with 2 when\n"
      "it does not understand an option.\n");
}

}  // namespace kelvo
