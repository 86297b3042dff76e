// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/appearance.h"

#include "hf/services.h"
#include "uik/settings.h"

#include <QApplication>
#include <QIconEngine>
#include <QStyle>
#include <QStyleFactory>

namespace {

const QString Key = QStringLiteral("Studio/Appearance");

QPalette DarkPalette()
{
    const QColor window(0x2b, 0x2d, 0x30), base(0x1e, 0x1f, 0x22), text(0xdf, 0xe1, 0xe5), dim(0x80, 0x84, 0x8b),
        button(0x39, 0x3b, 0x40), highlight(0x2f, 0x65, 0xca);
    QPalette palette(text, window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x28, 0x2b));
    palette.setColor(QPalette::Button, button);
    palette.setColor(QPalette::ToolTipBase, button);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6b, 0x9b, 0xfa));
    palette.setColor(QPalette::PlaceholderText, dim);
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, dim);
    return palette;
}

/// Has no pictures of its own, which would stay as they are.
class PaletteIconEngine : public QIconEngine
{
public:
    explicit PaletteIconEngine(const QString& path) : m_path(path) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        HF::LoadCachedIcon(m_path).paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return HF::LoadCachedIcon(m_path).pixmap(size, 1, mode, state);
    }
    QIconEngine* clone() const override { return new PaletteIconEngine(m_path); }

private:
    QString m_path;
};

} // namespace

Appearance StoredAppearance()
{
    const int value = uik::settings().value(Key, 0).toInt();
    return value == 1 || value == 2 ? Appearance(value) : Appearance::Desktop;
}

void StoreAppearance(Appearance appearance)
{
    uik::settings().setValue(Key, int(appearance));
    ApplyAppearance();
}

void ApplyAppearance()
{
    static const QPalette desktop = QApplication::palette();
    switch (StoredAppearance()) {
    case Appearance::Desktop:
        QApplication::setPalette(desktop);
        break;
    case Appearance::Light:
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(QApplication::style()->standardPalette());
        break;
    case Appearance::Dark:
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(DarkPalette());
        break;
    }
}

bool IsDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

QIcon PaletteIcon(const QString& path)
{
    return path.isEmpty() ? QIcon() : QIcon(new PaletteIconEngine(path));
}
