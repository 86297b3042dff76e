// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// An ENUM without values: the engine prints it as `ENUM()`, which it does not read again;
/// only a query makes such a type. A type of the session stands for it while a statement runs.
namespace EmptyEnum {

/// Whether a type as the engine prints it is nothing but an ENUM without values.
bool Is(const QString& type);
/// What CREATE TYPE takes for it.
QString Definition();
/// A type with `name`, which is SQL, for each ENUM without values in it; by default that of the session.
QString Named(const QString& type, const QString& name = QString());
/// The statement, between those that make and drop the session's type when it names it. What is
/// `temporary` may hold the type, which then stays as long as the session.
QString WithType(QString statement, bool temporary = false);

} // namespace EmptyEnum
