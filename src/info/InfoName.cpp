#include "info/InfoName.h"

#include "database/TrackNames.h"
#include "platform/Prompter.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(InfoName)
};

/// The longest name of a file, in bytes.
constexpr qsizetype kLongestName = 255;

QString WhyNot(const QString& name, const QString& ending) {
  if (name.startsWith(QLatin1Char('.'))) return Text::tr("Names Cannot Begin With A Dot !");
  const bool controls = std::any_of(name.begin(), name.end(), [](QChar character) {
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
  });
  if (controls) return Text::tr("Names Cannot Hold Line Breaks Or Tabs !");
  const QByteArray encoded = QFile::encodeName(name + ending);
  if (encoded.size() > kLongestName) return Text::tr("The Name %1 Is Too Long For A File !").arg(name);
  if (QFile::decodeName(encoded) != name + ending)
    return Text::tr("The Name Holds Characters That A File Name Cannot Hold !");
  return {};
}

}  // namespace

bool CheckFileName(Prompter& prompter, const QString& name, const QString& ending) {
  if (!CheckName(prompter, name)) return false;
  Prompt refusal;
  refusal.text = WhyNot(name, ending);
  if (refusal.text.isEmpty()) return true;
  refusal.icon = PromptIcon::Exclamation;
  prompter.Tell(refusal);
  return false;
}

}  // namespace kelvo
