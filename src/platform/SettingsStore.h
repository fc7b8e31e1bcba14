#pragma once

#include "platform/Job.h"
#include "platform/SettingsText.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

namespace kelvo {

class EventLoop;

/// The per-user settings: text values addressed by application title, section and key, in one file that a
/// person can read and edit. A missing key gives the reader's default. Titles never share values. Section and
/// key names compare without regard to case and keep the spelling of the first writer. Owned by the program's
/// entry; logic thread.
///
/// SaveSetting takes effect at once for readers of this process and is written to disk off the logic's
/// thread, the whole file each time (see ReplaceFile), in order. What cannot be read in the file (a line of
/// garbage) is kept unchanged. A file that cannot be read at all is set aside under another name, which is
/// logged, before anything is written in its place.
class SettingsStore : public QObject {
  Q_OBJECT

 public:
  /// Reads `filePath`; a missing file is an empty store, one that cannot be read is too: see WhyUnreadable.
  SettingsStore(EventLoop& loop, QString filePath);
  /// A store without a file: it begins with `text`, and what is saved is forgotten with it.
  SettingsStore(EventLoop& loop, SettingsText text);
  /// Writes what is not on disk yet; a failure goes to the log.
  ~SettingsStore() override;

  /// `settings.ini` in this program's folder of the XDG config folder.
  [[nodiscard]] static QString DefaultFilePath();

  [[nodiscard]] const QString& FilePath() const { return filePath_; }
  /// All that is set now.
  [[nodiscard]] const SettingsText& Text() const { return text_; }
  /// Why the file that is there could not be read; empty when it could, or there is none.
  [[nodiscard]] const QString& WhyUnreadable() const { return whyUnreadable_; }
  /// Throws the Failure that a write would meet at present. Writes nothing; any thread, blocks for the disk.
  static void TryToWrite(const QString& filePath);

  [[nodiscard]] QString GetSetting(const QString& title, const QString& section, const QString& key,
                                   const QString& fallback = {}) const;
  /// The stored text; none when there is none.
  [[nodiscard]] std::optional<QString> Find(const QString& title, const QString& section,
                                            const QString& key) const;
  void SaveSetting(const QString& title, const QString& section, const QString& key, const QString& value);
  void DeleteSetting(const QString& title, const QString& section, const QString& key);

  /// Writes what is not on disk yet, before it returns. For the end of the program and for tests. Throws
  /// Failure.
  void Flush();

 Q_SIGNALS:
  /// A setting was saved with another text than before, or deleted.
  void SettingChanged(const QString& title, const QString& section, const QString& key);

 private:
  /// The file as its writers see it, on whatever thread: a text that is older than the file's is not written.
  class Disk;

  void Read();
  void SetAside();
  void Changed();
  [[nodiscard]] Job<> WriteChanges();
  [[nodiscard]] QByteArray TakeChanges();

  EventLoop& loop_;
  QString filePath_;
  SettingsText text_;
  QString whyUnreadable_;
  bool dirty_ = false;
  std::uint64_t version_ = 0;
  std::shared_ptr<Disk> disk_;
  Job<> writing_;
};

}  // namespace kelvo
