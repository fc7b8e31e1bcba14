#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvo {

/// What the catalogue keeps of a track info file, read for many files in one go. The texts lie packed as
/// UTF-8 in the batch. A value; filled on a worker, read on the logic's thread.
class InfoBatch {
 public:
  enum class Status : std::uint8_t {
    Read,
    Missing,
    TooShort,     ///< fewer than the 13 fixed lines
    BadDuration,  ///< line 13 is no number; the other fields are good
    Unreadable,
  };
  enum Field { Name, Extension, Genres, Artists, Albums, Date, Bpm, Hi, StartEnd, Gain, FieldCount };

  struct Record {
    Status status = Status::Missing;
    std::uint32_t offsets[FieldCount + 1] = {};
    double duration = -1;
  };

  [[nodiscard]] std::string_view Text(const Record& record, Field field) const {
    return std::string_view(texts).substr(record.offsets[field],
                                          record.offsets[field + 1] - record.offsets[field]);
  }

  std::vector<Record> records;
  std::string texts;
};

/// Reads the track info files of music files from one folder. Used on one worker at a time; owns the open
/// folder.
class InfoReader {
 public:
  /// Throws Failure when the folder cannot be opened.
  explicit InfoReader(const QString& infoFolder);
  ~InfoReader();
  InfoReader(const InfoReader&) = delete;
  InfoReader& operator=(const InfoReader&) = delete;

  /// One record for each of `count` music files from `start` on.
  [[nodiscard]] InfoBatch Read(const QStringList& musicFiles, qsizetype start, qsizetype count);

 private:
  void ReadOne(const QString& musicFile, InfoBatch& batch);
  [[nodiscard]] InfoBatch::Status ReadText(int handle, InfoBatch& batch, InfoBatch::Record& record);
  [[nodiscard]] int Open(const QByteArray& baseName);

  QString folder_;
  int folderHandle_ = -1;
  std::vector<char> buffer_;
  /// File names by their upper-cased form, made at the first file that is not there under its own spelling.
  QHash<QString, QByteArray> anyCase_;
  bool anyCaseKnown_ = false;
};

}  // namespace kelvo
