#include "platform/SettingsStore.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/EventLoop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>
#include <filesystem>
#include <mutex>

namespace kelvo {

namespace {

bool LeadsNowhere(const QString& path) {
  const QFileInfo info(path);
  return info.isSymLink() && !info.exists();
}

}  // namespace

class SettingsStore::Disk {
 public:
  explicit Disk(QString filePath) : filePath_(std::move(filePath)) {}

  void Write(const QByteArray& bytes, std::uint64_t version) {
    const std::lock_guard lock(mutex_);
    if (version <= written_) return;
    // A failure here shows as the failure to write the file.
    QDir().mkpath(QFileInfo(filePath_).path());
    ReplaceFile(filePath_, bytes);
    written_ = version;
  }

 private:
  QString filePath_;
  std::mutex mutex_;
  std::uint64_t written_ = 0;
};

SettingsStore::SettingsStore(EventLoop& loop, QString filePath)
    : loop_(loop), filePath_(std::move(filePath)), disk_(std::make_shared<Disk>(filePath_)) {
  Read();
}

SettingsStore::SettingsStore(EventLoop& loop, SettingsText text) : loop_(loop), text_(std::move(text)) {}

SettingsStore::~SettingsStore() {
  Guarded(QStringLiteral(" settings"), [this] { Flush(); });
}

QString SettingsStore::DefaultFilePath() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         QStringLiteral("/kelvo/settings.ini");
}

void SettingsStore::Read() {
  try {
    text_ = SettingsText::FromBytes(ReadWholeFile(filePath_));
    if (text_.IsGarbage()) whyUnreadable_ = QStringLiteral("What Is In It Are No Settings");
  } catch (const Failure& failure) {
    const bool missing = failure.Number() == ENOENT || failure.Number() == ENOTDIR;
    // A link into a disk that is not there: the settings are, elsewhere.
    const bool elsewhere = LeadsNowhere(filePath_) || LeadsNowhere(QFileInfo(filePath_).path());
    if (!missing || elsewhere) whyUnreadable_ = QString::fromUtf8(failure.what());
  }
  if (whyUnreadable_.isEmpty()) return;
  text_ = {};
  NoteInLog(QStringLiteral("The settings file cannot be read and counts as empty : ") + filePath_);
}

/// Keeps the file that could not be read for whoever can mend it. Throws Failure.
void SettingsStore::SetAside() {
  if (whyUnreadable_.isEmpty()) return;
  const QString stem = filePath_ + loop_.Now().toString(QStringLiteral("'.unreadable-'yyyyMMdd-hhmmss"));
  QString name = stem;
  for (int number = 2; QFileInfo::exists(name); ++number)
    name = stem + QLatin1Char('-') + QString::number(number);
  std::error_code error;
  std::filesystem::rename(QFile::encodeName(filePath_).toStdString(), QFile::encodeName(name).toStdString(),
                          error);
  if (error && error != std::errc::no_such_file_or_directory) {
    throw Failure(
        QStringLiteral("Cannot set aside %1 : %2").arg(filePath_, QString::fromStdString(error.message())),
        error.value(), filePath_);
  }
  whyUnreadable_.clear();
  NoteInLog(QStringLiteral("The settings file could not be read and was kept as ") + name);
}

void SettingsStore::TryToWrite(const QString& filePath) {
  QDir().mkpath(QFileInfo(filePath).path());
  TryToReplaceFile(filePath);
}

QString SettingsStore::GetSetting(const QString& title, const QString& section, const QString& key,
                                  const QString& fallback) const {
  return text_.Value(title, section, key).value_or(fallback);
}

std::optional<QString> SettingsStore::Find(const QString& title, const QString& section,
                                           const QString& key) const {
  return text_.Value(title, section, key);
}

void SettingsStore::SaveSetting(const QString& title, const QString& section, const QString& key,
                                const QString& value) {
  if (!text_.SetValue(title, section, key, value)) return;
  Changed();
  Q_EMIT SettingChanged(title, section, key);
}

void SettingsStore::DeleteSetting(const QString& title, const QString& section, const QString& key) {
  if (!text_.Remove(title, section, key)) return;
  Changed();
  Q_EMIT SettingChanged(title, section, key);
}

void SettingsStore::Changed() {
  if (!disk_) return;
  dirty_ = true;
  if (!writing_.Running()) writing_ = WriteChanges();
}

QByteArray SettingsStore::TakeChanges() {
  SetAside();
  dirty_ = false;
  ++version_;
  return text_.ToBytes();
}

/// One write for all changes of a turn, and another for those that come while it is under way.
Job<> SettingsStore::WriteChanges() {
  co_await loop_.Yield();
  try {
    while (dirty_) {
      const QByteArray bytes = TakeChanges();
      const std::uint64_t version = version_;
      const auto work = [disk = disk_, bytes, version] { disk->Write(bytes, version); };
      co_await loop_.Offload(EventLoop::Lane::Files, work);
    }
  } catch (...) {
    // Left for the next change, or for the end of the program.
    dirty_ = true;
    basHandleError(
        QStringLiteral(" settings"),
        QStringLiteral("The settings could not be saved. They are kept, and saved with the next change."));
  }
}

void SettingsStore::Flush() {
  // Also when a write is under way: it may have failed by the time that anybody hears of it.
  if (!dirty_ && !writing_.Running()) return;
  const QByteArray bytes = TakeChanges();
  try {
    disk_->Write(bytes, version_);
  } catch (...) {
    dirty_ = true;
    throw;
  }
}

}  // namespace kelvo
