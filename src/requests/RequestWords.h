#pragma once

#include <QString>

namespace kelvo {

/// What a listener asks to be said with a track. A value.
struct RequestWords {
  static constexpr qsizetype kLongestName = 200;
  static constexpr qsizetype kLongestMessage = 4000;

  QString from;
  QString to;
  QString message;  ///< may have several lines

  /// As it is kept and read out: each name on one line, nothing longer than its limit.
  [[nodiscard]] RequestWords Fitted() const;
  /// Something is in each of the three.
  [[nodiscard]] bool Complete() const;
  /// The lines that the queue's row carries.
  [[nodiscard]] QString Text() const;
};

/// A name or a message with another one behind it, as a pick from a list joins them.
[[nodiscard]] QString JoinNames(const QString& names, const QString& name);
[[nodiscard]] QString JoinMessages(const QString& messages, const QString& message);

}  // namespace kelvo
