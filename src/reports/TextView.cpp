#include "reports/TextView.h"

#include "platform/ErrorLog.h"
#include "platform/TextFile.h"

#include <QFileInfo>

namespace kelvo {
namespace {

struct Found {
  bool there = false;
  QString text;
};

Found ReadText(const QString& path) {
  if (!QFileInfo::exists(path)) return {};
  QStringList lines = TextFile::Read(path).Lines();
  for (QString& line : lines) {
    if (line.size() > TextView::kLongestLine)
      line = line.first(TextView::kLongestLine) + QStringLiteral(" ..");
  }
  return {true, lines.join(QLatin1Char('\n'))};
}

}  // namespace

void TextView::Open(const QString& path) {
  if (path.isEmpty()) return;
  path_ = path;
  loading_ = true;
  words_ = QStringLiteral("Please Wait....\nLoading File");
  load_ = Load(path);
  Q_EMIT Changed();
}

void TextView::Cancel() {
  if (!loading_) return;
  load_.Cancel();
  Take({}, tr("The file was not loaded"));
}

void TextView::Take(const QString& text, const QString& words) {
  text_ = text;
  words_ = words;
  loading_ = false;
  Q_EMIT Changed();
}

Job<> TextView::Load(QString path) {
  const auto look = [path] { return ReadText(path); };
  try {
    const std::optional<Found> found = co_await services_.disks.Look(path, look);
    const QString missing = QFileInfo(path).fileName() + QStringLiteral(" Not Found !");
    if (!found) {
      Take({}, tr("The disk of the file does not answer"));
    } else if (!found->there) {
      Take({}, missing);
      services_.prompter.Tell({missing, {}});
    } else {
      Take(found->text, {});
    }
  } catch (...) {
    Take({}, tr("The file could not be read"));
    basHandleError(QStringLiteral(" TextViewer"), tr("The file could not be read: %1").arg(path));
  }
}

void TextView::TellPrint() {
  services_.prompter.Tell(
      {QStringLiteral("Please Load into a word processor\r\n The File Name Is :") + path_, {}});
}

}  // namespace kelvo
