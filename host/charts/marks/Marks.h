#pragma once

#include "charts/marks/MarkTable.h"

/// The rows of the table of marks, each from the file of its mark.
namespace ostrel::charts {

MarkDefinition DefinePoint();
MarkDefinition DefineCircle();
MarkDefinition DefineSquare();
MarkDefinition DefineLine();
MarkDefinition DefineGeoshape();
MarkDefinition DefineImage();
MarkDefinition DefineTreemap();
MarkDefinition DefinePackedBubbles();
MarkDefinition DefineWordCloud();
MarkDefinition DefineTextTable();
MarkDefinition DefineBar();
MarkDefinition DefineArea();
MarkDefinition DefineRect();
MarkDefinition DefineRule();
MarkDefinition DefineTick();
MarkDefinition DefineText();

}  // namespace ostrel::charts
