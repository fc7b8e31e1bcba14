#pragma once

#include "quiz/QuizRecord.h"

#include <QString>

#include <vector>

namespace kelvo {

/// The sheet of a quiz for paper: a part with the questions and room to write, and behind it, from a new page
/// on, one with the answers. HTML of the kind that QTextDocument reads.
[[nodiscard]] QString QuizSheetHtml(const QString& title, const std::vector<QuizItem>& items);

}  // namespace kelvo
