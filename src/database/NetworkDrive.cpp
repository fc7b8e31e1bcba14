#include "database/NetworkDrive.h"

#include "platform/ChildProcess.h"
#include "platform/ErrorLog.h"
#include "platform/EventLoop.h"
#include "platform/Prompter.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

namespace kelvo {
namespace {

ChildCommand Gio(const QString& program, const QStringList& arguments) {
  ChildCommand command;
  command.program = program;
  command.arguments = arguments;
  command.environment = QStringList{QStringLiteral("LC_ALL=C.UTF-8")};
  return command;
}

/// Where the desktop shows an address that it has mounted: a line "local path: /run/user/...".
QString LocalPath(const QByteArray& output) {
  const QString head = QStringLiteral("local path: ");
  for (const QString& line : QString::fromUtf8(output).split(QLatin1Char('\n'))) {
    if (line.startsWith(head)) return line.mid(head.size()).trimmed();
  }
  return {};
}

/// Mounts the address; the folder, or empty. What went wrong goes to the log.
Job<QString> Mount(EventLoop& loop, QString program, QString address, QString password) {
  QStringList arguments{QStringLiteral("mount")};
  if (password.isEmpty()) arguments.append(QStringLiteral("-a"));
  ChildCommand mount = Gio(program, arguments << address);
  if (!password.isEmpty()) {
    // It asks for those of user and domain that the address doesn't tell, then for the password. A user of
    // its own is before an "@" in the address.
    const bool namesUser = !QUrl(address).userName().isEmpty();
    const QByteArray user = namesUser ? QByteArray() : qgetenv("USER") + '\n';
    const QByteArray domain =
        address.startsWith(QLatin1StringView("smb:")) ? QByteArrayLiteral("WORKGROUP\n") : QByteArray();
    mount.input = user + domain + password.toUtf8() + '\n';
  }
  const ChildResult mounted = co_await RunChild(loop, mount);
  // An address that was mounted before is refused, and is there all the same.
  const ChildCommand info =
      Gio(program, {QStringLiteral("info"), QStringLiteral("-a"), QStringLiteral("standard::name"), address});
  const ChildResult told = co_await RunChild(loop, info);
  const QString path = LocalPath(told.output);
  if (path.isEmpty()) {
    NoteInLog(QStringLiteral("Cannot mount %1: %2%3")
                  .arg(address, mounted.error, QString::fromUtf8(mounted.errorOutput).simplified()));
  }
  co_return path;
}

}  // namespace

QString NetworkAddress(const QString& typed) {
  QString path = typed.trimmed();
  if (path.contains(QLatin1StringView("://"))) return path;
  path.replace(QLatin1Char('\\'), QLatin1Char('/'));
  const QString names = path.mid(2);
  if (!path.startsWith(QLatin1StringView("//")) || names.isEmpty() || names.startsWith(QLatin1Char('/')))
    return {};
  return QStringLiteral("smb://") + QString::fromLatin1(QUrl::toPercentEncoding(names, "/@:"));
}

Job<std::optional<QString>> MapNetworkDrive(EventLoop& loop, Prompter& prompter, QString title) {
  const QString words = QStringLiteral("Please Enter The Network Path") + QStringLiteral("\r\n") +
                        QStringLiteral("Eg: \\\\Remote Computer Name\\Remote Path");
  const QString typed = (co_await prompter.AskText(title, words, QString())).trimmed();
  if (typed.isEmpty()) co_return std::nullopt;
  const auto look = [typed] { return QFileInfo(typed).isDir() && QFileInfo(typed).isAbsolute(); };
  const bool local = co_await loop.Offload(EventLoop::Lane::Apart, look);
  if (local) co_return typed;

  Prompt trouble;
  trouble.icon = PromptIcon::Exclamation;
  const QString program = QStandardPaths::findExecutable(QStringLiteral("gio"));
  if (program.isEmpty()) {
    trouble.text = QStringLiteral("Please Select Map Network Drive From Windows Explorer");
    prompter.Tell(trouble);
    co_return std::nullopt;
  }
  const QString password =
      co_await prompter.AskSecret(title, QStringLiteral("Please Enter Network Password"));
  const QString address = NetworkAddress(typed);
  QString path;
  if (!address.isEmpty()) path = co_await Mount(loop, program, address, password);
  if (!path.isEmpty()) co_return path;
  trouble.text = title + QStringLiteral(" Was Unable to Map the Specified Network Drive.");
  prompter.Tell(trouble);
  co_return std::nullopt;
}

}  // namespace kelvo
