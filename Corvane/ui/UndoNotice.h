// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/presentation/InstallBatchSummary.h"

#include <QFrame>

class QLabel;
class QPushButton;

namespace corvane {

// The quiet note in the button bar after an install batch: what it did ("Updated 5 themes", "Installed
// Aurora") and an Undo button. Not an alert: it waits until the user takes it or the next batch
// replaces it.
class UndoNotice : public QFrame {
    Q_OBJECT

public:
    explicit UndoNotice(QWidget* parent = nullptr);

    // What the notice says for a batch.
    static QString describe(const InstallBatchSummary& summary);

    void showFor(const InstallBatchSummary& summary);
    // While the list reloads or a batch runs, Undo waits.
    void setUndoEnabled(bool enabled);

    QLabel* textLabel() const { return m_text; }
    QPushButton* undoButton() const { return m_undo; }

signals:
    // Undo was pressed; the notice has hidden itself.
    void undoRequested();

protected:
    void changeEvent(QEvent* event) override;

private:
    void applyColours();

    QLabel* m_text;
    QPushButton* m_undo;
};

} // namespace corvane
