#include "encoding/cLameEncoder.h"

#include "audio/engine/OpenDecoder.h"
#include "encoding/RateChange.h"
#include "encoding/cMp3Writer.h"
#include "encoding/cWavReader.h"

#include <QCoreApplication>

#include <lame/lame.h>

#include <algorithm>
#include <array>
#include <optional>

namespace kelvo {

namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(cLameEncoder)
};

}  // namespace

/// A file that is being written. Without a Finish nothing of it stays.
struct cLameEncoder::Stream {
  BeStream lame;
  cMp3Writer writer;
  std::optional<RateChange> rates;
};

cLameEncoder::cLameEncoder() = default;
cLameEncoder::~cLameEncoder() = default;

QString cLameEncoder::LameVersion() {
  return QString::fromUtf8(get_lame_version());
}

void cLameEncoder::SetPresets(const EncodingPresets& presets) {
  EncodingPreset() = presets.preset;
  BitRate() = presets.bitRate;
  VbrEnabled() = presets.vbr;
  VbrQuality() = presets.vbrQuality;
  SampleRate() = presets.sampleRate;
}

int cLameEncoder::BufferSize() const {
  return stream_ ? stream_->lame.samples : 0;
}

void cLameEncoder::Raise(EncodeFailure::Kind kind, QString text, QString reason) {
  lameClose();
  message_ = reason.isEmpty() ? text : text + QStringLiteral(" (") + reason + QLatin1Char(')');
  throw EncodeFailure(kind, message_, kind == EncodeFailure::Kind::Other ? fileName_ : WavFile);
}

void cLameEncoder::Check(BeResult result) {
  if (result != BeResult::Successful) Raise(EncodeFailure::Kind::Other, BeResultText(result));
}

void cLameEncoder::lameInit(const QString& mp3File) {
  message_.clear();
  frames_ = 0;
  fileName_ = mp3File;
  stream_ = std::make_unique<Stream>();
  Check(beInitStream(config_, stream_->lame));
  if (!stream_->lame.handle) Raise(EncodeFailure::Kind::Other, QStringLiteral("Lame engine not initialised"));
  cMp3Writer& writer = stream_->writer;
  writer.SetFileName(mp3File);
  if (!writer.SetBufferSize(stream_->lame.bufferSize) || !writer.OpenFile())
    Raise(EncodeFailure::Kind::Other, writer.cMp3ErrorMsg(), writer.Reason());
}

void cLameEncoder::ConvertFrom(int rate) {
  if (rate != config_.sampleRate) stream_->rates.emplace(rate, config_.sampleRate);
}

void cLameEncoder::WriteOut(int bytes) {
  cMp3Writer& writer = stream_->writer;
  if (!writer.WriteBufferToFile(bytes))
    Raise(EncodeFailure::Kind::Other, writer.cMp3ErrorMsg(), writer.Reason());
}

void cLameEncoder::EncodePart(std::span<const std::int16_t> sound) {
  const auto chunk = static_cast<std::size_t>(stream_->lame.samples);
  for (; !sound.empty(); sound = sound.subspan(std::min(chunk, sound.size()))) {
    const auto part = sound.first(std::min(chunk, sound.size()));
    int bytes = 0;
    Check(beEncodeChunk(stream_->lame.handle, part, stream_->writer.Buffer(), bytes));
    WriteOut(bytes);
    frames_ += static_cast<FrameIndex>(part.size() / kChannels);
  }
}

void cLameEncoder::Flush() {
  if (stream_->rates) {
    for (auto rest = stream_->rates->Rest(); !rest.empty(); rest = stream_->rates->Rest()) EncodePart(rest);
  }
  int bytes = 0;
  Check(beDeinitStream(stream_->lame.handle, stream_->writer.Buffer(), bytes));
  WriteOut(bytes);
  lameVbrHead();
}

