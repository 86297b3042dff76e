// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/database_place.h"

#include "data/sql_query.h"

namespace {

using namespace Qt::StringLiterals;
using StatementTest = support::DatabasePlace;
using HF::LQueryResult;

/// Text of the first cell of a run.
QString Cell(const rc::Ref<HF::I_LSqlQuery>& query, const RcList<HF::I_LSqlValue>& binds)
{
    const LQueryResult result = query->Execute(u"this text is not looked at"_s, 0, binds).first();
    if (!result.Cursor || !result.Cursor->FirstRecord())
        return u"no row: "_s + result.Error;
    const auto field = result.Cursor->get_Field(0);
    return field->get_IsNull() ? u"NULL"_s : field->get_String();
}

TEST_F(StatementTest, RunsInPlaceOfTheText)
{
    const auto query = Database().MakeSqlQuery();
    ASSERT_EQ(query->Prepare(u"  SELECT $1 + 1 ;\n"_s, 0).Status, LQueryResult::Done);
    EXPECT_EQ(Cell(query, {rc::make<HF::LValueInt32>(1)}), u"2"_s);
    EXPECT_EQ(Cell(query, {rc::make<HF::LValueInt32>(41)}), u"42"_s);
    // Blanks prepare nothing, and what was prepared stays.
    EXPECT_EQ(query->Prepare(u" \n\t "_s, 0).Status, LQueryResult::Done);
    EXPECT_EQ(Cell(query, {rc::make<HF::LValueInt32>(2)}), u"3"_s);
    // The same goes for a text that cannot be prepared.
    const LQueryResult failed = query->Prepare(u"SELECT nosuch"_s, 0);
    EXPECT_EQ(failed.Status, LQueryResult::Failed);
    EXPECT_EQ(errors.size(), 1);
    EXPECT_EQ(errors.last(), failed.Error);
    EXPECT_EQ(Cell(query, {rc::make<HF::LValueInt32>(3)}), u"4"_s);
    ASSERT_EQ(query->Prepare(u"SELECT 'other'"_s, 0).Status, LQueryResult::Done);
    EXPECT_EQ(Cell(query, {}), u"other"_s);
}

TEST_F(StatementTest, AFailedRunLeavesItUsable)
{
    Run(u"CREATE TABLE t(i INTEGER PRIMARY KEY)"_s);
    const auto query = Database().MakeSqlQuery();
    ASSERT_EQ(query->Prepare(u"INSERT INTO t VALUES ($1)"_s, 0).Status, LQueryResult::Done);
    const auto insert = [&](int i) { return query->Execute({}, HF::QUERY_SILENT_ERROR, {rc::make<HF::LValueInt32>(i)}).first(); };
    EXPECT_EQ(insert(1).AffectedRecords, 1);
    EXPECT_EQ(insert(1).Status, LQueryResult::Failed);
    EXPECT_FALSE(insert(1).Error.isEmpty());
    EXPECT_EQ(insert(2).Status, LQueryResult::Done);
    EXPECT_TRUE(errors.isEmpty());
    EXPECT_EQ(Column(u"SELECT i FROM t ORDER BY i"_s), u"1 2"_s);
}

TEST_F(StatementTest, BindsKeepLessOfTheirClass)
{
    struct Case
    {
        rc::Ref<HF::I_LSqlValue> value;
        const char* type;
        const char* text;
    };
    const Case cases[] = {
        {rc::make<HF::LValueFloat>(0.1f), "DOUBLE", "0.10000000149011612"},
        {rc::make<HF::LValueDouble>(0.1), "DOUBLE", "0.1"},
        {rc::make<HF::LValueUInt8>(7), "BIGINT", "7"},
        {rc::make<HF::LValueInt64>(-1), "BIGINT", "-1"},
        {rc::make<HF::LValueBoolean>(true), nullptr, "true"},
        {rc::make<HF::LValueString>(u"x"_s), nullptr, "x"},
        {rc::make<HF::LValueUUID>(u"6b3a5f3e-0000-4000-8000-00000000000a"_s), nullptr, "6b3a5f3e-0000-4000-8000-00000000000a"},
        {rc::make<HF::LValueByteArray>(QByteArray("ab")), "BLOB", "ab"},
        {rc::make<HF::LValueString>(QString(), true), nullptr, "NULL"},
        {rc::make<HF::LValueInvalid>(), nullptr, "NULL"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.text);
        const auto query = Database().MakeSqlQuery();
        if (each.type) {
            ASSERT_EQ(query->Prepare(u"SELECT typeof($1)"_s, 0).Status, LQueryResult::Done);
            EXPECT_EQ(Cell(query, {each.value}), QString::fromUtf8(each.type));
        }
        ASSERT_EQ(query->Prepare(u"SELECT CAST($1 AS VARCHAR)"_s, 0).Status, LQueryResult::Done);
        EXPECT_EQ(Cell(query, {each.value}), QString::fromUtf8(each.text));
    }
}

} // namespace
