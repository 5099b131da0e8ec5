#pragma once

#include "platform/Announcements.h"

#include <QLabel>

namespace Quillory {

// The text of a banner: plain, never wider than its place nor higher than a few lines; what is longer is whole as hover
// help. A new text is announced as it comes, or when its banner is shown the next time. GUI thread only.
class BannerLabel : public QLabel {
    Q_OBJECT
public:
    static constexpr int mostLines = 12; // as many as an installation of all starters says

    // How lines that have no room go on.
    enum class Lines { wrapped, elided };

    // `announcements` outlive it.
    BannerLabel(Announcements& announcements, QWidget* parent, Lines lines = Lines::wrapped);

    // The tail follows on the same line, or on one of its own where it would be torn apart.
    void say(QString const& text, QString const& tail = {});

    // As many as it takes at its width, within the bound above; and a lower bound.
    int wantedLines() const;
    void setMostLines(int lines);

    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QString fitted(int width) const;
    QString whole(QString const& text) const;
    int heightOf(QString const& text, int width) const;
    void updateHelp();
    void announce();

    Announcements& m_announcements;
    Lines m_lines;
    qsizetype m_tail = 0; // units of the text, with the blank in front of it
    int m_mostLines = mostLines;
    bool m_isAnnounced = true;
};

}
