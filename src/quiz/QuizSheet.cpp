#include "quiz/QuizSheet.h"

#include <QCoreApplication>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(QuizSheet)
};

/// The questions, each followed by what `below` makes of its answers.
template <typename Below>
QString Questions(const std::vector<QuizItem>& items, Below below) {
  QString html;
  int number = 0;
  for (const QuizItem& item : items) {
    html += QStringLiteral("<p style=\"margin-top:12px\"><b>%1.</b> ").arg(++number) +
            item.question.trimmed().toHtmlEscaped() + QStringLiteral("</p>");
    for (const QString& answer : item.answers.split(QLatin1Char(':'))) {
      html += QStringLiteral("<p style=\"margin-left:24px;margin-top:4px\">") + below(answer.trimmed()) +
              QStringLiteral("</p>");
    }
  }
  return html;
}

}  // namespace

QString QuizSheetHtml(const QString& title, const std::vector<QuizItem>& items) {
  const QString name = title.toHtmlEscaped();
  const QString line(60, QLatin1Char('_'));
  return QStringLiteral("<h1>") + name + QStringLiteral("</h1><p>") + Text::tr("Team:") + QLatin1Char(' ') +
         line.left(40) + QStringLiteral("</p>") + Questions(items, [&line](const QString&) { return line; }) +
         QStringLiteral("<h1 style=\"page-break-before:always\">") + name + QStringLiteral(" - ") +
         Text::tr("Answers") + QStringLiteral("</h1>") +
         Questions(items, [](const QString& answer) { return answer.toHtmlEscaped(); });
}

}  // namespace kelvo
