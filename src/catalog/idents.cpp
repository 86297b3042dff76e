// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/idents.h"

#include "hf/number_values.h"

#include <QHash>

#include <algorithm>
#include <optional>
#include <thread>
#include <vector>

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

/// A full name, and where its ident stands.
using Place = std::pair<QStringView, std::size_t>;

/// By name. The halves of a large catalogue are sorted side by side.
void Sort(std::vector<Place>& order)
{
    constexpr std::size_t Large = 20000;
    const auto before = [](const Place& a, const Place& b) {
        const int compared = a.first.compare(b.first, Qt::CaseSensitive);
        return compared != 0 ? compared < 0 : a.second < b.second;
    };
    const auto middle = order.begin() + static_cast<std::ptrdiff_t>(order.size() / 2);
    if (order.size() < Large) {
        std::sort(order.begin(), order.end(), before);
        return;
    }
    std::thread half([&] { std::sort(middle, order.end(), before); });
    std::sort(order.begin(), middle, before);
    half.join();
    std::inplace_merge(order.begin(), middle, order.end(), before);
}

} // namespace

HF::LIdent MakeIdent(const QString& path, const QString& kind, QChar separator)
{
    using Part = HF::LIdent::Part;
    const std::optional<HF::ELDbObjType> type = TypeOfKind(kind);
    if (!type)
        return {};
    // There are hundreds of thousands of these: no text is made twice.
    const qsizetype size = path.size();
    const qsizetype first = path.indexOf(separator);
    if (first < 0)
        return HF::LIdent::FromParts(path, {Part{*type, size}});
    const qsizetype second = path.indexOf(separator, first + 1);
    const bool isField = *type == HF::DBOBJ_FIELD && (second < 0 || path.indexOf(separator, second + 1) < 0);
    if (!isField && (second >= 0 || !MayHaveSchema(*type))) {
        const QString name = path.mid(path.lastIndexOf(separator) + 1);
        return HF::LIdent::FromParts(name, {Part{*type, name.size()}});
    }
    QString fullName = path;
    QChar* const text = fullName.data();
    text[first] = u'.';
    if (second >= 0) {
        text[second] = u'.';
        return HF::LIdent::FromParts(std::move(fullName), {Part{HF::DBOBJ_SCHEMA, first},
                                                           Part{HF::DBOBJ_TABLE, second}, Part{*type, size}});
    }
    const HF::ELDbObjType parent = isField ? HF::DBOBJ_TABLE : HF::DBOBJ_SCHEMA;
    return HF::LIdent::FromParts(std::move(fullName), {Part{parent, first}, Part{*type, size}});
}

QList<HF::LIdent> ReadIdents(const rc::Ptr<HF::I_LCursor>& cursor)
{
    QList<HF::LIdent> idents;
    const rc::Ptr<HF::I_LField> kind = cursor ? cursor->get_Field(QStringLiteral("fld_kind")) : nullptr;
    rc::Ptr<HF::I_LField> path = cursor ? cursor->get_Field(QStringLiteral("fld_path")) : nullptr;
    const QChar separator = path ? u'\0' : u'\n';
    if (cursor && !path)
        path = cursor->get_Field(QStringLiteral("fld_ident"));
    if (!kind || !path)
        return idents;
    std::vector<HF::LIdent> read;
    read.reserve(cursor->get_RecordCount().Force());
    QHash<qint64, QString> kinds; // a handful of numbers, whose texts are made once
    for (bool more = cursor->FirstRecord(); more; more = cursor->NextRecord()) {
        const rc::Ptr<HF::I_LSqlValue> value = kind->get_Value(-1);
        const auto* number = dynamic_cast<const HF::LValueIntegral*>(value.get());
        if (!number || number->get_IsNull()) {
            read.push_back(MakeIdent(path->get_String(), kind->get_String(), separator));
            continue;
        }
        QString& text = kinds[number->get_Int64()];
        if (text.isNull())
            text = value->get_String();
        read.push_back(MakeIdent(path->get_String(), text, separator));
    }

    // Views are cheaper to move about than idents.
    std::vector<Place> order;
    order.reserve(read.size());
    for (const HF::LIdent& ident : read)
        order.emplace_back(ident.get_FullName(), order.size());
    Sort(order);
    idents.reserve(static_cast<qsizetype>(read.size()));
    for (const auto& [name, index] : order)
        idents.append(std::move(read[index]));
    return idents;
}
