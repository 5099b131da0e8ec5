#pragma once

#include <QDBusConnection>
#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace Quillory {

// An assistive program on the accessibility bus of this session, as screen readers are.
class AssistiveClient {
public:
    // An object of another program.
    struct Object {
        QString service;
        QString path;
    };

    AssistiveClient();
    ~AssistiveClient();

    // The first object of any program whose name is this one.
    std::optional<Object> find(QString const& name) const;

    QList<Object> children(Object const& object) const;
    QString name(Object const& object) const;
    QString description(Object const& object) const;
    QString text(Object const& object) const;
    QStringList interfaces(Object const& object) const;
    QStringList actions(Object const& object) const;
    bool doAction(Object const& object, int index) const;
    // On the screen.
    QRect extents(Object const& object) const;
    QRect characterExtents(Object const& object, int offset) const;

private:
    std::optional<Object> find(Object const& below, QString const& name, int depth) const;
    QVariant property(Object const& object, QString const& interface, QString const& name) const;

    QDBusConnection m_bus;
};

}
