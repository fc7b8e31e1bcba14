#include "playlists/PlaylistExport.h"

#include "database/SafeFileName.h"
#include "database/StagedName.h"
#include "platform/AtomicFile.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(PlaylistExport)
};

}  // namespace

Job<> ExportList(const PlaylistServices& services, QString name, M3uList list, int missing) {
  Prompter& prompter = services.prompter;
  if (list.entries.empty()) {
    prompter.Tell({Text::tr("There Is Nothing To Export !"), {}});
    co_return;
  }
  const std::optional<QString> folder =
      co_await prompter.PickFolder(Text::tr("Export Playlist To Folder"), QString());
  if (!folder) co_return;
  const QString path = *folder + QLatin1Char('/') + FittingName(SafeFileName(name), QStringLiteral(".m3u8"));
  const auto look = [path] { return QFileInfo::exists(path); };
  const std::optional<bool> there = co_await services.disks.Look(path, look);
  if (!there) prompter.Tell({Text::tr("Disk Does Not Answer : %1").arg(path), {}});
  if (!there) co_return;
  if (*there) {
    Prompt question;
    question.text = Text::tr("%1 Already Exists.\r\nReplace It ?").arg(path);
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Question;
    const Answer answer = co_await prompter.Ask(question);
    if (answer != Answer::Yes) co_return;
  }
  const auto write = [path, bytes = list.ToBytes(*folder)] { ReplaceFile(path, bytes); };
  // The drive may hang, and must not hold up what the program keeps.
  co_await services.loop.Offload(EventLoop::Lane::Apart, write);
  QString sum = Text::tr("%1 Tracks Written To\r\n%2").arg(list.entries.size()).arg(path);
  if (missing > 0) sum += Text::tr("\r\n%1 Missing Tracks Left Out").arg(missing);
  prompter.Tell({sum, {}});
}

}  // namespace kelvo
