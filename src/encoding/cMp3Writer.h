#pragma once

#include "platform/NewFile.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kelvo {

/// Writes what an encoder gives into a new file, by way of a buffer. The file gets its name when it is
/// closed, in the place of one that has that name; until then it grows beside it, and what is not closed
/// leaves nothing behind (see NewFile). Blocks; one thread at a time.
class cMp3Writer {
 public:
  enum Error {
    NoError = 0,
    NoMemory = 1,
    CannotOpen = 2,
    TooMuch = 3,
    NotOpen = 4,
    CannotWrite = 5,
  };

  void SetFileName(const QString& path) { fileName_ = path; }
  [[nodiscard]] const QString& FileName() const { return fileName_; }

  // Each returns whether it went through; cMp3Error tells why not.
  bool SetBufferSize(int bytes);
  bool OpenFile();
  /// Writes the first bytes of the buffer.
  bool WriteBufferToFile(int bytes);
  /// Puts `bytes` in the place of those at the file's start.
  bool WriteHeader(const QByteArray& bytes);
  /// Gives all to the disk, and the file its name.
  bool CloseMp3File();
  /// The same where no file has that name: `there` says that one has, and then nothing is left of this one.
  bool CloseAsNew(bool& there);
  /// Takes away what was written.
  void Discard() { file_.reset(); }

  [[nodiscard]] int BufferSize() const { return static_cast<int>(buffer_.size()); }
  [[nodiscard]] std::uint8_t* BufferPointer() { return buffer_.data(); }
  [[nodiscard]] std::span<std::uint8_t> Buffer() { return buffer_; }

  [[nodiscard]] Error cMp3Error() const { return error_; }
  [[nodiscard]] QString cMp3ErrorMsg() const { return ErrorText(error_); }
  /// Why the system refused it, in its own words; empty when it did not.
  [[nodiscard]] const QString& Reason() const { return reason_; }
  [[nodiscard]] static QString ErrorText(Error error);

 private:
  bool Fail(Error error);
  /// Does `work`; a Failure of the system becomes `error`.
  template <typename Work>
  bool Try(Error error, Work work);

  QString fileName_;
  std::optional<NewFile> file_;
  std::vector<std::uint8_t> buffer_;
  Error error_ = NoError;
  QString reason_;
};

}  // namespace kelvo
