#pragma once

#include <QString>

#include <memory>

namespace kelvo {

/// Tells what links lead to, for whoever lists a folder off the logic's thread: a link to a disk that does
/// not answer costs a moment once, not once for each link to it. One thread at a time.
class LinkTargets {
 public:
  enum class Kind { File, Folder, Other, Unknown };  ///< Unknown: its disk does not answer

  LinkTargets();
  [[nodiscard]] Kind KindOf(const QString& path);

 private:
  struct Shared;
  std::shared_ptr<Shared> shared_;
};

}  // namespace kelvo
