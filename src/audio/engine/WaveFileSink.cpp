#include "audio/engine/WaveFileSink.h"

#include "audio/engine/SoundBlock.h"
#include "platform/ErrorLog.h"

#include <QFile>

#include <sndfile.h>

namespace kelvo {

void WaveFileSink::Closer::operator()(sf_private_tag* file) const {
  sf_close(file);
}

WaveFileSink::WaveFileSink(const QString& path) : path_(path) {
  SF_INFO info{};
  info.samplerate = kEngineRate;
  info.channels = static_cast<int>(kChannels);
  info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  file_.reset(sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info));
  if (!file_) {
    throw Failure(
        QStringLiteral("%1 can't be written: %2").arg(path, QString::fromUtf8(sf_strerror(nullptr))),
        sf_error(nullptr), path);
  }
}

void WaveFileSink::Write(std::span<const float> sound) {
  const auto frames = static_cast<sf_count_t>(sound.size() / kChannels);
  if (sf_writef_float(file_.get(), sound.data(), frames) != frames) {
    throw Failure(
        QStringLiteral("%1 can't be written: %2").arg(path_, QString::fromUtf8(sf_strerror(file_.get()))),
        sf_error(file_.get()), path_);
  }
}

}  // namespace kelvo
