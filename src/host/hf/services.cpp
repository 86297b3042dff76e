// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/services.h"

#include "hf/connection.h"
#include "hf/recents.h"
#include "weft/prompter.h"

#include <QPalette>
#include <QFile>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLayout>
#include <QPainter>
#include <QScreen>
#include <QUrl>
#include <QWidget>

namespace HF {

namespace {

QIcon WithOverlay(const QIcon& base, const QIcon& overlay)
{
    if (base.isNull() || overlay.isNull())
        return base;
    QIcon result;
    for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Selected})
        for (const int size : {16, 24, 32, 48, 64}) {
            QPixmap pixmap = base.pixmap(size, size, mode);
            QPainter painter(&pixmap);
            painter.drawPixmap(pixmap.rect(), overlay.pixmap(size, size, mode));
            painter.end();
            result.addPixmap(pixmap, mode);
        }
    return result;
}

/// A location that names a file, as against ":memory:", "md:name" and URIs. A
/// drive letter is one character, a scheme has more.
bool IsDiskPath(const QString& location)
{
    const qsizetype colon = location.indexOf(u':');
    if (location.isEmpty() || colon == 0)
        return false;
    return colon < 2 || location.left(colon).contains(u'/');
}

struct Workspace
{
    std::mutex mutex;
    QString active;
};

Workspace& TheWorkspace()
{
    static Workspace* workspace = new Workspace;
    return *workspace;
}

} // namespace

uik::uik_settings& ApplicationSettings()
{
    return uik::settings();
}

void Alert(const QString& text)
{
    weft::prompter().tell(text);
}

std::optional<QString> InputText(const QString& prompt, const QString& initial)
{
    return weft::prompter().input({QString(), prompt, initial, QString()});
}

std::optional<QString> InputTextWithTitle(const QString& title, const QString& prompt, const QString& initial,
                                          const QString& acceptButton)
{
    return weft::prompter().input({title, prompt, initial, acceptButton});
}

void SetWidgetConstraints(QWidget& window)
{
    // Brings the minimum that the layout demands up to date.
    if (window.layout())
        window.layout()->activate();
    const QScreen* screen = window.screen();
    if (!screen || !window.isWindow())
        return;
    const QSize room = screen->availableGeometry().size();
    window.setMaximumSize(room);
    if (window.isVisible() && !window.isMaximized() && !window.isFullScreen())
        window.resize(window.size().boundedTo(room));
}

QString GetFactoryTypeNameTranslated(ELConnectionFactoryId id)
{
    return id == FACTORY_DUCKDB ? QObject::tr("DuckDB Files") : QString();
}

namespace {

/// Icons for a dark window stand under ":/dark", where there are any.
QString ForPalette(const QString& path, bool dark)
{
    if (!dark || !path.startsWith(QLatin1String(":/")))
        return path;
    const QString variant = QStringLiteral(":/dark") + path.mid(1);
    return QFile::exists(variant) ? variant : path;
}

/// A selected row is dark in either palette.
QIcon FromFile(const QString& path, bool dark)
{
    if (path.isEmpty())
        return {};
    QIcon icon(ForPalette(path, dark));
    if (const QString selected = ForPalette(path, true); selected != path)
        icon.addFile(selected, QSize(), QIcon::Selected);
    return icon;
}

} // namespace

QIcon LoadCachedIcon(const QString& path)
{
    // Icons do not outlive the application object: they may hold pixmaps.
    static QPointer<QCoreApplication> owner;
    static QHash<QString, QIcon>* cache = new QHash<QString, QIcon>;
    if (owner != QCoreApplication::instance()) {
        cache->clear();
        owner = QCoreApplication::instance();
    }
    const bool dark = qobject_cast<QGuiApplication*>(QCoreApplication::instance())
                      && QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    const QString key = dark ? u'!' + path : path;
    const auto known = cache->constFind(key);
    if (known != cache->constEnd())
        return *known;
    QIcon icon = FromFile(path.section(u'\n', 0, 0), dark);
    const QString overlay = path.section(u'\n', 1, 1);
    if (!overlay.isEmpty() && qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        icon = WithOverlay(icon, FromFile(overlay, dark));
    cache->insert(key, icon);
    return icon;
}

QString PluralStr(const QString& word)
{
    auto ends = [&](const char* suffix) { return word.endsWith(QLatin1String(suffix)); };
    if (word.isEmpty())
        return word;
    if (ends("s") || ends("x") || ends("z") || ends("ch") || ends("sh"))
        return word + QLatin1String("es");
    if (ends("y") && word.size() > 1 && !QStringLiteral("aeiou").contains(word.at(word.size() - 2)))
        return word.chopped(1) + QLatin1String("ies");
    return word + u's';
}

void OpenURL(const QString& url)
{
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        QDesktopServices::openUrl(QUrl::fromUserInput(url));
}

QString AbsoluteLocation(const QString& location)
{
    return IsDiskPath(location) ? QFileInfo(location).absoluteFilePath() : location;
}

void CheckRecentDatabasesPaths(const rc::Ref<LRecentsList>& list)
{
    for (const rc::Ref<LRecentItem>& item : list->get_Items()) {
        const QString location = item->get_ItemData().toString();
        if (!item->HasProperty(PROP_TEMPORARY) && IsDiskPath(location) && !QFileInfo::exists(location))
            list->DeleteRecent(item);
    }
}

void AddStatistic(const QString& name, unsigned count)
{
    static std::mutex mutex;
    std::lock_guard guard(mutex);
    const QString key = QStringLiteral("Statistics/") + name;
    uik::uik_settings& settings = uik::settings();
    settings.setValue(key, settings.value(key, 0).toULongLong() + count);
}

QString GetActiveWorkspaceID()
{
    std::lock_guard guard(TheWorkspace().mutex);
    return TheWorkspace().active;
}

void SetActiveWorkspaceID(const QString& workspace)
{
    std::lock_guard guard(TheWorkspace().mutex);
    TheWorkspace().active = workspace;
}

QString GetWorkspaceID(const rc::Ptr<const LTreeItem>& item)
{
    // The workspace belongs to the connection that the item hangs under.
    rc::Ptr<const LTreeItem> node = item;
    while (node) {
        if (auto* connection = dynamic_cast<const I_LConnection*>(node.get()))
            return connection->get_ConnectionParameters().WorkspaceId.ToQString();
        node = node->get_ParentObject();
    }
    return QString();
}

} // namespace HF
