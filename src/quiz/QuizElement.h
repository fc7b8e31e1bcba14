#pragma once

#include <QString>

#include <array>
#include <vector>

namespace kelvo {

/// What one step of a quiz is. The numbers are those of the saved quizes.
enum class ElementKind { Chain = 0, Snippet = 1, Question = 2 };
inline constexpr std::array kElementKinds{ElementKind::Chain, ElementKind::Snippet, ElementKind::Question};

/// The kind as the list of elements shows it.
[[nodiscard]] inline QString ElementWord(ElementKind kind) {
  switch (kind) {
    case ElementKind::Chain:
      return QStringLiteral("Play Snippets Chain");
    case ElementKind::Snippet:
      return QStringLiteral("Play Snippet");
    case ElementKind::Question:
      break;
  }
  return QStringLiteral("Ask Question");
}

/// One step of a quiz. A value.
struct QuizElement {
  ElementKind kind = ElementKind::Question;
  bool operator==(const QuizElement&) const = default;
};

/// The tracks that these elements take: a chain as many as it has snippets, any other one.
[[nodiscard]] inline int TracksNeeded(const std::vector<QuizElement>& elements, int chainQty) {
  int tracks = 0;
  for (const QuizElement& each : elements) tracks += each.kind == ElementKind::Chain ? chainQty : 1;
  return tracks;
}

}  // namespace kelvo
