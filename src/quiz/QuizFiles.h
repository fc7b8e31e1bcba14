#pragma once

#include "quiz/QuizRecord.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace kelvo {

// The saved quizes on disk: a folder each, with four text files in the form that all versions share and a
// fifth with the names of the tracks. All of this blocks for the disk and throws Failure; any thread.

/// The saved quizes in `folder`, which is made when it is not there.
[[nodiscard]] QStringList ListQuizes(const QString& folder);

/// Saves under a name that none has: all files or nothing, whatever happens meanwhile. False when there is
/// something of that name.
[[nodiscard]] bool SaveQuiz(const QString& folder, const QString& name, const QuizSetup& setup,
                            const SavedQuiz& quiz);

/// The fields of a quiz's set-up.
[[nodiscard]] QStringList LoadSetup(const QString& folder, const QString& name);
[[nodiscard]] SavedQuiz LoadQuiz(const QString& folder, const QString& name);

/// Moves a folder to the trash; false when there is none that takes it.
using QuizTrash = std::function<bool(const QString& path)>;
[[nodiscard]] QuizTrash DesktopQuizTrash();
/// What `trash` does not take is deleted for good.
void DeleteQuiz(const QString& folder, const QString& name, const QuizTrash& trash);

/// The name as it is saved: trimmed, with "_" for each character that file systems refuse.
[[nodiscard]] QString CleanQuizName(const QString& name);

}  // namespace kelvo
