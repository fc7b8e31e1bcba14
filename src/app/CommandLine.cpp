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

CommandLine Refused(const QString& argument) {
  return {.wish = CommandLine::Wish::Refused, .refused = argument};
}

/// `--render LIST --to FILE`, in any order, and nothing else.
CommandLine ReadRender(const QStringList& arguments) {
  CommandLine line{.wish = CommandLine::Wish::Render};
  for (qsizetype index = 0; index < arguments.size(); index += 2) {
    const bool list = arguments[index] == QStringLiteral("--render");
    const bool known = list || arguments[index] == QStringLiteral("--to");
    QString& value = list ? line.list : line.file;
    if (!known || !value.isEmpty() || index + 1 == arguments.size()) return Refused(arguments[index]);
    value = arguments[index + 1];
    if (value.isEmpty()) return Refused(arguments[index]);
  }
  return line.list.isEmpty() || line.file.isEmpty() ? Refused(arguments.front()) : line;
}

}  // namespace

CommandLine ReadCommandLine(const QStringList& arguments) {
  for (qsizetype index = 0; index < arguments.size(); ++index) {
    const QString& argument = arguments[index];
    if (argument == QStringLiteral("--help") || argument == QStringLiteral("-h"))
      return {.wish = CommandLine::Wish::Help};
    if (argument == QStringLiteral("--version") || argument == QStringLiteral("-v"))
      return {.wish = CommandLine::Wish::Version};
    if (argument == QStringLiteral("--render") || argument == QStringLiteral("--to"))
      return ReadRender(arguments.mid(index));
    const QString option = OptionName(argument);
    if (IsQtSwitch(option)) continue;
    if (!TakesValue(option) || index + 1 == arguments.size()) return Refused(argument);
    ++index;
  }
  return {};
}

QString HelpText() {
  return QStringLiteral(
      "usage: kelvo [--help | --version | --render LIST --to FILE]\n"
      "Opens the live desk. Options of Qt, such as -display and -platform, are understood too.\n"
      "\n"
      "  -h, --help     prints this\n"
      "  -v, --version  prints the version\n"
      "  --render LIST --to FILE\n"
      "                 writes a playlist as automatic play would play it, without a window and without a\n"
      "                 display. LIST is a playlist of the store (NAME, CATEGORY/NAME or its folder) or an\n"
      "                 M3U8 file; FILE ends with .wav, .flac or .mp3 and must not be there\n"
      "\n"
      "Settings lie in $XDG_CONFIG_HOME/kelvo/settings.ini (~/.config), the error log kelvo.log, request\n"
      "lists and quiz files in $XDG_DATA_HOME/kelvo (~/.local/share), session logs in the documents folder.\n"
      "\n"
      "  KELVO_SILENT=1          plays to no device, in real time\n"
      "  SDL_AUDIODRIVER=DRIVER  plays by that driver (alsa...) in place of the sound server\n"
      "\n"
      "Ends with 0, with 1 when the desk could not start or something could not be saved, and with 2 when\n"
      "it does not understand an option. A render ends with 3 when titles were passed over.\n");
}

}  // namespace kelvo
