// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/design.h"

#include <QWidget>

class QLabel;

namespace HF {
class LScintilla;
}

/// The statements that pending edits come to, and above them in plain words what
/// stands in the way, what would be lost, or how the application went.
class DesignPreview : public QWidget
{
    Q_OBJECT

public:
    explicit DesignPreview(const rc::Ptr<HF::I_LDatabase>& database, QWidget* parent = nullptr);

    void ShowPlan(const HF::LDesignPlan& plan);
    /// A report of failure: the engine's words, and the statement marked in the text.
    void ShowFailure(const HF::LDesignReport& report);
    void ShowMessage(const QString& text);
    QString Text() const;
    QString Message() const;

private:
    HF::LScintilla* m_text;
    QLabel* m_message;
};

/// The statements of a plan as one text, as they would run.
QString PlanText(const HF::LDesignPlan& plan);
