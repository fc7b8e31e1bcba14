#include "app/windows/Program.h"
#include "ui/Theme.h"

#include <QApplication>

#include <cstdio>
#include <cstring>

namespace {

/// The two words that package tools ask every program for. True when one was asked and answered.
bool AnswerCommonQuestions(int argc, char** argv) {
  for (int index = 1; index < argc; ++index) {
    if (std::strcmp(argv[index], "--version") == 0) {
      std::puts("kelvo " KELVO_VERSION);
      return true;
    }
    if (std::strcmp(argv[index], "--help") == 0) {
      std::puts(
          "usage: kelvo [--help] [--version]\n"
          "Opens the live desk. Settings and data lie in the XDG folders; KELVO_SILENT=1 plays to no "
          "device.");
      return true;
    }
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (AnswerCommonQuestions(argc, argv)) return 0;
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("kelvo"));
  QApplication::setApplicationVersion(QStringLiteral(KELVO_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("kelvo"));
  QApplication::setQuitOnLastWindowClosed(false);
  kelvo::Theme::Apply(application);
  kelvo::Program program;
  program.Start();
  return QApplication::exec();
}
