#include "demo_library/Library.h"
#include "demo_library/QuizSounds.h"
#include "platform/ErrorLog.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>

#include <cmath>
#include <cstdio>
#include <exception>

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUse = 2;

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("demo_library"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KELVO_VERSION));
  QTextStream out(stdout);
  QTextStream err(stderr);

  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Makes a small library of synthesised music to try the console with."));
  const QCommandLineOption folder(QStringLiteral("folder"), QStringLiteral("Where the library goes."),
                                  QStringLiteral("DIR"));
  const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("Another seed, other tunes."),
                                QStringLiteral("N"), QStringLiteral("1"));
  const QCommandLineOption settings(QStringLiteral("settings"),
                                    QStringLiteral("Name the library in this settings file."),
                                    QStringLiteral("FILE"));
  const QCommandLineOption pieces(QStringLiteral("pieces"), QStringLiteral("Only the first N tracks."),
                                  QStringLiteral("N"), QStringLiteral("-1"));
  const QCommandLineOption ifMissing(QStringLiteral("if-missing"),
                                     QStringLiteral("Leave a library that is there alone."));
  const QCommandLineOption replace(
      QStringLiteral("replace"),
      QStringLiteral("Point the settings at this library even if they name another."));
  const QCommandLineOption quizSounds(
      QStringLiteral("quiz-sounds"),
      QStringLiteral("Put the first sounds of the quiz into this program folder, where it has none."),
      QStringLiteral("DIR"));
  parser.addOptions({folder, seed, settings, pieces, ifMissing, replace, quizSounds});
  parser.addHelpOption();
  parser.addVersionOption();
  parser.process(application);

  bool seedIsNumber = false;
  bool piecesIsNumber = false;
  kelvo::demo::LibraryOptions options;
  options.seed = parser.value(seed).toUInt(&seedIsNumber);
  options.pieces = parser.value(pieces).toInt(&piecesIsNumber);
  const bool library = parser.isSet(folder) || !parser.isSet(quizSounds);
  if ((library && parser.value(folder).isEmpty()) || !seedIsNumber || !piecesIsNumber ||
      !parser.positionalArguments().isEmpty()) {
    err << parser.helpText();
    return kWrongUse;
  }
  options.folder = QDir::cleanPath(QFileInfo(parser.value(folder)).absoluteFilePath());
  if (parser.isSet(settings)) options.settingsFile = QFileInfo(parser.value(settings)).absoluteFilePath();
  options.ifMissing = parser.isSet(ifMissing);
  options.replace = parser.isSet(replace);

  try {
    if (parser.isSet(quizSounds)) {
      const QString place = QDir::cleanPath(QFileInfo(parser.value(quizSounds)).absoluteFilePath());
      if (kelvo::demo::MakeQuizSounds(place, options.seed)) {
        out << QStringLiteral("Made the sounds of the quiz in %1").arg(place) << Qt::endl;
      }
    }
    if (!library) return kDone;
    const auto outcome = kelvo::demo::MakeLibrary(options, [&out](double done, const QString& what) {
      out << QStringLiteral("%1%  %2").arg(std::lround(done * 100.0), 3).arg(what) << Qt::endl;
    });
    if (outcome == kelvo::demo::Outcome::Made)
      out << QStringLiteral("Made %1").arg(options.folder) << Qt::endl;
    return kDone;
  } catch (const std::exception& failure) {
    err << QStringLiteral("demo_library: ") << QString::fromUtf8(failure.what()) << Qt::endl;
    return kFailed;
  }
}
