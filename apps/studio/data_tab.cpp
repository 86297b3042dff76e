// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/data_tab.h"

#include "hf/enums.h"
#include "hf/field_kinds.h"
#include "hf/sql_text.h"
#include "studio/appearance.h"
#include "studio/filter_header.h"
#include "studio/table_export.h"
#include "studio/table_grid.h"
#include "studio/table_model.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QToolBar>
#include <QVBoxLayout>

DataTab::DataTab(const rc::Ref<HF::I_LTableCursor>& cursor, QWidget* parent)
    : QWidget(parent)
    , m_cursor(cursor)
    , m_model(new TableModel(cursor, this))
    , m_grid(new TableGrid(m_model, this))
    , m_filter(new QLineEdit(this))
    , m_state(new QLabel(this))
    , m_error(new QLabel(this))
{
    if (const auto database = cursor->get_Database())
        m_database = rc::Ref<HF::I_LDatabase>(database);
    const bool readOnly = cursor->get_IsReadOnly().Force();
    auto* bar = new QToolBar(this);
    bar->setIconSize(QSize(18, 18));
    m_save = Add(tr("Save Changes"), ":/icons/save.svg", {}, &DataTab::Save); // Ctrl+S comes from the window's menu
    m_preview = Add(tr("Preview Changes..."), ":/icons/sql-editor.svg", {}, &DataTab::ShowPreview);
    m_takeBack = Add(tr("Take Back"), ":/icons/undo.svg", QKeySequence(Qt::Key_Escape), &DataTab::TakeBack);
    m_revert = Add(tr("Discard All Changes"), ":/icons/close.svg", {}, &DataTab::RevertAll);
    QAction* add = Add(tr("Add Row"), ":/icons/row-add.svg", QKeySequence(Qt::CTRL | Qt::Key_Insert), &DataTab::AddRow);
    QAction* remove =
        Add(tr("Delete Rows"), ":/icons/delete.svg", QKeySequence(Qt::CTRL | Qt::Key_Delete), &DataTab::DeleteRows);
    QAction* refresh = Add(tr("Refresh"), ":/weft/icons/reload_thin.svg", QKeySequence(Qt::Key_F5), &DataTab::Refresh);
    QAction* exporting = Add(tr("Export..."), ":/icons/export.svg", {}, &DataTab::Export);
    m_rowIds = Add(tr("Row Id"), "", {}, &DataTab::ShowColumns);
    m_rowIds->setObjectName(QStringLiteral("rowIds"));
    m_rowIds->setToolTip(tr("Shows the engine's number of each row"));
    m_generated = Add(tr("Generated"), "", {}, &DataTab::ShowColumns);
    m_generated->setObjectName(QStringLiteral("generated"));
    m_generated->setToolTip(tr("Shows the generated columns"));
    for (QAction* action : {m_rowIds, m_generated})
        action->setCheckable(true);
    const auto source = cursor->get_Source();
    m_rowIds->setVisible(source && source->get_ObjectType() == HF::TYPE_TABLE);
    m_generated->setChecked(cursor->get_ShowMethods());
    m_generated->setVisible(m_generated->isChecked());
    m_takeBack->setShortcutContext(Qt::WidgetShortcut); // in an editor or a filter the key is theirs
    m_grid->addAction(m_takeBack);
    for (QAction* action : {m_save, m_preview, m_takeBack, m_revert, add, remove}) {
        bar->addAction(action);
        action->setVisible(!readOnly);
    }
    bar->addSeparator();
    bar->addAction(refresh);
    bar->addAction(exporting);
    bar->addAction(m_rowIds);
    bar->addAction(m_generated);
    m_filter->setPlaceholderText(tr("Filter: a condition such as  price > 10 AND name LIKE 'A%'"));
    m_filter->setClearButtonEnabled(true);
    m_filter->setObjectName(QStringLiteral("filter"));
    bar->addSeparator();
    bar->addWidget(m_filter);

    m_error->setStyleSheet(QStringLiteral("color: #c62828; padding: 3px"));
    m_error->setWordWrap(true);
    m_error->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_error->hide();
    m_state->setContentsMargins(4, 2, 4, 2);
    auto* rows = new QHBoxLayout;
    rows->setSpacing(0);
    rows->addWidget(m_grid, 1);
    rows->addWidget(m_grid->get_Bar());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addWidget(m_error);
    layout->addLayout(rows, 1);
    layout->addWidget(m_state);

    connect(m_filter, &QLineEdit::returnPressed, this, &DataTab::ApplyFilter);
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (text.isEmpty())
            ApplyFilter();
    });
    connect(m_grid->get_Header(), &FilterHeader::FilterChanged, this, &DataTab::ApplyFilter);
    connect(m_grid, &TableGrid::Said, this, &DataTab::Say);
    connect(m_model, &TableModel::Failed, this, &DataTab::SayError);
    connect(m_model, &TableModel::RowsChanged, this, &DataTab::UpdateState);
    connect(m_model, &TableModel::EditsChanged, this, [this] {
        UpdateState();
        emit TitleChanged();
    });
    connect(m_model, &TableModel::Saved, this, [this](bool saved, qint64 count) {
        if (saved)
            Say(tr("%1 rows written").arg(count));
        emit TitleChanged();
    });
    UpdateState();
}

QAction* DataTab::Add(const QString& text, const char* icon, const QKeySequence& keys, void (DataTab::*run)())
{
    auto* action = new QAction(PaletteIcon(QLatin1String(icon)), text, this);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setToolTip(keys.isEmpty() ? text
                                      : QStringLiteral("%1 (%2)").arg(text, keys.toString(QKeySequence::NativeText)));
    connect(action, &QAction::triggered, this, run);
    addAction(action);
    return action;
}

