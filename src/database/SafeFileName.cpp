#include "database/SafeFileName.h"

#include "database/TrackNames.h"

namespace kelvo {

QString SafeFileName(const QString& name) {
  QString safe = CleanFileName(name);
  for (QChar& character : safe) {
    if (character.category() == QChar::Other_Control) character = QLatin1Char('_');
  }
  if (safe.startsWith(QLatin1Char('.'))) safe[0] = QLatin1Char('_');
  return safe;
}

}  // namespace kelvo
