// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/plugin.h"

#include "nub/exception.h"

#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace HF {

I_LPlugin::~I_LPlugin() = default;

namespace {

QString LastLoaderError()
{
    const char* text = dlerror();
    return text ? QString::fromLocal8Bit(text) : QString();
}

LLoadedPlugin Failed(const QString& error)
{
    LLoadedPlugin result;
    result.error = error;
    return result;
}

} // namespace

LLoadedPlugin LoadPlugin(const QString& path)
{
    if (!QFileInfo(path).isFile())
        return Failed(QObject::tr("The plug-in \"%1\" does not exist.").arg(path));

    // An absolute path: the loader searches its own folders for a bare name.
    const QByteArray file = QFile::encodeName(QFileInfo(path).absoluteFilePath());
    const auto cannotStart = [&](const QString& why) {
        return Failed(QObject::tr("The plug-in \"%1\" cannot be started: %2").arg(path, why));
    };
    try {
        void* object = dlopen(file.constData(), RTLD_NOW | RTLD_LOCAL);
        if (!object)
            return Failed(QObject::tr("The plug-in \"%1\" cannot be loaded: %2").arg(path, LastLoaderError()));
        // From here on the object stays loaded, whatever happens: its static
        // initialisers have left their marks in the host's libraries.
        using Instantiate = I_LPlugin* (*)();
        auto* instantiate = reinterpret_cast<Instantiate>(dlsym(object, "orbInstantiatePlugin"));
        if (!instantiate)
            return Failed(QObject::tr("\"%1\" is not a plug-in: it has no entry point.").arg(path));
        LLoadedPlugin result;
        result.plugin.reset(instantiate());
        return result.plugin ? std::move(result) : cannotStart(QObject::tr("it gave nothing back."));
    } catch (const nub::xException& error) {
        return cannotStart(QString::fromUtf8(error.what()));
    } catch (const std::exception& error) {
        return cannotStart(QString::fromUtf8(error.what()));
    } catch (...) {
        return cannotStart(QObject::tr("unknown error"));
    }
}

} // namespace HF
