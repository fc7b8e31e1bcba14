#pragma once

#include "audio/AudioSystem.h"
#include "platform/EventLoop.h"
#include "platform/FileCopy.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QObject>
#include <QStringList>

#include <memory>

namespace kelvo {

/// The short sounds that the quiz plays itself.
enum class QuizSound {
  Mixer,  ///< behind each snippet
  Intro,  ///< at the beginning
};

/// The mixers and introductions of the quiz: the files of two folders beside the program's own. Owned by the
/// PopQuiz; logic thread, disks off it.
class QuizSounds : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    AudioSystem& audio;
    QString programFolder;
  };

  explicit QuizSounds(Services services) : services_(std::move(services)) {}

  /// "None" and the names of the files, in the order of the folder.
  [[nodiscard]] const QStringList& Names(QuizSound sound) const {
    return sound == QuizSound::Mixer ? mixers_ : intros_;
  }
  [[nodiscard]] QString Folder(QuizSound sound) const;
  /// Where the file of that name is, or would be; empty for "None".
  [[nodiscard]] QString PathOf(QuizSound sound, const QString& name) const;
  /// All files of both folders.
  [[nodiscard]] QStringList Files() const;

  /// Looks at the folders.
  [[nodiscard]] Job<> List();
  /// Whether the file of that name is there.
  [[nodiscard]] Job<bool> IsThere(QuizSound sound, QString name);
  /// Asks for a file and copies it into the folder. Gives its name; empty when nothing was added.
  [[nodiscard]] Job<QString> Add(QuizSound sound);

 Q_SIGNALS:
  void Listed();

 private:
  [[nodiscard]] Job<bool> MayBeLong(QString path);

  Services services_;
  QStringList mixers_{QStringLiteral("None")};
  QStringList intros_{QStringLiteral("None")};
};

}  // namespace kelvo
