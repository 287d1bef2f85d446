// SPDX-License-Identifier: MIT
#include "DemoWindow.h"

#include "InstalledThemes.h"
#include "ThemeSwatches.h"

#include <QDir>
#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

const QString lastCommitKey = QStringLiteral("themes/lastSeenCommit");
// Where the updater keeps the versions the user skipped, in the settings this host hands it.
const QString skippedVersionsKey = QStringLiteral("Corvane/skippedVersions");

// The host's own texts, by id; the English text when no translator has one.
QString text(const char* id, const char* english)
{
    const QString translated = qtTrId(id);
    return translated == QLatin1StringView(id) ? QString::fromUtf8(english) : translated;
}

} // namespace

DemoWindow::DemoWindow(corvane::Configuration configuration, QSettings& settings)
    : m_module(std::move(configuration)), m_settings(settings)
{
    //% "Inkwell Preferences — Themes"
    setWindowTitle(text(QT_TRID_NOOP("demo.window.title"), "Inkwell Preferences — Themes"));
    resize(640, 440);

    m_notice = new QFrame(this);
    m_notice->setObjectName(QStringLiteral("updateNotice"));
    m_notice->setFrameShape(QFrame::StyledPanel);
    m_notice->setAutoFillBackground(true);
    QPalette noticePalette = m_notice->palette();
    noticePalette.setColor(QPalette::Window, palette().color(QPalette::Highlight).lighter(185));
    noticePalette.setColor(QPalette::WindowText, QColor(0x1d, 0x2a, 0x36));
    m_notice->setPalette(noticePalette);
    auto noticeIcon = new QLabel(m_notice);
    noticeIcon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(20, 20));
    //% "The theme repository has new themes and updates for you."
    m_noticeText = new QLabel(text(QT_TRID_NOOP("demo.notice.text"),
                                   "The theme repository has new themes and updates for you."), m_notice);
    m_noticeText->setWordWrap(true);
    //% "Show Updates"
    auto noticeButton = new QPushButton(text(QT_TRID_NOOP("demo.notice.show"), "Show Updates"), m_notice);
    //% "Later"
    auto dismissButton = new QPushButton(text(QT_TRID_NOOP("demo.notice.dismiss"), "Later"), m_notice);
    dismissButton->setFlat(true);
    auto noticeLayout = new QHBoxLayout(m_notice);
    noticeLayout->setContentsMargins(12, 8, 8, 8);
    noticeLayout->addWidget(noticeIcon);
    noticeLayout->addWidget(m_noticeText, 1);
    noticeLayout->addWidget(dismissButton);
    noticeLayout->addWidget(noticeButton);
    m_notice->hide();
    connect(noticeButton, &QPushButton::clicked, this, &DemoWindow::showThemeUpdates);
    connect(dismissButton, &QPushButton::clicked, m_notice, &QWidget::hide);

    //% "Installed themes"
    auto heading = new QLabel(text(QT_TRID_NOOP("demo.installed.heading"), "Installed themes"), this);
    QFont headingFont = heading->font();
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.25);
    headingFont.setBold(true);
    heading->setFont(headingFont);

    m_themeList = new QTreeWidget(this);
    m_themeList->setRootIsDecorated(false);
    m_themeList->setAlternatingRowColors(true);
    m_themeList->setHeaderLabels({
        //% "Name"
        text(QT_TRID_NOOP("demo.column.name"), "Name"),
        //% "Style"
        text(QT_TRID_NOOP("demo.column.style"), "Style"),
        //% "Version"
        text(QT_TRID_NOOP("demo.column.version"), "Version"),
        //% "Authors"
        text(QT_TRID_NOOP("demo.column.authors"), "Authors"),
    });
    m_themeList->header()->setStretchLastSection(true);

    //% "Checking the theme repository…"
    m_status = new QLabel(text(QT_TRID_NOOP("demo.status.checking"), "Checking the theme repository…"), this);
    m_status->setForegroundRole(QPalette::PlaceholderText);
    //% "Theme Updates…"
    auto updatesButton = new QPushButton(text(QT_TRID_NOOP("demo.button.updates"), "Theme Updates…"), this);
    connect(updatesButton, &QPushButton::clicked, this, &DemoWindow::showThemeUpdates);

    //% "Forget Skipped Versions"
    m_forgetSkipped = new QPushButton(text(QT_TRID_NOOP("demo.button.forget-skipped"), "Forget Skipped Versions"), this);
    m_forgetSkipped->setFlat(true);
    connect(m_forgetSkipped, &QPushButton::clicked, this, [this] {
        m_settings.remove(skippedVersionsKey);
        offerToForgetSkippedVersions();
        if (m_updater && m_updater->isVisible())
            m_updater->show(); // refreshes: the skipped rows come back
    });

    //% "Undo Last Update"
    auto undoButton = new QPushButton(text(QT_TRID_NOOP("demo.button.undo"), "Undo Last Update"), this);
    undoButton->setObjectName(QStringLiteral("undoLastUpdateButton"));
    connect(undoButton, &QPushButton::clicked, this, &DemoWindow::undoLastThemeUpdate);

    auto footer = new QHBoxLayout;
    footer->addWidget(m_status, 1);
    footer->addWidget(m_forgetSkipped);
    footer->addWidget(undoButton);
    footer->addWidget(updatesButton);

    auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(10);
    layout->addWidget(m_notice);
    layout->addWidget(heading);
    layout->addWidget(m_themeList, 1);
    layout->addLayout(footer);

    reloadInstalledThemes();
    offerToForgetSkippedVersions();
}

