// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/own_settings.h"

#include "dump/dump_options_widget.h"
#include "dump/load_dump_options_widget.h"

#include <QCheckBox>
#include <QSpinBox>

namespace {

class DumpOptions : public support::OwnSettings
{
};

QCheckBox* Check(QWidget& page, const char* name)
{
    return page.findChild<QCheckBox*>(name);
}

} // namespace

TEST_F(DumpOptions, FirstUseShowsTheDefaults)
{
    const orbDuckDB_DumpOptionsWidget page;
    EXPECT_EQ(page.title(), "Dump options");
    const HF::LSQLDumpOptions options = page.get_Options();
    EXPECT_FALSE(options.Clean);
    EXPECT_TRUE(options.Transaction);
    EXPECT_TRUE(options.MultiRowInsert);
    EXPECT_FALSE(options.Replace);
    EXPECT_EQ(options.InsertLimitRows, 250);
    EXPECT_EQ(options.InsertLimitData, 250);

    orbDuckDB_LoadDumpOptionsWidget_SQL load;
    EXPECT_EQ(load.title(), "Load Dump Options");
    EXPECT_TRUE(load.get_MultipleStatements());
    EXPECT_FALSE(load.get_StopOnError());
    for (const char* name : {"MultipleStatements", "StopOnError"})
        EXPECT_TRUE(Check(load, name)->toolTip().startsWith("<p>") && Check(load, name)->toolTip().endsWith("</p>"));
    EXPECT_FALSE(StoredText().contains("Plugins"));
}

TEST_F(DumpOptions, EveryChangeIsKeptAtOnce)
{
    {
        orbDuckDB_DumpOptionsWidget page;
        for (const char* name : {"Clean", "Transaction", "Replace"})
            Check(page, name)->click();
        auto* rows = page.findChild<QSpinBox*>("InsertLimitRows");
        EXPECT_EQ(rows->maximum(), 2147483647);
        rows->setValue(2147483647);
        page.findChild<QSpinBox*>("InsertLimitData")->setValue(0);
        orbDuckDB_LoadDumpOptionsWidget_SQL load;
        Check(load, "MultipleStatements")->click();
        Check(load, "StopOnError")->click();
    }
    EXPECT_EQ(uik::settings().value("/Plugins/DuckDB/MakeDump/Clean"), true);
    EXPECT_EQ(uik::settings().value("/Plugins/DuckDB/LoadDump/StopOnError"), true);
    uik::SetSettingsFile(FileName()); // as another run reads it: all texts
    const HF::LSQLDumpOptions options = orbDuckDB_DumpOptionsWidget().get_Options();
    EXPECT_TRUE(options.Clean);
    EXPECT_FALSE(options.Transaction);
    EXPECT_TRUE(options.Replace);
    EXPECT_EQ(options.InsertLimitRows, 2147483647);
    EXPECT_EQ(options.InsertLimitData, 0);
    const orbDuckDB_LoadDumpOptionsWidget_SQL load;
    EXPECT_FALSE(load.get_MultipleStatements());
    EXPECT_TRUE(load.get_StopOnError());
}

TEST_F(DumpOptions, LimitsCountOnlyForManyRows)
{
    orbDuckDB_DumpOptionsWidget page;
    auto* rows = page.findChild<QSpinBox*>("InsertLimitRows");
    auto* data = page.findChild<QSpinBox*>("InsertLimitData");
    rows->setValue(7);
    Check(page, "MultiRowInsert")->click();
    EXPECT_FALSE(rows->isEnabled() || data->isEnabled());
    EXPECT_EQ(rows->value(), 7);
    EXPECT_EQ(page.get_Options().InsertLimitRows, 0);
    Check(page, "MultiRowInsert")->click();
    EXPECT_TRUE(rows->isEnabled() && data->isEnabled());
    EXPECT_EQ(page.get_Options().InsertLimitRows, 7);
}
