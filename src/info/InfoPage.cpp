#include "info/InfoPage.h"

#include "platform/Disks.h"
#include "platform/ErrorLog.h"
#include "platform/Prompter.h"

#include <QFileInfo>

namespace kelvo {

InfoPage::InfoPage(Services services) : services_(std::move(services)) {}

void InfoPage::Tell(const QString& words) {
  Prompt message;
  message.text = words;
  message.icon = PromptIcon::Exclamation;
  services_.prompter.Tell(message);
}

void InfoPage::Clear() {
  place_ = {};
  found_ = missing_ = editable_ = dirty_ = false;
  text_.clear();
  saved_.clear();
  picture_.clear();
  ++pictureTurn_;
  Q_EMIT TextReplaced();
  Q_EMIT Changed();
}

void InfoPage::Lose() {
  found_ = false;
  missing_ = true;
  saved_.clear();
  picture_.clear();
  ++pictureTurn_;
  if (!dirty_ && !text_.isEmpty()) {
    text_.clear();
    Q_EMIT TextReplaced();
  }
  Q_EMIT Changed();
}

Job<bool> InfoPage::Load(InfoPlace place) {
  Clear();
  place_ = place;
  bool read = false;
  try {
    const auto look = [place] { return ReadInfo(place); };
    const std::optional<InfoContent> content = co_await services_.disks.Look(place.folder, look);
    if (content) {
      found_ = editable_ = content->found;
      missing_ = !found_;
      text_ = saved_ = content->text;
      picture_ = content->picture;
      read = true;
    } else {
      Tell(tr("Disk Does Not Answer : %1").arg(place.folder));
    }
  } catch (...) {
    basHandleError(QStringLiteral(" infopage"), tr("The text cannot be read."));
  }
  ++pictureTurn_;
  Q_EMIT TextReplaced();
  Q_EMIT Changed();
  co_return read;
}

void InfoPage::SetText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  dirty_ = text_ != saved_;
  Q_EMIT Changed();
}

void InfoPage::Revert() {
  dirty_ = false;
  if (text_ == saved_) return;
  text_ = saved_;
  Q_EMIT TextReplaced();
  Q_EMIT Changed();
}

void InfoPage::RefuseLength() {
  Tell(tr("A Text Can Be No Longer Than %1 Letters !").arg(kMostLetters));
}

Job<bool> InfoPage::Write(std::function<void()> work) {
  const QString folder = place_.folder;
  const auto look = [folder] { return QFileInfo::exists(folder); };
  const std::optional<bool> there = co_await services_.disks.Look(folder, look);
  if (!there) Tell(tr("Disk Does Not Answer : %1").arg(folder));
  if (!there) co_return false;
  co_await services_.loop.Offload(EventLoop::Lane::Files, work);
  co_return true;
}

Job<bool> InfoPage::Save() {
  if (text_.size() > kMostLetters) {
    RefuseLength();
    co_return false;
  }
  const QString text = text_;
  bool saved = false;
  try {
    const auto write = [place = place_, text] { SaveInfo(place, text); };
    saved = co_await Write(write);
  } catch (...) {
    basHandleError(QStringLiteral(" infopage"), tr("The text cannot be saved."));
  }
  if (saved) {
    saved_ = text;
    found_ = editable_ = true;
    missing_ = false;
    dirty_ = text_ != saved_;
    Q_EMIT Changed();
  }
  co_return saved;
}

Job<bool> InfoPage::Replace(QString text) {
  text_ = std::move(text);
  dirty_ = true;
  Q_EMIT TextReplaced();
  const bool saved = co_await Save();
  co_return saved;
}

Job<> InfoPage::PickPicture() {
  const std::optional<QString> path = co_await services_.prompter.PickFile(
      QStringLiteral("Add / Replace A Graphic"), services_.pictures,
      QStringLiteral("Pictures (*.bmp *.jpg *.jpeg *.gif *.png *.webp)"));
  if (path && !path->isEmpty()) co_await RunTake(*path);
}

Job<> InfoPage::TakeDropped(QStringList files) {
  if (files.size() == 1) {
    co_await RunTake(files.first());
  } else {
    Tell(tr("Please Drop One File !"));
  }
}

Job<> InfoPage::RunTake(QString path) {
  try {
    struct Facts {
      QString ending;
      qint64 bytes;
    };
    const auto look = [path] { return Facts{PictureEnding(path), QFileInfo(path).size()}; };
    const std::optional<Facts> facts = co_await services_.disks.Look(path, look);
    if (!facts) {
      Tell(tr("Disk Does Not Answer : %1").arg(path));
    } else if (facts->ending.isEmpty()) {
      Tell(QStringLiteral("Only Graphics Can Be Dropped ! "));
    } else if (facts->bytes > kMostPictureBytes) {
      Tell(tr("A Picture Can Be No Larger Than %1 Megabytes !").arg(kMostPictureBytes >> 20));
    } else {
      const auto take = [place = place_, path] { TakePicture(place, path); };
      // The picture may come from a disk that hangs: it holds up nobody but this.
      co_await services_.loop.Offload(EventLoop::Lane::Apart, take);
      co_await ReadPicture();
    }
  } catch (...) {
    basHandleError(QStringLiteral(" infopicture"), tr("The picture cannot be taken."));
  }
}

Job<> InfoPage::RemovePicture() {
  try {
    const auto drop = [place = place_, trash = services_.trash] { DropPictures(place, trash); };
    const bool done = co_await Write(drop);
    if (done) co_await ReadPicture();
  } catch (...) {
    basHandleError(QStringLiteral(" infopicture"), tr("The picture cannot be removed."));
  }
}

Job<> InfoPage::ReadPicture() {
  const InfoPlace place = place_;
  const auto look = [place] { return PictureOf(place); };
  const std::optional<QString> found = co_await services_.disks.Look(place.folder, look);
  if (!(place == place_)) co_return;
  picture_ = found.value_or(QString());
  ++pictureTurn_;
  Q_EMIT Changed();
}

}  // namespace kelvo
