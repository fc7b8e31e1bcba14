#pragma once

#include <QStringList>

namespace kelvo::testing {

using namespace Qt::StringLiterals;

/// Track 1 on deck 1 is faded over to track 2 on deck 2. Sorted: load, start, load, start, start of the fade,
/// stop of the first, end of the fade, end of the second.
inline QStringList MixLines() {
  return {u"1,00:00:10,1,2,0,-1,1,-1,60#2,00:00:12,1,2,0,-1,3,-1,60#7,00:01:04,1,2,0,-1,13,-1,60"_s,
          u"3,00:00:50,2,3,0,-1,1,-1,60#4,00:01:00,2,3,0,-1,3,-1,60#5,00:01:00,2,3,2,25,9,-1,60#"
          u"6,00:01:04,2,3,2,25,11,-1,60#8,00:02:00,2,3,0,-1,19,60,60"_s};
}

}  // namespace kelvo::testing
