// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace HF {
class I_LField;
}

/// What the engine's text of a type's values tells of them.
enum class TextFidelity {
    Exact,        ///< cast back, it is the value
    PlainElements, ///< an array whose elements stand there as they are, without quotes
    Lossy,        ///< the same text stands for several values
};

/// By the engine's whole type text. What cannot be told from the text counts as lossy.
TextFidelity FidelityOf(const QString& typeText);

/// The same for a column of the catalogue.
TextFidelity FidelityOf(const HF::I_LField& column);

/// Whether the text of an array of PlainElements can be read in one way only.
bool IsPlainArrayText(const QString& text, int elements);
