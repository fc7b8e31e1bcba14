#include "database/InfoBatch.h"

#include "database/FolderListing.h"
#include "database/InfoFields.h"
#include "platform/ErrorLog.h"
#include "platform/TextFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>

namespace kelvo {
namespace {

/// Any sound file fits many times over at once; the greatest that is looked at is as large as the other
/// readers take.
constexpr std::size_t kUsualBytes = std::size_t{64} * 1024;
constexpr std::size_t kMostBytes = std::size_t{64} * 1024 * 1024;

using FixedLines = std::array<std::string_view, kFixedInfoLines>;

/// Splits off the fixed lines of plain text; none when the text needs the full reader (beyond ASCII, other
/// line ends).
std::optional<int> SplitPlain(std::string_view text, FixedLines& lines) {
  int count = 0;
  std::size_t start = 0;
  while (count < kFixedInfoLines && start < text.size()) {
    const std::size_t found = text.find('\n', start);
    const std::size_t end = found == std::string_view::npos ? text.size() : found;
    std::string_view line = text.substr(start, end - start);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.find('\r') != std::string_view::npos) return std::nullopt;
    lines[static_cast<std::size_t>(count++)] = line;
    start = end + 1;
  }
  const std::string_view fixed = text.substr(0, std::min(start, text.size()));
  const bool plain =
      std::all_of(fixed.begin(), fixed.end(), [](char c) { return static_cast<unsigned char>(c) < 128; });
  if (!plain) return std::nullopt;
  return count;
}

InfoBatch::Status Store(const FixedLines& lines, InfoBatch& batch, InfoBatch::Record& record) {
  const auto add = [&](InfoBatch::Field field, std::string_view text) {
    record.offsets[field] = static_cast<std::uint32_t>(batch.texts.size());
    batch.texts.append(text);
  };
  add(InfoBatch::Genres, lines[InfoLine::Categories]);
  add(InfoBatch::Artists, lines[InfoLine::Artists]);
  add(InfoBatch::Albums, lines[InfoLine::Albums]);
  add(InfoBatch::Date, lines[InfoLine::ReleaseDate]);
  add(InfoBatch::Bpm, lines[InfoLine::Bpm]);
  add(InfoBatch::Hi, lines[InfoLine::HiPos]);
  add(InfoBatch::StartEnd, lines[InfoLine::StartStyle]);
  batch.texts.push_back(',');
  batch.texts.append(lines[InfoLine::EndStyle]);
  add(InfoBatch::Gain, lines[InfoLine::GainRecord]);
  record.offsets[InfoBatch::FieldCount] = static_cast<std::uint32_t>(batch.texts.size());
  const auto duration = NumberIn(lines[InfoLine::DurationSeconds]);
  record.duration = duration.value_or(-1);
  return duration ? InfoBatch::Status::Read : InfoBatch::Status::BadDuration;
}

InfoBatch::Status StoreAny(const QByteArray& bytes, InfoBatch& batch, InfoBatch::Record& record) {
  const TextFile file = TextFile::FromBytes(bytes);
  if (file.Count() < kFixedInfoLines) return InfoBatch::Status::TooShort;
  std::array<std::string, kFixedInfoLines> texts;
  FixedLines lines;
  for (std::size_t line = 0; line < lines.size(); ++line) {
    texts[line] = file.Line(static_cast<qsizetype>(line)).toStdString();
    lines[line] = texts[line];
  }
  return Store(lines, batch, record);
}

}  // namespace

InfoReader::InfoReader(const QString& infoFolder)
    : folder_(infoFolder),
      folderHandle_(open(QFile::encodeName(infoFolder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      buffer_(kUsualBytes) {
  if (folderHandle_ < 0) {
    const int error = errno;
    throw Failure(QStringLiteral("Cannot open the folder %1: %2")
                      .arg(infoFolder, QString::fromLocal8Bit(strerror(error))),
                  error, infoFolder);
  }
}

InfoReader::~InfoReader() {
  close(folderHandle_);
}

int InfoReader::Open(const QByteArray& baseName) {
  // Not to hang on a pipe that bears the name of an info file.
  constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
  const QByteArray fileName = baseName + ".kif";
  const int handle = openat(folderHandle_, fileName.constData(), kFlags);
  if (handle >= 0 || errno != ENOENT) return handle;
  if (!anyCaseKnown_) {
    anyCaseKnown_ = true;
    const FolderListing listing = ListFolder(folder_, EntryKind::Files);
    for (const QString& name : listing.names) anyCase_.insert(name.toUpper(), QFile::encodeName(name));
  }
  const auto other = anyCase_.constFind(QFile::decodeName(fileName).toUpper());
  if (other == anyCase_.constEnd()) {
    errno = ENOENT;
    return -1;
  }
  return openat(folderHandle_, other->constData(), kFlags);
}

InfoBatch::Status InfoReader::ReadText(int handle, InfoBatch& batch, InfoBatch::Record& record) {
  std::size_t size = 0;
  FixedLines lines;
  for (;;) {
    if (size == buffer_.size()) {
      if (size >= kMostBytes) return InfoBatch::Status::Unreadable;
      buffer_.resize(size * 4);
    }
    const ssize_t got = read(handle, buffer_.data() + size, buffer_.size() - size);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return InfoBatch::Status::Unreadable;
    size += static_cast<std::size_t>(got);
    const std::string_view text(buffer_.data(), size);
    const std::optional<int> count = SplitPlain(text, lines);
    // What follows the fixed lines matters only for the encoding of a file that is not plain.
    const bool complete =
        count == kFixedInfoLines && static_cast<std::size_t>(lines.back().end() - text.begin()) < size;
    if (complete || (got == 0 && count == kFixedInfoLines)) return Store(lines, batch, record);
    if (got > 0) continue;
    if (count) return InfoBatch::Status::TooShort;
    return StoreAny(QByteArray::fromRawData(text.data(), static_cast<qsizetype>(size)), batch, record);
  }
}

void InfoReader::ReadOne(const QString& musicFile, InfoBatch& batch) {
  InfoBatch::Record& record = batch.records.emplace_back();
  const QByteArray name = QFile::encodeName(musicFile);
  const qsizetype dot = name.lastIndexOf('.');
  const QByteArray base = name.left(dot > 0 ? dot : name.size());
  record.offsets[InfoBatch::Name] = static_cast<std::uint32_t>(batch.texts.size());
  batch.texts.append(name.constData(), static_cast<std::size_t>(name.size()));
  record.offsets[InfoBatch::Extension] =
      record.offsets[InfoBatch::Name] + static_cast<std::uint32_t>(base.size());
  const int handle = Open(base);
  if (handle < 0) {
    record.status = errno == ENOENT ? InfoBatch::Status::Missing : InfoBatch::Status::Unreadable;
    return;
  }
  record.status = ReadText(handle, batch, record);
  struct stat facts {};
  const bool odd =
      record.status == InfoBatch::Status::TooShort && fstat(handle, &facts) == 0 && !S_ISREG(facts.st_mode);
  if (odd)
    record.status = InfoBatch::Status::Unreadable;  // a pipe or a folder that bears the name of an info file
  close(handle);
}

InfoBatch InfoReader::Read(const QStringList& musicFiles, qsizetype start, qsizetype count) {
  InfoBatch batch;
  const qsizetype end = std::min(start + count, musicFiles.size());
  batch.records.reserve(static_cast<std::size_t>(std::max<qsizetype>(end - start, 0)));
  for (qsizetype index = start; index < end; ++index) ReadOne(musicFiles[index], batch);
  return batch;
}

}  // namespace kelvo
