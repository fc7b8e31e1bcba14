#pragma once

#include <QtCore/qtestsupport_core.h>

namespace kelvo::testing {

/// Turns the application's own loop, in real time, until `condition` holds. The limit is there for what hangs
/// alone, so that the test says where before CTest ends it; no machine is so slow that it meets it.
template <typename Condition>
[[nodiscard]] bool TurnUntil(Condition condition) {
  return QTest::qWaitFor(condition, 100'000);
}

}  // namespace kelvo::testing
