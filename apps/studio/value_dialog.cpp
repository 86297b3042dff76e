// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/value_dialog.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QFontDatabase>
#include <QLabel>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QScrollArea>
#include <QStringDecoder>
#include <QTabWidget>
#include <QVBoxLayout>

#include <optional>

namespace {

constexpr qsizetype BytesInALine = 16;
/// Bytes that are shown as digits at most; longer values come and go by files.
constexpr qsizetype MostShownBytes = 1 << 20;

} // namespace

QString HexText(const QByteArray& bytes)
{
    QByteArray text;
    text.reserve(bytes.size() * 3);
    for (qsizetype at = 0; at < bytes.size(); at += BytesInALine)
        text += bytes.mid(at, BytesInALine).toHex(' ') + '\n';
    text.chop(1);
    return QString::fromLatin1(text);
}

std::optional<QByteArray> ParseHex(const QString& text)
{
    QByteArray digits;
    for (const QChar c : text) {
        if (c.isSpace())
            continue;
        if (!((c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F')))
            return std::nullopt;
        digits += c.toLatin1();
    }
    if (digits.size() % 2 != 0)
        return std::nullopt;
    return QByteArray::fromHex(digits);
}

ValueDialog::ValueDialog(const QString& title, const QVariant& value, bool bytes, bool readOnly, QWidget* parent)
    : QDialog(parent), m_value(value), m_bytes(bytes), m_null(!value.isValid()), m_note(new QLabel(this))
{
    setWindowTitle(title);
    resize(640, 420);
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    m_text = new QPlainTextEdit(this);
    m_text->setFont(fixed);
    m_text->setReadOnly(readOnly || bytes);
    auto* layout = new QVBoxLayout(this);
    if (bytes) {
        m_pages = new QTabWidget(this);
        m_hex = new QPlainTextEdit(this);
        m_hex->setFont(fixed);
        m_hex->setReadOnly(readOnly || value.toByteArray().size() > MostShownBytes);
        m_picture = new QLabel(this);
        m_picture->setAlignment(Qt::AlignCenter);
        auto* area = new QScrollArea(this);
        area->setWidget(m_picture);
        area->setWidgetResizable(true);
        m_pages->addTab(m_hex, tr("Hexadecimal"));
        m_pages->addTab(m_text, tr("Text"));
        m_pages->addTab(area, tr("Picture"));
        layout->addWidget(m_pages, 1);
        ShowBytes(value.toByteArray());
        connect(m_hex, &QPlainTextEdit::textChanged, this, [this] {
            m_changed = true;
            m_null = false;
        });
        // The other pages show what the digits say now.
        connect(m_pages, &QTabWidget::currentChanged, this, [this](int page) {
            if (page > 0 && !m_hex->isReadOnly())
                if (const auto parsed = ParseHex(m_hex->toPlainText()))
                    ShowBytes(*parsed);
        });
    } else {
        m_text->setPlainText(value.toString());
        layout->addWidget(m_text, 1);
        connect(m_text, &QPlainTextEdit::textChanged, this, [this] {
            m_changed = true;
            m_null = false;
        });
    }
    m_note->setWordWrap(true);
    layout->addWidget(m_note);
    Say(m_null ? QStringLiteral("NULL") : QString());
    auto* buttons = new QDialogButtonBox(readOnly ? QDialogButtonBox::Close
                                                  : QDialogButtonBox::Ok | QDialogButtonBox::Cancel,
                                         this);
    if (bytes) {
        auto* save = buttons->addButton(tr("Save to File..."), QDialogButtonBox::ActionRole);
        connect(save, &QPushButton::clicked, this, &ValueDialog::SaveFile);
        if (!readOnly)
            connect(buttons->addButton(tr("Load from File..."), QDialogButtonBox::ActionRole), &QPushButton::clicked, this,
                    &ValueDialog::LoadFile);
    }
    if (!readOnly)
        connect(buttons->addButton(tr("Set NULL"), QDialogButtonBox::ActionRole), &QPushButton::clicked, this,
                &ValueDialog::SetNull);
    connect(buttons, &QDialogButtonBox::accepted, this, &ValueDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

void ValueDialog::Say(const QString& text)
{
    m_note->setText(text);
    m_note->setVisible(!text.isEmpty());
}

void ValueDialog::ShowBytes(const QByteArray& bytes)
{
    m_value = m_null ? QVariant() : QVariant(bytes);
    const bool changed = m_changed;
    const QString hex = HexText(bytes.left(MostShownBytes));
    if (m_hex->toPlainText() != hex)
        m_hex->setPlainText(hex);
    m_changed = changed;
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(bytes.left(MostShownBytes));
    m_text->setPlainText(decoder.hasError() ? QString::fromLatin1(bytes.left(MostShownBytes)) : text);
    QPixmap picture;
    if (picture.loadFromData(bytes))
        m_picture->setPixmap(picture);
    else
        m_picture->setText(tr("These bytes are no picture."));
    if (bytes.size() > MostShownBytes)
        Say(tr("The first %1 of %2 bytes are shown.").arg(MostShownBytes).arg(bytes.size()));
}

void ValueDialog::LoadFile()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Load from File"));
    if (path.isEmpty())
        return;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Say(tr("%1: %2").arg(path, file.errorString()));
    const QByteArray bytes = file.readAll();
    m_null = false;
    m_hex->setReadOnly(bytes.size() > MostShownBytes);
    Say({});
    ShowBytes(bytes);
    m_changed = true;
}

void ValueDialog::SaveFile()
{
    const QString path = QFileDialog::getSaveFileName(this, tr("Save to File"));
    if (path.isEmpty())
        return;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(m_value.toByteArray()) < 0 || !file.commit())
        Say(tr("%1: %2").arg(path, file.errorString()));
}

void ValueDialog::SetNull()
{
    m_changed = true;
    m_value = QVariant();
    m_null = true;
    QDialog::accept();
}

void ValueDialog::accept()
{
    if (m_changed && !m_null) {
        if (!m_bytes) {
            m_value = m_text->toPlainText();
        } else if (!m_hex->isReadOnly()) {
            const auto parsed = ParseHex(m_hex->toPlainText());
            if (!parsed) {
                m_pages->setCurrentIndex(0);
                return Say(tr("Only pairs of hexadecimal digits can be stored."));
            }
            m_value = *parsed;
        }
    }
    QDialog::accept();
}
