// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPlainTextEdit>
#include <QTimer>

/// What a script prints. A place in the script is a link. Lines come in bundles,
/// so that a script may print a lot; only the last ones are kept.
class ScriptOutput : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit ScriptOutput(QWidget* parent = nullptr);

    /// With a line number the text is a link to that line.
    void Add(const QString& text, bool isError, int line = 0);
    void Empty();
    /// All that came, as text.
    QString Text();
    /// Follows the link that the cursor is in, if it is in one.
    void FollowLink();

signals:
    void LineChosen(int line);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Entry
    {
        QString text;
        bool isError;
        int line;
    };
    void Flush();
    void Follow(const QString& anchor);

    QList<Entry> m_waiting;
    QTimer m_flush;
};
