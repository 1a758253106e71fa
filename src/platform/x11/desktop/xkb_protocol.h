// SPDX-License-Identifier: MIT
#pragma once

// The generated header has a member with the name of a C++ keyword.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
