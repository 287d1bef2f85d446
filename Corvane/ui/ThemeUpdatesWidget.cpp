// SPDX-License-Identifier: MIT
#include "Corvane/ui/ThemeUpdatesWidget.h"

#include "Corvane/module/ThemeUpdatesAssembly.h"
#include "Corvane/presentation/ThemeEntryEventHandler.h"
#include "Corvane/presentation/ThemeEntryPresenter.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/WindowAlerts.h"
#include "ui_Corvane.h"

#include <QPointer>

namespace corvane {

struct ThemeUpdatesWidget::Graph {
    std::shared_ptr<CorvaneWindowController> controller;
    ThemeUpdatesAssembly core;
};

ThemeUpdatesWidget::ThemeUpdatesWidget(const Configuration& configuration, QWidget* parent)
    : QWidget(parent), m_graph(std::make_unique<Graph>())
{
    // The window's own form, set up in this widget: one layout for the window and the page.
    Ui::CorvaneWindow form;
    form.setupUi(this);
    setWindowTitle({});
    m_graph->controller = CorvaneWindowController::embeddedIn(this);
    auto alerts = std::make_shared<WindowAlerts>();
    alerts->setWindow(this);
    m_graph->core = ThemeUpdatesAssembly::create(configuration, m_graph->controller, std::move(alerts));
    m_graph->controller->listViewController()->setDelegate(m_graph->core.eventHandler);
    m_graph->core.eventHandler->themesInstalled = [widget = QPointer<ThemeUpdatesWidget>(this)](const QStringList& files) {
        if (widget)
            emit widget->themesInstalled(files);
    };
    m_graph->core.eventHandler->installBatchEnded = [widget = QPointer<ThemeUpdatesWidget>(this)](
                                                         const InstallBatchSummary& summary) {
        if (widget)
            widget->m_graph->controller->listViewController()->showUndoNotice(summary);
    };
    m_graph->core.eventHandler->installUndone = [widget = QPointer<ThemeUpdatesWidget>(this)](const UndoneInstall& undone) {
        QStringList files;
        for (const UndoneFile& file : undone)
            files.append(file.path);
        if (widget)
            emit widget->installUndone(files);
    };
}

ThemeUpdatesWidget::~ThemeUpdatesWidget() = default;

void ThemeUpdatesWidget::refresh()
{
    m_graph->core.presenter->refresh();
}

void ThemeUpdatesWidget::setPreviewProvider(std::shared_ptr<ProvidesThemePreviews> provider)
{
    m_graph->controller->listViewController()->setPreviewProvider(std::move(provider));
}

void ThemeUpdatesWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!std::exchange(m_shownBefore, true))
        refresh();
}

} // namespace corvane
