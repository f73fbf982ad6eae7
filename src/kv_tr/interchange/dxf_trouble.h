// What ends the work on an entity of a drawing, or on the drawing.
#pragma once

#include "kv_tr/interchange/drawing.h"

namespace kv_tr::dxf {

/// Thrown where a problem is found, and caught where the entity is known.
struct Trouble {
    DrawingProblem problem;
};

}  // namespace kv_tr::dxf
