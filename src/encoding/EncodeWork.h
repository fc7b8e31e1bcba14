#pragma once

#include "encoding/cLameEncoder.h"

#include <QString>

#include <sys/stat.h>

#include <atomic>
#include <optional>

namespace kelvo {

/// One file to encode, shared by the thread that does it and the logic's, which looks how far it is and may
/// set the encoder's EncodeCancel.
class EncodeWork {
 public:
  enum class Outcome {
    Encoded,
    Cancelled,
    NotWave,  ///< its name says so
    Missing,
    BadFormat,
    Failed,
  };
  struct Result {
    Outcome outcome = Outcome::Failed;
    QString target;       ///< the file that was made, under the name that it has on disk
    double seconds = 0;   ///< of sound in it
    QString why;          ///< it failed, or the source has to stay; empty otherwise
    bool proven = false;  ///< it was read back to its end: the source may go
  };

  /// `prove`: the result is to be read back.
  EncodeWork(QString source, const EncodingPresets& presets, bool prove);

  /// Encodes the file into one beside it, with the ending ".Mp3". Once; blocks.
  [[nodiscard]] Result Do();
  /// Deletes the source, if it still is the file that was encoded. Throws Failure. After Do; blocks.
  void DeleteSource() const;

  // Any thread.
  void Cancel() { encoder_.EncodeCancel = true; }
  /// How much is done, 0 to 1.
  [[nodiscard]] double Share() const { return share_.load(std::memory_order_relaxed); }
  [[nodiscard]] const QString& Source() const { return source_; }

  /// The file that a WAV file is encoded into.
  [[nodiscard]] static QString TargetOf(const QString& source);

 private:
  void Encode(Result& result);
  /// Throws Failure unless it is the file that was encoded.
  void CheckSource() const;

  const QString source_;
  const bool prove_;
  cLameEncoder encoder_;
  std::atomic<double> share_{0};
  std::optional<struct ::stat> facts_;  ///< of the source as it was encoded
};

}  // namespace kelvo
