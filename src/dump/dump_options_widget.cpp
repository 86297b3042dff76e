// SPDX-License-Identifier: GPL-3.0-or-later
#include "dump/dump_options_widget.h"

#include "uik/ui.h"

#include <QCheckBox>
#include <QSpinBox>

#include <limits>

namespace {

/// The control under its key, opening with the stored value.
weft::ui_item Option(QWidget* control, const char* key, const QVariant& otherwise)
{
    const QString name = QLatin1String(key);
    return weft::ui_item(control) | weft::set_name(name) |
           uik::settings_entry(QStringLiteral("/Plugins/DuckDB/MakeDump/") + name, otherwise);
}

QSpinBox* LimitBox(QWidget* parent)
{
    auto* box = new QSpinBox(parent);
    box->setMaximum(std::numeric_limits<int>::max());
    return box;
}

} // namespace

orbDuckDB_DumpOptionsWidget::orbDuckDB_DumpOptionsWidget(QWidget* parent)
    : HF::LWizardPage(parent),
      m_clean(new QCheckBox(QObject::tr("Drop before restore"), this)),
      m_transaction(new QCheckBox(QObject::tr("Perform inserts in transaction"), this)),
      m_multiRowInsert(new QCheckBox(QObject::tr("Multiple rows in INSERT statement"), this)),
      m_insertLimitRows(LimitBox(this)),
      m_insertLimitData(LimitBox(this)),
      m_replace(new QCheckBox(QObject::tr("Write REPLACE statements rather than INSERT statements"), this))
{
    const auto limit = [](const weft::ui_item& box, const QString& unit) {
        return weft::hlayout({box, weft::label(unit), weft::expander()});
    };
    const weft::ui_item limits =
        weft::form({weft::row(QObject::tr("New statement every:"),
                              limit(Option(m_insertLimitRows, "InsertLimitRows", 250), QObject::tr("Rows"))),
                    weft::row(QString(),
                              limit(Option(m_insertLimitData, "InsertLimitData", 250), QObject::tr("KiB of data")))}) |
        uik::margins(2 * uik::char_width(), 0, 0, 0) | uik::enable_if(m_multiRowInsert);
    (uik::set_title(QObject::tr("Dump options"))
         .set_layout(weft::vlayout({
             Option(m_clean, "Clean", false),
             Option(m_transaction, "Transaction", true),
             Option(m_multiRowInsert, "MultiRowInsert", true),
             limits,
             Option(m_replace, "Replace", false),
             weft::expander(),
         })))
        .apply_to(this);
}

HF::LSQLDumpOptions orbDuckDB_DumpOptionsWidget::get_Options() const
{
    HF::LSQLDumpOptions options;
    options.Clean = m_clean->isChecked();
    options.Transaction = m_transaction->isChecked();
    options.MultiRowInsert = m_multiRowInsert->isChecked();
    options.Replace = m_replace->isChecked();
    if (options.MultiRowInsert) {
        options.InsertLimitRows = m_insertLimitRows->value();
        options.InsertLimitData = m_insertLimitData->value();
    }
    return options;
}
