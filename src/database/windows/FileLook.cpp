#include "database/windows/FileLook.h"

#include "ui/ScalableIcon.h"
#include "ui/Theme.h"

namespace kelvo {

QVariant DressFile(const QString& path, const QString& trouble, bool main, int role) {
  if (role == Qt::ToolTipRole) return trouble.isEmpty() ? path : path + QLatin1Char('\n') + trouble;
  if (trouble.isEmpty()) return {};
  switch (role) {
    case Qt::AccessibleDescriptionRole:
      return trouble;
    case Qt::ForegroundRole:
      return Theme::Palette().amber;
    case Qt::DecorationRole:
      return main ? QVariant(ScalableIcon(Icon::Warning, Theme::Palette().amber)) : QVariant();
    default:
      return {};
  }
}

}  // namespace kelvo
