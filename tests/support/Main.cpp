#include <QApplication>
#include <QCoreApplication>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

/// Every test program starts here: with an application object (of widgets when a platform for windows is
/// named), and with the person's own folders out of reach.
int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);

  const QTemporaryDir home;
  if (!home.isValid()) return 1;
  qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toUtf8());
  qputenv("XDG_DATA_HOME", home.filePath(QStringLiteral("data")).toUtf8());
  qputenv("XDG_CACHE_HOME", home.filePath(QStringLiteral("cache")).toUtf8());

  QCoreApplication::setApplicationName(QStringLiteral("kelvo"));
  const std::unique_ptr<QCoreApplication> application = qEnvironmentVariableIsSet("QT_QPA_PLATFORM")
                                                            ? std::make_unique<QApplication>(argc, argv)
                                                            : std::make_unique<QCoreApplication>(argc, argv);
  return RUN_ALL_TESTS();
}
