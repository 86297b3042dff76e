// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/idents.h"

#include <algorithm>
#include <optional>

namespace {

/// Nothing: the kind adds no name at all.
std::optional<HF::ELDbObjType> TypeOfKind(const QString& kind)
{
    const QChar first = kind.isEmpty() ? QChar() : kind[0];
    const QChar second = kind.size() < 2 ? QChar() : kind[1];
    if (first == u'1') {
        if (second.isNull())
            return HF::DBOBJ_TABLE;
        return second == u'5' ? HF::DBOBJ_VIEW
             : second == u'6' ? HF::DBOBJ_INDEX
             : second == u'9' ? HF::DBOBJ_SEQUENCE
                              : HF::DBOBJ_UNKNOWN;
    }
    if (first == u'2') {
        if (second.isNull())
            return HF::DBOBJ_SCHEMA;
        return second == u'4' ? std::optional(HF::DBOBJ_TYPE) : std::nullopt;
    }
    if (first == u'3')
        return HF::DBOBJ_FIELD;
    return first == u'9' ? HF::DBOBJ_FUNCTION : HF::DBOBJ_UNKNOWN;
}

bool MayHaveSchema(HF::ELDbObjType type)
{
    return type == HF::DBOBJ_TABLE || type == HF::DBOBJ_FUNCTION || type == HF::DBOBJ_VIEW
        || type == HF::DBOBJ_SEQUENCE || type == HF::DBOBJ_TYPE;
}

} // namespace

HF::LIdent MakeIdent(const QString& path, const QString& kind)
{
    HF::LIdent ident;
    const std::optional<HF::ELDbObjType> type = TypeOfKind(kind);
    if (!type)
        return ident;
    QStringList parts = path.split(u'\n');
    if (*type == HF::DBOBJ_FIELD) {
        if (parts.size() == 3)
            ident.Append(HF::DBOBJ_SCHEMA, parts.takeFirst());
        if (parts.size() == 2)
            ident.Append(HF::DBOBJ_TABLE, parts.takeFirst());
    } else if (MayHaveSchema(*type) && parts.size() == 2) {
        ident.Append(HF::DBOBJ_SCHEMA, parts.takeFirst());
    }
    ident.Append(*type, parts.last());
    return ident;
}

QList<HF::LIdent> ReadIdents(const rc::Ptr<HF::I_LCursor>& cursor)
{
    QList<HF::LIdent> idents;
    const rc::Ptr<HF::I_LField> kind = cursor ? cursor->get_Field(QStringLiteral("fld_kind")) : nullptr;
    const rc::Ptr<HF::I_LField> path = cursor ? cursor->get_Field(QStringLiteral("fld_ident")) : nullptr;
    if (!kind || !path)
        return idents;
    idents.reserve(static_cast<qsizetype>(cursor->get_RecordCount().Force()));
    for (bool more = cursor->FirstRecord(); more; more = cursor->NextRecord())
        idents.append(MakeIdent(path->get_String(), kind->get_String()));
    std::sort(idents.begin(), idents.end(), [](const HF::LIdent& a, const HF::LIdent& b) {
        return a.get_FullName().compare(b.get_FullName(), Qt::CaseSensitive) < 0;
    });
    return idents;
}
