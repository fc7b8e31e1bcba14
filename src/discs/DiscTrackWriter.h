#pragma once

#include "audio/EncodingPresets.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>

namespace kelvo {

/// Takes the samples of a track and makes a file of them, which gets its name when it is whole: without a
/// Finish nothing is left of it. Owned by the rip; off the logic's thread. Throws Failure.
class IWaveDataWriter {
 public:
  virtual ~IWaveDataWriter() = default;
  /// Stereo samples of 44100 Hz, interleaved.
  virtual void Write(std::span<const std::int16_t> samples) = 0;
  /// The file is never put in the place of another: false, with nothing left, where one has come meanwhile.
  [[nodiscard]] virtual bool Finish() = 0;
};

/// What a writer is to make.
struct WriterOrder {
  QString path;  ///< with its ending; its folder is there
  EncodingPresets presets = {};
};

/// A kind of writer. `make` is empty where the name is known and is no writer.
struct WriterKind {
  QString ending;  ///< of its files, with the dot
  std::function<std::unique_ptr<IWaveDataWriter>(const WriterOrder& order)> make;
};

/// The names of the two writers that the program has.
namespace WriterName {
inline const QString kWave = QStringLiteral("vbalWaveDataWriter6.cWavFileDataWriter");
inline const QString kMp3 = QStringLiteral("vbalMp3DataWriter6.cMp3FileDataWriter");
}  // namespace WriterName

/// Loads output writers by their names. A value.
class cPluginManager {
 public:
  /// Over the kinds that can be loaded.
  explicit cPluginManager(std::map<QString, WriterKind> kinds) : kinds_(std::move(kinds)) {}

  /// Throws Failure for a name that is loaded already, that is no writer, or that nobody knows.
  const WriterKind& Load(const QString& name);
  [[nodiscard]] bool Loaded(const QString& name) const { return loaded_.contains(name); }

 private:
  std::map<QString, WriterKind> kinds_;
  std::set<QString> loaded_;
};

/// The writers of the program: WAV, and MP3 with the program's own encoder.
[[nodiscard]] std::map<QString, WriterKind> OwnWriters();

}  // namespace kelvo
