#pragma once

#include <QByteArray>
#include <QString>

namespace kelvo {

/// HTML as the bytes of a PDF file of A4 pages. GUI thread.
[[nodiscard]] QByteArray DrawQuizSheet(const QString& html);

}  // namespace kelvo
