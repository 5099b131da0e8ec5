#pragma once

#include <QDBusConnection>
#include <QList>
#include <QMap>
#include <QRect>
#include <QString>
#include <QStringList>

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
    QString text(Object const& object, int start = 0, int end = -1) const;
    // Of the character, and which run of characters they hold for.
    QMap<QString, QString> attributes(Object const& object, int offset, int& start, int& end) const;
    QStringList interfaces(Object const& object) const;
    QStringList actions(Object const& object) const;
    bool doAction(Object const& object, int index) const;
    // On the screen.
    QRect extents(Object const& object) const;
    QRect characterExtents(Object const& object, int offset) const;

    // What an interface of the bus, by its last name, answers.
    QVariantList ask(
        Object const& object, char const* interface, char const* method, QVariantList const& arguments = {}) const;
    QVariant property(Object const& object, char const* interface, char const* name) const;
    // The slot takes a QDBusMessage for every such event of any program.
    bool hear(char const* event, QObject* listener, char const* slot);

private:
    std::optional<Object> find(Object const& below, QString const& name, int depth) const;

    QDBusConnection m_bus;
};

}