void cLameEncoder::Finish() {
  Flush();
  cMp3Writer& writer = stream_->writer;
  if (!writer.CloseMp3File()) Raise(EncodeFailure::Kind::Other, writer.cMp3ErrorMsg(), writer.Reason());
  lameClose();
}

void cLameEncoder::lameVbrHead() {
  cMp3Writer& writer = stream_->writer;
  if (!writer.WriteHeader(beWriteVBRHeader(stream_->lame.handle)))
    Raise(EncodeFailure::Kind::Other, writer.cMp3ErrorMsg(), writer.Reason());
}

void cLameEncoder::lameClose() {
  if (stream_) beCloseStream(stream_->lame.handle);
  stream_.reset();
}

cLameEncoder::End cLameEncoder::Encode() {
  lameInit(Mp3File);
  cWavReader reader;
  reader.SetFileName(WavFile);
  const auto raise = [this, &reader] {
    const bool missing = reader.cWaveError() == cWavReader::CannotOpen;
    Raise(missing ? EncodeFailure::Kind::NoSource : EncodeFailure::Kind::BadSource, reader.cWaveErrorMsg());
  };
  // Before the file is open: it must not change under it.
  if (!reader.SetReadBufferSize(stream_->lame.samples) || !reader.OpenFile()) raise();
  ConvertFrom(reader.SampleRate());
  const std::int64_t total = reader.AudioLength() / static_cast<std::int64_t>(sizeof(std::int16_t));
  std::int64_t done = 0;
  bool cancel = EncodeCancel;
  while (!cancel && reader.Read()) {
    reader.ZeroUnusedBufferBytes();
    const std::span<const std::int16_t> part(reader.ReadBufferPtr(),
                                             static_cast<std::size_t>(reader.ReadSize()) * kChannels);
    if (stream_->rates) {
      EncodePart(stream_->rates->Take(part));
    } else {
      EncodePart(part);
    }
    done += static_cast<std::int64_t>(part.size());
    if (Progress) Progress(total, done, cancel);
    cancel = cancel || EncodeCancel;
  }
  if (cancel) {
    lameClose();
    return End::Cancelled;
  }
  if (reader.cWaveError() != cWavReader::NoError) raise();
  Finish();
  if (Progress) Progress(total, total, cancel);
  return End::Done;
}

void cLameEncoder::OpenFile(const QString& mp3File, int rate) {
  lameInit(mp3File);
  ConvertFrom(rate);
}

void cLameEncoder::WriteData(std::span<const std::int16_t> sound) {
  if (!stream_) Raise(EncodeFailure::Kind::Other, cMp3Writer::ErrorText(cMp3Writer::NotOpen));
  if (stream_->rates) {
    EncodePart(stream_->rates->Take(sound));
  } else {
    EncodePart(sound);
  }
}

void cLameEncoder::CloseLameFile() {
  if (!stream_) Raise(EncodeFailure::Kind::Other, cMp3Writer::ErrorText(cMp3Writer::NotOpen));
  Finish();
}

bool cLameEncoder::CloseAsNew() {
  if (!stream_) Raise(EncodeFailure::Kind::Other, cMp3Writer::ErrorText(cMp3Writer::NotOpen));
  Flush();
  cMp3Writer& writer = stream_->writer;
  bool there = false;
  if (!writer.CloseAsNew(there)) Raise(EncodeFailure::Kind::Other, writer.cMp3ErrorMsg(), writer.Reason());
  lameClose();
  return !there;
}

void ProveWhole(const QString& mp3File, FrameIndex frames) {
  const std::unique_ptr<Decoder> decoder = OpenDecoder(mp3File);
  std::array<float, 8192> part{};
  FrameIndex read = 0;
  for (std::size_t got = part.size() / kChannels; got == part.size() / kChannels;) {
    got = decoder->Read(part);
    read += static_cast<FrameIndex>(got);
  }
  if (read == frames) return;
  throw Failure(Text::tr("%1 has %2 samples where %3 were encoded").arg(mp3File).arg(read).arg(frames), 0,
                mp3File);
}

}  // namespace kelvo
