#pragma once

#include "e2e/Desktop.h"

#include <QFile>
#include <QProcess>

namespace Quillory {

// An ordinary program with a window of its own, which writes down the lines that are typed into it.
class Terminal {
public:
    // Returns when its window is in front. `lines` is the file that the lines go to.
    Terminal(Desktop const& desktop, QString const& lines)
        : m_lines(lines)
    {
        auto const before = desktop.frontWindow();
        m_process.start(u"xterm"_s, { u"-e"_s, u"sh"_s, u"-c"_s, u"exec cat > \"$1\""_s, u"sh"_s, lines });
        EXPECT_TRUE(Desktop::eventually([&] {
            m_window = desktop.frontWindow();
            return m_window != XCB_NONE && m_window != before && QFile::exists(lines);
        })) << "no terminal came to the front";
    }
    ~Terminal()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    xcb_window_t window() const { return m_window; }
    QByteArray typedLines() const
    {
        QFile file(m_lines);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QString m_lines;
    QProcess m_process;
    xcb_window_t m_window = XCB_NONE;
};

}
