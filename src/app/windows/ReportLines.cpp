#include "app/windows/ReportLines.h"

#include "console/Console.h"
#include "reports/windows/ReportPdf.h"
#include "reports/windows/ReportsWindow.h"
#include "reports/windows/TextViewerWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(WindowLines)
};

const QString kTextViewer = QStringLiteral("TextViewer");

/// The log of a day is in the folder of the desk, or in that of the reports, which bears the program's title.
std::function<QStringList(const QDate&)> LogFiles(Console& desk) {
  const Console::Services& have = desk.GetServices();
  return [&loop = have.loop, documents = have.documents, title = have.title](const QDate& day) {
    if (documents.isEmpty()) return QStringList();
    const QString file = SessionLog(loop, documents, title).FilePath(day);
    const QString beside = title + QStringLiteral(" - Reports/Sessions/") + QFileInfo(file).fileName();
    return QStringList{file, QDir(documents).filePath(beside)};
  };
}

WindowLine ViewerLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = kTextViewer, .guard = {.catalogue = false}, .place = kTextViewer};
  line.make = [&desk, host, place = line.place] {
    return std::make_unique<Hosted<TextViewerWindow, TextView>>(
        host, place, TextView::Services{.disks = desk.SlowDisks(), .prompter = desk.GetServices().prompter});
  };
  return line;
}

}  // namespace

std::vector<WindowLine> ReportLines(Console& desk, const WindowHost& host,
                                    const std::function<void(const QString& id, const QString& file)>& open) {
  WindowLine line{.id = WindowId::kReports,
                  .words = Text::tr("R&eports..."),
                  .key = QStringLiteral("Ctrl+Shift+K"),
                  .busyQuestion = Text::tr("A Report Is Still Being Made !\r\nStop That And Quit ?"),
                  .place = QStringLiteral("Print")};
  line.make = [&desk, host, open, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<ReportsWindow, Reports>>(
        host, place,
        Reports::Services{.loop = have.loop,
                          .disks = desk.SlowDisks(),
                          .prompter = have.prompter,
                          .catalogue = have.catalogue,
                          .program = have.title,
                          .documents = have.documents,
                          .logFiles = LogFiles(desk),
                          .print = &ReportPdf,
                          .show = [open](const QString& path) { open(kTextViewer, path); }});
  };
  return {std::move(line), ViewerLine(desk, host)};
}

}  // namespace kelvo
