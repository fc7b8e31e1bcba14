#include "database/OlderForm.h"
#include "database/TestDatabase.h"
#include "platform/ErrorLog.h"
#include "platform/NewFile.h"

#include <QDir>

#include <gtest/gtest.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using testing::TestDatabase;

TEST(OlderForm, IsToldByTheFirstFileThatIsNoTrackInfoFileOfThisForm) {
  const TestDatabase database;
  const QString folder = database.paths(Paths::Info);
  EXPECT_EQ(FirstFileOfOlderForm(folder), QString());
  database.Add(Paths::Info, u"Abba - Waterloo.kif"_s);
  database.Add(Paths::Info, u"ZZ Top - 1.5 - Legs.KIF"_s);
  database.Add(Paths::Info, u"caf\uFFFD.Kif"_s);
  EXPECT_EQ(FirstFileOfOlderForm(folder), QString());
  database.Add(Paths::Info, u"No extension"_s);
  EXPECT_EQ(FirstFileOfOlderForm(folder), u"No extension"_s);
  database.Add(Paths::Info, u"Blur - Song 2.kif.inf"_s);
  EXPECT_EQ(FirstFileOfOlderForm(folder), u"Blur - Song 2.kif.inf"_s);
}

TEST(OlderForm, IsNotWhatWritersEditorsAndFileManagersLeaveBehind) {
  const TestDatabase database;
  const QString folder = database.paths(Paths::Info);
  NewFile halfWritten(EncodedPath(folder + u"/Abba - Waterloo.kif"_s), 0666);
  halfWritten.Write("half", 4);
  ASSERT_FALSE(QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
  for (const QString& litter :
       {u".directory"_s, u".DS_Store"_s, u"Thumbs.db"_s, u"Desktop.ini"_s, u"Abba - Waterloo.kif~"_s}) {
    database.Add(Paths::Info, litter);
  }
  QDir(folder).mkdir(u"a folder.old"_s);
  EXPECT_EQ(FirstFileOfOlderForm(folder), QString());
}

TEST(OlderForm, IsNotDeniedOfAFolderThatCannotBeRead) {
  const TestDatabase database;
  EXPECT_THROW((void)FirstFileOfOlderForm(database.tree.Path(u"gone"_s)), Failure);
}

}  // namespace
}  // namespace kelvo
