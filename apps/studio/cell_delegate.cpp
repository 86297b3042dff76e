// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/cell_delegate.h"

#include "hf/enums.h"
#include "studio/table_model.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>

namespace {

/// Characters above which a text does not fit a line.
constexpr qsizetype LongText = 200;

/// The day of a cell where the calendar can show it: not infinity, not before our era.
QDate ShownDay(const QModelIndex& index)
{
    return QDate::fromString(index.data(Qt::EditRole).toString(), Qt::ISODate);
}

} // namespace

QStringList EnumWords(const QString& arguments)
{
    QStringList words;
    for (qsizetype at = arguments.indexOf(u'\''); at >= 0; at = arguments.indexOf(u'\'', at)) {
        QString word;
        for (++at; at < arguments.size(); ++at) {
            if (arguments[at] == u'\'' && (at + 1 == arguments.size() || arguments[++at] != u'\''))
                break;
            word += arguments[at];
        }
        words.append(word);
    }
    return words;
}

bool CellDelegate::WantsWindow(const QModelIndex& index)
{
    if (index.data(TableModel::FieldTypeRole).toInt() == HF::FIELD_BLOB)
        return true;
    const QString text = index.data(Qt::EditRole).toString();
    return text.size() > LongText || text.contains(u'\n');
}

QWidget* CellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const
{
    if (index.data(TableModel::FieldTypeRole).toInt() == HF::FIELD_DATE && ShownDay(index).isValid()
        && ShownDay(index).year() >= 1752 && ShownDay(index).year() <= 9999) {
        auto* editor = new QDateEdit(parent);
        editor->setCalendarPopup(true);
        editor->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        editor->setFrame(false);
        return editor;
    }
    if (index.data(TableModel::FieldTypeRole).toInt() == HF::FIELD_ENUM)
        if (const QStringList words = EnumWords(index.data(TableModel::TypeArgumentsRole).toString()); !words.isEmpty()) {
            auto* editor = new QComboBox(parent);
            editor->setFrame(false);
            editor->setMaxVisibleItems(20);
            editor->setPlaceholderText(QStringLiteral("NULL"));
            editor->addItems(words);
            auto* const self = const_cast<CellDelegate*>(this); // the signals of a delegate are not const
            connect(editor, &QComboBox::activated, self, [self, editor] {
                emit self->commitData(editor);
                emit self->closeEditor(editor);
            });
            return editor;
        }
    auto* editor = new QLineEdit(parent);
    editor->setFrame(false);
    if (index.data(TableModel::NullRole).toBool())
        editor->setPlaceholderText(QStringLiteral("NULL"));
    return editor;
}

void CellDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* day = qobject_cast<QDateEdit*>(editor))
        day->setDate(ShownDay(index));
    else if (auto* word = qobject_cast<QComboBox*>(editor))
        word->setCurrentIndex(index.data(TableModel::NullRole).toBool()
                                  ? -1
                                  : word->findText(index.data(Qt::EditRole).toString(), Qt::MatchFixedString | Qt::MatchCaseSensitive));
    else if (auto* line = qobject_cast<QLineEdit*>(editor))
        line->setText(index.data(Qt::EditRole).toString());
}

void CellDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    if (auto* day = qobject_cast<QDateEdit*>(editor)) {
        if (day->date() != ShownDay(index))
            model->setData(index, day->date().toString(Qt::ISODate));
    } else if (auto* word = qobject_cast<QComboBox*>(editor)) {
        const bool same = !index.data(TableModel::NullRole).toBool() && word->currentText() == index.data(Qt::EditRole).toString();
        if (word->currentIndex() >= 0 && !same)
            model->setData(index, word->currentText());
    } else if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        if (line->isModified())
            model->setData(index, line->text());
    }
}
