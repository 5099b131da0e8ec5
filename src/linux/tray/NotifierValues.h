#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QString>
#include <QVariant>

class QImage;

// The structures of the two interfaces, org.kde.StatusNotifierItem and com.canonical.dbusmenu, as the bus carries them.
namespace Quillory::NotifierValues {

struct Picture { // (iiay): sides in pixels, then ARGB in network byte order
    int width = 0;
    int height = 0;
    QByteArray bytes;

    static Picture of(QImage const& image);
};

struct ToolTip { // (sa(iiay)ss)
    QString iconName;
    QList<Picture> pictures;
    QString title;
    QString text;
};

struct Row { // (ia{sv})
    int number = 0;
    QVariantMap properties;
};

struct Layout { // (ia{sv}av)
    Row row;
    QVariantList rows; // each a layout
};

struct RowEvent { // (isvu)
    int number = 0;
    QString name;
    QDBusVariant data;
    uint time = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, Picture const& picture);
QDBusArgument const& operator>>(QDBusArgument const& argument, Picture& picture);
QDBusArgument& operator<<(QDBusArgument& argument, ToolTip const& toolTip);
QDBusArgument const& operator>>(QDBusArgument const& argument, ToolTip& toolTip);
QDBusArgument& operator<<(QDBusArgument& argument, Row const& row);
QDBusArgument const& operator>>(QDBusArgument const& argument, Row& row);
QDBusArgument& operator<<(QDBusArgument& argument, Layout const& layout);
QDBusArgument const& operator>>(QDBusArgument const& argument, Layout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, RowEvent const& event);
QDBusArgument const& operator>>(QDBusArgument const& argument, RowEvent& event);

// To be called before any of them is sent.
void registerAll();

}

Q_DECLARE_METATYPE(Quillory::NotifierValues::Picture)
Q_DECLARE_METATYPE(Quillory::NotifierValues::ToolTip)
Q_DECLARE_METATYPE(Quillory::NotifierValues::Row)
Q_DECLARE_METATYPE(Quillory::NotifierValues::Layout)
Q_DECLARE_METATYPE(Quillory::NotifierValues::RowEvent)