bool DataTab::HasPendingEdits() const
{
    return m_model->get_EditCount() > 0 || m_model->IsSaving();
}

QString DataTab::get_Error() const
{
    return m_error->isHidden() ? QString() : m_error->text();
}

void DataTab::Say(const QString& text)
{
    m_error->hide();
    m_state->setText(text);
}

void DataTab::SayError(const QString& text)
{
    m_error->setText(text);
    m_error->show();
}

void DataTab::UpdateState()
{
    const bool edits = m_model->get_EditCount() > 0;
    const bool saving = m_model->IsSaving();
    m_save->setEnabled(edits && !saving);
    m_preview->setEnabled(edits && !saving);
    m_takeBack->setEnabled(edits && !saving);
    m_revert->setEnabled(edits && !saving);
    m_rowIds->setEnabled(!saving);
    m_generated->setEnabled(!saving);
    const QLocale locale;
    const QString count = (m_cursor->get_IsRecordCountEstimated() ? QStringLiteral("~") : QString())
                          + locale.toString(qulonglong(m_model->get_TotalRows()));
    QString text = tr("%1 rows").arg(count);
    if (saving)
        text += QStringLiteral(" - ") + tr("saving...");
    else if (m_model->IsLoading())
        text += QStringLiteral(" - ") + tr("reading...");
    if (edits)
        text += QStringLiteral(" - ") + tr("%1 rows with changes that are not saved").arg(m_model->get_EditCount());
    m_state->setText(text);
}

void DataTab::Save()
{
    m_error->hide();
    m_model->Save();
}

void DataTab::TakeBack()
{
    m_error->hide();
    if (!m_model->TakeBack(m_grid->currentIndex()))
        Say(tr("There is no single change to take back; all can be discarded."));
}

void DataTab::RevertAll()
{
    m_error->hide();
    m_model->RevertAll();
}

void DataTab::AddRow()
{
    m_error->hide();
    const int row = m_model->AddRow();
    if (row < 0)
        return;
    m_grid->setCurrentIndex(m_model->index(row, 0));
    m_grid->scrollToBottom();
}

void DataTab::DeleteRows()
{
    m_error->hide();
    m_model->DeleteRows(m_grid->SelectedRows(), true);
}

void DataTab::Refresh()
{
    m_error->hide();
    m_model->Reload();
}

void DataTab::ShowColumns()
{
    m_error->hide();
    // The fields of the header stand by place: each would move to another column.
    for (int column = 0; column < m_model->columnCount(); ++column)
        if (auto* field = m_grid->get_Header()->get_Field(column)) {
            const QSignalBlocker blocker(field);
            field->clear();
        }
    m_model->ShowColumns(m_rowIds->isChecked(), m_generated->isChecked());
    ApplyFilter();
}

void DataTab::Stop()
{
    m_model->Stop();
}

void DataTab::ApplyFilter()
{
    QStringList conditions;
    if (const QString typed = m_filter->text().trimmed(); !typed.isEmpty())
        conditions.append(u'(' + typed + u'\n' + u')'); // a comment at its end must not swallow the bracket
    const rc::Ptr<const HF::LTreeItem> item = m_model->get_Item();
    for (int column = 0; column < m_model->columnCount(); ++column)
        if (const auto* field = m_grid->get_Header()->get_Field(column))
            if (const QString condition = FilterCondition(HF::QuoteName(m_model->ColumnName(column), item), field->text(),
                                                          HF::IsNumberType(m_model->get_ColumnType(column)));
                !condition.isEmpty())
                conditions.append(condition);
    const QString filter = conditions.join(QLatin1String(" AND "));
    if (filter == m_cursor->get_Filter())
        return;
    m_error->hide();
    m_model->SetFilter(filter);
}

QString DataTab::QueryText() const
{
    const auto source = m_cursor->get_Source();
    if (!source)
        return {};
    const rc::Ptr<const HF::LTreeItem> item = m_model->get_Item();
    QString text = QStringLiteral("SELECT * FROM ") + source->get_NameForQuery(true);
    if (const QString filter = m_cursor->get_Filter(); !filter.isEmpty())
        text += QLatin1String(" WHERE ") + filter;
    QStringList order;
    for (const HF::LSortField& field : m_cursor->get_Sorting())
        order.append(HF::QuoteName(field.name, item) + (field.descending ? QLatin1String(" DESC") : QLatin1String("")));
    if (!order.isEmpty())
        text += QLatin1String(" ORDER BY ") + order.join(QLatin1String(", "));
    return text;
}

void DataTab::Export()
{
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    const auto source = m_cursor->get_Source();
    if (!database || !source)
        return SayError(tr("The table is gone."));
    ExportDialog dialog(rc::Ref<HF::I_LDatabase>(database), QueryText(), source->get_Name(), window());
    dialog.exec();
}

void DataTab::ShowPreview()
{
    const QStringList statements = m_model->Statements();
    QDialog dialog(window());
    dialog.setWindowTitle(tr("Changes as SQL"));
    dialog.resize(720, 420);
    auto* text = new QPlainTextEdit(statements.join(QLatin1String("\n\n")), &dialog);
    text->setReadOnly(true);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Close, &dialog);
    buttons->button(QDialogButtonBox::Save)->setEnabled(!statements.isEmpty());
    connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(new QLabel(tr("They run in one transaction; each has to find exactly one row."), &dialog));
    layout->addWidget(text);
    layout->addWidget(buttons);
    if (dialog.exec() == QDialog::Accepted)
        Save();
}
