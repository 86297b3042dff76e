// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/exception.h"

namespace nub {

xException::xException(String message) : m_message(std::move(message)), m_utf8(m_message.ToUtf8()) {}

xException::xException(const char* utf8) : xException(String::FromUtf8(utf8 ? utf8 : "")) {}

xException::~xException() = default;

} // namespace nub
