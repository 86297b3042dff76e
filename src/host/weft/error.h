// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/string.h"

namespace weft {

/// An error of the runtime: a text for the user.
class ORB_SHARED Error
{
public:
    explicit Error(String message) : m_message(std::move(message)) {}
    String message() const { return m_message; }

private:
    String m_message;
};

} // namespace weft
