#include "requests/RequestWords.h"

namespace kelvo {
namespace {

const QString kLineBreak = QStringLiteral("\r\n");

/// Cut between two characters.
QString Cut(const QString& text, qsizetype most) {
  if (text.size() <= most) return text;
  return text.first(text[most - 1].isHighSurrogate() ? most - 1 : most);
}

QString Lines(const QString& text) {
  QString lines = text;
  lines.replace(kLineBreak, QStringLiteral("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return lines.replace(QChar::ParagraphSeparator, QLatin1Char('\n')).trimmed();
}

QString Joined(const QString& before, const QString& separator, const QString& text) {
  return before.trimmed().isEmpty() ? text : before + separator + text;
}

}  // namespace

RequestWords RequestWords::Fitted() const {
  return {Cut(from.simplified(), kLongestName), Cut(to.simplified(), kLongestName),
          Cut(Lines(message), kLongestMessage)};
}

bool RequestWords::Complete() const {
  const RequestWords fitted = Fitted();
  return !fitted.from.isEmpty() && !fitted.to.isEmpty() && !fitted.message.isEmpty();
}

QString RequestWords::Text() const {
  const RequestWords fitted = Fitted();
  QString said = fitted.message;
  said.replace(QStringLiteral("\n"), kLineBreak);
  return QStringLiteral("Request From: ") + fitted.from + kLineBreak + QStringLiteral("To: ") + fitted.to +
         kLineBreak + QStringLiteral("Message: ") + said;
}

QString JoinNames(const QString& names, const QString& name) {
  return Joined(names, QStringLiteral("/"), name);
}

QString JoinMessages(const QString& messages, const QString& message) {
  return Joined(messages, QStringLiteral("\n"), message);
}

}  // namespace kelvo
