#include "datamanager/GainTool.h"

#include "platform/ChildProcess.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <utility>

namespace kelvo {
namespace {

const QString kName = QStringLiteral("mp3gain");

/// A name with a tab or a line end in it would shift the fields of the answer.
QByteArray WithPlainName(QByteArray output, const QString& path) {
  const QByteArray name = path.toUtf8();
  const bool shifts =
      std::any_of(name.begin(), name.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; });
  return shifts ? output.replace(name, "file") : output;
}

}  // namespace

void GainStop::Stop() {
  stopped_ = true;
  if (const auto end = std::exchange(end_, nullptr)) end();
}

void GainStop::Arm(std::function<void()> end) {
  end_ = std::move(end);
  if (stopped_) Stop();
}

QString GainTool::Find(const QString& programFolder) {
  const QString own = programFolder + QLatin1Char('/') + kName;
  const QFileInfo file(own);
  return file.isFile() && file.isExecutable() ? own : kName;
}

Job<GainTool::Call> GainTool::Run(QStringList arguments, GainStop& stop,
                                  std::function<void(const QByteArray&)> onError) const {
  Call none;
  none.end = End::Stopped;
  if (stop.Stopped()) co_return none;
  struct State {
    Call call;
    OneShot<End> end;
    qsizetype written = 0;
    Timer hung;
  };
  // Held by the callbacks of a child that may outlast this call by a moment.
  const auto state = std::make_shared<State>();
  const auto watch = [state, loop = loop_, limits = limits_] {
    state->hung = loop->After(limits.silence, [state] { state->end.Set(End::Hung); });
  };
  const auto count = [state, loop = loop_, watch, most = limits_.bytes](const QByteArray& piece) {
    state->written += piece.size();
    watch();
    // Not from inside the child's own call.
    if (state->written > most) loop->Post([state] { state->end.Set(End::Flooded); });
  };
  const auto onOutput = [count](const QByteArray& piece) { count(piece); };
  const auto onErrorOutput = [count, onError = std::move(onError)](const QByteArray& piece) {
    count(piece);
    if (onError) onError(piece);
  };
  ChildCommand command;
  command.program = program_;
  command.arguments = std::move(arguments);
  command.environment = QStringList{QStringLiteral("LC_ALL=C")};
  command.gentle = true;
  const auto keep = [](EventLoop& loop, ChildCommand child, std::shared_ptr<State> kept,
                       std::function<void(const QByteArray&)> output,
                       std::function<void(const QByteArray&)> error) -> Job<> {
    ChildResult result = co_await RunChild(loop, std::move(child), std::move(output), std::move(error));
    kept->call.output = std::move(result.output);
    kept->call.errorOutput = std::move(result.errorOutput);
    kept->call.failed = result.crashed;
    kept->end.Set(result.started ? End::Done : End::NotStarted);
  };
  watch();
  stop.Arm([state] { state->end.Set(End::Stopped); });
  const auto quiet = qScopeGuard([&stop, state] {
    stop.Disarm();
    state->hung.Stop();
  });
  // Dropped with this frame: the child is ended then.
  const Job<> child = keep(*loop_, std::move(command), state, onOutput, onErrorOutput);
  state->call.end = co_await state->end.Wait();
  co_return std::move(state->call);
}

Job<GainTool::Tags> GainTool::ReadTags(QString path, GainStop& stop) const {
  const QStringList arguments{QStringLiteral("/o"), QStringLiteral("/s"), QStringLiteral("c"), path};
  const Call call = co_await Run(arguments, stop, nullptr);
  Tags tags;
  tags.end = call.end;
  if (call.end == End::Done) tags.record = StoredTagsIn(WithPlainName(call.output, path));
  co_return tags;
}

Job<GainTool::Analysis> GainTool::Analyse(QString path, QString trackName, GainStop& stop,
                                          std::function<void(int)> onPercent) const {
  // "/s s": stored tags are neither taken, for they cut great gains, nor written.
  const QStringList arguments{QStringLiteral("/o"), QStringLiteral("/s"), QStringLiteral("s"), path};
  const auto onError = [reader = ProgressReader(),
                        told = std::move(onPercent)](const QByteArray& piece) mutable {
    const std::optional<int> percent = reader.Take(piece);
    if (percent && told) told(*percent);
  };
  const Call call = co_await Run(arguments, stop, onError);
  Analysis analysis;
  analysis.end = call.end;
  if (call.end == End::Done) analysis.answer = AnalysisIn(WithPlainName(call.output, path), trackName);
  co_return analysis;
}

Job<GainTool::Applied> GainTool::Apply(QString path, int steps, GainStop& stop) const {
  const QStringList arguments{QStringLiteral("/g"), QString::number(steps), QStringLiteral("/q"),
                              QStringLiteral("/T"), path};
  const Call call = co_await Run(arguments, stop, nullptr);
  const QByteArray all = call.output + call.errorOutput;
  Applied applied;
  applied.end = call.end;
  applied.words = ApplyWordsIn(all);
  applied.said = QString::fromUtf8(all.left(500)).simplified();
  applied.failed = call.failed;
  co_return applied;
}

}  // namespace kelvo
