#pragma once

#include "reports/Report.h"

namespace kelvo {

/// The report on paper (A4 across), with the heads on each page, its number below, and text that can be found
/// and copied. Any thread.
[[nodiscard]] QByteArray ReportPdf(const Report& report);

}  // namespace kelvo
