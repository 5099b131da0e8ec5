#pragma once

#include "platform/FileOpener.h"

#include <QStringList>

#include <deque>
#include <utility>

namespace Quillory {

// Records what was asked for; the test gives the answers, oldest request first.
class FakeFileOpener final : public FileOpener {
public:
    void open(QString const& path, Done done) override
    {
        calls.append(QStringLiteral("open ") + path);
        m_waiting.push_back(std::move(done));
    }

    void openLink(QString const& link, Done done) override { open(link, std::move(done)); }

    void reveal(QString const& path) override { calls.append(QStringLiteral("reveal ") + path); }

    void openWith(QString const& path, QString const& application, Done done) override
    {
        calls.append(QStringLiteral("open ") + path + QStringLiteral(" with ") + application);
        m_waiting.push_back(std::move(done));
    }

    void answer(std::expected<void, Failure> const& result)
    {
        auto done = std::move(m_waiting.front());
        m_waiting.pop_front();
        done(result);
    }

    QStringList calls;

private:
    std::deque<Done> m_waiting;
};

}
