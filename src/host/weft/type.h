// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/string.h"

#include <memory>
#include <vector>

namespace weft {

class Any;
class Class_Generic;

/// A set of values: what a parameter takes, what a list holds. A value that
/// shares its description; immutable, any thread.
class ORB_SHARED Type
{
public:
    enum class Kind {
        Any,
        None,
        Boolean,
        Integer,
        Float, ///< takes integers too
        String,
        ByteArray,
        List,
        HashMap,
        Function,
        Lazy,
        WeakRef,
        Error,
        Class,    ///< a class itself
        Foreign,  ///< a native value, by the name of its type
        Instance, ///< of a class or of one that derives from it
        Union,
    };
    struct description;

    /// Takes every value.
    Type();
    static Type basic(Kind kind);
    static Type list(const Type& element);
    static Type lazy(const Type& result);
    static Type foreign(const char* typeName, bool isCopyable = true);
    static Type instance(const char* typeName, const Class_Generic& cls);
    static Type unite(const std::vector<Type>& members);

    Kind kind() const;
    /// Of a list or a lazy; any otherwise.
    Type element() const;
    /// Of a foreign type: its values can be copied.
    bool isCopyable() const;
    /// Of an instance type: the class.
    Class_Generic instanceClass() const;
    /// As a signature writes it.
    String name() const;
    bool matches(const Any& value) const;
    /// Types are the same when they take the same values and say so alike.
    bool operator==(const Type& other) const;

private:
    explicit Type(std::shared_ptr<const description> data) : m_data(std::move(data)) {}

    std::shared_ptr<const description> m_data;
};

} // namespace weft
