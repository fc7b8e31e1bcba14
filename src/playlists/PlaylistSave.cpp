#include "playlists/PlaylistSave.h"

#include "database/TrackInfo.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"
#include "playlists/PlaylistShelf.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

const QString kLineEnd = QStringLiteral("\r\n");

/// A field of a fade's data as a whole number.
int FieldOf(const QStringList& fields, qsizetype place) {
  return WholeNumber(fields.value(place), -1, kMostFadePosition);
}

/// A fade of the session, by the path of its track's info file.
struct SessionFade {
  QString infoPath;
  QString data;
};

}  // namespace

void StoreSessionFade(const QString& infoPath, const QString& data) {
  if (data.isEmpty()) return;
  std::optional<TrackInfo> info = ReadTrackInfo(infoPath);
  if (!info) return;
  const QStringList fields = data.split(QLatin1Char(','));
  const int type = std::max(FieldOf(fields, 0), 1);
  const int speed = FieldOf(fields, 1);
  const int delta = std::max(FieldOf(fields, 2), 3);
  const auto first = [&info](InfoLine::Line line) {
    return info->Text(line).section(QLatin1Char(','), 0, 0);
  };
  const QStringList mode = info->Text(InfoLine::PlayMode).split(QLatin1Char(','));
  info->SetText(InfoLine::PlayMode,
                QStringLiteral("1,%1,%2").arg(mode.size() > 1 ? mode[1] : QStringLiteral("1")).arg(type));
  info->SetText(
      InfoLine::FadeSpeed,
      QStringLiteral("%1,%2").arg(first(InfoLine::FadeSpeed)).arg(speed > 0 ? std::max(speed, 5) : speed));
  info->SetText(InfoLine::FadePosition,
                QStringLiteral("%1,%2").arg(first(InfoLine::FadePosition)).arg(delta));
  WriteTrackInfo(infoPath, *info);
}

bool PlaylistSave::Fits(const QString& name) {
  Prompt refusal;
  if (shelf_.Categories().Count() == 0) {
    refusal.text =
        QStringLiteral("Please Create A Category To Save Playlist\r\n") + name + QStringLiteral(" !");
  } else if (shelf_.Category().isEmpty()) {
    refusal.text =
        QStringLiteral("Please Select A Category To Save Playlist\r\n") + name + QStringLiteral(" !");
  }
  if (!refusal.text.isEmpty()) services_.prompter.Tell(refusal);
  return refusal.text.isEmpty();
}

Job<std::optional<bool>> PlaylistSave::AskForGroup() {
  if (mode_ == PlaylistMode::SaveGroupSession) co_return true;
  const PlaylistQueue& queue = *services_.queue;
  if (mode_ != PlaylistMode::SaveQueue || queue.Count() == 0 || !queue.HoldsGroup()) co_return false;
  Prompt question;
  question.text = QStringLiteral("The Playlist Contains Group Information\r\nSave As A Group Playlist ?");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  co_return answer == Answer::Yes;
}

Job<std::optional<PlaylistSave::IfThere>> PlaylistSave::AskIfThere(QString folder, QString name) {
  const auto look = [folder] { return QFileInfo(folder).isDir(); };
  const std::optional<bool> there = co_await services_.disks.Look(folder, look);
  if (!there) services_.prompter.Tell({PlaylistShelf::tr("Disk Does Not Answer : %1").arg(folder), {}});
  if (!there) co_return std::nullopt;
  if (!*there) co_return IfThere::New;
  const QString exists = QStringLiteral("The Playlist Name ") + name +
                         QStringLiteral(" Already Exists In Category ") + shelf_.Category() + kLineEnd;
  Prompt prompt;
  if (!services_.dmanAccess) {
    prompt.text = exists + QStringLiteral("Please Choose Another Name !");
    services_.prompter.Tell(prompt);
    co_return std::nullopt;
  }
  prompt.text = exists + QStringLiteral(
                             "Click Yes To Replace The Existing Tracks\r\n"
                             "Click No To Append Tracks To The PlayList \r\n"
                             "Click CANCEL to Cancel Save");
  prompt.title = QStringLiteral("Playlist Exists");
  prompt.buttons = Buttons::YesNoCancel;
  prompt.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(prompt);
  if (answer == Answer::Yes) co_return IfThere::Replace;
  if (answer == Answer::No) co_return IfThere::Append;
  co_return std::nullopt;
}

Job<int> PlaylistSave::CountFiles(QString folder) {
  const auto look = [folder] { return QFileInfo(folder).isDir() ? ReadPlaylist(folder).files : 0; };
  const std::optional<int> files = co_await services_.disks.Look(folder, look);
  co_return files.value_or(0);
}

