// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bridge/qobject_impl.h"

#include <QCloseEvent>
#include <QEvent>
#include <QItemSelection>
#include <QSize>
#include <QWidget>

namespace weft::internal {

/// A widget that a script made.
template <typename T>
class qwidget_impl : public qobject_impl<T>
{
public:
    using qobject_impl<T>::qobject_impl;

    ::QSize sizeHint() const override
    {
        ::QSize result;
        return self().run(hook::sizeHint, &result) ? result : T::sizeHint();
    }
    ::QSize minimumSizeHint() const override
    {
        ::QSize result;
        return self().run(hook::minimumSizeHint, &result) ? result : T::minimumSizeHint();
    }

protected:
    void changeEvent(::QEvent* event) override
    {
        if (!this->run_void(hook::changeEvent, event))
            T::changeEvent(event);
    }
    void closeEvent(::QCloseEvent* event) override
    {
        if (!this->run_void(hook::closeEvent, static_cast<::QEvent*>(event)))
            T::closeEvent(event);
    }
    void contextMenuEvent(::QContextMenuEvent* event) override
    {
        if (!this->run_void(hook::contextMenuEvent, static_cast<::QEvent*>(event)))
            T::contextMenuEvent(event);
    }
    void enterEvent(::QEnterEvent* event) override
    {
        if (!this->run_void(hook::enterEvent, static_cast<::QEvent*>(event)))
            T::enterEvent(event);
    }
    void leaveEvent(::QEvent* event) override
    {
        if (!this->run_void(hook::leaveEvent, event))
            T::leaveEvent(event);
    }
    void focusInEvent(::QFocusEvent* event) override
    {
        if (!this->run_void(hook::focusInEvent, static_cast<::QEvent*>(event)))
            T::focusInEvent(event);
    }
    void focusOutEvent(::QFocusEvent* event) override
    {
        if (!this->run_void(hook::focusOutEvent, static_cast<::QEvent*>(event)))
            T::focusOutEvent(event);
    }
    void hideEvent(::QHideEvent* event) override
    {
        if (!this->run_void(hook::hideEvent, static_cast<::QEvent*>(event)))
            T::hideEvent(event);
    }
    void showEvent(::QShowEvent* event) override
    {
        if (!this->run_void(hook::showEvent, static_cast<::QEvent*>(event)))
            T::showEvent(event);
    }
    void keyPressEvent(::QKeyEvent* event) override
    {
        if (!this->run_void(hook::keyPressEvent, static_cast<::QEvent*>(event)))
            T::keyPressEvent(event);
    }
    void keyReleaseEvent(::QKeyEvent* event) override
    {
        if (!this->run_void(hook::keyReleaseEvent, static_cast<::QEvent*>(event)))
            T::keyReleaseEvent(event);
    }
    void mouseDoubleClickEvent(::QMouseEvent* event) override
    {
        if (!this->run_void(hook::mouseDoubleClickEvent, static_cast<::QEvent*>(event)))
            T::mouseDoubleClickEvent(event);
    }
    void mouseMoveEvent(::QMouseEvent* event) override
    {
        if (!this->run_void(hook::mouseMoveEvent, static_cast<::QEvent*>(event)))
            T::mouseMoveEvent(event);
    }
    void mousePressEvent(::QMouseEvent* event) override
    {
        if (!this->run_void(hook::mousePressEvent, static_cast<::QEvent*>(event)))
            T::mousePressEvent(event);
    }
    void mouseReleaseEvent(::QMouseEvent* event) override
    {
        if (!this->run_void(hook::mouseReleaseEvent, static_cast<::QEvent*>(event)))
            T::mouseReleaseEvent(event);
    }
    void moveEvent(::QMoveEvent* event) override
    {
        if (!this->run_void(hook::moveEvent, static_cast<::QEvent*>(event)))
            T::moveEvent(event);
    }
    void paintEvent(::QPaintEvent* event) override
    {
        if (!this->run_void(hook::paintEvent, static_cast<::QEvent*>(event)))
            T::paintEvent(event);
    }
    void resizeEvent(::QResizeEvent* event) override
    {
        if (!this->run_void(hook::resizeEvent, static_cast<::QEvent*>(event)))
            T::resizeEvent(event);
    }
    void wheelEvent(::QWheelEvent* event) override
    {
        if (!this->run_void(hook::wheelEvent, static_cast<::QEvent*>(event)))
            T::wheelEvent(event);
    }

private:
    qwidget_impl& self() const { return const_cast<qwidget_impl&>(*this); }
};

/// A dialog that a script made.
template <typename T>
class qdialog_impl : public qwidget_impl<T>
{
public:
    using qwidget_impl<T>::qwidget_impl;

    void accept() override
    {
        if (!this->run_void(hook::accept))
            T::accept();
    }
    void reject() override
    {
        if (!this->run_void(hook::reject))
            T::reject();
    }
    void done(int result) override
    {
        if (!this->run_void(hook::done, result))
            T::done(result);
    }
};

/// A button that a script made.
template <typename T>
class qbutton_impl : public qwidget_impl<T>
{
public:
    using qwidget_impl<T>::qwidget_impl;

protected:
    void checkStateSet() override
    {
        if (!this->run_void(hook::checkStateSet))
            T::checkStateSet();
    }
    bool hitButton(const ::QPoint& position) const override
    {
        bool result = false;
        return const_cast<qbutton_impl&>(*this).run(hook::hitButton, &result, position) ? result : T::hitButton(position);
    }
    void nextCheckState() override
    {
        if (!this->run_void(hook::nextCheckState))
            T::nextCheckState();
    }
};

/// A view of a model that a script made.
template <typename T>
class qitemview_impl : public qwidget_impl<T>
{
public:
    using qwidget_impl<T>::qwidget_impl;

protected:
    void currentChanged(const ::QModelIndex& current, const ::QModelIndex& previous) override
    {
        if (!this->run_void(hook::currentChanged, current, previous))
            T::currentChanged(current, previous);
    }
    void selectionChanged(const ::QItemSelection& selected, const ::QItemSelection& deselected) override
    {
        if (!this->run_void(hook::selectionChanged, selected, deselected))
            T::selectionChanged(selected, deselected);
    }
};

} // namespace weft::internal
