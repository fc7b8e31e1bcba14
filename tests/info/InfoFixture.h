#pragma once

#include "database/Catalogue.h"
#include "database/TestDatabase.h"
#include "platform/Disks.h"
#include "platform/ErrorLog.h"
#include "platform/SimulatedEventLoop.h"
#include "platform/Trash.h"
#include "support/ScriptedPrompter.h"

#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The first bytes of a picture of each kind, enough to be told as one.
inline const QByteArray kPng("\x89PNG\r\n\x1A\n 1", 10);
inline const QByteArray kJpg("\xFF\xD8\xFF 2", 5);
inline const QByteArray kWebp("RIFF....WEBP 3", 14);

/// Texts and pictures in a folder of the test, in simulated time. What is discarded goes into the folder
/// "trash", unless there is none.
class InfoTest : public ::testing::Test {
 protected:
  InfoTest() { database_.tree.MakeFolder(u"trash"_s); }

  [[nodiscard]] Trash TestTrash() {
    return [this](const QString& path) {
      return hasTrash_ && QDir().rename(path, database_.tree.Path(u"trash/"_s + QFileInfo(path).fileName()));
    };
  }
  [[nodiscard]] QStringList Trashed() const { return Files(u"trash"_s); }
  /// Folders too.
  [[nodiscard]] QStringList Files(const QString& folder) const {
    return QDir(database_.tree.Path(folder))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
  }
  [[nodiscard]] QString LastTold() const {
    return prompter_.asked.empty() ? QString() : prompter_.asked.back().text;
  }

  TestDatabase database_;
  SimulatedEventLoop loop_{QDateTime(QDate(2007, 6, 1), QTime(22, 0))};
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  Catalogue catalogue_;
  Disks disks_{loop_};
  bool hasTrash_ = true;
};

}  // namespace kelvo::testing
