// Standard streams that the caller of a program has closed.
#pragma once

namespace kv_tr::app {

/// Opens those of the three standard streams that are closed, each so that using it fails: a file
/// opened later would get the number of one, and messages would be written into it. Call it first;
/// false when that cannot be done.
bool OpenMissingStandardStreams();

}  // namespace kv_tr::app
