#include "quiz/windows/QuizSheetPdf.h"

#include <QBuffer>
#include <QPdfWriter>
#include <QTextDocument>

namespace kelvo {

QByteArray DrawQuizSheet(const QString& html) {
  constexpr int kResolution = 300;  // dots per inch
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setResolution(kResolution);
  writer.setPageSize(QPageSize(QPageSize::A4));
  writer.setPageMargins(QMarginsF(18, 18, 18, 18), QPageLayout::Millimeter);
  QTextDocument document;
  document.setDefaultFont(QFont(QStringLiteral("Sans Serif"), 11));
  document.setHtml(html);
  document.print(&writer);
  buffer.close();
  return bytes;
}

}  // namespace kelvo
