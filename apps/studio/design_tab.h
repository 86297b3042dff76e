// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/design_session.h"

#include <QWidget>

class DesignPartsPage;
class DesignPreview;
class DesignSheet;
class QAction;
class QLabel;
class QLineEdit;
class QSplitter;
class QTabWidget;
class QTimer;

namespace HF {
class LScintilla;
}

/// The structure editor of one object: its parts and properties, the statements
/// that the edits come to, and the buttons that apply them or take them back.
class DesignTab : public QWidget
{
    Q_OBJECT

public:
    DesignTab(const rc::Ref<HF::I_LDatabase>& database, const DesignTarget& target, QWidget* parent = nullptr);

    DesignSession* get_Session() const { return m_session; }
    DesignPreview* get_Preview() const { return m_preview; }
    DesignSheet* get_Sheet() const { return m_sheet; }
    /// The editor of the text of a view or macro; null for other kinds.
    HF::LScintilla* get_SqlEditor() const { return m_sql; }
    /// The page that shows parts of a kind; null when there is none.
    DesignPartsPage* PageOf(int kind) const;
    /// Shows the page of a part, and the part, once the object has been read.
    void ShowPart(int kind, const QString& name);
    /// The same with a new part of the kind.
    void AddPartWhenRead(HF::ELObjectType kind);

    /// Asks what may be lost where something may be, then runs the statements.
    void Apply();
    void Revert();
    /// The preview as it stands after the last edit, without waiting for its delay.
    void UpdatePreview();
    /// Somebody else changed the structure: reads anew unless there are edits.
    void StructureChanged();
    /// Name for the tab, with a star while there are edits.
    QString Title() const;
    bool HasChanges() const { return m_session->HasChanges(); }
    /// Asks about pending edits; false when the tab is to stay.
    bool MayClose();

signals:
    void TitleChanged();
    /// Edits went into the database.
    void StructureApplied();

private:
    void MakePages(const rc::Ptr<HF::I_LDatabase>& database);
    void SessionOpened(const QString& problem);
    void SessionChanged();
    void UpdateActions();
    void SetHeader(int property, QLineEdit* edit);

    DesignSession* m_session;
    QTabWidget* m_pages;
    DesignSheet* m_sheet;
    DesignPreview* m_preview;
    HF::LScintilla* m_sql = nullptr;
    QList<DesignPartsPage*> m_partPages;
    QLineEdit* m_name;
    QLineEdit* m_comment;
    QLabel* m_state;
    QAction* m_apply;
    QAction* m_revert;
    QAction* m_refresh;
    QAction* m_stop;
    QTimer* m_previewDelay;
    QTimer* m_sqlDelay;
    QString m_notice; ///< stays until the next edit
    int m_waitingKind = 0;
    QString m_waitingName;
    bool m_waitingAdds = false;
};
