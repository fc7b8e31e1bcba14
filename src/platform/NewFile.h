#pragma once

#include <QByteArray>
#include <QString>

#include <sys/types.h>

#include <utility>

namespace kelvo {

/// Throws the Failure "Cannot `what` `path` : why" of a system call that gave `error`.
[[noreturn]] void FailOn(const char* what, const QByteArray& path, int error);

/// The path as the system takes it. Throws Failure for one that can't be a path.
[[nodiscard]] QByteArray EncodedPath(const QString& path);

/// The file that `path` leads to when symbolic links are followed; it need not exist. Throws Failure on a
/// loop.
[[nodiscard]] QByteArray BehindLinks(QByteArray path);

/// The folder that a path names its file in.
[[nodiscard]] QByteArray FolderOf(const QByteArray& path);
/// Makes the change of the folder's entries last. A folder that may be written but not read cannot be
/// flushed, nor can one on some network file systems; the file itself is whole all the same.
void FlushFolder(const QByteArray& folder);

/// A file descriptor that is closed when it goes.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor();
  [[nodiscard]] int Number() const { return number_; }
  [[nodiscard]] bool Valid() const { return number_ >= 0; }
  [[nodiscard]] bool Close();

 private:
  int number_;
};

/// A file that gets its name when it is whole. Until then it is kept beside `target` under a hidden name,
/// which is the same for every writer of that target: what a killed one left behind is found and taken away,
/// and a lock keeps two at work apart. Without a Commit it goes with the object. Any thread; throws Failure,
/// which names the target.
class NewFile {
 public:
  /// `mode`: its permissions, less those that the process withholds.
  NewFile(QByteArray target, mode_t mode);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void Write(const char* bytes, qsizetype count);
  [[nodiscard]] int Number() const { return file_.Number(); }

  enum class Place { Replace, ReplaceExisting, KeepExisting };
  /// Flushes it to disk and gives it its name. False, with nothing done, where that name must be there and is
  /// not (ReplaceExisting), or is there and must stay (KeepExisting).
  [[nodiscard]] bool Commit(Place place);

 private:
  void RenameOver();
  [[nodiscard]] bool RenameBeside();

  QByteArray target_;
  QByteArray beside_;
  Descriptor file_;
};

}  // namespace kelvo
