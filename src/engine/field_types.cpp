// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/field_types.h"

#include "hf/values.h"

namespace {

template <class V, class... Args>
rc::Ref<HF::I_LSqlValue> Prototype(Args&&... args)
{
    return rc::make<V>(std::forward<Args>(args)...);
}

} // namespace

QList<HF::LFieldInfo> DuckDBFieldTypes()
{
    using namespace HF;
    QList<LFieldInfo> types;
    const auto add = [&types](const char* name, ELFieldType type, const rc::Ref<I_LSqlValue>& prototype) {
        types.append(LFieldInfo{prototype, QLatin1String(name), type});
    };
    const auto separator = [&add] { add("", FIELD_UNKNOWN, LValueInvalid::Instance()); };
    // Carried as text: whatever has more digits or forms than a host value can hold.
    const rc::Ref<I_LSqlValue> text = Prototype<LValueString>();

    add("Boolean", FIELD_BOOLEAN, Prototype<LValueBoolean>());
    separator();
    add("BigInt", FIELD_BIGINT, Prototype<LValueInt64>());
    add("HugeInt", FIELD_BIGINT, text);
    add("Integer", FIELD_INTEGER, Prototype<LValueInt32>());
    add("SmallInt", FIELD_SMALLINT, Prototype<LValueInt16>());
    add("TinyInt", FIELD_SMALLINT, Prototype<LValueInt16>());
    add("UBigInt", FIELD_BIGINT, Prototype<LValueUInt64>());
    add("UHugeInt", FIELD_UHUGEINT, text);
    add("UInteger", FIELD_INTEGER, Prototype<LValueUInt32>());
    add("USmallInt", FIELD_SMALLINT, Prototype<LValueUInt16>());
    add("UTinyInt", FIELD_SMALLINT, Prototype<LValueUInt8>());
    separator();
    add("Decimal", FIELD_DECIMAL, Prototype<LValueDecimal>(18, 3, QStringLiteral("0"), false));
    add("Double", FIELD_DOUBLE, Prototype<LValueDouble>());
    add("Float", FIELD_FLOAT, Prototype<LValueFloat>());
    separator();
    add("VarChar", FIELD_VARCHAR, text);
    separator();
    add("Bit", FIELD_BIT, Prototype<LValueVarBitArray>());
    separator();
    add("BLOB", FIELD_BLOB, Prototype<LValueByteArray>());
    separator();
    add("Date", FIELD_DATE, Prototype<LValueDate>(QDate(1970, 1, 1)));
    add("Interval", FIELD_INTERVAL, text);
    add("Time", FIELD_TIME, Prototype<LValueTime>(QTime(0, 0)));
    add("Time With Time Zone", FIELD_TIME, text);
    add("Timestamp", FIELD_TIMESTAMP, text);
    add("Timestamp_NS", FIELD_TIMESTAMP, text);
    add("Timestamp_MS", FIELD_TIMESTAMP, text);
    add("Timestamp_S", FIELD_TIMESTAMP, text);
    add("Timestamp With Time Zone", FIELD_TIMESTAMP_TZ, text);
    separator();
    add("JSON", FIELD_JSON, text);
    separator();
    add("UUID", FIELD_UUID, Prototype<LValueUUID>());
    separator();
    add("Array", FIELD_ARRAY, text);
    add("Enum", FIELD_ENUM, text);
    add("List", FIELD_LIST, text);
    add("Map", FIELD_MAP, text);
    add("Struct", FIELD_STRUCT, text);
    add("Union", FIELD_UNION, text);
    return types;
}
