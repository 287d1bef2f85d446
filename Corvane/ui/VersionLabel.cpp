// SPDX-License-Identifier: MIT
#include "Corvane/ui/VersionLabel.h"

#include <QLabel>

namespace corvane {

VersionLabel::VersionLabel(QWidget* parent)
    : QWidget(parent)
{
}

void VersionLabel::setParts(QLabel* fromVersionLabel, QWidget* arrow, QLabel* toVersionLabel)
{
    m_fromVersionLabel = fromVersionLabel;
    m_arrow = arrow;
    m_toVersionLabel = toVersionLabel;
}

void VersionLabel::configure(const ThemeEntry& entry)
{
    if (entry.installedVersion) {
        m_fromVersionLabel->setText(*entry.installedVersion);
        m_fromVersionLabel->setHidden(false);
        m_arrow->setHidden(false);
    } else {
        // The from-label keeps its old text: a hidden label's text is nobody's business.
        m_fromVersionLabel->setHidden(true);
        m_arrow->setHidden(true);
    }
    m_toVersionLabel->setText(entry.remoteVersion);
}

} // namespace corvane
