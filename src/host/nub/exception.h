// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/string.h"

#include <exception>

namespace nub {

/// What the kernel throws. The message is the engine's own text, unchanged.
class ORB_KERNEL xException : public std::exception
{
public:
    explicit xException(String message);
    explicit xException(const char* utf8);
    ~xException() override;

    virtual String get_Message() const { return m_message; }
    /// The message in UTF-8, for code that knows std::exception only.
    const char* what() const noexcept override { return m_utf8.c_str(); }

private:
    String m_message;
    std::string m_utf8;
};

} // namespace nub
