#pragma once

#include <QString>

#include <initializer_list>

namespace kelvo {

/// A reason for which a command is off, where it holds.
struct OffReason {
  bool holds;
  QString words;
};

/// The words of the first reason that holds, for Offer; empty when none does.
[[nodiscard]] inline QString WhyOff(std::initializer_list<OffReason> reasons) {
  for (const OffReason& reason : reasons) {
    if (reason.holds) return reason.words;
  }
  return {};
}

}  // namespace kelvo
