// The functions of Windows, without those of their macros that get in the way of names here.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#undef MessageBox  // a port of the component
