#pragma once

#include "charts/graph/ChartPlan.h"

namespace ostrel::charts {

/// One sentence for each scale that could not place some rows: "99 of 1707 rows are not positive on the log x
/// axis; not drawn".
std::vector<std::string> DescribeLeftOutRows(ChartPlan const& plan, Results const& results);

}  // namespace ostrel::charts
