#include "database/OlderForm.h"

#include "database/FolderListing.h"
#include "platform/Words.h"

#include <algorithm>

namespace kelvo {
namespace {

bool IsLitter(const QString& name) {
  // The copy that an editor keeps, and what is hidden on the systems that made it but not on this one.
  return name.endsWith(QLatin1Char('~')) ||
         name.compare(QStringLiteral("desktop.ini"), Qt::CaseInsensitive) == 0 ||
         name.compare(QStringLiteral("Thumbs.db"), Qt::CaseInsensitive) == 0;
}

bool IsOfOlderForm(const QString& name) {
  return UpperExtension(name) != QStringLiteral("KIF") && !IsLitter(name);
}

}  // namespace

QString FirstFileOfOlderForm(const QString& infoFolder) {
  const FolderListing listing = ListFolder(infoFolder, EntryKind::Files);
  for (const QStringList& names : {listing.names, listing.unusable}) {
    const auto found = std::find_if(names.begin(), names.end(), IsOfOlderForm);
    if (found != names.end()) return *found;
  }
  return {};
}

}  // namespace kelvo
