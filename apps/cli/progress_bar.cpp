// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/progress_bar.h"

#include "cli/console.h"

#include <QLocale>
#include <QObject>

#include <algorithm>
#include <cmath>

namespace orbis {

namespace {

QString Duration(double seconds)
{
    const auto whole = static_cast<qint64>(std::ceil(seconds));
    const QString tail = QStringLiteral("%1:%2").arg(whole / 60 % 60).arg(whole % 60, 2, 10, QLatin1Char('0'));
    if (whole < 3600)
        return tail;
    return QStringLiteral("%1:%2").arg(whole / 3600).arg(tail.rightJustified(5, QLatin1Char('0')));
}

} // namespace

QString ProgressText(qint64 done, qint64 total, double seconds, const QString& unit)
{
    constexpr int width = 24;
    const QLocale locale;
    const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
    QString text;
    if (total > 0) {
        const double share = std::clamp(static_cast<double>(done) / static_cast<double>(total), 0.0, 1.0);
        const int filled = static_cast<int>(share * width);
        text = QLatin1Char('[') + QString(filled, QLatin1Char('#')) + QString(width - filled, QLatin1Char('.'))
            + QStringLiteral("] %1 %  ").arg(static_cast<int>(share * 100), 3);
    }
    text += QObject::tr("%1 %2, %3 a second").arg(locale.toString(done), unit, locale.toString(static_cast<qint64>(rate)));
    if (total > done && rate > 0)
        text += QObject::tr(", %1 left").arg(Duration(static_cast<double>(total - done) / rate));
    return text;
}

ProgressBar::ProgressBar(const QString& unit) : m_unit(unit), m_shown(m_start) {}

void ProgressBar::Show(qint64 done, qint64 total)
{
    const Clock::time_point now = Clock::now();
    {
        const std::lock_guard guard(m_mutex);
        if (now - m_shown < std::chrono::milliseconds(250))
            return;
        m_shown = now;
    }
    Console::Instance().ShowStatus(ProgressText(done, total, std::chrono::duration<double>(now - m_start).count(), m_unit));
}

} // namespace orbis
