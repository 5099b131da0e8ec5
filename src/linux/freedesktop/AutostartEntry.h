#pragma once

#include "platform/Autostart.h"

#include <QByteArray>
#include <QStringList>

namespace Quillory {

// The program's entry among those that a desktop starts with the session.
class AutostartEntry final : public Autostart {
public:
    struct Folders {
        QString own;        // the user's, made when it is needed
        QStringList shared; // the system's, the first one first; an entry in an earlier folder hides later ones

        static Folders standard();
        // Those of a sandbox's host, whose home is where it always is.
        static Folders ofHost();
    };

    // `program` is the whole path of the one to start.
    AutostartEntry(Folders folders, QString program);

    State state() const override;
    void ask(State wanted, Answered answered) override;

private:
    std::expected<void, QString> make(State wanted) const;
    QByteArray contents(State state) const;
    bool isShared() const;

    Folders m_folders;
    QString m_program;
};

}
