// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/weak_ref.h"
#include "weft/ident.h"

#include <QMetaType>
#include <QPointer>

#include <span>

namespace weft::qt {

/// The virtual functions of native classes that a script class may override.
/// BRIDGE_HOOKS(X) names each once; the name is the method's.
#define BRIDGE_HOOKS(X)                                                                                                \
    X(childEvent) X(connectNotify) X(customEvent) X(disconnectNotify) X(event) X(eventFilter) X(timerEvent)            \
    X(changeEvent) X(closeEvent) X(contextMenuEvent) X(enterEvent) X(leaveEvent) X(focusInEvent) X(focusOutEvent)       \
    X(hideEvent) X(showEvent) X(keyPressEvent) X(keyReleaseEvent) X(mouseDoubleClickEvent) X(mouseMoveEvent)            \
    X(mousePressEvent) X(mouseReleaseEvent) X(moveEvent) X(paintEvent) X(resizeEvent) X(wheelEvent)                    \
    X(minimumSizeHint) X(sizeHint)                                                                                     \
    X(accept) X(done) X(reject)                                                                                        \
    X(checkStateSet) X(hitButton) X(nextCheckState)                                                                    \
    X(currentChanged) X(selectionChanged)                                                                              \
    X(buddy) X(canDropMimeData) X(canFetchMore) X(clearItemData) X(columnCount) X(data) X(dropMimeData) X(fetchMore)    \
    X(flags) X(hasChildren) X(headerData) X(index) X(insertColumns) X(insertRows) X(itemData) X(match) X(mimeData)      \
    X(mimeTypes) X(moveColumns) X(moveRows) X(parent) X(removeColumns) X(removeRows) X(revert) X(roleNames)             \
    X(rowCount) X(setData) X(setHeaderData) X(setItemData) X(sibling) X(sort) X(span) X(submit)                        \
    X(supportedDragActions) X(supportedDropActions)

enum class hook : int {
    none = -1,
#define BRIDGE_HOOK(name) name,
    BRIDGE_HOOKS(BRIDGE_HOOK)
#undef BRIDGE_HOOK
        count
};

/// The identifier of a hook's method.
const method_ident& hook_ident(hook which);

/// One value that Qt passes, by its type.
struct hook_value
{
    QMetaType type;
    const void* value;
};

/// The native half of a script's object: finds the runtime object without
/// keeping it, and runs its overrides. Thread of the native object.
class companion
{
public:
    virtual ~companion();
    /// Ties it to its runtime object.
    void attach(const Any& self) { m_self = WeakRef_Generic(self); }
    Any lock() const { return m_self.lock(); }
    static companion* of(::QObject* object);

    /// Runs the override of the runtime object's class. False when there is none,
    /// or the object is gone: the native function has to run. An error inside is
    /// reported, and the native function runs too. A lazy result is waited for.
    bool run(hook which, QMetaType resultType, void* result, std::span<const hook_value> arguments);

    template <typename R, typename... Args>
    bool run(hook which, R* result, const Args&... args)
    {
        const hook_value values[sizeof...(Args) + 1] = {{QMetaType::fromType<Args>(), &args}..., {}};
        return run(which, QMetaType::fromType<R>(), result, std::span(values, sizeof...(Args)));
    }
    template <typename... Args>
    bool run_void(hook which, const Args&... args)
    {
        const hook_value values[sizeof...(Args) + 1] = {{QMetaType::fromType<Args>(), &args}..., {}};
        return run(which, QMetaType(), nullptr, std::span(values, sizeof...(Args)));
    }

private:
    friend class hook_bypass;
    WeakRef_Generic m_self;
    hook m_bypass = hook::none; ///< goes to the native function the next time
};

/// While it lives, the next virtual call of the hook on the object goes to the
/// native class.
class hook_bypass
{
public:
    hook_bypass(hook which, ::QObject* object);
    ~hook_bypass();
    hook_bypass(const hook_bypass&) = delete;
    hook_bypass& operator=(const hook_bypass&) = delete;

private:
    QPointer<::QObject> m_object;
    companion* m_companion = nullptr;
    hook m_former = hook::none;
};

} // namespace weft::qt
