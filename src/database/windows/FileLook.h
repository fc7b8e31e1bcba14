#pragma once

#include <QVariant>

namespace kelvo {

/// The tooltip, sign and colour of a cell of a list of files; see RowModel::Dress. `trouble` is why the file
/// cannot be played, in a sentence; empty when it can. `main` is the column that bears the sign.
[[nodiscard]] QVariant DressFile(const QString& path, const QString& trouble, bool main, int role);

}  // namespace kelvo
