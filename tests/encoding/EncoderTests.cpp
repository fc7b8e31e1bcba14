#include "audio/TestSounds.h"
#include "audio/engine/OpenDecoder.h"
#include "encoding/cLameEncoder.h"
#include "encoding/cMp3Writer.h"
#include "encoding/cWavReader.h"
#include "platform/FileSteps.h"
#include "support/TemporaryTree.h"

#include <QFile>
#include <QProcess>
#include <QtEndian>

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <cmath>
#include <csignal>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using testing::KilledBefore;
using testing::TemporaryTree;

QByteArray Number(std::uint32_t value, int bytes) {
  QByteArray text(4, '\0');
  qToLittleEndian(value, text.data());
  return text.left(bytes);
}

QByteArray ChunkOf(const char* id, const QByteArray& content, std::optional<std::uint32_t> told = {}) {
  return QByteArray(id, 4) + Number(told.value_or(static_cast<std::uint32_t>(content.size())), 4) + content;
}

QByteArray FormatChunk(int tag, int sides, int bits, std::uint32_t rate = 44100) {
  const int frame = sides * bits / 8;
  return ChunkOf(
      "fmt ", Number(static_cast<std::uint32_t>(tag), 2) + Number(static_cast<std::uint32_t>(sides), 2) +
                  Number(rate, 4) + Number(rate * static_cast<std::uint32_t>(frame), 4) +
                  Number(static_cast<std::uint32_t>(frame), 2) + Number(static_cast<std::uint32_t>(bits), 2));
}

QByteArray Riff(const QByteArray& chunks, std::optional<std::uint32_t> told = {}) {
  return "RIFF" + Number(told.value_or(static_cast<std::uint32_t>(chunks.size()) + 4), 4) + "WAVE" + chunks;
}

const QByteArray kGoodFormat = FormatChunk(1, 2, 16);
const QByteArray kFourFrames = QByteArray::fromHex("01000200030004000500060007000800");

/// Slow waves on both sides, so that a shift by a sample shows, with no sound above what every preset keeps.
testing::Samples Waves(double seconds, int rate = 44100) {
  testing::Samples sound;
  const auto frames = static_cast<std::size_t>(seconds * rate);
  for (std::size_t frame = 0; frame < frames; ++frame) {
    const double t = static_cast<double>(frame) / rate;
    const double value =
        0.3 * std::sin(2 * M_PI * (300 + 90 * t) * t) + 0.2 * std::sin(2 * M_PI * 1234.5 * t);
    const auto sample = static_cast<float>(std::round(value * 32768) / 32768);
    sound.push_back(sample);
    sound.push_back(sample);
  }
  return sound;
}

std::vector<float> Decoded(const QString& path) {
  const auto decoder = OpenDecoder(path);
  std::vector<float> sound(static_cast<std::size_t>(decoder->Frames() + 5000) * 2);
  sound.resize(decoder->Read(sound) * 2);
  return sound;
}

/// The shift, in frames, at which `made` is most like `source`.
int ShiftOf(const std::vector<float>& made, const testing::Samples& source) {
  constexpr int kMost = 1300;
  constexpr std::size_t kFrom = 20000;
  constexpr std::size_t kFrames = 8000;
  int best = 0;
  double highest = -1;
  for (int shift = -kMost; shift <= kMost; ++shift) {
    double sum = 0;
    for (std::size_t frame = kFrom; frame < kFrom + kFrames; ++frame) {
      sum += static_cast<double>(source[frame * 2]) *
             static_cast<double>(made[static_cast<std::size_t>(static_cast<int>(frame) + shift) * 2]);
    }
    if (sum > highest) {
      highest = sum;
      best = shift;
    }
  }
  return best;
}

QByteArray OutputOf(const QString& program, const QStringList& arguments) {
  QProcess tool;
  tool.setProcessChannelMode(QProcess::MergedChannels);
  tool.start(program, arguments);
  EXPECT_TRUE(tool.waitForFinished(-1)) << program.toStdString();
  return tool.readAll();
}

