#pragma once

#include "platform/Prompter.h"
#include "platform/RowStore.h"
#include "platform/Setting.h"
#include "render/RenderRun.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace kelvo {

namespace setting {

/// "WAV", "FLAC" or "MP3".
inline constexpr TextSetting RenderFormat{{kStartup, QLatin1StringView("RenderFormat")},
                                          QLatin1StringView("FLAC")};
/// Kilobits a second of a rendered MP3 file.
inline constexpr NumberSetting RenderMp3Kbps{{kStartup, QLatin1StringView("RenderMp3Kbps")},
                                             RecordingFile::kMostKbps,
                                             RecordingFile::kLeastKbps,
                                             RecordingFile::kMostKbps};
/// Where the last one went; empty: the operator's documents.
inline constexpr TextSetting RenderFolder{{kStartup, QLatin1StringView("RenderFolder")}};

}  // namespace setting

/// The kinds of files, in the order in which they are offered.
inline constexpr std::array kRenderKinds{RenderFile::Kind::Wav, RenderFile::Kind::Flac,
                                         RenderFile::Kind::Mp3};
/// "WAV" and so on.
[[nodiscard]] QString RenderKindWord(RenderFile::Kind kind);
/// The kind that a file's name asks for; none when it names another.
[[nodiscard]] std::optional<RenderFile::Kind> RenderKindOf(const QString& path);
/// One line on a render that is over.
[[nodiscard]] QString RenderWords(const RenderResult& result, const QString& path);

/// A title that was passed over.
struct SkippedTitle {
  QString title;
  QString why;
};

/// "Render To File": the play queue as it is when the operator asks, written by a RenderRun on a thread of
/// its own. Owned by the table of windows; logic thread. One at a time.
class Renderer : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    ProgramSettings settings;
    QString documents;                   ///< of the operator
    std::function<QString()> whyNot;     ///< the queue can't be rendered; empty when it can
    std::function<QString()> name;       ///< of the queue; may be empty
    std::function<RenderOrder()> order;  ///< desk and queue as they are
  };

  explicit Renderer(Services services);
  ~Renderer() override;

  /// The target; until the operator has given one it follows the queue's name.
  [[nodiscard]] const QString& Path() const { return path_; }
  void SetPath(const QString& path);
  /// Asks for the folder of the target.
  void ChooseFolder();
  [[nodiscard]] RenderFile::Kind Kind() const;
  /// The target's name ends accordingly.
  void SetKind(RenderFile::Kind kind);
  /// The queue may be another: proposes a target, if the operator has given none.
  void Propose();

  [[nodiscard]] QString WhyNoStart() const;
  /// Why the target can't be, in words; empty when it can.
  [[nodiscard]] QString WrongWithPath() const;
  void Start();
  void Stop();
  [[nodiscard]] bool Busy() const { return run_ != nullptr; }

  /// What it does, or what came of it, or why there is nothing to do.
  [[nodiscard]] QString Words() const;
  [[nodiscard]] std::optional<double> Share() const;
  [[nodiscard]] const RowStore<SkippedTitle>& Skipped() const { return skipped_; }

 Q_SIGNALS:
  void Changed();

 private:
  [[nodiscard]] Job<> RunStart();
  [[nodiscard]] Job<bool> MayWrite(QString path, bool* replace);
  [[nodiscard]] Job<> RunChoose();
  void Take(const RenderResult& result, const QString& path);

  Services services_;
  QString path_;
  bool given_ = false;
  RowStore<SkippedTitle> skipped_;
  QString words_;
  std::shared_ptr<RenderRun> run_;
  Timer tick_;
  Job<> start_;
  Job<> choose_;
};

}  // namespace kelvo
