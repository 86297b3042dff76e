// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Marks what libhf offers to the plug-ins and the programs.
#define HF_EXPORT __attribute__((visibility("default")))
