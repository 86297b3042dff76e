// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/words_connection.h"

#include "engine/engine_version.h"
#include "engine/model_registry.h"
#include "hf/database_model.h"
#include "hf/values.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <typeindex>

namespace {

const orbDuckDB_Engine& Engine()
{
    return orbDuckDB_Engine::Instance();
}

rc::Ref<WordsConnection> WithKeywords(HF::LLazy<HF::LDatabaseKeywords, false> keywords)
{
    const auto connection = rc::make<WordsConnection>();
    connection->keywords = keywords;
    return connection;
}

TEST(FieldTypes, NamesNumbersAndPrototypes)
{
    const QList<HF::LFieldInfo> types = Engine().GetFieldTypes();
    ASSERT_EQ(types.size(), 43);
    QList<int> separators;
    for (int row = 0; row < types.size(); ++row) {
        EXPECT_EQ(types[row].reserved, 0) << row;
        if (!types[row].name.isEmpty())
            continue;
        separators.append(row + 1);
        EXPECT_EQ(types[row].type, 0) << row;
        EXPECT_TRUE(rc::cast<HF::LValueInvalid>(types[row].prototype)) << row;
    }
    EXPECT_EQ(separators, QList<int>({2, 13, 17, 19, 21, 23, 33, 35, 37}));

    const struct
    {
        int row;
        const char* name;
        int type;
        std::type_index prototype;
    } rows[] = {
        {1, "Boolean", 3, typeid(HF::LValueBoolean)},     {3, "BigInt", 11, typeid(HF::LValueInt64)},
        {4, "HugeInt", 11, typeid(HF::LValueString)},     {7, "TinyInt", 5, typeid(HF::LValueInt16)},
        {9, "UHugeInt", 12, typeid(HF::LValueString)},    {10, "UInteger", 9, typeid(HF::LValueUInt32)},
        {12, "UTinyInt", 5, typeid(HF::LValueUInt8)},     {14, "Decimal", 46, typeid(HF::LValueDecimal)},
        {16, "Float", 13, typeid(HF::LValueFloat)},       {20, "Bit", 55, typeid(HF::LValueVarBitArray)},
        {22, "BLOB", 23, typeid(HF::LValueByteArray)},    {24, "Date", 16, typeid(HF::LValueDate)},
        {26, "Time", 17, typeid(HF::LValueTime)},         {27, "Time With Time Zone", 17, typeid(HF::LValueString)},
        {31, "Timestamp_S", 18, typeid(HF::LValueString)}, {32, "Timestamp With Time Zone", 54, typeid(HF::LValueString)},
        {36, "UUID", 42, typeid(HF::LValueUUID)},         {38, "Array", 44, typeid(HF::LValueString)},
        {39, "Enum", 1, typeid(HF::LValueString)},        {43, "Union", 77, typeid(HF::LValueString)},
    };
    for (const auto& expected : rows) {
        const HF::LFieldInfo& info = types[expected.row - 1];
        EXPECT_EQ(info.name, QLatin1String(expected.name));
        EXPECT_EQ(info.type, expected.type) << expected.name;
        const HF::I_LSqlValue& prototype = *info.prototype;
        EXPECT_EQ(std::type_index(typeid(prototype)), expected.prototype) << expected.name;
        EXPECT_EQ(Engine().GetFieldTypeByName(info.name.toUpper()), expected.type) << expected.name;
    }
    const auto decimal = rc::cast<HF::LValueDecimal>(types[13].prototype);
    ASSERT_TRUE(decimal);
    EXPECT_EQ(decimal->get_Precision(), 18);
    EXPECT_EQ(decimal->get_Scale(), 3);
    EXPECT_EQ(decimal->get_String(), "0");
    EXPECT_EQ(types[23].prototype->get_String(), "1970-01-01");
    EXPECT_FALSE(types[25].prototype->get_IsNull());
}

TEST(Quoting, ByCharactersWithoutTouchingTheKeywords)
{
    const auto connection = WithKeywords(HF::LLazy<HF::LDatabaseKeywords, false>::FromBody([] {
        ADD_FAILURE() << "the keywords were read";
        return HF::LDatabaseKeywords();
    }));
    for (const QString& name : {QString("a b"), QString("a-b"), QString("a\"b"), QString::fromUtf8("a€"),
                                QString::fromUtf8("😀"), QString("a\nb"), QString("a(b")}) {
        const auto answer = Engine().IsNeedQuote(name, connection);
        EXPECT_TRUE(answer.IsResolved()) << name.toStdString();
        EXPECT_TRUE(answer.Force()) << name.toStdString();
    }
    for (const char* name : {"ab", "a-b", ""}) {
        const auto answer = Engine().IsNeedQuote(name, nullptr);
        EXPECT_TRUE(answer.IsResolved()) << name;
        EXPECT_TRUE(answer.Force()) << name;
    }
    // Safe characters: the keywords decide, when somebody asks.
    for (const QString& name : {QString("ab"), QString("a#$._9"), QString::fromUtf8("Ä1"), QString::fromUtf8("x²"), QString()})
        EXPECT_FALSE(Engine().IsNeedQuote(name, connection).IsResolved()) << name.toStdString();
}

TEST(Quoting, ByKeywordsReadOnce)
{
    int reads = 0;
    const auto connection = WithKeywords(HF::LLazy<HF::LDatabaseKeywords, false>::FromBody([&reads] {
        ++reads;
        return HF::LDatabaseKeywords({"order", "select"});
    }));
    const auto before = Engine().IsNeedQuote("Order", connection);
    const auto plain = Engine().IsNeedQuote("orders", connection);
    EXPECT_EQ(reads, 0);
    EXPECT_TRUE(before.Force());
    EXPECT_FALSE(plain.Force());
    const auto after = Engine().IsNeedQuote("SELECT", connection);
    EXPECT_TRUE(after.IsResolved());
    EXPECT_TRUE(after.Force());
    EXPECT_FALSE(Engine().IsNeedQuote("", connection).Force());
    EXPECT_EQ(reads, 1);
}

TEST(Quoting, AFailedReadStaysFailed)
{
    int reads = 0;
    const auto connection = WithKeywords(HF::LLazy<HF::LDatabaseKeywords, false>::FromBody([&reads]() -> HF::LDatabaseKeywords {
        ++reads;
        throw std::runtime_error("no engine");
    }));
    EXPECT_FALSE(Engine().IsNeedQuote("order", connection).Force());
    EXPECT_FALSE(Engine().IsNeedQuote("order", connection).Force());
    EXPECT_TRUE(Engine().IsNeedQuote("a b", connection).Force());
    EXPECT_EQ(reads, 1);
}

TEST(Words, FixedLists)
{
    const QStringList aggregates = Engine().GetAggregateFunctions();
    EXPECT_EQ(aggregates.size(), 72);
    EXPECT_EQ(aggregates.first(), "ANY_VALUE");
    EXPECT_EQ(aggregates.last(), "VAR_SAMP");
    EXPECT_EQ(QSet<QString>(aggregates.begin(), aggregates.end()).size(), 72);

    const QStringList words = Engine().GetStatementKeywords(false);
    EXPECT_EQ(words.size(), 17);
    EXPECT_EQ(words.first(), "alter");
    EXPECT_EQ(words.last(), "dettach");
    const QStringList sorted = Engine().GetStatementKeywords(true);
    EXPECT_EQ(sorted.mid(0, 3), QStringList({"alter", "attach", "begin"}));
    EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
    EXPECT_EQ(QSet<QString>(sorted.begin(), sorted.end()), QSet<QString>(words.begin(), words.end()));

    const QMap<int, QString> following = {
        {66, "table"},        {75, "database"},     {122, "database"}, {80, "transaction"}, {98, "transaction"},
        {134, "transaction"}, {252, "transaction"}, {119, "from"},     {176, "into"},
        {106, "function,index,macro,macro table,schema,sequence,table,type,view"},
        {129, "function,index,macro,macro table,schema,sequence,table,type,view"}};
    for (int token = 0; token < 400; ++token)
        EXPECT_EQ(Engine().GetFollowingKeywords(token).join(','), following.value(token)) << token;
}

TEST(Words, WithoutAConnection)
{
    const auto keywords = Engine().GetKeywords(nullptr);
    EXPECT_TRUE(keywords.IsResolved());
    EXPECT_TRUE(keywords.Force().get_Words().isEmpty());
    const auto functions = Engine().GetFunctions(nullptr);
    EXPECT_TRUE(functions.IsResolved());
    EXPECT_TRUE(functions.Force().Keys.isEmpty());
}

TEST(Version, Texts)
{
    const QMap<QString, int> numbers = {{"v1.2.3", 10203}, {"1.5.6", 10506},   {"V1.2.3", 203}, {"v2", 20000},
                                        {"v1.4", 10400},   {"v1.2.3.4", 10203}, {"", 0},        {"v99999999999.1.1", 101},
                                        {"v1.5.7-dev12", 10500}};
    for (auto it = numbers.begin(); it != numbers.end(); ++it)
        EXPECT_EQ(ParseEngineVersion(it.key()), it.value()) << it.key().toStdString();
}

TEST(Identity, ConstantsAndModels)
{
    EXPECT_EQ(Engine().GetBindPlaceholder(0), "$1");
    EXPECT_EQ(Engine().GetBindPlaceholder(2), "$3");
    EXPECT_EQ(Engine().GetCapabilities(), 0b110110011010001000);
    EXPECT_EQ(Engine().GetQueryCapabilities(), 0b1000100000000000100010);
    EXPECT_EQ(Engine().GetDefaultFieldType(), "VarChar");
    EXPECT_EQ(Engine().GetIntegerFieldType(), "Integer");
    EXPECT_TRUE(Engine().IsValidName(" "));
    EXPECT_FALSE(Engine().IsValidName(""));
    EXPECT_EQ(Engine().GetModel(HF::ELObjectType(5)), HF::LDatabaseEngine::DummyModel());
    EXPECT_EQ(Engine().GetModel(HF::ELObjectType(-1)), HF::LDatabaseEngine::DummyModel());
    EXPECT_EQ(Engine().GetModel(HF::TYPE_CONNECTION), HF::LDatabaseEngine::DummyModel());
}

} // namespace
