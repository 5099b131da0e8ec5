#pragma once

#include "e2e/Desktop.h"

#include <QProcess>
#include <QString>

namespace Quillory {

// An ordinary program with a window of its own, which writes down the lines that are typed into it.
class Terminal {
public:
    // Returns when its window is in front. `lines` is the file that the lines go to.
    Terminal(Desktop const& desktop, QString lines);
    ~Terminal();

    xcb_window_t window() const { return m_window; }
    QByteArray typedLines() const;

private:
    QString m_lines;
    QProcess m_process;
    xcb_window_t m_window = XCB_NONE;
};

}
