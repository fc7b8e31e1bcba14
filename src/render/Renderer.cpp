#include "render/Renderer.h"

#include "database/SafeFileName.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kLookEvery = 200ms;
constexpr double kMegabyte = 1e6;

struct Text {
  Q_DECLARE_TR_FUNCTIONS(Renderer)
};

QString WithKind(const QString& path, RenderFile::Kind kind) {
  const QString stem = RenderKindOf(path) ? path.left(path.lastIndexOf(QLatin1Char('.'))) : path;
  return stem + QLatin1Char('.') + RenderKindWord(kind).toLower();
}

}  // namespace

QString RenderKindWord(RenderFile::Kind kind) {
  switch (kind) {
    case RenderFile::Kind::Flac:
      return QStringLiteral("FLAC");
    case RenderFile::Kind::Mp3:
      return QStringLiteral("MP3");
    case RenderFile::Kind::Wav:
      break;
  }
  return QStringLiteral("WAV");
}

std::optional<RenderFile::Kind> RenderKindOf(const QString& path) {
  const QString suffix = QFileInfo(path).suffix();
  for (const RenderFile::Kind kind : kRenderKinds) {
    if (suffix.compare(RenderKindWord(kind), Qt::CaseInsensitive) == 0) return kind;
  }
  return std::nullopt;
}

QString RenderWords(const RenderResult& result, const QString& path) {
  switch (result.end) {
    case RenderResult::End::Stopped:
      return Text::tr("Stopped, Nothing Was Left Of It");
    case RenderResult::End::Failed:
      return Text::tr("Not Rendered : %1").arg(result.error);
    case RenderResult::End::Done:
      break;
  }
  QString words = Text::tr("%1, %2 Titles, %3 MB : %4")
                      .arg(HoursMinutesSeconds(static_cast<qint64>(result.seconds)))
                      .arg(result.titles)
                      .arg(static_cast<double>(result.bytes) / kMegabyte, 0, 'f', 1)
                      .arg(path);
  if (result.endless) words.prepend(Text::tr("It Would Go On For Ever And Was Ended : "));
  return words;
}

Renderer::Renderer(Services services) : services_(std::move(services)) {
  Propose();
}

Renderer::~Renderer() {
  if (run_) run_->Stop();
}

RenderFile::Kind Renderer::Kind() const {
  const QString word = services_.settings.Get(setting::RenderFormat);
  return RenderKindOf(QLatin1Char('.') + word).value_or(RenderFile::Kind::Flac);
}

void Renderer::SetKind(RenderFile::Kind kind) {
  services_.settings.Set(setting::RenderFormat, RenderKindWord(kind));
  path_ = WithKind(path_, kind);
  Q_EMIT Changed();
}

void Renderer::Propose() {
  if (given_ || Busy()) {
    Q_EMIT Changed();
    return;
  }
  const QString folder = services_.settings.Get(setting::RenderFolder);
  QString name = SafeFileName(services_.name());
  if (name.isEmpty())
    name = QStringLiteral("Mix ") + services_.loop.Now().toString(QStringLiteral("yyyy-MM-dd"));
  path_ = WithKind((folder.isEmpty() ? services_.documents : folder) + QLatin1Char('/') + name, Kind());
  Q_EMIT Changed();
}

void Renderer::SetPath(const QString& path) {
  if (path_ == path) return;
  path_ = path;
  given_ = !path.isEmpty();
  if (const auto kind = RenderKindOf(path)) {
    services_.settings.Set(setting::RenderFormat, RenderKindWord(*kind));
  }
  Q_EMIT Changed();
}

void Renderer::ChooseFolder() {
  if (!choose_.Running()) choose_ = RunChoose();
}

Job<> Renderer::RunChoose() {
  const QFileInfo target(path_);
  const std::optional<QString> folder =
      co_await services_.prompter.PickFolder(tr("Folder Of The File"), target.path());
  if (folder) SetPath(*folder + QLatin1Char('/') + target.fileName());
}

QString Renderer::WhyNoStart() const {
  if (Busy() || start_.Running()) return tr("A render is under way");
  const QString wrong = WrongWithPath();
  return wrong.isEmpty() ? services_.whyNot() : wrong;
}

QString Renderer::WrongWithPath() const {
  if (!QDir::isAbsolutePath(path_)) return tr("It needs a folder");
  if (!RenderKindOf(path_)) return tr("Its name ends with .wav, .flac or .mp3");
  return {};
}

void Renderer::Start() {
  if (WhyNoStart().isEmpty()) start_ = RunStart();
}

Job<bool> Renderer::MayWrite(QString path, bool* replace) {
  const auto look = [path] { return QFileInfo::exists(path); };
  *replace = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  if (!*replace) co_return true;
  Prompt question;
  question.text = tr("%1 Already Exists.\r\nReplace It ?").arg(path);
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  question.safe = Answer::No;
  const Answer answer = co_await services_.prompter.Ask(question);
  co_return answer == Answer::Yes;
}

Job<> Renderer::RunStart() {
  const QString path = path_;
  bool replace = false;
  const bool may = co_await MayWrite(path, &replace);
  if (!may) co_return;
  RenderOrder order = services_.order();
  order.path = path;
  order.kind = *RenderKindOf(path);
  order.mp3Kbps = services_.settings.Get(setting::RenderMp3Kbps);
  order.replace = replace;
  services_.settings.Set(setting::RenderFolder, QFileInfo(path).path());
  skipped_.Replace({});
  run_ = std::make_shared<RenderRun>(std::move(order));
  tick_ = services_.loop.Every(kLookEvery, [this] { Q_EMIT Changed(); });
  Q_EMIT Changed();
  const auto work = [run = run_] { run->Run(); };
  co_await services_.loop.Offload(EventLoop::Lane::Apart, work);
  tick_.Stop();
  Take(std::exchange(run_, nullptr)->Result(), path);
}

void Renderer::Take(const RenderResult& result, const QString& path) {
  words_ = RenderWords(result, path);
  std::vector<SkippedTitle> rows;
  const QString between = QStringLiteral(" : ");
  for (const QString& each : result.skipped) {
    const qsizetype at = each.indexOf(between);
    rows.push_back(at < 0 ? SkippedTitle{each, {}}
                          : SkippedTitle{each.left(at), each.mid(at + between.size())});
  }
  skipped_.Replace(std::move(rows));
  NoteInLog(tr("Render To File : ") + words_);
  // The strip has no room for all of it.
  if (result.end == RenderResult::End::Failed) services_.prompter.Tell({words_, {}});
  Q_EMIT Changed();
}

void Renderer::Stop() {
  if (run_) run_->Stop();
  Q_EMIT Changed();
}

QString Renderer::Words() const {
  if (!run_) return words_.isEmpty() ? services_.whyNot() : words_;
  return tr("%1 Rendered, Now %2")
      .arg(HoursMinutesSeconds(static_cast<qint64>(run_->Seconds())), run_->Title());
}

std::optional<double> Renderer::Share() const {
  return run_ ? std::optional(run_->Share()) : std::nullopt;
}

}  // namespace kelvo
