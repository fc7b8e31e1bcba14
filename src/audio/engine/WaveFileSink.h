#pragma once

#include <QString>

#include <memory>
#include <span>

struct sf_private_tag;

namespace kelvo {

/// Writes what an output plays to a WAV file (float samples at the engine's rate). Owned by whoever renders;
/// the file is complete when it is destroyed.
class WaveFileSink {
 public:
  /// Throws Failure when `path` can't be written.
  explicit WaveFileSink(const QString& path);
  /// Throws Failure when the disk takes no more.
  void Write(std::span<const float> sound);

 private:
  struct Closer {
    void operator()(sf_private_tag* file) const;
  };
  QString path_;
  std::unique_ptr<sf_private_tag, Closer> file_;
};

}  // namespace kelvo