std::vector<NewEntry> PlaylistSave::Entries(bool group) const {
  const QString arguments = group ? QString() : QStringLiteral("Std");
  std::vector<NewEntry> entries;
  if (mode_ == PlaylistMode::SaveQueue) {
    for (const PlaylistQueue::Row& row : services_.queue->Rows()) {
      // Without a target, on purpose: the entry's name is what leads to the track.
      NewEntry entry{row.title, {{}, arguments}, {}};
      if (group) entry.line = row.lines.value(0);
      entries.push_back(entry);
      // A track that is played more than once has a row only once, and a line each time.
      for (qsizetype more = 1; group && more < row.lines.size(); ++more) {
        entry.line = row.lines[more];
        entries.push_back(entry);
      }
    }
    return entries;
  }
  for (const SaveRow& row : Rows ? Rows() : std::vector<SaveRow>()) {
    entries.push_back({row.name, {row.path, arguments}, group ? std::optional(row.data) : std::nullopt});
  }
  return entries;
}

void PlaylistSave::TellTooMany(bool isNew, int existing, int added) {
  const QString excess = QString::number(existing + added - kMostFiles);
  Prompt refusal;
  refusal.text = isNew ? QStringLiteral("Playlists Cannot Contain More Than 50 Tracks, Please Reduce By ") +
                             excess + QStringLiteral(" ! ")
                       : QStringLiteral("Playlists Cannot Contain More than 50 Tracks !\r\n") +
                             QStringLiteral("Tracks Already In The Playlist= ") + QString::number(existing) +
                             QStringLiteral("\r\n Requested Additions= ") + QString::number(added) +
                             QStringLiteral("\r\n\r\nPlease Reduce By ") + excess;
  services_.prompter.Tell(refusal);
}

Job<bool> PlaylistSave::Write(PlaylistOrder order, QString name) {
  std::vector<SessionFade> fades;
  if (mode_ == PlaylistMode::SaveSession) {
    QStringList treated;
    for (const SaveRow& row : Rows()) {
      if (treated.contains(row.path)) continue;
      treated.append(row.path);
      const QString base = BaseName(QFileInfo(row.path).fileName());
      fades.push_back({TrackInfoPath(services_.paths, base), row.data});
    }
  }
  const auto done = std::make_shared<std::atomic<int>>(0);
  const double count = static_cast<double>(std::max<std::size_t>(order.entries.size(), 1));
  const auto tell = [this, done, count, name] {
    const double share = done->load(std::memory_order_relaxed) / count;
    if (OnProgress) {
      OnProgress(QStringLiteral("Saving Play List ") + name + QStringLiteral(" (") + Format0(share * 100) +
                     QStringLiteral("%)"),
                 share);
    }
  };
  tell();
  const Timer beat = services_.loop.Every(50ms, tell);
  const auto work = [order = std::move(order), fades, trash = services_.trash, done] {
    SavePlaylist(order, trash, *done);
    for (const SessionFade& fade : fades) StoreSessionFade(fade.infoPath, fade.data);
  };
  try {
    co_await services_.loop.Offload(EventLoop::Lane::Files, work);
  } catch (...) {
    basHandleError(QStringLiteral(" PlaySave save"), QStringLiteral("The playlist could not be saved."));
    co_return false;
  }
  co_return true;
}

Job<> PlaylistSave::Run(QString typed) {
  QString name = ProperCase(typed.trimmed());
  if (name.isEmpty() || name.toUpper() == QLatin1StringView("(NO NAME)")) {
    services_.prompter.Tell({QStringLiteral("Please Enter a Play List Name !"), {}});
    OnName({});
    co_return;
  }
  OnName(name);
  if (!CheckStoreName(services_.prompter, name) || !Fits(name)) co_return;
  const std::optional<bool> group = co_await AskForGroup();
  if (!group) co_return;
  if (*group && !name.endsWith(kGroupSuffix)) name += kGroupSuffix;
  // A playlist that is there under another case is this one.
  if (const QString there = PlaylistShelf::NameAmong(shelf_.Playlists(), name); !there.isEmpty())
    name = there;
  OnName(name);
  const QString category = shelf_.Category();
  const QString folder = shelf_.PlaylistFolderOf(name);
  const std::optional<IfThere> how = co_await AskIfThere(folder, name);
  if (!how) co_return;
  const bool isNew = *how == IfThere::New;
  const int existing = co_await CountFiles(folder);
  PlaylistOrder order{folder, Entries(*group), *how == IfThere::Replace};
  const int added = static_cast<int>(order.entries.size());
  if (existing + added > kMostFiles) {
    const auto make = [folder] { QDir().mkpath(folder); };
    if (isNew) co_await services_.loop.Offload(EventLoop::Lane::Files, make);
    TellTooMany(isNew, existing, added);
  } else {
    const bool saved = co_await Write(std::move(order), name);
    if (mode_ == PlaylistMode::SaveQueue) services_.queue->SetName(category);
    if (!saved) {
      services_.prompter.Tell(
          {QStringLiteral("Errors Ocurred While Creating/Updating Playlist ") + name, {}});
    }
  }
  shelf_.List(category, name);
}

}  // namespace kelvo