TEST(WavReader, TellsOfEachHeaderWhatIsWrongWithIt) {
  struct Case {
    const char* what;
    QByteArray bytes;
    const char* text;
  };
  const QByteArray sound = ChunkOf("data", kFourFrames);
  const std::vector<Case> cases{
      {"empty", {}, "Not a Wave file."},
      {"another kind", "OggS" + QByteArray(60, 'x'), "Not a Wave file."},
      {"big-endian", "RIFX" + Riff(kGoodFormat + sound).mid(4), "Not a Wave file."},
      {"no wave", "RIFF" + Number(4, 4) + "AVI ", "Not a Wave file."},
      {"no format", Riff(sound), "Unable to retrieve format chunk"},
      {"nothing but a head", Riff({}), "Unable to retrieve format chunk"},
      {"zeros without end", Riff(QByteArray(400'000, '\0')), "Unable to retrieve format chunk"},
      {"no data", Riff(kGoodFormat), "Not a Wave file."},
      {"short format", Riff(ChunkOf("fmt ", kGoodFormat.mid(8, 14)) + sound), "Error reading format"},
      {"format cut off", Riff(kGoodFormat.left(20)), "Error reading format"},
      {"rate of nothing", Riff(FormatChunk(1, 2, 16, 0) + sound), "Error reading format"},
      {"rate of everything", Riff(FormatChunk(1, 2, 16, 0xFFFFFFFF) + sound), "Error reading format"},
      {"mono", Riff(FormatChunk(1, 1, 16) + sound), "Only stereo 16 bit wave files supported."},
      {"8 bit", Riff(FormatChunk(1, 2, 8) + sound), "Only stereo 16 bit wave files supported."},
      {"float", Riff(FormatChunk(3, 2, 32) + sound), "Only stereo 16 bit wave files supported."},
      {"MPEG within", Riff(FormatChunk(0x55, 2, 16) + sound), "Only stereo 16 bit wave files supported."},
  };
  const TemporaryTree tree;
  for (const Case& each : cases) {
    cWavReader reader;
    reader.SetFileName(tree.Write(u"a.wav"_s, each.bytes));
    EXPECT_FALSE(reader.OpenFile()) << each.what;
    EXPECT_EQ(reader.cWaveErrorMsg(), QLatin1StringView(each.text)) << each.what;
    EXPECT_FALSE(reader.Read()) << each.what;
  }
  cWavReader reader;
  for (const QString& path : {tree.Path(u"none.wav"_s), tree.Path(), u"/dev/zero"_s}) {
    reader.SetFileName(path);
    EXPECT_FALSE(reader.OpenFile());
    EXPECT_EQ(reader.cWaveErrorMsg(), u"Unable to open file."_s);
  }
}

TEST(WavReader, ReadsNoMoreThanIsThereWhateverTheHeaderPromises) {
  struct Case {
    const char* what;
    QByteArray bytes;
    std::int64_t length;
  };
  const QByteArray extensible =
      ChunkOf("fmt ", kGoodFormat.mid(8).replace(0, 2, Number(0xFFFE, 2)) + Number(22, 2) + Number(16, 2) +
                          Number(3, 4) + Number(1, 2) + QByteArray(14, 'g'));
  const QByteArray sound = ChunkOf("data", kFourFrames);
  const std::vector<Case> cases{
      {"plain", Riff(kGoodFormat + sound), 16},
      {"extensible", Riff(extensible + sound), 16},
      {"data first, an odd chunk between", Riff(sound + ChunkOf("LIST", "abc") + '\0' + kGoodFormat), 16},
      {"more promised than there is", Riff(kGoodFormat + ChunkOf("data", kFourFrames, 4'000'000'000U)), 16},
      {"unfinished, sizes zero", Riff(kGoodFormat + ChunkOf("data", kFourFrames, 0), 0), 16},
      {"unfinished, sizes open", Riff(kGoodFormat + ChunkOf("data", kFourFrames, 0xFFFFFFFF), 0xFFFFFFFF),
       16},
      {"no sound, and a chunk behind", Riff(kGoodFormat + ChunkOf("data", {}) + ChunkOf("LIST", "abcd")), 0},
      {"half a frame at the end", Riff(kGoodFormat + ChunkOf("data", kFourFrames.left(10))), 8},
  };
  const TemporaryTree tree;
  for (const Case& each : cases) {
    cWavReader reader;
    reader.SetFileName(tree.Write(u"a.wav"_s, each.bytes));
    ASSERT_TRUE(reader.OpenFile()) << each.what << ": " << reader.cWaveErrorMsg().toStdString();
    EXPECT_EQ(reader.AudioLength(), each.length) << each.what;
    EXPECT_EQ(reader.Read(), each.length > 0) << each.what;
    EXPECT_EQ(reader.ReadSize() * 4, each.length) << each.what;
    reader.ZeroUnusedBufferBytes();
    if (each.length == 16) {
      EXPECT_EQ(reader.ReadBufferPtr()[7], 8) << each.what;
    }
    EXPECT_EQ(reader.ReadBufferPtr()[8], 0) << each.what;
    EXPECT_FALSE(reader.Read()) << each.what;
    EXPECT_EQ(reader.cWaveError(), cWavReader::NoError) << each.what;
  }
}

TEST(WavReader, RefusesWhatCanNotBeDoneNow) {
  const TemporaryTree tree;
  cWavReader reader;
  EXPECT_FALSE(reader.Read());
  EXPECT_EQ(reader.cWaveErrorMsg(), u"No Wave File Open"_s);
  EXPECT_FALSE(reader.SetReadBufferSize(0));
  EXPECT_EQ(reader.cWaveErrorMsg(), u"Insufficient memory"_s);
  EXPECT_TRUE(reader.SetReadBufferSize(4));
  reader.SetFileName(tree.Write(u"a.wav"_s, Riff(kGoodFormat + ChunkOf("data", kFourFrames))));
  ASSERT_TRUE(reader.OpenFile());
  EXPECT_FALSE(reader.SetReadBufferSize(8));
  EXPECT_EQ(reader.cWaveErrorMsg(), u"Cannot change buffer size whilst a file is open."_s);
  EXPECT_TRUE(reader.SeekAbsolute(8));
  EXPECT_TRUE(reader.Read());
  EXPECT_EQ(reader.ReadBufferPtr()[0], 5);
  EXPECT_EQ(reader.BufferStartPosition(), 8);
  EXPECT_TRUE(reader.SeekRelative(-12));
  EXPECT_TRUE(reader.Read());
  EXPECT_EQ(reader.ReadBufferPtr()[0], 3);
  EXPECT_FALSE(reader.SeekAbsolute(17));
  EXPECT_EQ(reader.cWaveErrorMsg(), u"Position out of range"_s);
  EXPECT_FALSE(reader.SeekRelative(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(reader.cWaveErrorMsg(), u"Position out of range"_s);
  ASSERT_TRUE(reader.SeekAbsolute(0));
  ASSERT_TRUE(QFile::resize(reader.FileName(), 46));
  EXPECT_FALSE(reader.Read()) << "it is shorter than it was";
  EXPECT_EQ(reader.cWaveError(), cWavReader::CannotRead);
}

TEST(Mp3Writer, TellsItsErrorsAndLeavesNothingBehind) {
  const TemporaryTree tree;
  cMp3Writer writer;
  EXPECT_FALSE(writer.SetBufferSize(-1));
  EXPECT_EQ(writer.cMp3ErrorMsg(), u"Unable to allocate output buffer for writing"_s);
  ASSERT_TRUE(writer.SetBufferSize(8));
  EXPECT_FALSE(writer.WriteBufferToFile(1));
  EXPECT_EQ(writer.cMp3ErrorMsg(), u"File not open for writing"_s);
  writer.SetFileName(tree.Path(u"none/a.mp3"_s));
  EXPECT_FALSE(writer.OpenFile());
  EXPECT_EQ(writer.cMp3ErrorMsg(), u"Unable to open file for writing"_s);
  EXPECT_FALSE(writer.Reason().isEmpty());
  writer.SetFileName(tree.Write(u"a.mp3"_s, "before"));
  ASSERT_TRUE(writer.OpenFile());
  EXPECT_FALSE(writer.WriteBufferToFile(9));
  EXPECT_EQ(writer.cMp3ErrorMsg(), u"Cannot write more data than is available in the buffer"_s);
  std::copy_n("12345678", 8, writer.BufferPointer());
  EXPECT_TRUE(writer.WriteBufferToFile(8));
  EXPECT_TRUE(writer.WriteHeader("ab"));
  EXPECT_EQ(tree.Read(u"a.mp3"_s), "before");
  EXPECT_TRUE(writer.CloseMp3File());
  EXPECT_EQ(tree.Read(u"a.mp3"_s), "ab345678");
  ASSERT_TRUE(writer.OpenFile());
  writer.Discard();
  EXPECT_EQ(QDir(tree.Path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"a.mp3"_s});
}

/// Encodes `source` like this; returns the path of the file.
QString Encoded(const TemporaryTree& tree, const QString& source, const EncodingPresets& presets,
                FrameIndex* frames = nullptr) {
  cLameEncoder encoder;
  encoder.SetPresets(presets);
  encoder.WavFile = source;
  encoder.Mp3File = tree.Path(u"made.mp3"_s);
  EXPECT_EQ(encoder.Encode(), cLameEncoder::End::Done);
  if (frames != nullptr) *frames = encoder.Frames();
  return encoder.Mp3File;
}

TEST(Encoder, OtherProgramsReadItsFilesWithTheTrueLengthAndNoShift) {
  const TemporaryTree tree;
  // No whole number of the encoder's frames.
  const testing::Samples sound = Waves(3.337);
  const auto frames = static_cast<FrameIndex>(sound.size() / 2);
  const QString source = tree.Write(u"a.wav"_s, testing::WaveFile(sound));
  for (const EncodingPresets& presets :
       {EncodingPresets(), EncodingPresets{12, 192, 44100, 4, true}, EncodingPresets{11, 160, 44100, 4, true},
        EncodingPresets{0, 128, 44100, 9, true}, EncodingPresets{10, 32, 44100, 0, false},
        EncodingPresets{3, 64, 44100, 4, false}}) {
    const std::string name = presets.ToSetting().toStdString();
    FrameIndex told = 0;
    const QString made = Encoded(tree, source, presets, &told);
    EXPECT_EQ(told, frames) << name;
    const std::vector<float> ours = Decoded(made);
    EXPECT_EQ(static_cast<FrameIndex>(ours.size() / 2), frames) << name;
    EXPECT_EQ(ShiftOf(ours, sound), 0) << name;
    const QString decoded = tree.Path(u"tool.wav"_s);
    OutputOf(u"lame"_s, {u"--quiet"_s, u"--decode"_s, made, decoded});
    const std::vector<float> theirs = Decoded(decoded);
    EXPECT_EQ(static_cast<FrameIndex>(theirs.size() / 2), frames) << name;
    EXPECT_EQ(ShiftOf(theirs, sound), 0) << name;
    const QByteArray judged = OutputOf(u"mp3val"_s, {made})
                                  .replace("No supported tags", "")
                                  .replace("WARNING: \"" + made.toUtf8() + "\":  in the file", "");
    EXPECT_FALSE(judged.contains("WARNING") || judged.contains("ERROR")) << name << '\n'
                                                                         << judged.toStdString();
  }
}

TEST(Encoder, EachPresetComesToOnePlan) {
  using Rate = EncodingPlan::Rate;
  const auto plan = [](int preset, bool vbr, int sampleRate = 44100) {
    return EncodingPresets{preset, 96, sampleRate, 7, vbr}.Plan();
  };
  EXPECT_EQ(plan(0, true), (EncodingPlan{Rate::Variable, 96, 7, 3, false}));
  EXPECT_EQ(plan(1, true).effort, 7);
  EXPECT_EQ(plan(5, true).effort, 0);
  EXPECT_TRUE(plan(3, true).mono);
  for (const auto& [preset, quality] : {std::pair(4, 3), std::pair(6, 2), std::pair(7, 2), std::pair(8, 0),
                                        std::pair(9, 0), std::pair(13, 4), std::pair(14, 4)}) {
    EXPECT_EQ(plan(preset, true).vbrQuality, quality) << preset;
    EXPECT_EQ(plan(preset, false).rate, Rate::Constant) << preset;
    EXPECT_EQ(plan(preset, false).kbps, 96) << preset;
  }
  EXPECT_EQ(plan(10, true).kbps, 320);
  EXPECT_EQ(plan(10, true, 22050).kbps, 160);
  EXPECT_EQ(plan(11, false).rate, Rate::Average);
  EXPECT_EQ(plan(12, true).rate, Rate::Constant);
}

TEST(Encoder, SizesFollowThePresets) {
  const TemporaryTree tree;
  const QString source = tree.Write(u"a.wav"_s, testing::WaveFile(testing::Noise(44100 * 4)));
  const auto kbps = [&](int preset, int rate, int quality, bool vbr) {
    const QFile made(Encoded(tree, source, {preset, rate, 44100, quality, vbr}));
    return static_cast<double>(made.size()) * 8 / 4000;
  };
  EXPECT_NEAR(kbps(12, 128, 0, true), 128, 5);
  EXPECT_NEAR(kbps(6, 96, 0, false), 96, 5) << "the bit rate is not to vary";
  EXPECT_NEAR(kbps(10, 32, 9, true), 320, 9);
  EXPECT_NEAR(kbps(11, 160, 0, true), 160, 20);
  EXPECT_LT(kbps(0, 256, 9, true), kbps(0, 32, 2, true)) << "the quality counts, not the rate";
  EXPECT_DOUBLE_EQ(kbps(8, 32, 9, true), kbps(8, 256, 3, true)) << "the preset has a quality of its own";
}

TEST(Encoder, AnotherRateIsConverted) {
  const TemporaryTree tree;
  for (const auto& [from, to] : {std::pair(48000, 44100), std::pair(44100, 22050), std::pair(22050, 48000)}) {
    const QString source = tree.Write(u"a.wav"_s, testing::WaveFile(Waves(3.1, from), {.rate = from}));
    FrameIndex told = 0;
    const QString made = Encoded(tree, source, {12, 96, to, 4, false}, &told);
    const auto decoder = OpenDecoder(made);
    EXPECT_EQ(decoder->Rate(), to);
    EXPECT_NEAR(static_cast<double>(told), 3.1 * to, 2);
    EXPECT_NO_THROW(ProveWhole(made, told));
    EXPECT_THROW(ProveWhole(made, told + 1), Failure);
  }
}

TEST(Encoder, RefusesAreRaisedWithTheirTextAndLeaveWhatWasThere) {
  const TemporaryTree tree;
  const auto textOf = [&tree](const QString& source, const EncodingPresets& presets) -> std::string {
    cLameEncoder encoder;
    encoder.SetPresets(presets);
    encoder.WavFile = source;
    encoder.Mp3File = tree.Write(u"a.mp3"_s, "before");
    try {
      static_cast<void>(encoder.Encode());
    } catch (const EncodeFailure& failure) {
      EXPECT_EQ(encoder.EncodeWMes(), QString::fromUtf8(failure.what()));
      EXPECT_EQ(tree.Read(u"a.mp3"_s), "before");
      EXPECT_EQ(QDir(tree.Path()).entryList({u".*"_s}, QDir::Files | QDir::Hidden), QStringList());
      return failure.what();
    }
    return {};
  };
  const QString mono = tree.Write(u"m.wav"_s, Riff(FormatChunk(1, 1, 16) + ChunkOf("data", kFourFrames)));
  EXPECT_EQ(textOf(mono, {}), "Only stereo 16 bit wave files supported.");
  EXPECT_EQ(textOf(tree.Path(u"none.wav"_s), {}), "Unable to open file.");
  EXPECT_EQ(textOf(mono, {99, 128, 44100, 4, true}), "Invalid Format Parameters");
  EXPECT_EQ(BeResultText(BeResult::InvalidFormat), u"Invalid Format"_s);
  LameConfig other;
  other.configType = 1;
  BeStream stream;
  EXPECT_EQ(beInitStream(other, stream), BeResult::InvalidFormat);
  int bytes = 0;
  EXPECT_EQ(beDeinitStream(stream.handle, {}, bytes), BeResult::InvalidHandle);
  ASSERT_EQ(beInitStream({}, stream), BeResult::Successful);
  EXPECT_EQ(stream.samples, 2304);
  EXPECT_EQ(stream.bufferSize, 8640);
  std::array<std::int16_t, 2304> sound{};
  std::array<std::uint8_t, 1> tiny{};
  BeResult result = BeResult::Successful;
  for (int chunk = 0; chunk < 9 && result == BeResult::Successful; ++chunk)
    result = beEncodeChunk(stream.handle, sound, tiny, bytes);
  EXPECT_EQ(result, BeResult::BufferTooSmall);
  cLameEncoder encoder;
  EXPECT_THROW(encoder.WriteData(sound), EncodeFailure);
}

TEST(Encoder, NoSoundGivesAFileOfNothingButTheRest) {
  const TemporaryTree tree;
  const QString source = tree.Write(u"a.wav"_s, Riff(kGoodFormat + ChunkOf("data", {})));
  FrameIndex told = 1;
  const QString made = Encoded(tree, source, {}, &told);
  EXPECT_EQ(told, 0);
  EXPECT_LT(QFile(made).size(), 4000);
  EXPECT_ANY_THROW(ProveWhole(made, 1));
}

TEST(Encoder, SoundThatIsFedComesOutAsThatOfAFile) {
  const TemporaryTree tree;
  const testing::Samples sound = Waves(2.5);
  const QString made = Encoded(tree, tree.Write(u"a.wav"_s, testing::WaveFile(sound)), {});
  const QByteArray whole = tree.Read(u"made.mp3"_s);
  std::vector<std::int16_t> values;
  for (const float sample : sound) values.push_back(static_cast<std::int16_t>(std::lround(sample * 32768)));
  cLameEncoder encoder;
  encoder.SetPresets({});
  encoder.OpenFile(tree.Path(u"fed.mp3"_s));
  // As a disc gives it, sector by sector.
  for (std::size_t at = 0; at < values.size(); at += 1176)
    encoder.WriteData(std::span(values).subspan(at, std::min<std::size_t>(1176, values.size() - at)));
  EXPECT_FALSE(tree.Exists(u"fed.mp3"_s));
  encoder.CloseLameFile();
  EXPECT_EQ(encoder.Frames(), static_cast<FrameIndex>(sound.size() / 2));
  EXPECT_EQ(Decoded(tree.Path(u"fed.mp3"_s)).size(), Decoded(made).size());
  {
    cLameEncoder late;
    late.OpenFile(tree.Write(u"fed.mp3"_s, "of somebody else"));
    late.WriteData(values);
    EXPECT_FALSE(late.CloseAsNew());
    EXPECT_EQ(tree.Read(u"fed.mp3"_s), "of somebody else");
  }
  {
    cLameEncoder given;
    given.OpenFile(tree.Path(u"up.mp3"_s));
    given.WriteData(values);
  }
  EXPECT_EQ(QDir(tree.Path()).entryList({u"*up*"_s}, QDir::Files | QDir::Hidden), QStringList());
}

TEST(Encoder, CancelAndAFullDiskLeaveTheFileThatWasThere) {
  const TemporaryTree tree;
  const QString source = tree.Write(u"a.wav"_s, testing::WaveFile(Waves(4)));
  const QByteArray before = tree.Read(u"a.wav"_s);
  cLameEncoder encoder;
  encoder.WavFile = source;
  encoder.Mp3File = tree.Write(u"a.mp3"_s, "before");
  int events = 0;
  encoder.Progress = [&events](std::int64_t total, std::int64_t done, bool& cancel) {
    EXPECT_EQ(total, 4 * 44100 * 2);
    EXPECT_LE(done, total);
    cancel = ++events == 20;
  };
  EXPECT_EQ(encoder.Encode(), cLameEncoder::End::Cancelled);
  EXPECT_EQ(events, 20);
  EXPECT_EQ(tree.Read(u"a.mp3"_s), "before");
  encoder.Progress = nullptr;

  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  rlimit full = limit;
  full.rlim_cur = 20'000;
  ::setrlimit(RLIMIT_FSIZE, &full);
  std::string told;
  try {
    static_cast<void>(encoder.Encode());
  } catch (const EncodeFailure& failure) {
    told = failure.what();
  }
  ::setrlimit(RLIMIT_FSIZE, &limit);
  EXPECT_THAT(told, ::testing::StartsWith("Failed to write buffer to file (Cannot write "));
  EXPECT_EQ(tree.Read(u"a.mp3"_s), "before");
  EXPECT_EQ(tree.Read(u"a.wav"_s), before);
  EXPECT_EQ(QDir(tree.Path()).entryList(QDir::Files | QDir::Hidden), (QStringList{u"a.mp3"_s, u"a.wav"_s}));
}

TEST(Encoder, AKillAtAnyStepLeavesTheOldFileOrTheWholeNewOne) {
  const TemporaryTree tree;
  const QString source = tree.Write(u"a.wav"_s, testing::WaveFile(Waves(0.4)));
  const QByteArray before = tree.Read(u"a.wav"_s);
  const QByteArray whole = [&] {
    Encoded(tree, source, {});
    return tree.Read(u"made.mp3"_s);
  }();
  bool killed = true;
  for (int step = 0; killed; ++step) {
    tree.Write(u"made.mp3"_s, "before");
    killed = KilledBefore(step, [&] { Encoded(tree, source, {}); });
    const QByteArray now = tree.Read(u"made.mp3"_s);
    EXPECT_TRUE(now == "before" || now == whole) << "step " << step;
    EXPECT_EQ(tree.Read(u"a.wav"_s), before);
  }
  EXPECT_EQ(tree.Read(u"made.mp3"_s), whole);
}

}  // namespace
}  // namespace kelvo
