// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Marks what liborbkernel offers to the other libraries.
#define ORB_KERNEL __attribute__((visibility("default")))
