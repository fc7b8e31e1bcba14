#include "encoding/ToolDecode.h"

#include "audio/engine/OpenDecoder.h"
#include "platform/BesideFile.h"
#include "platform/ChildProcess.h"
#include "platform/ErrorLog.h"

#include <QCoreApplication>

namespace kelvo {

namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(ToolDecode)
};

constexpr qsizetype kKept = 4096;
/// Decoders differ in what they cut off at the two ends.
constexpr FrameIndex kEnds = 4608;

/// The tool says that all is well also of a file that was cut off and of a disk that is full.
void TakeIfWhole(const QString& mp3File, const QString& made, const QString& target) {
  const FrameIndex wanted = OpenDecoder(mp3File)->Frames();
  const FrameIndex got = OpenDecoder(made)->Frames();
  if (got + kEnds < wanted) throw Failure(Text::tr("The tool did not decode it to its end"), 0, mp3File);
  BesideFile::Take(made, target);
}

}  // namespace

Job<QString> DecodeWithTool(EventLoop& loop, QString tool, QString mp3File, QString wavFile) {
  const BesideFile beside(wavFile);
  ChildCommand command;
  command.program = tool;
  command.arguments =
      QStringList{QStringLiteral("--quiet"), QStringLiteral("--decode"), mp3File, beside.Path()};
  command.environment = QStringList{QStringLiteral("LC_ALL=C")};
  command.keep = kKept;
  const ChildResult result = co_await RunChild(loop, std::move(command));
  if (!result.started) co_return Text::tr("%1 can't be started: %2").arg(tool, result.error);
  if (result.crashed || result.exitCode != 0) {
    const QString told = QString::fromUtf8(result.errorOutput).trimmed();
    co_return told.isEmpty() ? Text::tr("the tool ended with %1").arg(result.exitCode) : told;
  }
  const auto take = [mp3File, made = beside.Path(), wavFile]() -> QString {
    try {
      TakeIfWhole(mp3File, made, wavFile);
      return {};
    } catch (const std::exception& failure) {
      return QString::fromUtf8(failure.what());
    }
  };
  co_return co_await loop.Offload(EventLoop::Lane::Apart, take);
}

}  // namespace kelvo
