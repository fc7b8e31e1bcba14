#include "discs/DiscTrackWriter.h"

#include "encoding/cLameEncoder.h"
#include "platform/ErrorLog.h"
#include "platform/NewFile.h"

#include <QtEndian>

#include <unistd.h>

#include <array>
#include <cerrno>
#include <limits>

namespace kelvo {
namespace {

constexpr mode_t kFileMode = 0666;
constexpr std::uint32_t kHeaderBytes = 44;

/// The header of a stereo 16-bit file of so many bytes of sound.
std::array<char, kHeaderBytes> WaveHead(std::uint32_t bytes) {
  std::array<char, kHeaderBytes> head{'R', 'I', 'F', 'F', 0, 0, 0,  0, 'W', 'A', 'V', 'E', 'f', 'm',
                                      't', ' ', 16,  0,   0, 0, 1,  0, 2,   0,   0,   0,   0,   0,
                                      0,   0,   0,   0,   4, 0, 16, 0, 'd', 'a', 't', 'a'};
  constexpr std::uint32_t rate = 44100;
  constexpr std::uint32_t frameBytes = 4;
  qToLittleEndian<std::uint32_t>(kHeaderBytes - 8 + bytes, &head[4]);
  qToLittleEndian<std::uint32_t>(rate, &head[24]);
  qToLittleEndian<std::uint32_t>(rate * frameBytes, &head[28]);
  qToLittleEndian<std::uint32_t>(bytes, &head[40]);
  return head;
}

class WaveWriter final : public IWaveDataWriter {
 public:
  explicit WaveWriter(const WriterOrder& order) : path_(EncodedPath(order.path)), file_(path_, kFileMode) {
    const auto head = WaveHead(0);
    file_.Write(head.data(), static_cast<qsizetype>(head.size()));
  }

  void Write(std::span<const std::int16_t> samples) override {
    bytes_ += samples.size_bytes();
    if (bytes_ > std::numeric_limits<std::uint32_t>::max() - kHeaderBytes) FailOn("write", path_, EFBIG);
    file_.Write(reinterpret_cast<const char*>(samples.data()), static_cast<qsizetype>(samples.size_bytes()));
  }

  [[nodiscard]] bool Finish() override {
    const auto head = WaveHead(static_cast<std::uint32_t>(bytes_));
    if (::pwrite(file_.Number(), head.data(), head.size(), 0) != static_cast<ssize_t>(head.size()))
      FailOn("write", path_, errno);
    return file_.Commit(NewFile::Place::KeepExisting);
  }

 private:
  QByteArray path_;
  NewFile file_;
  std::uint64_t bytes_ = 0;
};

class Mp3Writer final : public IWaveDataWriter {
 public:
  explicit Mp3Writer(const WriterOrder& order) {
    encoder_.SetPresets(order.presets);
    encoder_.OpenFile(order.path);
  }

  void Write(std::span<const std::int16_t> samples) override { encoder_.WriteData(samples); }

  [[nodiscard]] bool Finish() override { return encoder_.CloseAsNew(); }

 private:
  cLameEncoder encoder_;
};

}  // namespace

const WriterKind& cPluginManager::Load(const QString& name) {
  if (Loaded(name)) throw Failure(QStringLiteral("This plugin has already been loaded."), 0, name);
  const auto kind = kinds_.find(name);
  if (kind == kinds_.end()) {
    throw Failure(QStringLiteral("Could not create an instance of the object '") + name +
                      QStringLiteral("The object may not be registered"),
                  0, name);
  }
  if (!kind->second.make) {
    throw Failure(
        QStringLiteral("The specified object does not appear to be a valid plugin [does not implement the "
                       "IWaveDataWriter interface]"),
        0, name);
  }
  loaded_.insert(name);
  return kind->second;
}

std::map<QString, WriterKind> OwnWriters() {
  const auto wave = [](const WriterOrder& order) { return std::make_unique<WaveWriter>(order); };
  const auto mp3 = [](const WriterOrder& order) { return std::make_unique<Mp3Writer>(order); };
  return {{WriterName::kWave, {QStringLiteral(".Wav"), wave}},
          {WriterName::kMp3, {QStringLiteral(".Mp3"), mp3}}};
}

}  // namespace kelvo
