#pragma once

#include <QString>

namespace kelvo {

/// The place of a file that another program makes: beside its target under a hidden name, the same for every
/// maker of that target. It goes with the object unless it was taken; what a killed one left is removed
/// first. Any thread.
class BesideFile {
 public:
  explicit BesideFile(QString target);
  ~BesideFile();
  BesideFile(const BesideFile&) = delete;
  BesideFile& operator=(const BesideFile&) = delete;

  [[nodiscard]] const QString& Path() const { return path_; }
  /// Flushes the file and gives it the name of the target, in the place of what has it. Throws Failure.
  /// Blocks.
  static void Take(const QString& made, const QString& target);

 private:
  QString path_;
};

}  // namespace kelvo
