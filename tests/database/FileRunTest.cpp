#include "database/FileRun.h"
#include "platform/ErrorLog.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <optional>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using testing::ScriptedPrompter;
using testing::TemporaryTree;

class FileRunTest : public ::testing::Test {
 protected:
  using Step = std::function<FileOutcome(std::size_t)>;

  /// Runs `files` files, for each of which `step_` says what becomes of it.
  FileSum Run(std::size_t files, Step step) {
    step_ = std::move(step);
    job_ = Collect(files);
    EXPECT_TRUE(loop_.RunUntil([this] { return !job_.Running(); }));
    return sum_;
  }
  Job<> Collect(std::size_t files) {
    FileRun::Work work;
    work.files = files;
    work.tag = u" run"_s;
    work.name = [](std::size_t file) { return u"file %1"_s.arg(file); };
    work.step = [this](std::size_t file) { return One(file); };
    work.after = [this](std::size_t, FileOutcome outcome, const QString&) { after_.push_back(outcome); };
    sum_ = co_await run_.Run(std::move(work));
  }
  Job<FileOutcome> One(std::size_t file) {
    co_await loop_.Yield();
    co_return step_(file);
  }
  Job<> Ask() {
    Prompt question;
    question.buttons = Buttons::YesNoCancel;
    wish_ = co_await run_.AskIfTaken(prompter_, question);
  }
  IfTaken Wish() {
    job_ = Ask();
    EXPECT_TRUE(loop_.RunUntil([this] { return !job_.Running(); }));
    return wish_;
  }

  TemporaryTree tree_;
  SimulatedEventLoop loop_;
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, tree_.Path(u"kelvo.log"_s)};
  FileRun run_{loop_};
  Step step_;
  FileSum sum_;
  std::vector<FileOutcome> after_;
  IfTaken wish_ = IfTaken::Ask;
  Job<> job_;
};

TEST_F(FileRunTest, AFileThatFailsIsNotedUnderItsStepAndTheRestGoesOn) {
  const Step step = [this](std::size_t file) {
    if (file == 1) {
      run_.At(u"copy"_s);
      throw Failure(u"It is broken"_s, EIO);
    }
    return file == 2 ? FileOutcome::Existed : FileOutcome::Done;
  };
  const FileSum sum = Run(4, step);
  EXPECT_THAT(sum.outcomes,
              ElementsAre(FileOutcome::Done, FileOutcome::Failed, FileOutcome::Existed, FileOutcome::Done));
  EXPECT_EQ(after_, sum.outcomes);
  EXPECT_EQ(sum.Count(FileOutcome::Done), 2);
  EXPECT_THAT(sum.troubles, ElementsAre(u"file 1: It is broken"_s));
  loop_.RunFor(std::chrono::seconds(1));
  EXPECT_TRUE(QString::fromUtf8(tree_.Read(u"kelvo.log"_s)).contains(u" in  run copy"_s));
  EXPECT_TRUE(prompter_.asked.empty());
  EXPECT_EQ(run_.Progress().File(), 4);
  EXPECT_EQ(run_.Progress().Percent(), 100);

  QStringList many;
  for (int file = 0; file < 12; ++file) many.append(u"file"_s);
  EXPECT_EQ(
      TroubleMessage(u"12 files were not moved:"_s, many).text,
      u"12 files were not moved:\r\n"_s + u"file\r\n"_s.repeated(10) + u"... and 2 others (see the log)"_s);
}

TEST_F(FileRunTest, AFullDiskAndTheOperatorEndTheRun) {
  const FileSum full = Run(3, [](std::size_t file) -> FileOutcome {
    if (file == 1) throw Failure(u"No space left"_s, ENOSPC);
    return FileOutcome::Done;
  });
  EXPECT_THAT(full.outcomes, ElementsAre(FileOutcome::Done, FileOutcome::NoRoom));
  EXPECT_TRUE(full.EndedBy(FileOutcome::NoRoom));
  EXPECT_TRUE(full.troubles.isEmpty()) << "whoever ran it tells that once";

  run_.Reset();
  const FileSum stopped = Run(3, [this](std::size_t) {
    run_.Stop();
    return FileOutcome::Done;
  });
  EXPECT_EQ(stopped.outcomes.size(), 1U);
  EXPECT_TRUE(run_.Stopping());
  EXPECT_TRUE(Run(3, [](std::size_t) { return FileOutcome::Done; }).outcomes.empty())
      << "a stop before the first file counts";
}

TEST_F(FileRunTest, AnAnswerForAllThatFollowIsNotAskedForAgain) {
  prompter_.answers = {Answer::Yes, Answer::No, Answer::Cancel};
  EXPECT_EQ(Wish(), IfTaken::Replace);
  EXPECT_EQ(Wish(), IfTaken::Rename);
  EXPECT_EQ(Wish(), IfTaken::LeaveOut);
  prompter_.answers = {Answer::No};
  prompter_.forAll = true;
  EXPECT_EQ(Wish(), IfTaken::Rename);
  EXPECT_EQ(Wish(), IfTaken::Rename);
  EXPECT_EQ(prompter_.asked.size(), 4U);
  run_.Reset();
  prompter_.answers = {Answer::Yes};
  EXPECT_EQ(Wish(), IfTaken::Replace) << "another run asks anew";
}

}  // namespace
}  // namespace kelvo
