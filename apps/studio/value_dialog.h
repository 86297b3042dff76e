// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QVariant>

#include <optional>

class QLabel;
class QPlainTextEdit;
class QTabWidget;

/// Bytes as digits, sixteen to a line; what ParseHex reads again.
QString HexText(const QByteArray& bytes);
/// Pairs of hexadecimal digits, with any blanks between them; nothing for anything else.
std::optional<QByteArray> ParseHex(const QString& text);

/// One value whole: a text, or bytes as digits, as text and as a picture.
class ValueDialog : public QDialog
{
    Q_OBJECT

public:
    /// `value` is invalid for NULL, a QByteArray for bytes, otherwise a text.
    ValueDialog(const QString& title, const QVariant& value, bool bytes, bool readOnly, QWidget* parent = nullptr);
    /// What was entered, in the same form. Valid to ask after accept.
    const QVariant& get_Value() const { return m_value; }
    bool IsChanged() const { return m_changed; }
    /// A line of words below the value; empty for none.
    void Say(const QString& text);

    void accept() override;

private:
    void ShowBytes(const QByteArray& bytes);
    void LoadFile();
    void SaveFile();
    void SetNull();

    QVariant m_value;
    bool m_bytes;
    bool m_changed = false;
    bool m_null;
    QTabWidget* m_pages = nullptr;
    QPlainTextEdit* m_text = nullptr;
    QPlainTextEdit* m_hex = nullptr;
    QLabel* m_picture = nullptr;
    QLabel* m_note;
};
