// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Marks what liborbshared offers.
#define ORB_SHARED __attribute__((visibility("default")))
