#pragma once

#include "PlainBoxRecord.h"

/// The box that is lowest along a face normal, over the rectangle of least area; unset where no
/// face gives one.
PlainBoxRecord plainLeastHeight(const PlainHull& hull, int threadCount);

/// The box along a face normal whose smallest side is least; unset where no face gives one.
PlainBoxRecord plainLeastBaseArea(const PlainHull& hull, int threadCount);
