// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"
#include "weft/string.h"

#include <QString>
#include <QStringList>
#include <QVariant>

namespace HF {

/// Value of a property: one of the host's types, which stays known also when
/// the value is empty. A default-built one has no type and is not valid.
class HF_EXPORT LVariant
{
public:
    enum Type { Invalid, Bool, Long, ULong, String, StringList, Any };

    LVariant() = default;
    LVariant(bool value) : m_type(Bool), m_value(value) {}
    LVariant(int value) : m_type(Long), m_value(qlonglong(value)) {}
    LVariant(long value) : m_type(Long), m_value(qlonglong(value)) {}
    LVariant(unsigned long value) : m_type(ULong), m_value(qulonglong(value)) {}
    LVariant(const char* utf8) : m_type(String), m_value(QString::fromUtf8(utf8)) {}
    LVariant(const QString& value) : m_type(String), m_value(value) {}
    LVariant(const QStringList& value) : m_type(StringList), m_value(value) {}
    LVariant(const weft::String& value);
    /// Takes the type from what the variant holds.
    static LVariant FromQVariant(const QVariant& value);

    /// The empty forms: typed, without a value.
    static LVariant Empty() { return LVariant(); }
    static LVariant EmptyBool() { return LVariant(Bool); }
    static LVariant EmptyLong() { return LVariant(Long); }
    static LVariant EmptyString() { return LVariant(String); }
    static LVariant EmptyStringList() { return LVariant(StringList); }

    Type get_Type() const { return m_type; }
    bool IsValid() const { return m_type != Invalid; }
    /// True without a value, of whatever type.
    bool IsEmpty() const { return !m_value.isValid(); }

    bool ToBool() const;
    long ToLong() const;
    /// Text of the value; lists joined by ", ". Empty without a value.
    QString ToString() const;
    QStringList ToStringList() const;
    QVariant ToQVariant() const { return m_value; }

    bool operator==(const LVariant& other) const { return m_type == other.m_type && m_value == other.m_value; }

private:
    explicit LVariant(Type type) : m_type(type) {}

    Type m_type = Invalid;
    QVariant m_value;
};

} // namespace HF
