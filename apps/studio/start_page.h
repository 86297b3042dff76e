// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/recents.h"

#include <QWidget>

class QListWidget;

/// What the window shows first: open, create, and the recent databases.
class StartPage : public QWidget
{
    Q_OBJECT

public:
    StartPage(const rc::Ptr<HF::LRecentsList>& recents, QWidget* parent = nullptr);
    ~StartPage() override;

signals:
    void OpenWanted();
    void CreateWanted();
    void MemoryWanted();

private:
    class Watcher;
    void Fill();

    rc::Ptr<HF::LRecentsList> m_recents;
    rc::Ptr<Watcher> m_watcher;
    QListWidget* m_list;
};
