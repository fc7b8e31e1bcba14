#include "playlists/PlaylistServices.h"

#include "database/TrackNames.h"

namespace kelvo {

bool CheckStoreName(Prompter& prompter, const QString& name) {
  if (!CheckName(prompter, name)) return false;
  // A folder that begins so is hidden, or is none of its own.
  if (!name.startsWith(QLatin1Char('.'))) return true;
  prompter.Tell({QStringLiteral("Character ( . ) Not Allowed in Names !"), {}});
  return false;
}

}  // namespace kelvo
