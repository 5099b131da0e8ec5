#include "e2e/Terminal.h"

#include <QFile>

#include <gtest/gtest.h>

namespace Quillory {

Terminal::Terminal(Desktop const& desktop, QString lines)
    : m_lines(std::move(lines))
{
    auto const before = desktop.frontWindow();
    auto const command = QStringLiteral("exec cat > \"$1\"");
    m_process.start(QStringLiteral("xterm"),
        { QStringLiteral("-e"), QStringLiteral("sh"), QStringLiteral("-c"), command, QStringLiteral("sh"), m_lines });
    EXPECT_TRUE(Desktop::eventually([&] {
        m_window = desktop.frontWindow();
        return m_window != XCB_NONE && m_window != before && QFile::exists(m_lines);
    })) << "no terminal came to the front";
}

Terminal::~Terminal()
{
    m_process.kill();
    m_process.waitForFinished();
}

QByteArray Terminal::typedLines() const
{
    QFile file(m_lines);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}
