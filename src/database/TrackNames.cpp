#include "database/TrackNames.h"

#include "platform/Words.h"

#include <QFileInfo>

namespace kelvo {
namespace {

/// The "#" is last: CheckName tolerates it, CleanFileName does not.
const QString kForbidden = QStringLiteral("\"*,/:<>?\\|#");

}  // namespace

QString CleanFileName(const QString& name) {
  QString clean = name.trimmed();
  for (const QChar forbidden : kForbidden) clean.replace(forbidden, QLatin1Char('_'));
  return clean;
}

bool CheckName(Prompter& prompter, const QString& name) {
  const QString trimmed = name.trimmed();
  for (const QChar forbidden : kForbidden.chopped(1)) {
    if (!trimmed.contains(forbidden)) continue;
    prompter.Tell(
        {QStringLiteral("Character ( ") + forbidden + QStringLiteral(" ) Not Allowed in Names !"), {}});
    return false;
  }
  return true;
}

bool IsDate(const QString& text) {
  const auto isDigit = [](QChar character) {
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
  };
  return text.size() == 8 && std::all_of(text.begin(), text.begin() + 4, isDigit) &&
         text[4] == QLatin1Char('-');
}

bool CheckDate(Prompter& prompter, const QString& text) {
  if (IsDate(text)) return true;
  prompter.Tell({QStringLiteral("Dates Must Be Entered in the form YYYY-mmm (Eg: 2005-Dec)"), {}});
  return false;
}

bool CheckMediaFile(const QString& path) {
  const QFileInfo file(path);
  if (!file.isFile() || !file.isReadable()) return false;
  const QString extension = UpperExtension(file.fileName());
  if (extension == QLatin1StringView("MP3")) return true;
  return extension == QLatin1StringView("WAV") && file.size() >= 10240;
}

}  // namespace kelvo
