// SPDX-License-Identifier: GPL-3.0-or-later
#include "dump/load_dump_options_widget.h"

#include "uik/ui.h"

#include <QCheckBox>

namespace {

weft::ui_item Option(QCheckBox* control, const char* key, bool otherwise, const QString& tip)
{
    const QString name = QLatin1String(key);
    // A paragraph, so that the text wraps in the tip's window.
    return weft::ui_item(control) | weft::set_name(name) | uik::tip(QLatin1String("<p>") + tip + QLatin1String("</p>")) |
           uik::settings_entry(QStringLiteral("/Plugins/DuckDB/LoadDump/") + name, otherwise);
}

} // namespace

orbDuckDB_LoadDumpOptionsWidget_SQL::orbDuckDB_LoadDumpOptionsWidget_SQL(QWidget* parent)
    : HF::LWizardPage(parent),
      m_multipleStatements(new QCheckBox(QObject::tr("Execute multiple dump statements"), this)),
      m_stopOnError(new QCheckBox(QObject::tr("Stop on error"), this))
{
    const QString multipleTip = QObject::tr("If TRUE, multiple statements from the dump file are sent for execution "
                                            "together which improves performance.");
    const QString stopTip = QObject::tr("If TRUE, the loading process stops on the first error.");
    (uik::set_title(QObject::tr("Load Dump Options"))
         .set_layout(weft::vlayout({
             Option(m_multipleStatements, "MultipleStatements", true, multipleTip),
             Option(m_stopOnError, "StopOnError", false, stopTip),
             weft::expander(),
         })))
        .apply_to(this);
}

bool orbDuckDB_LoadDumpOptionsWidget_SQL::get_MultipleStatements() const
{
    return m_multipleStatements->isChecked();
}

bool orbDuckDB_LoadDumpOptionsWidget_SQL::get_StopOnError() const
{
    return m_stopOnError->isChecked();
}
