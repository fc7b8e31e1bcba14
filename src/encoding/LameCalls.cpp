#include "encoding/LameCalls.h"

#include "audio/EncodingPresets.h"

#include <lame/lame.h>

#include <cstdarg>

namespace kelvo {

namespace {

constexpr int kSides = 2;
/// What the library asks for beside five quarters of a frame.
constexpr int kBufferRoom = 7200;

/// Its remarks are for a terminal.
void Unheard(const char* /*format*/, va_list /*arguments*/) {}

MPEG_mode ModeOf(int outputMode) {
  switch (outputMode) {
    case 0:
      return STEREO;
    case 3:
      return MONO;
    default:
      return JOINT_STEREO;
  }
}

/// The library's preset of a VBR quality: V0 is 500, each step down 10 less.
int PresetOf(int vbrQuality) {
  return V0 - 10 * vbrQuality;
}

void SetRate(lame_global_struct* stream, const EncodingPlan& plan) {
  switch (plan.rate) {
    case EncodingPlan::Rate::Constant:
      lame_set_VBR(stream, vbr_off);
      lame_set_brate(stream, plan.kbps);
      break;
    case EncodingPlan::Rate::Average:
      lame_set_preset(stream, plan.kbps);
      lame_set_VBR(stream, vbr_abr);
      lame_set_VBR_mean_bitrate_kbps(stream, plan.kbps);
      break;
    case EncodingPlan::Rate::Variable:
      // Without VBR the preset is a constant rate.
      lame_set_preset(stream, PresetOf(plan.vbrQuality));
      lame_set_VBR(stream, vbr_default);
      lame_set_VBR_quality(stream, static_cast<float>(plan.vbrQuality));
      break;
  }
}

/// The library makes another rate of one that it can't do.
bool Took(lame_global_struct* stream, const EncodingPlan& plan, int outRate) {
  const bool constant = plan.rate == EncodingPlan::Rate::Constant;
  return lame_get_out_samplerate(stream) == outRate && (!constant || lame_get_brate(stream) == plan.kbps);
}

BeResult ResultOf(int answer) {
  switch (answer) {
    case -1:
      return BeResult::BufferTooSmall;
    case -3:
      return BeResult::InvalidHandle;
    default:
      return answer < 0 ? BeResult::NoMemory : BeResult::Successful;
  }
}

BeResult Gave(int answer, int& bytes) {
  bytes = answer < 0 ? 0 : answer;
  return ResultOf(answer);
}

}  // namespace

QString BeResultText(BeResult result) {
  switch (result) {
    case BeResult::Successful:
      return {};
    case BeResult::InvalidFormat:
      return QStringLiteral("Invalid Format");
    case BeResult::InvalidFormatParameters:
      return QStringLiteral("Invalid Format Parameters");
    case BeResult::NoMoreHandles:
      return QStringLiteral("Out of LAME handles");
    case BeResult::InvalidHandle:
      return QStringLiteral("LAME handle is invalid");
    case BeResult::BufferTooSmall:
      return QStringLiteral("Buffer is too small");
    case BeResult::NoMemory:
      break;
  }
  return QStringLiteral("Unable to allocate memory");
}

void BeCloser::operator()(lame_global_struct* stream) const {
  lame_close(stream);
}

BeResult beInitStream(const LameConfig& config, BeStream& stream) {
  stream = {};
  if (config.configType != LameConfig::kType || config.version != LameConfig::kVersion) {
    return BeResult::InvalidFormat;
  }
  const EncodingPresets presets{config.preset, config.bitRate, config.sampleRate, config.vbrQuality,
                                config.vbrEnabled};
  if (!presets.WhyInvalid().isEmpty()) return BeResult::InvalidFormatParameters;
  BeHandle handle(lame_init());
  if (!handle) return BeResult::NoMoreHandles;
  lame_global_struct* const lame = handle.get();
  lame_set_errorf(lame, Unheard);
  lame_set_debugf(lame, Unheard);
  lame_set_msgf(lame, Unheard);
  const EncodingPlan plan = presets.Plan();
  const int outRate = config.resampleRate != 0 ? config.resampleRate : config.sampleRate;
  lame_set_num_channels(lame, kSides);
  lame_set_in_samplerate(lame, config.sampleRate);
  SetRate(lame, plan);
  // Behind the preset, which has its own idea of them.
  lame_set_out_samplerate(lame, outRate);
  lame_set_quality(lame, plan.effort);
  lame_set_mode(lame, plan.mono ? MONO : ModeOf(config.outputMode));
  lame_set_emphasis(lame, config.emphasis);
  lame_set_error_protection(lame, config.crc ? 1 : 0);
  lame_set_copyright(lame, config.copyright ? 1 : 0);
  lame_set_original(lame, config.original ? 1 : 0);
  lame_set_disable_reservoir(lame, config.noBitReservoir ? 1 : 0);
  lame_set_bWriteVbrTag(lame, config.writeVbrHeader ? 1 : 0);
  lame_set_write_id3tag_automatic(lame, 0);
  if (lame_init_params(lame) < 0 || !Took(lame, plan, outRate)) return BeResult::InvalidFormatParameters;
  const int frame = lame_get_framesize(lame);
  stream = {
      .handle = std::move(handle), .samples = frame * kSides, .bufferSize = frame * 5 / 4 + kBufferRoom};
  return BeResult::Successful;
}

BeResult beEncodeChunk(const BeHandle& handle, std::span<const std::int16_t> sound,
                       std::span<std::uint8_t> target, int& bytes) {
  bytes = 0;
  if (!handle) return BeResult::InvalidHandle;
  // The library takes a pointer to what it does not change.
  return Gave(lame_encode_buffer_interleaved(handle.get(), const_cast<short*>(sound.data()),
                                             static_cast<int>(sound.size()) / kSides, target.data(),
                                             static_cast<int>(target.size())),
              bytes);
}

BeResult beDeinitStream(const BeHandle& handle, std::span<std::uint8_t> target, int& bytes) {
  bytes = 0;
  if (!handle) return BeResult::InvalidHandle;
  return Gave(lame_encode_flush(handle.get(), target.data(), static_cast<int>(target.size())), bytes);
}

void beCloseStream(BeHandle& handle) {
  handle.reset();
}

QByteArray beWriteVBRHeader(const BeHandle& handle) {
  if (!handle) return {};
  const std::size_t size = lame_get_lametag_frame(handle.get(), nullptr, 0);
  QByteArray frame(static_cast<qsizetype>(size), '\0');
  const std::size_t got =
      lame_get_lametag_frame(handle.get(), reinterpret_cast<unsigned char*>(frame.data()), size);
  frame.truncate(static_cast<qsizetype>(std::min(got, size)));
  return frame;
}

cLameEncoderVersion beVersion() {
  lame_version_t told{};
  get_lame_version_numerical(&told);
  cLameEncoderVersion version{.DllMajorVersion = told.major,
                              .DllMinorVersion = told.minor,
                              .MajorVersion = told.major,
                              .MinorVersion = told.minor,
                              .ReleaseDate = {},
                              .HomePage = QString::fromUtf8(get_lame_url()),
                              .AlphaLevel = told.alpha,
                              .BetaLevel = told.beta};
#if defined(__x86_64__) || defined(__i386__)
  version.MMXEnabled = __builtin_cpu_supports("mmx") != 0;
#endif
  return version;
}

}  // namespace kelvo
