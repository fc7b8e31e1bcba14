#pragma once

#include "encoding/EncodeWork.h"
#include "encoding/EncodedFiles.h"
#include "platform/Prompter.h"
#include "platform/RowStore.h"
#include "platform/Setting.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kelvo {

/// A file of the list.
struct EncodeRow {
  enum class State { Waiting, Running, Done, Failed, Cancelled };
  int id = 0;
  QString name;
  QString path;
  std::int64_t bytes = 0;
  State state = State::Waiting;
  double share = 0;  ///< how much is done while it runs, 0 to 1

  [[nodiscard]] QString StateText() const;
};

/// The work of the encoder's window: encodes the WAV files of a list to MP3, several at once, and decodes MP3
/// files with the `lame` tool. Each file stands alone: what fails is in the log, and the others go on. Owned
/// by the table of windows; logic thread. One run at a time.
class EncodeList : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    Catalogue& catalogue;
    Paths paths;
    ProgramSettings settings;
    QString title = {};  ///< the program's
    int atOnce = 0;      ///< files that are encoded at the same time; 0: one for each processor
    QString lameTool = QStringLiteral("lame");
    /// See EncodedFiles.
    std::function<void(const QString& from, const QString& to)> relink = {};
  };
  explicit EncodeList(Services services);
  ~EncodeList() override;

  [[nodiscard]] QString Title() const { return services_.title + QStringLiteral(" Mp3 Encoder"); }
  [[nodiscard]] const RowStore<EncodeRow>& Rows() const { return rows_; }
  [[nodiscard]] const RowStore<QString>& Log() const { return log_; }

  /// Puts files on the list, and the music of folders with all below them; what is there already is not added
  /// again.
  void Add(const QStringList& places);
  /// The same, in the place of what is on the list: another window opens this one for its files.
  void Take(const QStringList& files);
  void AddFile();
  void AddFolder();
  void Remove(const std::vector<int>& rows);

  /// Source files are deleted when they are encoded; off at each start of the program.
  [[nodiscard]] bool DeletesSources() const { return deletesSources_; }
  void SetDeletesSources(bool deletes);

  void Start();
  void Cancel();
  /// Decodes the MP3 files among these rows.
  void Decode(const std::vector<int>& rows);
  [[nodiscard]] bool Busy() const { return encoding_ || decoding_; }
  [[nodiscard]] bool Encoding() const { return encoding_; }
  [[nodiscard]] bool Decoding() const { return decoding_; }

  // Why a command can't be given, in words; empty when it can.
  [[nodiscard]] QString WhyNoStart() const;
  [[nodiscard]] QString WhyNoDecode(const std::vector<int>& rows) const;

  /// What it does, or what came of it.
  [[nodiscard]] const QString& Words() const { return words_; }
  [[nodiscard]] std::optional<double> Share() const;
  /// The presets that count, line by line, and what becomes of them.
  [[nodiscard]] QStringList PresetWords() const;
  [[nodiscard]] EncodingPresets Presets() const;

 Q_SIGNALS:
  void Changed();

 private:
  struct Run;
  [[nodiscard]] Job<> RunAdd(QStringList places);
  [[nodiscard]] Job<> RunPick(bool folder);
  [[nodiscard]] Job<> RunAll();
  void End();
  [[nodiscard]] Job<> RunWorker();
  [[nodiscard]] Job<> EncodeOne(int id);
  /// Makes the database true, and deletes the source. In words why the source stays; empty when it went.
  [[nodiscard]] Job<QString> Follow(std::shared_ptr<EncodeWork> work, EncodeWork::Result result);
  [[nodiscard]] Job<> RunDecode(QStringList files);
  [[nodiscard]] int IndexOf(int id) const;
  [[nodiscard]] int NextWaiting() const;
  void SetState(int id, EncodeRow::State state);
  void Note(const QString& line);
  void Say(const QString& words);
  void ShowProgress();

  Services services_;
  EncodedFiles files_;
  RowStore<EncodeRow> rows_;
  RowStore<QString> log_;
  QString words_;
  bool deletesSources_ = false;
  bool encoding_ = false;
  bool decoding_ = false;
  int lastId_ = 0;
  std::unique_ptr<Run> run_;
  Timer tick_;
  Timer giveUp_;
  JobList adding_;
  Job<> work_;
  Job<> decode_;
};

}  // namespace kelvo