void DemoWindow::offerToForgetSkippedVersions()
{
    m_settings.beginGroup(QStringLiteral("Corvane"));
    const int skipped = m_settings.beginReadArray(QStringLiteral("skippedVersions"));
    m_settings.endArray();
    m_settings.endGroup();
    m_forgetSkipped->setVisible(skipped > 0);
}

void DemoWindow::checkForThemeUpdates()
{
    const QString remembered = m_settings.value(lastCommitKey).toString();
    // Answered only while this window lives.
    m_module.hasUpdates(remembered.isEmpty() ? std::nullopt : std::optional<QString>(remembered), this,
                        [this](const corvane::ThemeRepositoryStatus& status) { repositoryStatusArrived(status); });
}

void DemoWindow::repositoryStatusArrived(const corvane::ThemeRepositoryStatus& status)
{
    if (const auto* update = std::get_if<corvane::UpdateAvailable>(&status)) {
        m_newestCommit = update->commit;
        m_notice->show();
        //% "The theme repository has changed since you last looked."
        m_status->setText(text(QT_TRID_NOOP("demo.status.moved-on"),
                               "The theme repository has changed since you last looked."));
    } else if (const auto* failure = std::get_if<corvane::RepositoryCheckFailure>(&status)) {
        // A failed check at start is not worth an alert: the user did not ask for it.
        //% "Could not check the theme repository: %1"
        m_status->setText(text(QT_TRID_NOOP("demo.status.failed"), "Could not check the theme repository: %1")
                              .arg(failure->error.errorDescription()));
    } else {
        //% "Your themes are current with the theme repository."
        m_status->setText(text(QT_TRID_NOOP("demo.status.current"),
                               "Your themes are current with the theme repository."));
    }
    emit repositoryCheckFinished();
}

void DemoWindow::showThemeUpdates()
{
    if (!m_updater) {
        // Over this window, its frame kept with the host's own settings; the list of installed themes
        // follows every install.
        m_updater = m_module.corvane(this, &m_settings);
        connect(m_updater.get(), &corvane::UpdatesThemes::themesInstalled, this, &DemoWindow::reloadInstalledThemes);
        // The user may have skipped versions in the updater: offer to bring them back.
        connect(m_updater.get(), &corvane::UpdatesThemes::closed, this, &DemoWindow::offerToForgetSkippedVersions);
        m_updater->setPreviewProvider(std::make_shared<ThemeSwatches>());
        connect(m_updater.get(), &corvane::UpdatesThemes::installUndone, this, &DemoWindow::reloadInstalledThemes);
    }
    m_updater->show();
    m_notice->hide();
    // Once the user has looked, this commit is no news any more.
    if (!m_newestCommit.isEmpty())
        m_settings.setValue(lastCommitKey, m_newestCommit);
}

void DemoWindow::undoLastThemeUpdate()
{
    const auto undone = m_module.undoLastInstall();
    if (!undone) {
        m_status->setText(undone.error().errorDescription());
        return;
    }
    qsizetype restored = 0;
    for (const corvane::UndoneFile& file : *undone)
        restored += file.change == corvane::UndoneFile::Change::restored;
    //% "Undone: %1 theme files moved to the Trash, %2 earlier versions restored."
    m_status->setText(text(QT_TRID_NOOP("demo.status.undone"),
                           "Undone: %1 theme files moved to the Trash, %2 earlier versions restored.")
                          .arg(undone->size() - restored)
                          .arg(restored));
    reloadInstalledThemes();
    // An open updater lists again what the undo offers anew.
    if (m_updater && m_updater->isVisible())
        m_updater->show();
}

void DemoWindow::reloadInstalledThemes()
{
    m_themeList->clear();
    const QString directory = m_module.configuration().installedThemeDirectory().toLocalFile();
    for (const InstalledTheme& theme : readInstalledThemes(directory)) {
        QString style = theme.style;
        if (theme.style.compare(QLatin1StringView("dark"), Qt::CaseInsensitive) == 0)
            //% "Dark"
            style = text(QT_TRID_NOOP("demo.style.dark"), "Dark");
        else if (theme.style.compare(QLatin1StringView("light"), Qt::CaseInsensitive) == 0)
            //% "Light"
            style = text(QT_TRID_NOOP("demo.style.light"), "Light");
        auto item = new QTreeWidgetItem(m_themeList, {theme.name, style, theme.version, theme.authors});
        item->setToolTip(0, QDir(directory).filePath(theme.fileName));
    }
    for (int column = 0; column < 3; ++column)
        m_themeList->resizeColumnToContents(column);
}
