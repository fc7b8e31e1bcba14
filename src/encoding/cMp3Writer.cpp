#include "encoding/cMp3Writer.h"

#include "platform/ErrorLog.h"

#include <unistd.h>

#include <cerrno>

namespace kelvo {

namespace {

constexpr int kMostBuffer = 1 << 26;

}  // namespace

QString cMp3Writer::ErrorText(Error error) {
  switch (error) {
    case NoError:
      return {};
    case NoMemory:
      return QStringLiteral("Unable to allocate output buffer for writing");
    case CannotOpen:
      return QStringLiteral("Unable to open file for writing");
    case TooMuch:
      return QStringLiteral("Cannot write more data than is available in the buffer");
    case NotOpen:
      return QStringLiteral("File not open for writing");
    case CannotWrite:
      break;
  }
  return QStringLiteral("Failed to write buffer to file");
}

bool cMp3Writer::Fail(Error error) {
  error_ = error;
  reason_.clear();
  return error == NoError;
}

template <typename Work>
bool cMp3Writer::Try(Error error, Work work) {
  try {
    work();
    return Fail(NoError);
  } catch (const Failure& failure) {
    static_cast<void>(Fail(error));
    reason_ = QString::fromUtf8(failure.what());
    return false;
  }
}

bool cMp3Writer::SetBufferSize(int bytes) {
  if (bytes < 1 || bytes > kMostBuffer) return Fail(NoMemory);
  buffer_.assign(static_cast<std::size_t>(bytes), 0);
  return Fail(NoError);
}

bool cMp3Writer::OpenFile() {
  file_.reset();
  return Try(CannotOpen, [this] { file_.emplace(BehindLinks(EncodedPath(fileName_)), 0666); });
}

bool cMp3Writer::WriteBufferToFile(int bytes) {
  if (!file_) return Fail(NotOpen);
  if (bytes < 0 || bytes > BufferSize()) return Fail(TooMuch);
  return Try(CannotWrite,
             [this, bytes] { file_->Write(reinterpret_cast<const char*>(buffer_.data()), bytes); });
}

bool cMp3Writer::WriteHeader(const QByteArray& bytes) {
  if (!file_) return Fail(NotOpen);
  return Try(CannotWrite, [this, &bytes] {
    for (qsizetype done = 0; done < bytes.size();) {
      const ssize_t some = ::pwrite(file_->Number(), bytes.constData() + done,
                                    static_cast<std::size_t>(bytes.size() - done), done);
      if (some < 0 && errno != EINTR) FailOn("write", EncodedPath(fileName_), errno);
      if (some > 0) done += some;
    }
  });
}

bool cMp3Writer::CloseMp3File() {
  if (!file_) return Fail(NotOpen);
  const bool closed = Try(CannotWrite, [this] { static_cast<void>(file_->Commit(NewFile::Place::Replace)); });
  file_.reset();
  return closed;
}

bool cMp3Writer::CloseAsNew(bool& there) {
  if (!file_) return Fail(NotOpen);
  const bool closed =
      Try(CannotWrite, [this, &there] { there = !file_->Commit(NewFile::Place::KeepExisting); });
  file_.reset();
  return closed;
}

}  // namespace kelvo
