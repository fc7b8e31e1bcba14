#include "info/InfoFiles.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/FileCopy.h"
#include "platform/NewFile.h"
#include "platform/TextFile.h"
#include "platform/Words.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>

namespace kelvo {
namespace {

namespace fs = std::filesystem;

/// The endings of pictures, as the operator's files have them.
const QStringList kPictureEndings{QStringLiteral("bmp"), QStringLiteral("jpg"),  QStringLiteral("gif"),
                                  QStringLiteral("png"), QStringLiteral("webp"), QStringLiteral("jpeg")};

fs::path PathOf(const QString& path) {
  return EncodedPath(path).toStdString();
}

QString Path(const InfoPlace& place, const QString& ending) {
  return place.folder + QLatin1Char('/') + place.name + QLatin1Char('.') + ending;
}

/// The file with this ending, which other systems also write in capitals; empty when there is none.
QString Existing(const InfoPlace& place, const QString& ending) {
  for (const QString& each : {ending, ending.toUpper(), ProperCase(ending)}) {
    if (QString path = Path(place, each); QFileInfo(path).isFile()) return path;
  }
  return {};
}

QString ExistingText(const InfoPlace& place) {
  return Existing(place, QStringLiteral("txt"));
}

/// The pictures of a place, the latest first: a crash in the middle of a replacement leaves two.
QStringList Pictures(const InfoPlace& place) {
  QStringList pictures;
  for (const QString& ending : kPictureEndings) {
    if (const QString path = Existing(place, ending); !path.isEmpty()) pictures.append(path);
  }
  std::stable_sort(pictures.begin(), pictures.end(), [](const QString& one, const QString& other) {
    return QFileInfo(one).metadataChangeTime() > QFileInfo(other).metadataChangeTime();
  });
  return pictures;
}

void Discard(const QString& path, const Trash& trash) {
  if (!trash(path)) fs::remove(PathOf(path));
}

}  // namespace

InfoContent ReadInfo(const InfoPlace& place) {
  InfoContent content;
  content.picture = PictureOf(place);
  const QString path = ExistingText(place);
  if (path.isEmpty()) return content;
  content.text = TextFile::FromBytes(ReadWholeFile(path, kMostTextBytes)).Lines().join(QLatin1Char('\n'));
  content.found = true;
  return content;
}

bool HasInfo(const InfoPlace& place) {
  return !ExistingText(place).isEmpty() || !Pictures(place).isEmpty();
}

QStringList LinesOfText(const QString& text) {
  if (text.isEmpty()) return {};
  QStringList lines = text.split(QLatin1Char('\n'));
  if (lines.last().isEmpty()) lines.removeLast();
  return lines;
}

void SaveInfo(const InfoPlace& place, const QString& text) {
  const QStringList lines = LinesOfText(text);
  const QString there = ExistingText(place);
  TextFile file;
  if (!there.isEmpty() && QFileInfo(there).size() <= kMostTextBytes) file = TextFile::Read(there);
  for (qsizetype index = 0; index < lines.size(); ++index) {
    if (index >= file.Count() || file.Line(index) != lines[index]) file.SetLine(index, lines[index]);
  }
  file.RemoveFrom(lines.size());
  file.Write(there.isEmpty() ? Path(place, QStringLiteral("txt")) : there);
}

QStringList NamesOnDisk(const QString& folder, const QString& name) {
  QStringList names;
  for (const QString& file : QDir(folder).entryList(QDir::Files)) {
    if (UpperExtension(file) != QLatin1StringView("TXT")) continue;
    const QString base = BaseName(file);
    if (base == name) {
      names.prepend(base);
    } else if (base.compare(name, Qt::CaseInsensitive) == 0) {
      names.append(base);
    }
  }
  return names;
}

bool RenameInfo(const InfoPlace& place, const QString& name) {
  const InfoPlace fresh{place.folder, name};
  const QString text = ExistingText(place);
  const QStringList pictures = Pictures(place);
  // On some file systems a name in other letters is the same file, and what a crash left of an earlier try is
  // the picture by another name: neither is in the way.
  const auto free = [](const QString& taken, const QStringList& ours) {
    return taken.isEmpty() || std::any_of(ours.begin(), ours.end(), [&taken](const QString& each) {
             return fs::equivalent(PathOf(taken), PathOf(each));
           });
  };
  const QStringList taken = Pictures(fresh);
  if (!free(ExistingText(fresh), text.isEmpty() ? QStringList() : QStringList{text})) return false;
  if (!std::all_of(taken.begin(), taken.end(), [&](const QString& each) { return free(each, pictures); }))
    return false;
  const auto pictureTo = [&fresh](const QString& picture) {
    return PathOf(Path(fresh, QFileInfo(picture).suffix().toLower()));
  };
  const bool onlyCase = place.name.compare(name, Qt::CaseInsensitive) == 0;
  // The picture has both names until the text has the new one: at no moment is there a text without it.
  for (const QString& picture : onlyCase ? QStringList() : pictures) {
    fs::remove(pictureTo(picture));
    std::error_code refused;
    fs::create_hard_link(PathOf(picture), pictureTo(picture), refused);
    if (refused) fs::copy_file(PathOf(picture), pictureTo(picture));
  }
  if (!text.isEmpty()) fs::rename(PathOf(text), PathOf(Path(fresh, QStringLiteral("txt"))));
  for (const QString& picture : pictures) {
    if (onlyCase) {
      fs::rename(PathOf(picture), pictureTo(picture));
    } else {
      fs::remove(PathOf(picture));
    }
  }
  return true;
}

void DiscardInfo(const InfoPlace& place, const Trash& trash) {
  if (const QString text = ExistingText(place); !text.isEmpty()) Discard(text, trash);
  DropPictures(place, trash);
}

void TrashInfo(const InfoPlace& place, const Trash& trash) {
  for (const QString& each : QStringList{ExistingText(place)} + Pictures(place)) {
    if (!each.isEmpty()) static_cast<void>(trash(each));
  }
}

QString PictureEnding(const QString& path) {
  if (!kPictureEndings.contains(UpperExtension(path).toLower())) return {};
  QFile file(path);
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return {};
  const QByteArray head = file.read(12);
  if (head.startsWith("BM")) return QStringLiteral("bmp");
  if (head.startsWith("\xFF\xD8\xFF")) return QStringLiteral("jpg");
  if (head.startsWith("GIF8")) return QStringLiteral("gif");
  if (head.startsWith("\x89PNG\r\n\x1A\n")) return QStringLiteral("png");
  if (head.startsWith("RIFF") && head.endsWith("WEBP")) return QStringLiteral("webp");
  return {};
}

QString PictureOf(const InfoPlace& place) {
  const QStringList pictures = Pictures(place);
  return pictures.isEmpty() ? QString() : pictures.first();
}

void TakePicture(const InfoPlace& place, const QString& path) {
  const QString to = Path(place, PictureEnding(path));
  const QStringList before = Pictures(place);
  const QFileInfo source(path);
  // One of this very place is dropped on itself.
  if (before.contains(to) && QFileInfo(to).canonicalFilePath() == source.canonicalFilePath()) return;
  CopyControl control;
  static_cast<void>(CopyFile({.from = path, .to = to, .replace = true}, control));
  for (const QString& each : before) {
    if (each != to) fs::remove(PathOf(each));
  }
}

void DropPictures(const InfoPlace& place, const Trash& trash) {
  for (const QString& picture : Pictures(place)) Discard(picture, trash);
}

}  // namespace kelvo
