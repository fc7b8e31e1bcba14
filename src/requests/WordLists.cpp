#include "requests/WordLists.h"

#include "platform/ErrorLog.h"
#include "platform/TextFile.h"

#include <QDir>
#include <QFileInfo>

namespace kelvo {
namespace {

const std::array kTitles{QStringLiteral("Males"), QStringLiteral("Females"), QStringLiteral("Messages")};
const std::array kFiles{QStringLiteral("NamesMale.txt"), QStringLiteral("NamesFem.txt"),
                        QStringLiteral("Messages.txt")};

/// What a line of a file, or what was typed, is as an entry.
QString AsEntry(const QString& text) {
  // A line of ten megabytes is looked at no further than it is shown.
  const QString entry = text.first(std::min(text.size(), WordLists::kLongestEntry * 2)).simplified();
  if (entry.size() <= WordLists::kLongestEntry) return entry;
  const qsizetype last = WordLists::kLongestEntry - 1;
  return entry.first(entry[last].isHighSurrogate() ? last : last + 1);
}

std::vector<QString> ReadEntries(const QString& path) {
  std::vector<QString> entries;
  if (!QFileInfo::exists(path)) return entries;
  for (const QString& line : TextFile::Read(path).Lines()) {
    if (QString entry = AsEntry(line); !entry.isEmpty()) entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace

WordLists::WordLists(Services services) : services_(std::move(services)) {}

QString WordLists::Title(WordList list) {
  return kTitles[static_cast<std::size_t>(list)];
}

QString WordLists::FilePath(WordList list) const {
  return services_.folder + QLatin1Char('/') + kFiles[static_cast<std::size_t>(list)];
}

Job<> WordLists::Read() {
  for (const WordList which : kWordLists) {
    List& list = At(which);
    if (list.open) continue;
    const int changes = list.changes;
    const auto work = [path = FilePath(which)] { return ReadEntries(path); };
    try {
      std::vector<QString> entries = co_await services_.loop.Offload(EventLoop::Lane::Files, work);
      // What was changed meanwhile is newer than what was read.
      if (list.changes != changes) continue;
      list.entries.Replace(std::move(entries));
      list.readable = true;
    } catch (...) {
      list.entries.Replace({});
      list.readable = false;
      basHandleError(QStringLiteral(" FrmRequest list"),
                     tr("The list of words could not be read: %1").arg(FilePath(which)));
    }
    Q_EMIT Changed();
  }
}

QString WordLists::WhyNoChange(WordList list) const {
  return At(list).readable ? QString() : tr("Its file can't be read");
}

Job<> WordLists::Add(WordList list) {
  if (!WhyNoChange(list).isEmpty()) co_return;
  const QString typed = co_await services_.prompter.AskText(
      QStringLiteral("Update ") + Title(list), QStringLiteral("Please Enter New ") + Title(list), {});
  const QString entry = AsEntry(typed);
  if (entry.isEmpty() || !WhyNoChange(list).isEmpty()) co_return;
  At(list).entries.Append({entry});
  writing_.Add(Write(list));
}

void WordLists::Remove(WordList list, int row) {
  if (!WhyNoChange(list).isEmpty() || row < 0 || row >= Entries(list).Count()) return;
  At(list).entries.Remove(row);
  writing_.Add(Write(list));
}

void WordLists::WriteOpenChanges() {
  for (const WordList list : kWordLists) {
    if (At(list).open) writing_.Add(Write(list));
  }
}

Job<> WordLists::Write(WordList which) {
  List& list = At(which);
  list.open = true;
  const int change = ++list.changes;
  const QStringList lines(list.entries.All().begin(), list.entries.All().end());
  const auto work = [folder = services_.folder, path = FilePath(which), lines] {
    QDir().mkpath(folder);
    TextFile(lines).Write(path);
  };
  try {
    co_await services_.loop.Offload(EventLoop::Lane::Files, work);
    // A later change has a write of its own.
    if (change == list.changes) list.open = false;
  } catch (...) {
    NoteInLog(ErrorLog::Compose(std::current_exception(), QStringLiteral(" FrmRequest save")));
    services_.prompter.Tell({QStringLiteral("can't access file"), {}});
  }
}

}  // namespace kelvo
